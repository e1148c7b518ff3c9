#pragma once

// Source-over drawing and plain shapes on the canvas. Whatever lies outside the canvas is cut off.

#include <algorithm>
#include <cstdlib>

#include "SpriteImage.hpp"

namespace port {

// Each channel becomes source + canvas * (255 - alpha) / 255, and 255 at most: a tint may leave a
// channel above its pixel's alpha.
void blendRow(std::uint8_t* canvas, const std::uint8_t* source, int count);

void drawImage(SpriteImage& canvas, const SpriteImage& image, std::int64_t x, std::int64_t y);
// With its right side on the left.
void drawImageMirrored(SpriteImage& canvas, const SpriteImage& image, std::int64_t x,
                       std::int64_t y);

void fillCanvas(SpriteImage& canvas, ColorKey color);
// Nothing for a width or height of 0 or less. Channels are limited to 0 to 255.
void drawSolidRect(SpriteImage& canvas, std::int64_t x, std::int64_t y, int width, int height,
                   int red, int green, int blue);
// A frame of one pixel's thickness just inside the rectangle.
void drawOutline(SpriteImage& canvas, std::int64_t x, std::int64_t y, int width, int height,
                 int red, int green, int blue);
void drawDot(SpriteImage& canvas, int x, int y, ColorKey color);
// Bresenham's line, both ends included. Costs no more than the canvas is wide or high.
void drawLine(SpriteImage& canvas, int x1, int y1, int x2, int y2, ColorKey color);

// Visits the dots of that line. Only the steps whose longer coordinate is on the canvas: what a
// script asks for may start a thousand million pixels away. The other one may lie off the canvas.
template <class Visit>
void visitLine(const SpriteImage& canvas, int x1, int y1, int x2, int y2, Visit visit) {
    // Far beyond any canvas, and small enough for the products below.
    constexpr int kFar = 1 << 28;
    for (int* coordinate : {&x1, &y1, &x2, &y2}) *coordinate = std::clamp(*coordinate, -kFar, kFar);
    const std::int64_t across = std::abs(x2 - x1);
    const std::int64_t down = std::abs(y2 - y1);
    const bool steep = down > across;
    const std::int64_t steps = steep ? down : across;
    const std::int64_t drift = steep ? across : down;
    const int stepX = x2 < x1 ? -1 : 1;
    const int stepY = y2 < y1 ? -1 : 1;

    const std::int64_t from = steep ? y1 : x1;
    const std::int64_t limit = steep ? canvas.height : canvas.width;
    const bool backwards = (steep ? stepY : stepX) < 0;
    const std::int64_t first = std::max<std::int64_t>(0, backwards ? from - (limit - 1) : -from);
    const std::int64_t last = std::min(steps, backwards ? from : limit - 1 - from);
    for (std::int64_t i = first; i <= last; ++i) {
        const std::int64_t drifted = steps == 0 ? 0 : (2 * i * drift + steps) / (2 * steps);
        visit(static_cast<int>(x1 + stepX * (steep ? drifted : i)),
              static_cast<int>(y1 + stepY * (steep ? i : drifted)));
    }
}

}  // namespace port
