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

// Whether the bound is one for the actor: as a script says, else as its model; also without one.
[[nodiscard]] inline bool isHeldBy(const Actor& actor, Bound bound) {
    if ((actor.scriptedBounds & bound) != 0) return (actor.heldBounds & bound) != 0;
    const generated::Character* model = actor.model;
    switch (bound) {
        case kBoundWalls:
            return !model || model->subjectToWall;
        case kBoundHoles:
            return !model || model->subjectToHole;
        case kBoundPlatforms:
            return !model || model->subjectToPlatform;
        case kBoundMinZ:
            return !model || model->subjectToMinZ;
        case kBoundMaxZ:
            return !model || model->subjectToMaxZ;
    }
    return true;
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

// The depth nearest to the actor's at which the stage, if there is one, lets it stand.
[[nodiscard]] inline float depthOnStage(const generated::Stage* stage, const Actor& actor) {
    float z = actor.z;
    if (!stage) return z;
    if (isHeldBy(actor, kBoundMinZ)) z = std::max(z, static_cast<float>(stage->zMin));
    if (isHeldBy(actor, kBoundMaxZ)) z = std::min(z, static_cast<float>(stage->zMax));
    return z;
}

// Ticks without harm after rising; 0 for none.
[[nodiscard]] inline int ticksOfRisingGuard(const generated::Character& model) {
    const std::int64_t ticks = std::int64_t{std::max(0, model.riseInv)} * kTicksPerSecond;
    return static_cast<int>(std::min<std::int64_t>(ticks, INT32_MAX));
}

}  // namespace port
