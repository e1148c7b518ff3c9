#pragma once

// Walls, holes and platforms as they stop an actor.

#include "Platforms.hpp"
#include "Tick.hpp"

namespace port {

// Holds the actor, who came from (oldX, oldZ), out of platforms and walls that are too high, with
// the hook of the wall. True when there is a hole under the actor.
[[nodiscard]] bool applyActorTerrain(Tick& tick, Actor& actor, float oldX, float oldZ);

}  // namespace port
