#pragma once

// What an entity does of its own accord.

#include "Tick.hpp"

namespace port {

// A tick of an entity that is free to act: it takes up a weapon, dodges, attacks or walks.
// Obstacles, items and the like only play their animation.
void think(Tick& tick, RuntimeEntity& entity);

}  // namespace port
