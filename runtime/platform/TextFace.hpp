#pragma once

// The system's fonts as the renderer sees them.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace port::platform {

// One line of text from the top of its letters' line down; 0 nothing to 255 all of a pixel, row by
// row. Empty for a text that shows nothing.
struct TextCoverage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> alpha;
};

constexpr int kLargestText = 1024;  // pixels; canvases are not much higher

struct TextRequest {
    std::string text;  // UTF-8 without control characters
    int size = 16;     // of the letters' square, in pixels, 1 to kLargestText
    bool bold = false;
    int mostWidth = 0;  // letters beyond so many pixels are left out; above 0
    bool operator==(const TextRequest&) const = default;
};

// Without `rasterize` the build has no fonts.
struct TextFace {
    // Nothing where the system has no font for it. The same request gives the same coverage.
    std::function<std::unique_ptr<TextCoverage>(const TextRequest&)> rasterize;
};

[[nodiscard]] TextFace systemTextFace();

}  // namespace port::platform
