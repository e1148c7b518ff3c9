#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "DecodedImage.hpp"

namespace port {

// PCX: 8 bits with the palette of 256 colours, and 24 bits. Fills `out`, or sets `error` and
// returns false.
[[nodiscard]] bool decodePcx(std::span<const std::uint8_t> file, DecodedImage& out,
                             std::string& error);

}  // namespace port
