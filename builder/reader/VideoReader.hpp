#pragma once

// data/video.txt: the logical resolution of the game.

#include <cstdint>
#include <string>

#include "reader/GameReader.hpp"

namespace tindrel {

struct VideoInfo {
    std::string sourceFile;  // "data/video.txt" when the file was read
    bool exists = false;
    std::int32_t mode = 0;
    std::int32_t width = 320;   // at least 160
    std::int32_t height = 240;  // at least 120
};

// Throws ("exists") for an error other than absence of the file.
[[nodiscard]] VideoInfo readVideoInfo(GameReader& game);

// The same from the lines of the file; `mode` sets the size only where no line did.
[[nodiscard]] VideoInfo parseVideoInfo(const TextFile& file);

}  // namespace tindrel
