#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace port {

// What tells whether a file is still the one that was read.
struct FileStamp {
    std::uintmax_t size = 0;
    std::filesystem::file_time_type time;
    bool operator==(const FileStamp&) const = default;
};

// Empty for a file that is not there.
[[nodiscard]] std::optional<FileStamp> fileStamp(const std::filesystem::path& path);

}  // namespace port
