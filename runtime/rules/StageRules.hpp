#pragma once

// How a stage begins, how long it is, and how far it has been walked.

#include <cstddef>
#include <cstdint>

#include "GeneratedStages.hpp"
#include "StageRun.hpp"

namespace port {

// The pixels that a stage shows at a time, for its lengths and triggers.
[[nodiscard]] int stageView(int logicalWidth);

// The run of a stage before anything has happened in it. Its length waits for stageLength().
[[nodiscard]] StageRun freshStageRun(const generated::Stage& row);
// Of that at `index` of the table.
[[nodiscard]] StageRun freshStageRun(std::size_t index);
// The camera that belongs to it.
[[nodiscard]] Camera freshCamera(const StageRun& stage);
// Where the camera begins once the length is known: a stage to the left begins at its right end.
[[nodiscard]] float cameraStart(const StageRun& stage, int logicalWidth);

// Widths of a stage's pictures, in pixels.
struct SceneryExtent {
    std::int64_t panels = 0;      // all together
    std::int64_t background = 0;  // the background
    std::int64_t layers = 0;      // the right end of the longest background layer
};

// As long as its pictures, and long enough for the camera to reach everything that waits for it.
// 320 to 2^24, beyond which a float no longer tells pixels apart.
[[nodiscard]] int stageLength(const generated::Stage& stage, const SceneryExtent& scenery,
                              int logicalWidth);

// From here on a stage whose way is closed has been walked to its end: players who stand a little
// apart do not draw the camera all the way.
constexpr float kEndOfWay = 32;

// Pixels scrolled from the end where the stage began. Where walls close the way and nobody can draw
// the camera further, all of the stage counts as scrolled: what waits behind comes here.
[[nodiscard]] float stageScrollPosition(const StageRun& stage, const Camera& camera,
                                        int logicalWidth);
[[nodiscard]] bool reachedStagePosition(int at, bool hasAt, float scrollPosition);

}  // namespace port
