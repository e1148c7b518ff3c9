#pragma once

// The menus, a screen for each.

#include <memory>

#include "FrontendScreens.hpp"

namespace port {

[[nodiscard]] std::unique_ptr<Screen> mainMenu(Game& game);
[[nodiscard]] std::unique_ptr<Screen> levelSetSelect(Game& game);
[[nodiscard]] std::unique_ptr<Screen> characterSelect(Game& game);
[[nodiscard]] std::unique_ptr<Screen> pauseMenu(Game& game);
[[nodiscard]] std::unique_ptr<Screen> gameOverScreen(Game& game);
[[nodiscard]] std::unique_ptr<Screen> controlsScreen(Game& game);
[[nodiscard]] std::unique_ptr<Screen> optionsScreen(Game& game);
[[nodiscard]] std::unique_ptr<Screen> graphicsOptionsScreen(Game& game);

}  // namespace port
