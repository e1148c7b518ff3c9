#pragma once

// Scans of those on the stage that cost nothing for the dead.

#include "RosterScan.hpp"

namespace port {

// Once a tick, before entities take their turns.
void updateRoster(World& world);

}  // namespace port
