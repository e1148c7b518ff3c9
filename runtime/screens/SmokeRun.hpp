#pragma once

// A run that plays by itself to check itself, until its frames are played.

#include <algorithm>

namespace port {

struct SmokeRun {
    static constexpr int kUsualFrames = 600;

    bool active = false;
    int frameLimit = 0;
    int framesRun = 0;    // of play
    int totalFrames = 0;  // passes of the loop

    // The frames that such a run may have: 1 to 60 seconds.
    [[nodiscard]] static constexpr int frames(int wanted) { return std::clamp(wanted, 60, 3600); }

    [[nodiscard]] bool isOver() const { return active && framesRun >= frameLimit; }
    // It may spend two of three passes outside of play, and three seconds in any case.
    [[nodiscard]] bool isStuck() const {
        return active && totalFrames >= std::max(180, frameLimit * 3);
    }
};

}  // namespace port
