#pragma once

// Where the logical canvas stands in the window. Distances are whole pixels from the top left.

#include "RuntimeConfig.hpp"

namespace port {

struct PixelSize {
    int width = 1;
    int height = 1;
    bool operator==(const PixelSize&) const = default;
};

struct PixelArea {
    int x = 0;
    int y = 0;
    int width = 1;
    int height = 1;
    bool operator==(const PixelArea&) const = default;
};

struct ScreenLayout {
    // What the canvas covers; beyond the window where the canvas is larger.
    PixelArea viewport;
    // The part of the canvas that is shown, in fractions of it.
    float uvScaleX = 1.0F;
    float uvScaleY = 1.0F;
    float uvOffsetX = 0.0F;
    float uvOffsetY = 0.0F;
};

// Filling the window goes before keeping the aspect, a chosen factor before the one that fits, and
// whole factors before others. Sizes below 1 count as 1.
[[nodiscard]] ScreenLayout screenLayout(const RuntimeConfig& config, PixelSize canvas,
                                        PixelSize window);

// The shown part in whole pixels of the canvas, always at least one and within it.
[[nodiscard]] PixelArea shownPart(const ScreenLayout& layout, PixelSize canvas);

}  // namespace port
