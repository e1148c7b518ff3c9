#pragma once

// Who stands on the stage, how well, and what is left of lives and credits.

#include "StageScene.hpp"

namespace port {

// The life bars of those who have none of their own, in pixels.
struct HudSize {
    int barWidth = 70, barHeight = 7;
};

// In front of the whole scene.
void addHud(const World& world, const RuntimeConfig& config, const HudSize& size,
            const SpriteSource& sprites, DrawList& list);

}  // namespace port
