#pragma once

// How a run comes up, from the folder of a port to its first screen.

#include <filesystem>

#include "Game.hpp"

namespace port {

// Where the port lies, its settings, and what the game's own files say of sizes.
void readSettings(Game& game, const std::filesystem::path& portRoot);
// By these settings: scripts, screen and sound, the menus, and player 1 ahead of the first stage.
// False when there is nothing to draw on; missing sound only warns.
[[nodiscard]] bool startServices(Game& game);
// The main menu; without a window a game begins at once.
void enterFirstState(Game& game);

}  // namespace port
