#pragma once

// The screens outside play, and what they are made of.

#include <memory>

#include "Game.hpp"

namespace port {

class Screen {
  public:
    virtual ~Screen() = default;
    // One pass of it: what the player does, and which screen comes next.
    virtual FrontendState update(const TickInput& input) = 0;
    virtual void draw(DrawList& list) const = 0;
};

// The screen of a state; not of Playing, which is no screen of its own.
[[nodiscard]] std::unique_ptr<Screen> screenOf(FrontendState state, Game& game);

// Whether the menu stands in front of the stage that is being played.
[[nodiscard]] bool liesOverStage(const Frontend& frontend);
// What is behind the rows of a menu: a picture of the game or the program's name, or a panel in
// front of the stage.
void addMenuBackground(DrawList& list, const Frontend& frontend);

// Reads the game's labels for keys, the games that were finished before, and the campaigns.
void loadFrontend(Game& game);

}  // namespace port
