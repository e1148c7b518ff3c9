#pragma once

// What scripts draw into pictures of their own. Colours are opaque; alpha modes 1 to 6 mix them
// with what is there, any other mode puts them in its place. Whatever lies outside is cut off.

#include "GeneratedCharacters.hpp"
#include "SpriteImage.hpp"
#include "SpriteTransform.hpp"

namespace port {

void scriptSurfacePixel(SpriteImage& surface, int x, int y, ColorKey color, int blend);
void scriptSurfaceBox(SpriteImage& surface, int x, int y, int width, int height, ColorKey color,
                      int blend);
// Bresenham's line, both ends included. Costs no more than the surface is wide or high.
void scriptSurfaceLine(SpriteImage& surface, int x1, int y1, int x2, int y2, ColorKey color,
                       int blend);

// What a script's draw method makes of an image; one that is not enabled leaves it as it is.
[[nodiscard]] SpriteTransform scriptTransformImage(const SpriteImage& image,
                                                   const generated::DrawMethod& draw);
// The image so transformed, with its top left corner at (x, y). Other modes than 1 to 6 draw
// source-over. `image` is not the surface.
void scriptSurfaceBlit(SpriteImage& surface, const SpriteImage& image,
                       const generated::DrawMethod& draw, int x, int y, int blend);

}  // namespace port
