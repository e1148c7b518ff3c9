#include "ShaderParams.hpp"

#include <algorithm>
#include <string_view>

namespace port {
namespace {

constexpr float kBloom = 0.28F;
constexpr float kScanline = 0.55F;
// A float has few digits left for the thousandths of a long run.
constexpr std::uint64_t kTimeRound = 100'000;

float upscaleModeNumber(std::string_view mode) {
    if (mode == "sharp-bilinear") return 1.0F;
    if (mode == "cas") return 2.0F;
    if (mode == "xbr" || mode == "xbrz-like") return 3.0F;
    return 0.0F;
}

float onOff(bool on, float value) {
    return on ? value : 0.0F;
}

}  // namespace

ShaderParams shaderParams(const RuntimeConfig& config, const ScreenLayout& layout, PixelSize canvas,
                          std::uint64_t milliseconds) {
    ShaderParams params;
    params.texelX = 1.0F / static_cast<float>(std::max(1, canvas.width));
    params.texelY = 1.0F / static_cast<float>(std::max(1, canvas.height));
    params.sharpen = config.sharpen;
    params.contrast = config.contrast;
    params.saturation = config.saturation;
    params.bloom = onOff(config.bloom, kBloom);
    params.scanline = onOff(config.scanlines || config.crt, kScanline);
    params.curvature = onOff(config.crtCurvature, 1.0F);
    params.banding = onOff(config.reduceBanding, 1.0F);
    params.mode = upscaleModeNumber(config.upscaleMode);
    params.time = static_cast<float>(milliseconds % kTimeRound) / 1000.0F;
    params.unused = onOff(config.crt, 1.0F);
    params.uvScaleX = layout.uvScaleX;
    params.uvScaleY = layout.uvScaleY;
    params.uvOffsetX = layout.uvOffsetX;
    params.uvOffsetY = layout.uvOffsetY;
    return params;
}

}  // namespace port
