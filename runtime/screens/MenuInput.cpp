#include "MenuInput.hpp"

#include <algorithm>
#include <initializer_list>

namespace port {

MenuInput menuInput(const TickInput& input, const RuntimeConfig& config) {
    const auto pressed = [&](std::initializer_list<int> keys, int buttons) {
        return input.buttonPressed(config.player1Gamepad, static_cast<unsigned>(buttons)) ||
               std::ranges::any_of(keys, [&](int key) { return input.keyPressed(key); });
    };
    return {.up = pressed({kKeyUp, 'W'}, kPadUp),
            .down = pressed({kKeyDown, 'S'}, kPadDown),
            .left = pressed({kKeyLeft, 'A'}, kPadLeft),
            .right = pressed({kKeyRight, 'D'}, kPadRight),
            .accept = pressed({kKeyEnter, 'J', 'X'}, config.padAttack),
            .back = pressed({kKeyEscape, kKeyBackspace}, config.padJump)};
}

int pressedKey(const TickInput& input) {
    constexpr int kFirst = 8, kLast = 254;
    for (int key = kFirst; key <= kLast; ++key) {
        if (input.keyPressed(key)) return key;
    }
    return 0;
}

int pressedButton(const TickInput& input, int pad) {
    for (const int button : {kPadA, kPadB, kPadX, kPadY, kPadLeftShoulder, kPadRightShoulder,
                             kPadBack, kPadStart, kPadLeftThumb, kPadRightThumb}) {
        if (input.buttonPressed(pad, static_cast<unsigned>(button))) return button;
    }
    return 0;
}

}  // namespace port
