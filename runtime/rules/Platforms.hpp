#pragma once

// The platforms that actors carry.

#include "Ground.hpp"
#include "RosterScan.hpp"

namespace port {

// Calls visit(altitude) for the platforms under (x, z) until it says true.
template <class Visit>
bool visitPlatforms(const World& world, float x, float z, ActorHandle ignore, Visit visit) {
    return visitRoster(world, world.roster.carriers, [&](const RuntimeEntity& carrier) {
        if (!carrier.alive || !carrier.visible || carrier.handle == ignore) return false;
        const generated::Frame* frame = carrier.animation.frame();
        return frame && platformContains(*frame, carrier.place(), x, z) &&
               visit(frame->platform.altitude);
    });
}

// The height of the highest platform under (x, z); 0 for none.
[[nodiscard]] float dynamicPlatformHeight(const World& world, float x, float z, ActorHandle ignore);
// Under the actor: its own does not count, and none does for whoever stands on none.
[[nodiscard]] float dynamicPlatformHeight(const World& world, const Actor& actor);

}  // namespace port
