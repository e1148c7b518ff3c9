#pragma once

// Entities in the air and how they land.

#include "Tick.hpp"

namespace port {

// Above this ground, thrown up or without anything below.
[[nodiscard]] bool isInAir(const RuntimeEntity& entity, float ground);

// A tick in the air over the ground, which has the altitude of a platform. False when the ground
// has thrown the entity up again: its turn is over.
bool fall(Tick& tick, RuntimeEntity& entity, float ground);

// A tick of rising after a fall.
void rise(RuntimeEntity& entity);

}  // namespace port
