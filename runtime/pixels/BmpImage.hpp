#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "DecodedImage.hpp"

namespace port {

// BMP with the headers of Windows and OS/2: 1, 4 and 8 bits with a palette, of which 4 and 8 may be
// run-length encoded; 16, 24 and 32 bits, of which 16 and 32 may state the bits of their channels.
// Alpha comes from a stated mask alone; without one a picture is opaque. Fills `out`, or sets
// `error` and returns false.
[[nodiscard]] bool decodeBmp(std::span<const std::uint8_t> file, DecodedImage& out,
                             std::string& error);

}  // namespace port
