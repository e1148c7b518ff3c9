#pragma once

// What the shader that puts the canvas on the screen is told for a frame: sixteen floats, in the
// order in which the shader declares them.

#include <cstdint>

#include "RuntimeConfig.hpp"
#include "ScreenLayout.hpp"

namespace port {

struct ShaderParams {
    float texelX = 1.0F;  // the size of a canvas pixel, in fractions of the canvas
    float texelY = 1.0F;
    float sharpen = 0.0F;
    float contrast = 1.0F;
    float saturation = 1.0F;
    float bloom = 0.0F;  // this and the next four: 0 is off
    float scanline = 0.0F;
    float curvature = 0.0F;
    float banding = 0.0F;
    float mode = 0.0F;    // 0 none, 1 sharp-bilinear, 2 contrast-adaptive, 3 along edges
    float time = 0.0F;    // seconds, 0 to 100
    float unused = 0.0F;  // the mask of a CRT; 0 is off
    float uvScaleX = 1.0F;
    float uvScaleY = 1.0F;
    float uvOffsetX = 0.0F;
    float uvOffsetY = 0.0F;
    bool operator==(const ShaderParams&) const = default;
};
static_assert(sizeof(ShaderParams) == 16 * sizeof(float), "the shader reads it as it lies");

[[nodiscard]] ShaderParams shaderParams(const RuntimeConfig& config, const ScreenLayout& layout,
                                        PixelSize canvas, std::uint64_t milliseconds);

// Whether magnified pixels stay squares.
[[nodiscard]] inline bool showsSharpPixels(const RuntimeConfig& config) {
    return config.textureFilter == "nearest";
}

}  // namespace port
