#pragma once

// Players 2 to 4 in a tick.

#include "Tick.hpp"

namespace port {

// A co-op player neither dashes nor grabs, has no speed of its own in the air, and needs no time to
// rise. Unlike player 1, it stays on the screen while it walks.
void updateCoopPlayers(Tick& tick);

}  // namespace port
