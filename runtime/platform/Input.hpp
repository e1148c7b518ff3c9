#pragma once

// Keys and pads as the engine sees them: values, so that a test can play without a device.

#include <functional>

#include "Keys.hpp"

namespace port::platform {

// By default nobody holds anything.
struct Input {
    // For codes of 0 to 255.
    std::function<bool(int virtualKey)> keyDown = [](int) { return false; };
    // For pads 0 to 3.
    std::function<PadState(int pad)> pad = [](int) { return PadState(); };
};

[[nodiscard]] Input systemInput();

}  // namespace port::platform
