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
[[nodiscard]] std::unique_ptr<Screen> screenOf(FrontendState state, const Game& game);

// Reads the game's labels for keys, the games that were finished before, and the campaigns.
void loadFrontend(Game& game);

}  // namespace port
