#pragma once

// What an entity does of its own accord.

#include "Tick.hpp"

namespace port {

// A tick of an entity that is free to act: it takes up a weapon, dodges, attacks or walks.
// Obstacles, items and the like only play their animation. False when its turn ends with that: on
// the way to a weapon nothing on the stage holds it up.
bool think(Tick& tick, RuntimeEntity& entity);

}  // namespace port
