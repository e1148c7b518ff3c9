#pragma once

// World positions as places of the canvas. What no canvas reaches stays within 2^24 pixels,
// whatever a game's numbers say, so that sums of a few of them fit an int.

#include <algorithm>
#include <cmath>

namespace port {

// Within those pixels, fractions kept; 0 for no number.
[[nodiscard]] inline double withinReach(double position) {
    constexpr double kFarAway = 1 << 24;
    return std::isnan(position) ? 0 : std::clamp(position, -kFarAway, kFarAway);
}

// Towards zero; 0 for no number.
[[nodiscard]] inline int pixel(double position) {
    return static_cast<int>(withinReach(position));
}

// To the nearest, halves away from zero.
[[nodiscard]] inline int roundedPixel(double position) {
    return pixel(std::round(position));
}

}  // namespace port
