// Runs a fuzz target once over every file of the folders given; having none to run is a failure.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (!entry.is_regular_file()) continue;
            std::printf("%s\n", entry.path().string().c_str());
            std::fflush(stdout);
            std::ifstream in(entry.path(), std::ios::binary);
            const std::vector<char> content{std::istreambuf_iterator<char>(in), {}};
            const std::vector<std::uint8_t> bytes(content.begin(), content.end());
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
            ++count;
        }
    }
    std::printf("%zu files\n", count);
    return count == 0 ? 1 : 0;
}
