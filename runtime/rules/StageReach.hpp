#pragma once

// How far a stage can be walked where its walls close the ground before its length ends.

#include "StageRun.hpp"
#include "Wayfinding.hpp"

namespace port {

// The furthest column of the ground ahead of `from`, in stage pixels, where walls that nobody
// clears in a jump leave no way past them. Open where they do, on a stage that scrolls by itself,
// from a place within a wall, and where ground and walls are too many to look at.
[[nodiscard]] StageReach stageReach(const StageRun& stage, GroundPoint from);

// How far it is from a place within an area to the nearest of its sides behind which the stage can
// be walked; 0 where there is none or outside of it.
[[nodiscard]] float wayOutOf(const generated::Geometry& area, const StageRun& stage,
                             GroundPoint from);

}  // namespace port
