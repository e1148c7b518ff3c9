#pragma once

// Scans of those on the stage that cost nothing for the dead.

#include <vector>

#include "World.hpp"

namespace port {

// Visits those on the list, then those that came since it was made, in the order of their coming,
// until a visit says true. Some may have gone in the meantime. Nobody may be added by a visit.
template <class AnyWorld, class Visit>
bool visitRoster(AnyWorld& world, const std::vector<ActorHandle>& list, Visit visit) {
    auto& entities = world.entities;
    for (const ActorHandle handle : list) {
        auto* entity = entities.find(handle);
        if (entity && visit(*entity)) return true;
    }
    std::size_t index = entities.size();
    while (index > 0 && entities[index - 1].handle >= world.roster.next) --index;
    for (; index < entities.size(); ++index) {
        if (visit(entities[index])) return true;
    }
    return false;
}

}  // namespace port
