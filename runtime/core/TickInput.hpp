#pragma once

// What the players do in one pass of the loop. It is read from the devices once, at the top of the
// pass, so that all questions of a pass agree and no press is lost between two of them.

#include <algorithm>
#include <array>
#include <bitset>
#include <cstdint>

#include "Keys.hpp"

namespace port {

// What the devices hold at a moment. A pad that is absent holds nothing.
struct HeldInput {
    std::bitset<kKeyCount> keys;
    std::array<PadState, kPadCount> pads;
    bool operator==(const HeldInput&) const = default;
};

struct TickInput {
    HeldInput held;
    // What is down in this pass and was up in the one before.
    std::bitset<kKeyCount> pressedKeys;
    std::array<std::uint16_t, kPadCount> pressedButtons{};

    // False for a code outside 0 to 255.
    [[nodiscard]] bool keyPressed(int virtualKey) const {
        return virtualKey >= 0 && virtualKey < kKeyCount &&
               pressedKeys[static_cast<std::size_t>(virtualKey)];
    }
    // Any of `buttons`; `pad` is clamped to 0..3.
    [[nodiscard]] bool buttonPressed(int pad, unsigned buttons) const {
        return (pressedButtons[static_cast<std::size_t>(std::clamp(pad, 0, kPadCount - 1))] &
                buttons) != 0;
    }
    // For a screen that the presses of this pass have brought up: they are not meant for it.
    [[nodiscard]] TickInput withoutPresses() const { return {held, {}, {}}; }
    bool operator==(const TickInput&) const = default;
};

// The next pass's input, from what is held then and the input of the pass before.
[[nodiscard]] inline TickInput nextInput(const TickInput& before, const HeldInput& held) {
    TickInput input{held, held.keys & ~before.held.keys, {}};
    for (std::size_t pad = 0; pad < held.pads.size(); ++pad) {
        const unsigned earlier = before.held.pads[pad].buttons;
        input.pressedButtons[pad] = static_cast<std::uint16_t>(held.pads[pad].buttons & ~earlier);
    }
    return input;
}

}  // namespace port
