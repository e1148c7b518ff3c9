#pragma once

// Source-over drawing and plain shapes on the canvas. Whatever lies outside the canvas is cut off.

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

}  // namespace port
