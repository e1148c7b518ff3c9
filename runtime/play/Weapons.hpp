#pragma once

// The weapons that actors carry.

#include "Tick.hpp"

namespace port {

// The model's weapon of that number, from 1 on, or none for 0 and less. A number without a known
// weapon changes nothing.
void setWeaponIndex(Tick& tick, Actor& actor, int index);

// At the end of a stage: everybody is left with what the loss of the weapon in hand leaves, and
// nothing falls to the ground.
void loseWeapons(Tick& tick);

}  // namespace port
