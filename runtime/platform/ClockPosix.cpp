#include <chrono>
#include <thread>

#include "Clock.hpp"

namespace port::platform {

Clock systemClock() {
    return {[] {
                const auto now = std::chrono::steady_clock::now().time_since_epoch();
                return static_cast<std::uint64_t>(
                    std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
            },
            [](int milliseconds) {
                if (milliseconds < 1) return;
                std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
            }};
}

}  // namespace port::platform
