#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace port {

// The whole file; none when it cannot be read. Files above `limit` bytes come back cut, one byte
// longer than it, so that the caller can tell.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> readFileBytes(
    const std::filesystem::path& path, std::uintmax_t limit);

// A small text file: settings, a saved game, a few lines of a game for its menus. None when it
// cannot be read. What lies beyond a megabyte is cut off: none of them has a hundredth of that.
[[nodiscard]] std::optional<std::string> readSmallText(const std::filesystem::path& path);

// Puts the text into the place of the file, whole or not at all: whoever reads it finds the old one
// or the new one. False when it cannot be written; the old file then stands.
[[nodiscard]] bool replaceFile(const std::filesystem::path& path, std::string_view text);
// By way of that file beside it, where its name matters to the caller.
[[nodiscard]] bool replaceFile(const std::filesystem::path& path, std::string_view text,
                               const std::filesystem::path& temporary);

}  // namespace port
