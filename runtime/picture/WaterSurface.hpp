#pragma once

// Water: a picture whose rows move.

#include <cstdint>

#include "SpriteImage.hpp"

namespace port {

struct WaterSurface {
    enum class Motion {
        Still,
        Waves,  // rows swing sideways, each a little after the one above
        Flow,   // rows drift to the left, drawn wider the nearer they are
    };
    Motion motion = Motion::Still;
    double phase = 0;  // of waves in radians; of a flow the pixels that it has come
    bool operator==(const WaterSurface&) const = default;
};

// How water moves at that tick: in waves with `rock` 0, in a flow with 1, not at all with others.
// `warp` is its speed, 0 to 15.
[[nodiscard]] WaterSurface legacyWaterSurface(int warp, int rock, std::uint64_t tick);

// Draws the picture side by side from (x, y) to the right end of the canvas. Costs what is visible
// and allocates nothing.
void drawWater(SpriteImage& canvas, const SpriteImage& image, const WaterSurface& surface,
               std::int64_t x, std::int64_t y);

}  // namespace port
