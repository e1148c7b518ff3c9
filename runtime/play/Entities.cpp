#include "Entities.hpp"

#include <algorithm>
#include <cmath>

#include "AnimationEnergy.hpp"
#include "Bindings.hpp"
#include "ChildFollowing.hpp"
#include "EntityEnd.hpp"
#include "EntityFall.hpp"
#include "EntityMind.hpp"
#include "EntityRules.hpp"
#include "KnownAnimations.hpp"
#include "ModelFacts.hpp"
#include "Movement.hpp"
#include "PlayerMotion.hpp"
#include "Projectiles.hpp"
#include "Roster.hpp"
#include "Terrain.hpp"

namespace port {
namespace {

void runThinkHooks(Tick& tick, RuntimeEntity& entity) {
    entity.scriptCtx.entity = entity.handle;
    entity.scriptCtx.local["self"] = entity.handle;
    tick.scripts.runHook(entity.model->thinkScript, entity.scriptCtx, "entity-think");
    tick.scripts.runHook(entity.model->updateScript, entity.scriptCtx, "entity-update");
}

void drift(RuntimeEntity& entity) {
    constexpr float kStill = 0.0001F;
    if (std::abs(entity.scriptVelocityX) > kStill) entity.worldX += entity.scriptVelocityX;
    if (std::abs(entity.scriptVelocityZ) > kStill) entity.z += entity.scriptVelocityZ;
}

void recoverFromHit(RuntimeEntity& entity) {
    entity.animation.update(1);
    if (--entity.hitStun > 0) return;
    setEntityAnimation(entity, findAnimation(entity.model, KnownAnimation::Idle));
}

// Whoever fights for the players shoots for them.
void attackOn(Tick& tick, RuntimeEntity& entity) {
    const int type = openborTypeBit(entity.model);
    maybeSpawnProjectile(tick, entity, type == kTypePlayer || type == kTypeNpc);
    loseSpentWeapon(tick, entity);
    entity.animation.update(1);
    if (--entity.attackTicks > 0) return;
    setEntityAnimation(
        entity, findActionAnimation(entity.model, entity.equippedWeapon, KnownAnimation::Idle));
}

// False when the turn ends here.
bool act(Tick& tick, RuntimeEntity& entity) {
    const float ground = groundUnder(tick.world, entity);
    if (isInAir(entity, ground)) return fall(tick, entity, ground);
    if (entity.recoveryTicks > 0) {
        rise(entity);
    } else if (entity.hitStun > 0) {
        recoverFromHit(entity);
    } else if (entity.attackTicks > 0) {
        attackOn(tick, entity);
    } else {
        return think(tick, entity);
    }
    return true;
}

void keepOnScreen(const Tick& tick, RuntimeEntity& entity) {
    constexpr float kMargin = 4;
    if (!entity.subjectToScreen) return;
    const float left = tick.world.camera.x + kMargin;
    const float right =
        std::min(static_cast<float>(tick.world.stage.length) - 1,
                 tick.world.camera.x + static_cast<float>(tick.config.logicalWidth) - kMargin);
    entity.worldX = std::clamp(entity.worldX, left, std::max(left, right));
}

void keepInDepth(Tick& tick, RuntimeEntity& entity) {
    const float before = entity.z;
    entity.z = depthOnStage(tick.world.stage.row, entity);
    if (entity.z == before || *entity.model->onBlockZScript == '\0') return;
    entity.scriptCtx.local["plane"] = 1.0;
    tick.scripts.runHook(entity.model->onBlockZScript, entity.scriptCtx, "entity-onblockz");
}

// A hole never harms an entity: it turns away, or passes over it.
void keepOnGround(Tick& tick, RuntimeEntity& entity, GroundStep from) {
    if (!applyActorTerrain(tick, entity, from.x, from.z)) return;
    if (aiMoves(*entity.model, kAiIgnoreHoles)) return;
    entity.worldX = from.x;
    entity.z = from.z;
    if (turnsFreely(*entity.model)) entity.facing = -entity.facing;
}

void runMoveHook(Tick& tick, RuntimeEntity& entity, const char* script, const char* local,
                 float distance, const char* event) {
    constexpr float kStill = 0.001F;
    if (*script == '\0' || !(std::abs(distance) > kStill)) return;
    entity.scriptCtx.local[local] = static_cast<double>(distance);
    tick.scripts.runHook(script, entity.scriptCtx, event);
}

void runMoveHooks(Tick& tick, RuntimeEntity& entity, GroundStep from) {
    const generated::Character& model = *entity.model;
    const GroundStep way = {entity.worldX - from.x, entity.z - from.z};
    runMoveHook(tick, entity, model.onMoveXScript, "movex", way.x, "entity-onmovex");
    runMoveHook(tick, entity, model.onMoveZScript, "movez", way.z, "entity-onmovez");
}

void takeTurn(Tick& tick, RuntimeEntity& entity) {
    settleAnimationEnergy(entity);
    entity.invincibleTicks = std::max(0, entity.invincibleTicks - 1);
    if (!entity.visible || !entity.model) return;
    runThinkHooks(tick, entity);
    // A script may have taken it off the stage.
    if (!entity.visible || passesTurn(tick, entity)) return;
    updateChildFollowing(tick.world, entity);
    const GroundStep from = {entity.worldX, entity.z};
    drift(entity);
    entity.attackCooldown = std::max(0, entity.attackCooldown - 1);
    if (!act(tick, entity)) return;
    keepOnScreen(tick, entity);
    keepInDepth(tick, entity);
    keepOnGround(tick, entity, from);
    entity.facing = modelFacingValue(entity.model, entity.facing, tick.world.stage.scrollDir);
    runMoveHooks(tick, entity, from);
}

}  // namespace

void updateEntities(Tick& tick) {
    updateRoster(tick.world);
    tick.world.entities.visit([&](RuntimeEntity& entity) { takeTurn(tick, entity); });
    applyEntityBindings(tick.world);
}

void setEntityAnimation(RuntimeEntity& entity, const generated::Animation* animation) {
    if (!animation || animation == entity.animation.animation()) return;
    entity.animation.setAnimation(animation);
    entity.lastFrame = kNoFrame;
}

int activeEnemies(const World& world) {
    int count = 0;
    visitRoster(world, world.roster.present, [&count](const RuntimeEntity& entity) {
        if (entity.alive && openborTypeBit(entity.model) == kTypeEnemy) ++count;
        return false;
    });
    return count;
}

}  // namespace port
