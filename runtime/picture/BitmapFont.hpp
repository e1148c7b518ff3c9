#pragma once

// The font that every port carries: Latin-1 in two heights, letters as wide as they need to be. It
// stands in where the system offers no fonts.

#include <string_view>

#include "SpriteImage.hpp"

namespace port {

// One line of text in the rectangle from (x, y) to the canvas's right side and y + `size` + 8. What
// is no UTF-8 is read as Windows-1252; letters beyond Latin-1 show as "?". Selected text is yellow
// and bold. `size` is the height of the line about, 6 at least; the nearer of both fonts is used.
void drawBitmapText(SpriteImage& canvas, std::string_view text, int x, int y, int size,
                    bool selected);

}  // namespace port
