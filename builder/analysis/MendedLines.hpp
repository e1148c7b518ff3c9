#pragma once

// Which lines of a game were read as their authors plainly meant them.

#include <cstdint>
#include <filesystem>

#include "reader/GameReader.hpp"

namespace tindrel {

inline constexpr const char* kMendedLinesName = "mended-lines.txt";

// Lines that were mended, each once whatever it needed.
[[nodiscard]] std::uint64_t countMendedLines(const GameReader& game);

// The list, with what its mends mean. A game without such lines has no list: what stands there of
// an earlier reading goes. Throws ("write").
void writeMendedLines(const GameReader& game, const std::filesystem::path& file);

}  // namespace tindrel
