#pragma once

#include "World.hpp"

namespace port {

// A child of a model that follows stays near its parent, and is recalled from afar.
void updateChildFollowing(const World& world, RuntimeEntity& child);

}  // namespace port
