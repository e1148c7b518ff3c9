#pragma once

// The pixels that a game is drawn with, and the colours of its palettes.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace port {

// Four bytes a pixel: blue, green, red, alpha; row by row from the top, without padding. Sprites
// are premultiplied by their alpha. The logical canvas has the same form and is opaque.
struct SpriteImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bgra;
};

constexpr std::size_t kPixelBytes = 4;

// A colour of 24 bits: blue in bits 0 to 7, green in 8 to 15, red in 16 to 23.
using ColorKey = std::uint32_t;

constexpr ColorKey colorKey(unsigned red, unsigned green, unsigned blue) {
    return (red << 16U) | (green << 8U) | blue;
}

// Channel 0 is blue, 1 green, 2 red: the order of the bytes of a pixel.
constexpr unsigned colorChannel(ColorKey color, unsigned channel) {
    return (color >> (8U * channel)) & 0xFFU;
}

inline std::size_t pixelOffset(const SpriteImage& image, int x, int y) {
    return (static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
            static_cast<std::size_t>(x)) *
           kPixelBytes;
}

// The part of a picture that falls on a canvas; empty when its width is 0.
struct VisibleArea {
    int canvasX = 0;
    int canvasY = 0;
    int sourceX = 0;
    int sourceY = 0;
    int width = 0;
    int height = 0;
};

// Positions are 64 bits wide: a frame's offset may be any number, and its distance to the origin
// need not fit an int.
inline VisibleArea visibleArea(const SpriteImage& canvas, std::int64_t x, std::int64_t y, int width,
                               int height) {
    const std::int64_t left = std::clamp<std::int64_t>(x, 0, canvas.width);
    const std::int64_t top = std::clamp<std::int64_t>(y, 0, canvas.height);
    const std::int64_t right = std::clamp<std::int64_t>(x + width, left, canvas.width);
    const std::int64_t bottom = std::clamp<std::int64_t>(y + height, top, canvas.height);
    if (right == left || bottom == top) return {};
    return {static_cast<int>(left),         static_cast<int>(top),
            static_cast<int>(left - x),     static_cast<int>(top - y),
            static_cast<int>(right - left), static_cast<int>(bottom - top)};
}

}  // namespace port
