#pragma once

// Keys and pads as the engine sees them: values, so that a test can play without a device.

#include <functional>

#include "Keys.hpp"

namespace port::platform {

struct Input {
    std::function<bool(int virtualKey)> keyDown;  // codes of 0 to 255
    std::function<PadState(int pad)> pad;         // pads 0 to 3
};

[[nodiscard]] Input systemInput();

}  // namespace port::platform
