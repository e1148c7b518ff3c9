#include "EntityMind.hpp"

#include <algorithm>
#include <cmath>

#include "Entities.hpp"
#include "EntityAttack.hpp"
#include "EntityRules.hpp"
#include "KnownAnimations.hpp"
#include "ModelFacts.hpp"
#include "Movement.hpp"
#include "Roster.hpp"
#include "TargetSearch.hpp"

namespace port {
namespace {

constexpr int kThingTypes = kTypeItem | kTypeProjectile | kTypeNone;

bool isFighter(const RuntimeEntity& entity) {
    return entity.alive && entity.visible && entity.model &&
           (openborTypeBit(entity.model) & kThingTypes) == 0;
}

// Players are enemies unless the model says otherwise; other entities only if it does.
const Actor* chooseTarget(const World& world, const RuntimeEntity& entity) {
    TargetSearch search(entity);
    if (world.player1.alive) search.consider(world.player1, true);
    for (const RuntimeCoopPlayer& player : world.coop) {
        if (player.alive) search.consider(player, true);
    }
    if (entity.model->hostileMask == 0) return search.best();
    visitRoster(world, world.roster.present, [&](const RuntimeEntity& other) {
        if (search.isNearer(other) && &other != &entity && isFighter(other)) {
            search.consider(other, false);
        }
        return false;
    });
    return search.best();
}

void face(RuntimeEntity& entity, const Actor& target, int scrollDir) {
    const generated::Character& model = *entity.model;
    if (turnsFreely(model)) {
        entity.facing = target.worldX < entity.worldX ? -1 : 1;
    }
    entity.facing = modelFacingValue(&model, entity.facing, scrollDir);
}

// Only player 1 is a threat.
bool isThreatened(const Tick& tick, const RuntimeEntity& entity) {
    const Player1& player = tick.world.player1;
    const float reach = static_cast<float>(tick.config.enemyAttackRange) * 1.8F;
    return player.alive && player.attackTicks > 0 &&
           std::abs(player.worldX - entity.worldX) < reach;
}

void dodge(const Player1& player, RuntimeEntity& entity) {
    const generated::Character& model = *entity.model;
    setEntityAnimation(entity, findAnimation(&model, KnownAnimation::Dodge));
    if (model.noMove) return;
    if (aiAttacks(model, kAiDodgeMove)) {
        const float step = std::max(1.0F, model.speed);
        entity.z += player.z <= entity.z ? step : -step;
    } else {
        entity.worldX -= static_cast<float>(entity.facing) * std::max(0.5F, model.speed * 0.5F);
    }
}

bool reaches(const Tick& tick, const RuntimeEntity& entity, GroundStep distance) {
    constexpr float kReachZ = 20;
    constexpr float kLongReach = 2.25F;
    const float reach = static_cast<float>(tick.config.enemyAttackRange) *
                        (aiAttacks(*entity.model, kAiLong) ? kLongReach : 1);
    return std::abs(distance.x) <= reach && std::abs(distance.z) <= kReachZ;
}

void walk(const World& world, RuntimeEntity& entity, GroundStep distance) {
    const GroundStep step =
        walkStep(*entity.model, {.distance = distance,
                                 .facing = entity.facing,
                                 .tick = world.tick,
                                 .place = world.entities.indexOf(entity.handle)});
    entity.worldX += step.x;
    entity.z += step.z;
    setEntityAnimation(
        entity, findActionAnimation(entity.model, entity.equippedWeapon, KnownAnimation::Walk));
}

void decide(Tick& tick, RuntimeEntity& entity) {
    const Actor* target = chooseTarget(tick.world, entity);
    if (!target) return;
    const generated::Character& model = *entity.model;
    const GroundStep distance = {target->worldX - entity.worldX, target->z - entity.z};
    face(entity, *target, tick.world.stage.scrollDir);
    if (aiAttacks(model, kAiDodge | kAiDodgeMove) && isThreatened(tick, entity)) {
        dodge(tick.world.player1, entity);
    } else if (reaches(tick, entity, distance)) {
        startEnemyAttack(tick, entity, std::abs(distance.x), target->handle);
    } else if (!model.noMove && !aiMoves(model, kAiNoMove)) {
        walk(tick.world, entity, distance);
    }
}

}  // namespace

bool think(Tick& tick, RuntimeEntity& entity) {
    const bool isThing = (openborTypeBit(entity.model) & (kThingTypes | kTypeObstacle)) != 0;
    const bool thinks = !isThing && tick.config.enemyAI;
    const bool armsItself = thinks && tryEntityPickupWeapon(tick, entity);
    if (thinks && !armsItself) decide(tick, entity);
    entity.animation.update(1);
    return !armsItself;
}

}  // namespace port
