// Looking for actors.

#include <cmath>
#include <utility>

#include "HostFunctions.hpp"
#include "ModelFacts.hpp"
#include "RosterScan.hpp"
#include "TargetSearch.hpp"

namespace port::host {
namespace {

bool isThere(const Actor& actor) {
    return actor.alive && (isPlayer(actor) || static_cast<const RuntimeEntity&>(actor).visible);
}

// What a player fights unless its model says otherwise.
bool isFoeOfPlayers(const RuntimeEntity& entity) {
    return (openborTypeBit(entity.model) & (kTypeEnemy | kTypeObstacle)) != 0;
}

}  // namespace

ScriptValue entityAt(HostCall& call) {
    const EntityList& entities = call.world().entities;
    const int index = call.integer(0);
    if (index < 0 || static_cast<std::size_t>(index) >= entities.size()) return kNobody;
    return entities[static_cast<std::size_t>(index)].handle;
}

// Players look for entities only; entities look for players first.
ScriptValue findTarget(HostCall& call) {
    const World& world = call.world();
    const Actor* seeker = call.actor(0);
    if (!seeker) return kNobody;
    const bool ofPlayer = isPlayer(*seeker);
    TargetSearch search(*seeker);
    const auto consider = [&](const Actor& other, bool hostile) {
        if (&other != seeker && isThere(other)) search.consider(other, hostile);
    };
    if (!ofPlayer) {
        consider(world.player1, true);
        for (const RuntimeCoopPlayer& player : world.coop) consider(player, true);
    }
    visitRoster(world, world.roster.present, [&](const RuntimeEntity& entity) {
        if (entity.model) consider(entity, ofPlayer && isFoeOfPlayers(entity));
        return false;
    });
    call.chargeScan(world.roster.present.size());
    return search.best() ? search.best()->handle : kNobody;
}

ScriptValue isInRange(HostCall& call) {
    constexpr float kRangeZ = 24;
    const Actor* first = call.actor(0);
    const Actor* second = call.actor(1);
    if (!first || !second || !isThere(*first) || !isThere(*second)) return false;
    int range = call.tick.config.enemyAttackRange;
    if (!isPlayer(*first) && first->model) range = std::max(range, first->model->grabDistance);
    return std::abs(first->worldX - second->worldX) <= static_cast<float>(range) &&
           std::abs(first->z - second->z) <= kRangeZ;
}

// Entities know nothing of each other's plans.
ScriptValue noAiCheck(HostCall& /*call*/) {
    return 0.0;
}

}  // namespace port::host
