#pragma once

// The window and what shows the logical canvas in it.

#include <functional>
#include <string>

#include "RuntimeConfig.hpp"
#include "SpriteImage.hpp"

namespace port::platform {

struct Presentation {
    // False when there is nothing to show a game on.
    std::function<bool(const RuntimeConfig&)> open;
    // The presentation in use; "headless-preview" without a window.
    std::function<std::string()> backend;
    // Handles what the window was sent; false from its closing on.
    std::function<bool()> pumpEvents;
    std::function<void(const SpriteImage& canvas, const RuntimeConfig&)> present;
};

[[nodiscard]] Presentation systemPresentation();

}  // namespace port::platform
