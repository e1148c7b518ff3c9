#pragma once

// The weapons that actors carry.

#include "Tick.hpp"

namespace port {

// The model's weapon of that number, from 1 on, or none for 0 and less. A number without a known
// weapon changes nothing.
void setWeaponIndex(Tick& tick, Actor& actor, int index);

// Takes up the first in the order of entities that lies within reach: ammunition for the weapon
// in hand, a weapon of the model's list, or a thing to throw.
void tryPickupWeapon(Tick& tick, PlayerActor& player);
// The weapon in hand came from this item, which is what a drop puts back.
void holdItem(Actor& actor, const RuntimeEntity& item);

// The actor is left with what the loss of the weapon in hand leaves. Unless a stage ends, its item
// falls to the ground while it has drops left.
void dropWeapon(Tick& tick, Actor& actor, bool stageLoss);

// Lets the items that fell enter the stage.
void flushWeaponDrops(Tick& tick);

// At the end of a stage: everybody is left with what the loss of the weapon in hand leaves, and
// nothing more falls to the ground.
void loseWeapons(Tick& tick);

}  // namespace port
