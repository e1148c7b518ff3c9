#include "Platforms.hpp"

#include <algorithm>

#include "Movement.hpp"

namespace port {

float dynamicPlatformHeight(const World& world, float x, float z, ActorHandle ignore) {
    float highest = 0;
    visitPlatforms(world, x, z, ignore, [&](float altitude) {
        highest = std::max(highest, altitude);
        return false;
    });
    return highest;
}

float dynamicPlatformHeight(const World& world, const Actor& actor) {
    if (!isHeldBy(actor, kBoundPlatforms)) return 0;
    return dynamicPlatformHeight(world, actor.worldX, actor.z, actor.handle);
}

}  // namespace port
