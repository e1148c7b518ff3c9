#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace port {

// The whole file; none when it cannot be read. Files above `limit` bytes come back cut, one byte
// longer than it, so that the caller can tell.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> readFileBytes(
    const std::filesystem::path& path, std::uintmax_t limit);

}  // namespace port
