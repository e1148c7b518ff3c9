#include "Roster.hpp"

#include "ModelFacts.hpp"

namespace port {

void updateRoster(World& world) {
    Roster& roster = world.roster;
    EntityList& entities = world.entities;
    const auto isGone = [&entities](ActorHandle handle) {
        const RuntimeEntity* entity = entities.find(handle);
        return !entity || !entity->visible;
    };
    std::erase_if(roster.present, isGone);
    std::erase_if(roster.carriers, isGone);
    std::size_t index = entities.size();
    while (index > 0 && entities[index - 1].handle >= roster.next) --index;
    for (; index < entities.size(); ++index) {
        const RuntimeEntity& entity = entities[index];
        if (!entity.visible) continue;
        roster.present.push_back(entity.handle);
        if (entity.model && factsOf(*entity.model).mayCarryPlatform) {
            roster.carriers.push_back(entity.handle);
        }
    }
    roster.next = entities.nextHandle();
}

}  // namespace port
