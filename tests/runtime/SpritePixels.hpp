#pragma once

// Small pictures written down as pixels.

#include <cstdint>
#include <initializer_list>

#include "SpriteImage.hpp"

namespace port::test {

// A pixel as 0xAARRGGBB.
using Argb = std::uint32_t;

inline SpriteImage picture(int width, std::initializer_list<Argb> pixels) {
    SpriteImage image;
    image.width = width;
    image.height = static_cast<int>(pixels.size()) / width;
    for (const Argb pixel : pixels) {
        for (unsigned shift = 0; shift < 32; shift += 8) {
            image.bgra.push_back(static_cast<std::uint8_t>(pixel >> shift));
        }
    }
    return image;
}

inline SpriteImage plain(int width, int height, Argb pixel) {
    SpriteImage image{width, height, {}};
    for (int i = 0; i < width * height; ++i) {
        for (unsigned shift = 0; shift < 32; shift += 8) {
            image.bgra.push_back(static_cast<std::uint8_t>(pixel >> shift));
        }
    }
    return image;
}

inline Argb pixelOf(const SpriteImage& image, int x, int y) {
    const std::uint8_t* at = image.bgra.data() + pixelOffset(image, x, y);
    return colorKey(at[2], at[1], at[0]) | (Argb{at[3]} << 24U);
}

inline std::vector<Argb> pixelsOf(const SpriteImage& image) {
    std::vector<Argb> pixels;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) pixels.push_back(pixelOf(image, x, y));
    }
    return pixels;
}

}  // namespace port::test
