#include "ScreenLayout.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace port {
namespace {

float aspectOf(PixelSize size) {
    return static_cast<float>(size.width) / static_cast<float>(size.height);
}

int roundedSide(float side) {
    return std::max(1, static_cast<int>(std::lround(side)));
}

PixelArea centred(int width, int height, PixelSize window) {
    return {(window.width - width) / 2, (window.height - height) / 2, width, height};
}

ScreenLayout cropped(PixelSize canvas, PixelSize window) {
    const float canvasAspect = aspectOf(canvas);
    const float windowAspect = aspectOf(window);
    ScreenLayout layout{{0, 0, window.width, window.height}};
    if (windowAspect > canvasAspect) {
        layout.uvScaleY = canvasAspect / windowAspect;
    } else {
        layout.uvScaleX = windowAspect / canvasAspect;
    }
    layout.uvOffsetX = (1.0F - layout.uvScaleX) * 0.5F;
    layout.uvOffsetY = (1.0F - layout.uvScaleY) * 0.5F;
    return layout;
}

PixelArea wholeFactor(int chosen, PixelSize canvas, PixelSize window) {
    const int fitting = std::min(window.width / canvas.width, window.height / canvas.height);
    const int factor = chosen > 0 ? chosen : std::max(1, fitting);
    return centred(canvas.width * factor, canvas.height * factor, window);
}

PixelArea largestOfAspect(PixelSize canvas, PixelSize window) {
    const float aspect = aspectOf(canvas);
    if (aspectOf(window) > aspect) {
        const int width = roundedSide(static_cast<float>(window.height) * aspect);
        return centred(width, window.height, window);
    }
    const int height = roundedSide(static_cast<float>(window.width) / aspect);
    return centred(window.width, height, window);
}

PixelSize atLeastOne(PixelSize size) {
    return {std::max(1, size.width), std::max(1, size.height)};
}

// Of one axis: the first pixel shown, and how many.
std::pair<int, int> shownRange(float offset, float scale, int side) {
    const int count = std::clamp(roundedSide(scale * static_cast<float>(side)), 1, side);
    const int first = static_cast<int>(std::lround(offset * static_cast<float>(side)));
    return {std::clamp(first, 0, side - count), count};
}

}  // namespace

ScreenLayout screenLayout(const RuntimeConfig& config, PixelSize canvas, PixelSize window) {
    canvas = atLeastOne(canvas);
    window = atLeastOne(window);
    if (config.fill169) return cropped(canvas, window);
    if (config.integerScale > 0 || config.pixelPerfect) {
        return {wholeFactor(config.integerScale, canvas, window)};
    }
    if (config.keepAspect43) return {largestOfAspect(canvas, window)};
    return {{0, 0, window.width, window.height}};
}

PixelArea shownPart(const ScreenLayout& layout, PixelSize canvas) {
    canvas = atLeastOne(canvas);
    const auto [x, width] = shownRange(layout.uvOffsetX, layout.uvScaleX, canvas.width);
    const auto [y, height] = shownRange(layout.uvOffsetY, layout.uvScaleY, canvas.height);
    return {x, y, width, height};
}

}  // namespace port
