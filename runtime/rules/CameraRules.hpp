#pragma once

// How the camera follows the players.

#include "StageRun.hpp"

namespace port {

// Where a focus draws a camera that shows `view` pixels; inside its dead zone it stays.
[[nodiscard]] float cameraDrawnTo(const Camera& camera, float focus, float view);

// The camera of the next tick, for the mean place of the living players. The dead leave it where it
// is; a stage that scrolls by itself or does not scroll asks for no focus.
struct CameraFocus {
    bool someoneLives = false;
    float x = 0;
};
[[nodiscard]] Camera followedCamera(const StageRun& stage, const Camera& camera, CameraFocus focus,
                                    int logicalWidth);

// How far a vertical stage has scrolled after the next tick. It stands still at a gate.
[[nodiscard]] float followedVerticalScroll(const StageRun& stage);

// The camera held where it is while there are enemies, and let go when there are none. At its start
// a stage holds nobody.
[[nodiscard]] Camera combatLockedCamera(const Camera& camera, bool enemiesAreLeft);

}  // namespace port
