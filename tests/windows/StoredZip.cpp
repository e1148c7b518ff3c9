// Stands in for the tar.exe that Windows carries and Wine does not, as far as the builder calls it:
//     tar.exe -xf <ZIP whose files are stored as they are> -C <folder>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "PathEncoding.hpp"
#include "platform/Console.hpp"

namespace {

namespace fs = std::filesystem;

std::size_t number(const std::string& zip, std::size_t at, std::size_t bytes) {
    std::size_t value = 0;
    for (std::size_t i = bytes; i > 0; --i) {
        value = value << 8U | static_cast<unsigned char>(zip.at(at + i - 1));
    }
    return value;
}

void unpack(const std::string& zip, const fs::path& folder) {
    const std::size_t end = zip.rfind("PK\5\6");
    if (end == zip.npos) throw std::runtime_error("no ZIP");
    const std::size_t count = number(zip, end + 10, 2);
    std::size_t entry = number(zip, end + 16, 4);
    for (std::size_t i = 0; i < count; ++i) {
        if (number(zip, entry + 10, 2) != 0) throw std::runtime_error("a file is not stored");
        const std::size_t size = number(zip, entry + 24, 4);
        const std::size_t nameSize = number(zip, entry + 28, 2);
        const fs::path target = folder / PathEncoding::path(zip.substr(entry + 46, nameSize));
        const std::size_t local = number(zip, entry + 42, 4);
        const std::size_t data =
            local + 30 + number(zip, local + 26, 2) + number(zip, local + 28, 2);
        fs::create_directories(target.parent_path());
        if (target.has_filename()) {
            std::ofstream(target, std::ios::binary) << zip.substr(data, size);
        }
        entry += 46 + nameSize + number(zip, entry + 30, 2) + number(zip, entry + 32, 2);
    }
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const auto arguments = tindrel::commandLine(argc, argv).value();
        std::ifstream file(PathEncoding::path(arguments.at(2)), std::ios::binary);
        unpack({std::istreambuf_iterator<char>(file), {}}, PathEncoding::path(arguments.at(4)));
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "tar: " << error.what() << '\n';
        return 1;
    }
}
