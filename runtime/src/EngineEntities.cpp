// Everyone on the stage whom no human drives: how they come, what they do in a tick, how they go.

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <utility>

#include "AnimationEnergy.hpp"
#include "AnimationLookup.hpp"
#include "Engine.hpp"
#include "Log.hpp"
#include "ModelTypes.hpp"

namespace port {
namespace {

constexpr int kTicksPerSecond = 60;
// Crowded stages show dozens of entities. The dead of a stage add up: ten a second for hours.
constexpr std::ptrdiff_t kMostVisible = 1024;
constexpr std::size_t kMostEntities = 100'000;
constexpr int kStayDead = 3;

int lifespanTicks(const generated::Character& model) {
    if (!(model.lifespanSeconds > 0)) return -1;
    const double ticks = std::round(static_cast<double>(model.lifespanSeconds) * kTicksPerSecond);
    return static_cast<int>(std::clamp(ticks, 1.0, 2147483647.0));
}

RuntimeEntity entityOf(const PendingChildSpawn& child) {
    const generated::Character& model = *child.model;
    RuntimeEntity entity;
    entity.animationEffect = child.animationEffect;
    entity.effectSpawnType = child.effectSpawnType;
    entity.model = &model;
    entity.subjectToScreen = model.subjectToScreen;
    entity.weaponDropsRemaining = std::max(0, model.weaponDropCounter);
    entity.worldX = child.worldX;
    entity.z = child.z;
    entity.altitude = child.altitude;
    entity.facing = child.facing;
    entity.parentHandle = child.parent;
    entity.summonedChild = child.summon;
    entity.health = entity.maxHealth = std::max(1, model.health);
    entity.mp = entity.maxMp = std::max(0, model.mp);
    entity.lifeTicks = lifespanTicks(model);
    entity.juggleRemaining = std::max(1, model.jugglePoints);
    entity.guardPoints = model.guardPoints;
    for (const char* name : {"spawn", "idle", "walk"}) {
        entity.animation.setAnimation(findAnimation(&model, name));
        if (entity.animation.frame()) break;
    }
    return entity;
}

int spawnTypeOf(const PendingChildSpawn& child) {
    if (child.animationEffect) return child.effectSpawnType;
    return child.summon ? kSummonSpawn : kChildSpawn;
}

}  // namespace

ActorHandle Engine::handleOf(const RuntimeEntity& entity) {
    return reinterpret_cast<ActorHandle>(&entity);
}

ActorView Engine::entityView(RuntimeEntity& entity) {
    return {.handle = handleOf(entity),
            .events = kEntityEvents,
            .model = entity.model,
            .animation = entity.animation,
            .worldX = entity.worldX,
            .z = entity.z,
            .altitude = entity.altitude,
            .facing = entity.facing,
            .paletteMap = entity.paletteMap,
            .equippedWeapon = entity.equippedWeapon,
            .weaponUses = entity.weaponUses,
            .lastFrame = entity.lastFrame,
            .sprite = entity.sprite,
            .context = entity.scriptCtx};
}

int Engine::activeEnemies() const {
    return static_cast<int>(std::ranges::count_if(entities_, [](const RuntimeEntity& entity) {
        return entity.alive && openborTypeBit(entity.model) == kTypeEnemy;
    }));
}

// In the order of their coming. What scripts add takes its turn in the same tick.
void Engine::updateEntities() {
    eachEntity([this](RuntimeEntity& entity) { updateEntity(entity); });
}

// Entities think by script and play their animations; effects and the dead leave when they are
// done.
void Engine::updateEntity(RuntimeEntity& entity) {
    settleAnimationEnergy(entity.energyPending, entity.animation, entity.health, entity.mp);
    entity.invincibleTicks = std::max(0, entity.invincibleTicks - 1);
    if (!entity.visible || !entity.model) return;
    entity.scriptCtx.entity = handleOf(entity);
    entity.scriptCtx.local["self"] = handleOf(entity);
    runModelScript(entity.model->thinkScript, entity.scriptCtx, "entity-think");
    runModelScript(entity.model->updateScript, entity.scriptCtx, "entity-update");
    if (!entity.alive) {
        updateDeadEntity(entity);
        return;
    }
    entity.animation.update(1);
    if (!entity.animationEffect || !entity.animation.finished()) return;
    entity.alive = entity.visible = false;
    runModelScript(entity.model->onKillScript, entity.scriptCtx, "landing-effect-onkill");
}

void Engine::updateDeadEntity(RuntimeEntity& entity) {
    if (entity.deathTicks > 0) {
        --entity.deathTicks;
        entity.animation.update(1);
    } else if (entity.deathFollowDeath) {
        entity.deathFollowDeath = false;
        const auto* death = exactAnimation(entity.model, "death");
        if (death) {
            setEntityAnimation(entity, death);
            entity.deathTicks = deathDuration(*entity.model, death);
        } else {
            entity.visible = false;
        }
    } else if (entity.model->noDieBlink != kStayDead) {
        entity.scriptCtx.local["trigger"] = 0.0;
        runModelScript(entity.model->onKillScript, entity.scriptCtx, "entity-onkill");
        entity.visible = false;
    }
}

// Asking for the running animation again does not start it anew.
void Engine::setEntityAnimation(RuntimeEntity& entity, const generated::Animation* animation) {
    if (!animation || animation == entity.animation.animation()) return;
    entity.animation.setAnimation(animation);
    entity.lastFrame = kNoFrame;
}

// Nothing binds actors to each other yet.
void Engine::applyEntityBindings() {}

void Engine::queueChildSpawn(const generated::Character* owner,
                             const generated::Animation& animation, std::size_t frameIndex,
                             const ActorPlace& place, ActorHandle parent) {
    if (animation.spawnFrame < 0 || static_cast<std::size_t>(animation.spawnFrame) != frameIndex) {
        return;
    }
    if (animation.summonFrame && hasSummonedChild(parent)) return;
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
    child.worldX = animation.spawnScreenRelative ? cameraX_ + animation.spawnOffsetX
                                                 : place.x + animation.spawnOffsetX * side;
    child.z = place.z + animation.spawnOffsetZ;
    child.altitude = place.altitude - animation.spawnOffsetA;
    child.facing = place.facing;
    child.parent = parent;
    child.summon = animation.summonFrame;
    pendingChildSpawns_.push_back(child);
}

bool Engine::hasSummonedChild(ActorHandle parent) const {
    return std::ranges::any_of(entities_,
                               [parent](const RuntimeEntity& entity) {
                                   return entity.alive && entity.summonedChild &&
                                          entity.parentHandle == parent;
                               }) ||
           std::ranges::any_of(pendingChildSpawns_, [parent](const PendingChildSpawn& child) {
               return child.summon && child.parent == parent;
           });
}

void Engine::queueModelDust(const char* modelName, float x, float z, int facing,
                            ActorHandle parent) {
    const generated::Character* model = *modelName == '\0' ? nullptr : findCharacter(modelName);
    if (!model) return;
    pendingChildSpawns_.push_back({true, kModelDust, model, x, z, 0, facing, parent, false});
}

void Engine::flushChildSpawns() {
    // Spawn scripts may ask for more, which then wait for the next frame.
    const auto children = std::exchange(pendingChildSpawns_, {});
    for (const PendingChildSpawn& child : children) {
        if (!child.model || !stageHasRoom()) continue;
        RuntimeEntity& entity = entities_.emplace_back(entityOf(child));
        entity.scriptCtx.entity = handleOf(entity);
        entity.scriptCtx.local["self"] = handleOf(entity);
        entity.scriptCtx.local["parent"] = child.parent;
        entity.scriptCtx.local["spawn_type"] = static_cast<double>(spawnTypeOf(child));
        runModelScript(child.model->onSpawnScript, entity.scriptCtx, "child-onspawn");
        logLine("Child spawn model=", child.model->name, " parent=", child.parent,
                " summon=", child.summon);
    }
}

// Models that spawn each other must not fill the memory.
bool Engine::stageHasRoom() {
    if (entities_.size() < kMostEntities &&
        std::ranges::count_if(entities_, &RuntimeEntity::visible) < kMostVisible) {
        return true;
    }
    if (!stageFullReported_) warnLine("Child spawn refused: the stage is full");
    stageFullReported_ = true;
    return false;
}

void Engine::unsummonChildren(ActorHandle parent, bool allChildren) {
    eachEntity([&](RuntimeEntity& entity) {
        if (!entity.alive || entity.parentHandle != parent) return;
        if (!allChildren && !entity.summonedChild) return;
        entity.alive = false;
        entity.deathTicks = 0;
        entity.scriptCtx.local["trigger"] = 1.0;
        if (entity.model) {
            runModelScript(entity.model->onKillScript, entity.scriptCtx, "child-unsummon");
        }
        entity.visible = false;
    });
}

}  // namespace port
