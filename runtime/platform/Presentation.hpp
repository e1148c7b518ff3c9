#pragma once

// The window and what shows the logical canvas in it.

#include <functional>
#include <string>

#include "RuntimeConfig.hpp"
#include "SpriteImage.hpp"

namespace port::platform {

struct Presentation {
    // True when it shows nothing to anybody, so that nobody is there to play.
    bool headless = true;
    // False when there is nothing to show a game on.
    std::function<bool(const RuntimeConfig&)> open;
    // The name of what is in use; another from the moment on when it falls back on another.
    std::function<std::string()> backend;
    // Handles what the window was sent; false from its closing on.
    std::function<bool()> pumpEvents;
    std::function<void(const SpriteImage& canvas, const RuntimeConfig&)> present;
};

[[nodiscard]] Presentation systemPresentation();

}  // namespace port::platform
