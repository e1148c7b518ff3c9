#pragma once

// A picture file taken apart, before the rules of sprites are applied to it.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
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

// Sets `error` and returns false, for the end of a failing decoder.
bool failImage(std::string& error, std::string_view text);

// Gives the picture its size and transparent pixels; the size must have passed the check.
void allocateImage(DecodedImage& image, std::size_t width, std::size_t height);

// The two formats that need no library. Each fills `out` or sets `error` and returns false.
// BMP: 1, 4, 8 (also run-length encoded), 16, 24 and 32 bits without alpha.
[[nodiscard]] bool decodeBmp(std::span<const std::uint8_t> file, DecodedImage& out,
                             std::string& error);
// PCX: 8 bits with the palette of 256 colours, and 24 bits.
[[nodiscard]] bool decodePcx(std::span<const std::uint8_t> file, DecodedImage& out,
                             std::string& error);

}  // namespace port
