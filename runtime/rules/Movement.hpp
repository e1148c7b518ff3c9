#pragma once

// Rules of standing and falling that all actors share.

#include "Actor.hpp"

namespace port {

// The way a model looks, whatever moves it: `facingAdjust` 1 right, 2 left, 3 the way the stage
// scrolls; any other leaves `facing` as it is. So does no model.
[[nodiscard]] inline int modelFacingValue(const generated::Character* model, int facing,
                                          int scrollDir) {
    switch (model ? model->facingAdjust : 0) {
        case 1:
            return 1;
        case 2:
            return -1;
        case 3:
            return scrollDir < 0 ? -1 : 1;
        default:
            return facing;
    }
}

// The part of gravity that does not act: a script's value, else the model's, else 0.
[[nodiscard]] inline float actorAntigravity(const Actor& actor) {
    if (actor.hasScriptAntigravity) return actor.scriptAntigravity;
    return actor.model ? actor.model->antigravity : 0;
}

}  // namespace port
