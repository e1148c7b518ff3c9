#pragma once

// The alpha modes 1 to 6 of a draw method: add, subtract, overlay, hard light, dodge, average.

#include "SpriteImage.hpp"

namespace port {

constexpr bool isBlendMode(int mode) {
    return mode >= 1 && mode <= 6;
}

// `mode` is 1 to 6. Pixels of alpha 0 leave the canvas as it is; others leave it opaque.
void compositeRow(int mode, std::uint8_t* canvas, const std::uint8_t* source, int count);

void drawOpenBORBlend(SpriteImage& canvas, const SpriteImage& image, std::int64_t x, std::int64_t y,
                      int mode);
// Modes 1 to 6 go to the compositor, all others draw source-over.
void drawImageBlend(SpriteImage& canvas, const SpriteImage& image, std::int64_t x, std::int64_t y,
                    int mode);

}  // namespace port
