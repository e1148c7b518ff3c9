#include "FileBytes.hpp"

#include <algorithm>
#include <fstream>
#include <system_error>

namespace port {

std::optional<std::vector<std::uint8_t>> readFileBytes(const std::filesystem::path& path,
                                                       std::uintmax_t limit) {
    std::error_code failed;
    // A folder opens as a stream on some systems and then fails to read.
    if (std::filesystem::is_directory(path, failed)) return std::nullopt;
    const std::uintmax_t size = std::filesystem::file_size(path, failed);
    if (failed) return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::min(size, limit + 1)));
    in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    return bytes;
}

std::optional<std::string> readSmallText(const std::filesystem::path& path) {
    constexpr std::uintmax_t kMostBytes = std::uintmax_t{1} << 20U;
    const auto bytes = readFileBytes(path, kMostBytes);
    if (!bytes) return std::nullopt;
    return std::string(bytes->begin(), bytes->end());
}

bool replaceFile(const std::filesystem::path& path, std::string_view text) {
    std::filesystem::path temporary = path;
    temporary += ".tmp";
    return replaceFile(path, text, temporary);
}

bool replaceFile(const std::filesystem::path& path, std::string_view text,
                 const std::filesystem::path& temporary) {
    std::ofstream out(temporary, std::ios::trunc | std::ios::binary);
    if (!out) return false;
    out << text;
    out.close();
    std::error_code failed;
    if (out) {
        std::filesystem::rename(temporary, path, failed);
        if (!failed) return true;
    }
    std::filesystem::remove(temporary, failed);
    return false;
}

}  // namespace port
