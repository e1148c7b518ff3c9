#pragma once

// Picture files as sprites.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "SpriteImage.hpp"

namespace port {

// What stands for every picture where nothing can decode one: 64 by 64, white.
[[nodiscard]] SpriteImage placeholderSprite();

// Each colour channel becomes channel * alpha / 255.
void premultiply(std::vector<std::uint8_t>& bgra);

// All three return false for a file that is not there or is no such picture; `error` then says
// why, and stays empty for a missing file.

// The first frame. With `index0Transparency` an indexed picture loses every pixel of the colour of
// its palette's entry 0, whatever the pixel's own index.
[[nodiscard]] bool loadSprite(const std::filesystem::path& path, bool index0Transparency,
                              SpriteImage& out, std::string& error);
// The first frame's palette, entry by entry as stored; false when it has none.
[[nodiscard]] bool loadPalette(const std::filesystem::path& path, std::vector<ColorKey>& colors,
                               std::string& error);
// All frames as they are seen, with how long. True with `error` set when the rest is damaged.
[[nodiscard]] bool loadAnimationFrames(const std::filesystem::path& path,
                                       std::vector<SpriteImage>& frames, std::vector<int>& delaysMs,
                                       std::string& error);

}  // namespace port
