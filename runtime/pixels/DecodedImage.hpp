#pragma once

// A picture file taken apart, before the rules of sprites are applied to it, and what its decoders
// share.

#include <cstddef>
#include <cstdint>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "SpriteImage.hpp"

namespace port {

struct DecodedImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bgra;  // straight alpha
    std::vector<ColorKey> palette;   // as the file stores it; empty for pictures without one
};

struct DecodedAnimation {
    std::vector<DecodedImage> frames;  // whole pictures of one size; their palettes are empty
    std::vector<int> delaysMs;         // one a frame
};

// Beyond these a picture is refused before memory is taken. The widest of real games has 6,333.
constexpr std::size_t kMaxImageSide = 16384;
constexpr std::size_t kMaxImagePixels = 64'000'000;

// False and a message for an empty or oversized picture.
[[nodiscard]] bool checkImageSize(std::uint64_t width, std::uint64_t height, std::string& error);

// Sets `error` to its pieces in a row and returns false, for the end of a failing decoder.
template <class... Parts>
bool failImage(std::string& error, const Parts&... parts) {
    std::ostringstream text;
    (text << ... << parts);
    error = text.str();
    return false;
}

// Gives the picture its size and transparent pixels; the size must have passed the check.
void allocateImage(DecodedImage& image, std::size_t width, std::size_t height);

// A little-endian number of 1 to 4 bytes. What lies beyond the end of the file reads as 0; callers
// check sizes where that matters.
[[nodiscard]] std::uint32_t littleEndianAt(std::span<const std::uint8_t> file, std::size_t at,
                                           std::size_t size);

[[nodiscard]] inline std::uint8_t* pixelAt(DecodedImage& image, std::size_t x, std::size_t y) {
    return image.bgra.data() + (y * static_cast<std::size_t>(image.width) + x) * kPixelBytes;
}

inline void putOpaque(std::uint8_t* pixel, ColorKey color) {
    for (unsigned c = 0; c < 3; ++c) pixel[c] = static_cast<std::uint8_t>(colorChannel(color, c));
    pixel[3] = 255;
}

// An index beyond a short palette is black.
[[nodiscard]] inline ColorKey paletteColor(const std::vector<ColorKey>& palette,
                                           std::size_t index) {
    return index < palette.size() ? palette[index] : 0;
}

}  // namespace port
