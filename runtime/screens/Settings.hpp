#pragma once

#include "Game.hpp"

namespace port {

// The settings as they are now, into their file and to the renderer. Runs that a pilot plays leave
// the file alone.
void saveSettings(Game& game);

}  // namespace port
