#pragma once

// What entities carry on their backs.

#include "World.hpp"

namespace port {

// The height of the highest platform under (x, z), 0 for none or for a model that stands on none.
// `ignore` is an entity whose own platform does not count.
[[nodiscard]] float dynamicPlatformHeight(const World& world, float x, float z, ActorHandle ignore,
                                          const generated::Character* subject);

}  // namespace port
