#include "FileStamp.hpp"

#include <system_error>

namespace port {

std::optional<FileStamp> fileStamp(const std::filesystem::path& path) {
    std::error_code absent;
    FileStamp stamp;
    stamp.size = std::filesystem::file_size(path, absent);
    if (absent) return std::nullopt;
    stamp.time = std::filesystem::last_write_time(path, absent);
    if (absent) return std::nullopt;
    return stamp;
}

}  // namespace port
