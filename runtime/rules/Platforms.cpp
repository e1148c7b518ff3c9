#include "Platforms.hpp"

#include <algorithm>

namespace port {
namespace {

bool carries(const RuntimeEntity& entity, const generated::Frame& frame, float x, float z) {
    const generated::PlatformBox& platform = frame.platform;
    const auto facing = static_cast<float>(entity.facing);
    const float anchorX = entity.worldX + (platform.x - static_cast<float>(frame.offsetX)) * facing;
    const float dz = entity.z + (platform.z - static_cast<float>(frame.offsetY)) - z;
    if (!(dz >= 0 && dz <= platform.depth)) return false;
    const float t = dz / platform.depth;
    const float left = platform.lowerLeft + (platform.upperLeft - platform.lowerLeft) * t;
    const float right = platform.lowerRight + (platform.upperRight - platform.lowerRight) * t;
    const auto [from, to] = std::minmax({anchorX + left * facing, anchorX + right * facing});
    return x >= from && x <= to;
}

}  // namespace

float dynamicPlatformHeight(const World& world, float x, float z, ActorHandle ignore,
                            const generated::Character* subject) {
    if (!subject || !subject->subjectToPlatform) return 0;
    float height = 0;
    for (const RuntimeEntity& entity : world.entities) {
        const generated::Frame* frame = entity.animation.frame();
        if (!entity.alive || !entity.visible || entity.handle == ignore || !frame ||
            !frame->hasPlatform || frame->platform.depth <= 0 || frame->platform.altitude <= 0) {
            continue;
        }
        if (carries(entity, *frame, x, z)) height = std::max(height, frame->platform.altitude);
    }
    return height;
}

}  // namespace port
