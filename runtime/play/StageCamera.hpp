#pragma once

// The camera's steps of a tick.

#include "Tick.hpp"

namespace port {

void updateCamera(Tick& tick);

// Holds the camera while enemies are left, where the settings want it.
void updateCombatLock(Tick& tick);

}  // namespace port
