#pragma once

#include "World.hpp"

namespace port {

// Where an actor stands among those at its depth: behind or before the one it is bound to, by the
// binding's `sort`; players by their handles, entities in the order of their coming.
[[nodiscard]] int bindingSortId(const World& world, const Actor& actor);

}  // namespace port
