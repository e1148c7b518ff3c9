#pragma once

// Pictures that are shown for a while, with the loop standing still.

#include <cstdint>
#include <functional>
#include <span>

#include "Game.hpp"

namespace port {

enum class ShowEnd {
    Elapsed,
    Skipped,
    Closed  // so has the window
};

struct ShowRule {
    std::int64_t milliseconds = 0;
    std::span<const int> skipKeys = {};  // a press of one of these ends the show
    bool skipsAfterPicture = false;      // the picture of that moment is still shown
};

// What a show has to say to the list at so many milliseconds from its start.
using ShowPicture = std::function<void(DrawList& list, std::int64_t elapsed)>;

// Several shows in a row, so that a press counts once. What is pressed meanwhile is meant for them:
// the next pass of the loop begins without presses. A run that plays by itself shows the first
// picture of each and does not wait.
class TimedShow {
  public:
    explicit TimedShow(Game& game) : game_(game), input_(game.input) {
        game.pressesAreForShow = true;
    }
    ShowEnd run(const ShowRule& rule, const ShowPicture& picture);

  private:
    Game& game_;
    TickInput input_;
};

}  // namespace port
