#pragma once

// What is thrown or shot.

#include <set>

#include "Actor.hpp"

namespace port {

struct RuntimeProjectile {
    const generated::Character* model = nullptr;
    const generated::Character* ownerModel = nullptr;  // whose side it fights on
    AnimationPlayer animation;
    std::size_t lastFrame = kNoFrame;
    ShownFrame shown;
    float worldX = 0, z = 200, altitude = 0;
    float vx = 0, vy = 0, vz = 0;
    int facing = 1, life = 0;
    bool bomb = false, exploded = false;
    bool attackSpent = false;  // the first collision used its attack up
    std::set<ActorHandle> hitTargets;
    bool fromPlayer = true, alive = true, subjectToGravity = false;
    int bouncesLeft = 0;
    float bounceFactor = 0.5F;
    int hitMask = 0;

    [[nodiscard]] ActorPlace place() const { return {worldX, z, altitude, facing}; }

    PORT_FIELDS(model, ownerModel, animation, lastFrame, shown, worldX, z, altitude, vx, vy, vz,
                facing, life, bomb, exploded, attackSpent, hitTargets, fromPlayer, alive,
                subjectToGravity, bouncesLeft, bounceFactor, hitMask)
};

}  // namespace port
