#pragma once

// One layer of a stage's scenery, as its table row describes it.

#include <string_view>

#include "SpriteCache.hpp"

namespace port {

struct RuntimeStageLayer {
    SpritePtr image;
    std::string_view kind;
    float xRatio = 0.5F, zRatio = 0.5F;  // how far it moves with the camera
    int xOffset = 0, zOffset = 0, xSpacing = 0, zSpacing = 0;
    int xRepeat = 0, zRepeat = 0;  // 0: as often as it takes across, and once down
    int zOrder = 0, transparency = 0, alpha = 0;
    int waterMode = 0, amplitude = 0, wavelength = 0;
    float waveSpeed = 0;
    float bgSpeedRatio = 0;  // pixels a second that it drifts
};

}  // namespace port
