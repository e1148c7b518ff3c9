#pragma once

// How a player moves about in menus: by keys of their own, or by player 1's pad.

#include "RuntimeConfig.hpp"
#include "TickInput.hpp"

namespace port {

// What was pressed in this pass.
struct MenuInput {
    bool up = false, down = false, left = false, right = false;
    bool accept = false, back = false;

    // -1, 0 or 1.
    [[nodiscard]] int downward() const { return int{down} - int{up}; }
    [[nodiscard]] int rightward() const { return int{right} - int{left}; }
};

[[nodiscard]] MenuInput menuInput(const TickInput& input, const RuntimeConfig& config);

// The first key that was pressed in this pass, from code 8 to 254; 0 for none.
[[nodiscard]] int pressedKey(const TickInput& input);

// The first button that was pressed on that pad, in the order of a pad's face, shoulders, middle
// and thumbs; 0 for none. The D-pad does not count.
[[nodiscard]] int pressedButton(const TickInput& input, int pad);

}  // namespace port
