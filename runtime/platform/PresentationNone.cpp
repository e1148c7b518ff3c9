#include "Presentation.hpp"

namespace port::platform {

Presentation systemPresentation() {
    return {true, [](const RuntimeConfig&) { return true; }, [] { return "headless-preview"; },
            [] { return true; }, [](const SpriteImage&, const RuntimeConfig&) {}};
}

}  // namespace port::platform
