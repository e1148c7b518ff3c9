#pragma once

// What entities do in a tick.

#include "Tick.hpp"

namespace port {

// In the order of their coming. What scripts add takes its turn in the same tick.
void updateEntities(Tick& tick);

// Asking for the running animation again does not start it anew; null changes nothing.
void setEntityAnimation(RuntimeEntity& entity, const generated::Animation* animation);

// Living entities of type enemy.
[[nodiscard]] int activeEnemies(const World& world);

}  // namespace port
