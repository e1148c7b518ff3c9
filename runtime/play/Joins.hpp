#pragma once

// How players join a game that is being played.

#include "Tick.hpp"

namespace port {

// Adds the co-op player of that zero-based slot. False where the stage lets nobody join, the slot
// is not the next in line, or there is no model for it.
bool joinPlayerSlot(Tick& tick, int slot);

// Lets the next in line join by a press of A or START on its pad. True when somebody has joined.
bool updateInProgressJoins(Tick& tick);

}  // namespace port
