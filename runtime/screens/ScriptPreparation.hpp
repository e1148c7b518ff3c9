#pragma once

// Scripts that a stage is about to need, compiled while it is loaded: their first run then holds up
// no frame.

#include "Scripts.hpp"
#include "World.hpp"

namespace port {

// Those about keys, of the players and of whom the world's stage spawns, with their weapons and
// children, of those who may join one of so many places, and of each pass, as far as
// script::kPreparingSteps go. Nothing that the game tells or hashes changes.
void prepareScripts(Scripts& scripts, const World& world, int places);

}  // namespace port
