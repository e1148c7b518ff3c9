#pragma once

// What turns a picture file into pixels: the system's own decoders or libraries.

#include <cstdint>
#include <span>
#include <string>

#include "DecodedImage.hpp"

namespace port {

// False where pictures cannot be decoded at all; the calls below then fail.
[[nodiscard]] bool canDecodeImages();

// The first frame, in its own size. False and a message for what is no picture, is damaged or is
// too large.
[[nodiscard]] bool decodeImage(std::span<const std::uint8_t> file, DecodedImage& out,
                               std::string& error);

// All frames, each laid over what the ones before it left. A picture that does not move is one
// frame of 100 ms. True with `error` set when a later frame is damaged or too much: those before
// it stand.
[[nodiscard]] bool decodeAnimation(std::span<const std::uint8_t> file, DecodedAnimation& out,
                                   std::string& error);

}  // namespace port
