#pragma once

// Rules of standing and falling that all actors share.

#include <algorithm>
#include <cstdint>

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

// Whether an actor of the model turns to where it goes.
[[nodiscard]] inline bool turnsFreely(const generated::Character& model) {
    return !model.noFlip && model.facingAdjust == 0;
}

// The depth nearest to `z` at which the stage, if there is one, lets the model stand.
[[nodiscard]] inline float depthOnStage(const generated::Stage* stage,
                                        const generated::Character& model, float z) {
    if (!stage) return z;
    if (model.subjectToMinZ) z = std::max(z, static_cast<float>(stage->zMin));
    if (model.subjectToMaxZ) z = std::min(z, static_cast<float>(stage->zMax));
    return z;
}

// Ticks without harm after rising; 0 for none.
[[nodiscard]] inline int ticksOfRisingGuard(const generated::Character& model) {
    const std::int64_t ticks = std::int64_t{std::max(0, model.riseInv)} * kTicksPerSecond;
    return static_cast<int>(std::min<std::int64_t>(ticks, INT32_MAX));
}

}  // namespace port
