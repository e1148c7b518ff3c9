#pragma once

// The way on foot from one place of a stage to another, round its walls and holes.

#include "GeneratedStages.hpp"

namespace port {

struct GroundPoint {
    float x = 0, z = 0;
};

// Which way to walk, -1, 0 or 1 each; none where one stands already.
struct Heading {
    int dx = 0, dz = 0;
    bool operator==(const Heading&) const = default;
};

// The first step of a shortest way in a raster of 16 by 8 pixels, over ground within half a screen
// or so around `from`: at most 1,024 pixels wide and 512 deep. Straight on where nothing is in
// the way; to the reachable place that is nearest to `to` where no way leads there. Within `reach`
// of `to` there is no further to go.
[[nodiscard]] Heading wayTo(const generated::Stage& stage, GroundPoint from, GroundPoint to,
                            GroundPoint reach);

}  // namespace port
