#pragma once

// Walls, holes and the platforms that other actors carry.

#include "Tick.hpp"

namespace port {

// The height of the highest platform under (x, z), 0 for none or for a model that stands on none.
// `ignore` is an entity whose own platform does not count.
[[nodiscard]] float dynamicPlatformHeight(const World& world, float x, float z, ActorHandle ignore,
                                          const generated::Character* subject);

// Holds the actor, who came from (oldX, oldZ), out of platforms and walls that are too high, with
// the hook of the wall. True when there is a hole under the actor.
[[nodiscard]] bool applyActorTerrain(Tick& tick, Actor& actor, float oldX, float oldZ);

}  // namespace port
