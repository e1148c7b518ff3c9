#include "Shadows.hpp"

#include <algorithm>
#include <cmath>

#include "Platforms.hpp"
#include "ScriptDrawing.hpp"

namespace port {
namespace {

constexpr int kLargestShadow = 6;
constexpr float kOffTheGround = 0.1F;  // below it: whoever falls into a hole casts none

// Of the bits of `gfxShadowBase`.
constexpr int kLargestBase = 3;
constexpr int kBaseInTheAir = 2;

constexpr int kDefaultLightY = -80;
constexpr float kUnitLightX = 220;
constexpr float kUnitLightY = 180;
constexpr float kFlattest = 0.18F;
constexpr float kLeastScale = 0.01F;

constexpr int kNoShadowColor = -1;
constexpr int kDarkShadowColor = 1;
constexpr int kDarkFill = 0x101010;
constexpr int kPlainFill = 0x202020;
constexpr int kLastBlend = 6;

bool projects(const generated::Character* model) {
    return model && model->gfxShadow == 1;
}

int shadowFill(int color, int alpha) {
    if (color == kDarkShadowColor) return kDarkFill;
    return alpha <= 0 ? kPlainFill : 0;
}

}  // namespace

int shadowSprite(const generated::Character* model, float altitude) {
    if (!model || projects(model) || model->shadow <= 0 || altitude > kOffTheGround) return 0;
    return std::min(model->shadow, kLargestShadow);
}

bool castsProjectedShadow(const generated::Character* model, const generated::Stage* stage) {
    return projects(model) && !(stage && stage->shadowColor == kNoShadowColor);
}

float projectedShadowRow(const World& world, const Actor& actor) {
    const int base = std::clamp(actor.model->gfxShadowBase, 0, kLargestBase);
    if (base & kBaseInTheAir) return actor.z + actor.altitude;
    if (base != 0) return actor.z;
    return actor.z - dynamicPlatformHeight(world, actor);
}

generated::DrawMethod projectedShadowMethod(const generated::DrawMethod& own,
                                            const generated::Stage* stage) {
    generated::DrawMethod shadow = own.enabled ? own : kPlainDrawMethod;
    shadow.enabled = true;
    const auto lightX = static_cast<float>(stage ? stage->stageLightX : 0);
    const auto lightY = static_cast<float>(stage ? stage->stageLightY : kDefaultLightY);
    const float flatten = std::clamp(std::abs(lightY) / kUnitLightY, kFlattest, 1.0F);
    shadow.scaleY = -flatten * std::max(kLeastScale, std::abs(shadow.scaleY));
    shadow.shiftX += lightX / kUnitLightX;
    shadow.remap = shadow.tintMode = shadow.tintColor = shadow.rotate = 0;
    shadow.flipRotate = false;
    const int alpha = stage ? stage->shadowAlpha : 0;
    shadow.alphaMode = alpha >= 1 && alpha <= kLastBlend ? alpha : 1;
    shadow.fillColor = shadowFill(stage ? stage->shadowColor : 0, alpha);
    return shadow;
}

}  // namespace port
