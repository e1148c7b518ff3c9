#pragma once

#include "World.hpp"

namespace port {

// What a binding does, as bits of `config`.
enum BindingConfig : unsigned {
    kBindAnimation = 1,
    kBindFrame = 2,
    kBindAnimationOrDie = 4,
    kBindFrameOrDie = 8,
    kBindXAt = 64,
    kBindX = 128,
    kBindAltitudeAt = 256,
    kBindAltitude = 512,
    kBindZAt = 1024,
    kBindZ = 2048
};

// Which way it makes the actor look, as `direction`; 0 leaves it. Toward and away from its target.
enum BindingDirection {
    kSameDirection = 1,
    kOppositeDirection = -1,
    kRightDirection = 2,
    kLeftDirection = -2,
    kTowardDirection = 3,
    kAwayDirection = 4
};

// A living player or an entity on the stage; null for any other handle.
[[nodiscard]] Actor* bindableActor(World& world, ActorHandle handle);

// Puts the actor in the place that its binding gives it, or ends the binding.
void applyEntityBinding(World& world, Actor& actor);

// Puts all actors that scripts have bound to others in their places, targets before those bound to
// them. Bindings end that lead nowhere, back to themselves, or to an animation that is not there.
void applyEntityBindings(World& world);

}  // namespace port
