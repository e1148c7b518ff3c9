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

// Puts all actors that scripts have bound to others in their places, targets before those bound to
// them. Bindings end that lead nowhere, back to themselves, or to an animation that is not there.
void applyEntityBindings(World& world);

}  // namespace port
