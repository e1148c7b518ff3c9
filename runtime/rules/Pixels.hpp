#pragma once

// World positions as places of the canvas. What no canvas reaches stays within 2^24 pixels,
// whatever a game's numbers say, so that sums of a few of them fit an int.

#include <algorithm>
#include <cmath>

namespace port {

// Towards zero; 0 for no number.
[[nodiscard]] inline int pixel(double position) {
    constexpr double kFarAway = 1 << 24;
    return std::isnan(position) ? 0 : static_cast<int>(std::clamp(position, -kFarAway, kFarAway));
}

// To the nearest, halves away from zero.
[[nodiscard]] inline int roundedPixel(double position) {
    return pixel(std::round(position));
}

}  // namespace port
