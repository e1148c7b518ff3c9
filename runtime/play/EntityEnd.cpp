#include "EntityEnd.hpp"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "AnimationLookup.hpp"
#include "Entities.hpp"
#include "Frames.hpp"

namespace port {
namespace {

constexpr int kStayDead = 3;

// `trigger`: whether something other than its own death takes the entity away.
void runKillHook(Tick& tick, RuntimeEntity& entity, const char* event, bool trigger) {
    entity.scriptCtx.local["trigger"] = trigger ? 1.0 : 0.0;
    tick.scripts.runHook(entity.model->onKillScript, entity.scriptCtx, event);
}

void updateDeadEntity(Tick& tick, RuntimeEntity& entity) {
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
        runKillHook(tick, entity, "entity-onkill", false);
        entity.visible = false;
    }
}

void updateEffect(Tick& tick, RuntimeEntity& entity) {
    entity.animation.update(1);
    if (!entity.animation.finished()) return;
    entity.alive = entity.visible = false;
    runKillHook(tick, entity, "landing-effect-onkill", false);
}

bool leavesBehindScreen(Tick& tick, RuntimeEntity& entity) {
    if (entity.model->offscreenKill <= 0) return false;
    const auto distance = static_cast<float>(entity.model->offscreenKill);
    const float left = tick.world.camera.x;
    const float right = left + static_cast<float>(tick.config.logicalWidth);
    if (entity.worldX >= left - distance && entity.worldX <= right + distance) return false;
    entity.health = entity.deathTicks = 0;
    entity.alive = false;
    runKillHook(tick, entity, "entity-offscreenkill", true);
    entity.visible = false;
    return true;
}

bool hasLivedItsTime(Tick& tick, RuntimeEntity& entity) {
    if (entity.lifeTicks <= 0 || --entity.lifeTicks > 0) return false;
    entity.health = 0;
    endLife(tick, entity, "entity-lifespan-ondeath");
    return true;
}

// The animation of a frozen actor runs on.
void updateFrozen(RuntimeEntity& entity) {
    if (--entity.freezeTicks == 0 && entity.preFreezePaletteMap >= 0) {
        entity.paletteMap = std::exchange(entity.preFreezePaletteMap, -1);
        entity.lastFrame = kNoFrame;
    } else {
        entity.animation.update(1);
    }
}

}  // namespace

void removeActor(Actor& actor) {
    actor.health = 0;
    actor.alive = false;
    if (actor.handle > kLastPlayerHandle) static_cast<RuntimeEntity&>(actor).visible = false;
}

void endLife(Tick& tick, RuntimeEntity& entity, const char* event) {
    const generated::Character& model = *entity.model;
    tick.scripts.runHook(model.onDeathScript, entity.scriptCtx, event);
    playDieSound(tick.events, &model);
    entity.alive = false;
    const auto* death = exactAnimation(&model, "death");
    if (!death) death = findAnimation(&model, "fall");
    setEntityAnimation(entity, death);
    entity.deathTicks = deathDuration(model, death);
}

bool passesTurn(Tick& tick, RuntimeEntity& entity) {
    if (!entity.alive) {
        updateDeadEntity(tick, entity);
    } else if (entity.animationEffect) {
        updateEffect(tick, entity);
    } else if (leavesBehindScreen(tick, entity) || hasLivedItsTime(tick, entity)) {
        return true;
    } else if (entity.freezeTicks > 0) {
        updateFrozen(entity);
    } else if (entity.grabbed) {
        entity.animation.update(1);
    } else {
        return false;
    }
    return true;
}

}  // namespace port
