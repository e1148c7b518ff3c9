// Keys and pads as edges: what was pressed since it was last asked for.

#include <algorithm>
#include <utility>

#include "Engine.hpp"

namespace port {

// One table for all callers: a key that two of them ask about in a pass is seen by the first only.
bool Engine::frontendKeyPressed(int virtualKey) {
    if (virtualKey < 0 || virtualKey >= static_cast<int>(frontendKeys_.size())) return false;
    const bool down = devices_.input.keyDown(virtualKey);
    const bool before = std::exchange(frontendKeys_[static_cast<std::size_t>(virtualKey)], down);
    return down && !before;
}

// One snapshot for each pad and moment, so that all questions of a moment agree.
bool Engine::gamepadButtonPressedFor(int pad, unsigned button) {
    if (!config_.gamepad) return false;
    const int index = std::clamp(pad, 0, static_cast<int>(pads_.size()) - 1);
    PadSnapshot& snapshot = pads_[static_cast<std::size_t>(index)];
    const std::uint64_t now = devices_.clock.milliseconds();
    if (!snapshot.polled || snapshot.stamp != now) {
        const platform::PadState state = devices_.input.pad(index);
        snapshot.previous = snapshot.current;
        snapshot.current = state.connected ? state.buttons : std::uint16_t{0};
        snapshot.stamp = now;
        snapshot.polled = true;
    }
    return (snapshot.current & ~unsigned{snapshot.previous} & button) != 0;
}

bool Engine::gamepadButtonPressed(unsigned button) {
    return gamepadButtonPressedFor(config_.player1Gamepad, button);
}

}  // namespace port
