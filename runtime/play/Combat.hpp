#pragma once

#include "Tick.hpp"

namespace port {

// Finds out who meets whom once everybody has moved, and what comes of it.
void resolveCombat(Tick& tick);

}  // namespace port
