#pragma once

// A sprite as a page can show it: without the background colour that the engine never draws, and
// cut to the figure in it.

#include <optional>
#include <string>
#include <string_view>

#include "reader/ModelDef.hpp"

namespace tindrel {

// The GIF or indexed PNG with palette entry 0 made transparent, as the game draws it. Empty when
// the picture is of another kind, is broken, or has a transparent colour already.
[[nodiscard]] std::optional<std::string> withTransparentBackground(std::string_view picture);

// "data:image/gif;base64,..."
[[nodiscard]] std::string dataUrl(std::string_view picture);

// The square of a sprite that its figure stands in, in pixels of the sprite; it may reach beyond.
struct SpriteCrop {
    int x = 0, y = 0, side = 0;
};

// From the body box and the foot point of the frame; empty where the frame has neither.
[[nodiscard]] std::optional<SpriteCrop> cropOf(const FrameDef& frame);

}  // namespace tindrel
