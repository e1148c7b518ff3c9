#pragma once

#include "Game.hpp"

namespace port {

// Shows what stands in the game's list for so long, as long as the window lives. A run that plays
// by itself shows it once and does not wait.
void showFor(Game& game, int milliseconds);

}  // namespace port
