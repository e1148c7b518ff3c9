#pragma once

// How player 1 takes hold of an enemy and throws it. Co-op players cannot.

#include "Tick.hpp"

namespace port {

// Takes the nearest enemy in reach along x, the later of equals.
void tryGrabNearest(Tick& tick);
void throwGrabbed(Tick& tick);
// Keeps the one that is held ahead of its holder.
void holdGrabbed(World& world);

}  // namespace port
