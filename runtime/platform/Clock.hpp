#pragma once

// Time as the engine sees it: a value, so that a test can count ticks without sleeping.

#include <cstdint>
#include <functional>

namespace port::platform {

struct Clock {
    std::function<std::uint64_t()> milliseconds;  // since some fixed point, never backward
    std::function<void(int milliseconds)> sleep;  // at least this long; nothing below 1
};

[[nodiscard]] Clock systemClock();

}  // namespace port::platform
