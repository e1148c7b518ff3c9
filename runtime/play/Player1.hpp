#pragma once

// Player 1 in a tick.

#include "Tick.hpp"

namespace port {

// Its input, what it starts, and then what its state makes of it: falling, jumping, recovering,
// stunned, attacking, holding, or walking about.
void updatePlayer(Tick& tick);

}  // namespace port
