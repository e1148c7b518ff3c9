#include "Platforms.hpp"

#include <algorithm>

namespace port {

float dynamicPlatformHeight(const World& world, float x, float z, ActorHandle ignore,
                            const generated::Character* subject) {
    if (subject && !subject->subjectToPlatform) return 0;
    float highest = 0;
    visitPlatforms(world, x, z, ignore, [&](float altitude) {
        highest = std::max(highest, altitude);
        return false;
    });
    return highest;
}

}  // namespace port
