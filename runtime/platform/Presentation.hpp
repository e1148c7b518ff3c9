#pragma once

// The window and what shows the logical canvas in it.

#include <functional>
#include <string>

#include "RuntimeConfig.hpp"
#include "SpriteImage.hpp"

namespace port::platform {

// By default it shows nothing to anybody.
struct Presentation {
    // True when nobody sees it, so that nobody is there to play.
    bool headless = true;
    // False when there is nothing to show a game on.
    std::function<bool(const RuntimeConfig&)> open = [](const RuntimeConfig&) { return true; };
    // The name of what is in use; another from the moment on when it falls back on another.
    std::function<std::string()> backend = [] { return "headless-preview"; };
    // Handles what the window was sent; false from its closing on.
    std::function<bool()> pumpEvents = [] { return true; };
    // Changed settings of the window take effect here, too.
    std::function<void(const SpriteImage& canvas, const RuntimeConfig&)> present =
        [](const SpriteImage&, const RuntimeConfig&) {};
};

// The system's window; headless where there is no screen.
[[nodiscard]] Presentation systemPresentation();

}  // namespace port::platform
