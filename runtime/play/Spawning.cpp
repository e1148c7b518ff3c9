#include "Spawning.hpp"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

#include "AnimationLookup.hpp"
#include "Log.hpp"
#include "RosterScan.hpp"

namespace port {
namespace {

int lifespanTicks(const generated::Character& model) {
    if (!(model.lifespanSeconds > 0)) return -1;
    // A product of floats, in which 0.175 is the ten and a half ticks that the author means.
    const double ticks = std::round(model.lifespanSeconds * float{kTicksPerSecond});
    return static_cast<int>(std::clamp(ticks, 1.0, 2147483647.0));
}

RuntimeEntity childOf(const PendingChildSpawn& child) {
    RuntimeEntity entity = entityOf(child.model);
    entity.animationEffect = child.animationEffect;
    entity.effectSpawnType = child.effectSpawnType;
    entity.worldX = child.worldX;
    entity.z = child.z;
    entity.altitude = child.altitude;
    entity.facing = child.facing;
    entity.parentHandle = child.parent;
    entity.summonedChild = child.summon;
    entity.guardPoints = child.model->guardPoints;
    startFirstOf(entity.animation, *child.model, {"spawn", "idle", "walk"});
    return entity;
}

int spawnTypeOf(const PendingChildSpawn& child) {
    if (child.animationEffect) return child.effectSpawnType;
    return child.summon ? kSummonSpawn : kChildSpawn;
}

bool hasSummonedChild(const World& world, ActorHandle parent) {
    return visitRoster(world, world.roster.present,
                       [parent](const RuntimeEntity& entity) {
                           return entity.alive && entity.summonedChild &&
                                  entity.parentHandle == parent;
                       }) ||
           std::ranges::any_of(world.pendingChildSpawns, [parent](const PendingChildSpawn& child) {
               return child.summon && child.parent == parent;
           });
}

}  // namespace

RuntimeEntity entityOf(const generated::Character* model) {
    RuntimeEntity entity;
    entity.facing = -1;
    if (!model) return entity;
    entity.model = model;
    entity.subjectToScreen = model->subjectToScreen;
    entity.weaponDropsRemaining = std::max(0, model->weaponDropCounter);
    entity.health = entity.maxHealth = std::max(1, model->health);
    entity.mp = entity.maxMp = std::max(0, model->mp);
    entity.lifeTicks = lifespanTicks(*model);
    entity.juggleRemaining = std::max(1, model->jugglePoints);
    return entity;
}

void startFirstOf(AnimationPlayer& player, const generated::Character& model,
                  std::initializer_list<std::string_view> names) {
    for (const std::string_view name : names) {
        player.setAnimation(findAnimation(&model, name));
        if (player.frame()) return;
    }
}

void queueChildSpawn(World& world, const generated::Character* owner,
                     const generated::Animation& animation, std::size_t frameIndex,
                     const ActorPlace& place, ActorHandle parent) {
    if (animation.spawnFrame < 0 || static_cast<std::size_t>(animation.spawnFrame) != frameIndex) {
        return;
    }
    if (animation.summonFrame && hasSummonedChild(world, parent)) return;
    std::string_view name = animation.custEntity;
    if (name.empty() && owner) name = owner->subEntityModel;
    if (name.empty()) return;
    PendingChildSpawn child;
    child.model = findCharacter(name.data());
    if (!child.model) {
        warnLine("Child model missing: ", name);
        return;
    }
    const float side = static_cast<float>(place.facing);
    child.worldX = animation.spawnScreenRelative ? world.camera.x + animation.spawnOffsetX
                                                 : place.x + animation.spawnOffsetX * side;
    child.z = place.z + animation.spawnOffsetZ;
    child.altitude = place.altitude - animation.spawnOffsetA;
    child.facing = place.facing;
    child.parent = parent;
    child.summon = animation.summonFrame;
    world.pendingChildSpawns.push_back(child);
}

void queueEffect(World& world, const char* modelName, SpawnType type, const ActorPlace& place,
                 ActorHandle parent) {
    const generated::Character* model = *modelName == '\0' ? nullptr : findCharacter(modelName);
    if (!model) return;
    PendingChildSpawn effect;
    effect.animationEffect = true;
    effect.effectSpawnType = type;
    effect.model = model;
    effect.worldX = place.x;
    effect.z = place.z;
    effect.facing = place.facing;
    effect.parent = parent;
    world.pendingChildSpawns.push_back(effect);
}

void flushChildSpawns(Tick& tick) {
    const auto children = std::exchange(tick.world.pendingChildSpawns, {});
    for (const PendingChildSpawn& child : children) {
        if (!child.model) continue;
        RuntimeEntity* entity = tick.world.entities.add(childOf(child));
        if (!entity) continue;
        entity->scriptCtx.local["parent"] = child.parent;
        entity->scriptCtx.local["spawn_type"] = static_cast<double>(spawnTypeOf(child));
        tick.scripts.runHook(child.model->onSpawnScript, entity->scriptCtx, "child-onspawn");
        logLine("Child spawn model=", child.model->name, " parent=", child.parent,
                " summon=", child.summon);
    }
}

void unsummonChildren(Tick& tick, ActorHandle parent, bool allChildren) {
    World& world = tick.world;
    std::vector<RuntimeEntity*> leaving;
    visitRoster(world, world.roster.present, [&](RuntimeEntity& entity) {
        const bool isMeant = allChildren || entity.summonedChild;
        if (entity.alive && entity.parentHandle == parent && isMeant) leaving.push_back(&entity);
        return false;
    });
    // Their hooks may end others of them, and bring new ones, who stay.
    for (RuntimeEntity* entity : leaving) {
        if (!entity->alive) continue;
        entity->alive = false;
        entity->deathTicks = 0;
        entity->scriptCtx.local["trigger"] = 1.0;
        if (entity->model) {
            tick.scripts.runHook(entity->model->onKillScript, entity->scriptCtx, "child-unsummon");
        }
        entity->visible = false;
    }
}

}  // namespace port
