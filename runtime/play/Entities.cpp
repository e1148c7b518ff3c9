#include "Entities.hpp"

#include <algorithm>

#include "AnimationEnergy.hpp"
#include "AnimationLookup.hpp"
#include "ModelFacts.hpp"

namespace port {
namespace {

constexpr int kStayDead = 3;

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
        entity.scriptCtx.local["trigger"] = 0.0;
        tick.scripts.runHook(entity.model->onKillScript, entity.scriptCtx, "entity-onkill");
        entity.visible = false;
    }
}

// Entities think by script and play their animations; effects and the dead leave when they are
// done.
void updateEntity(Tick& tick, RuntimeEntity& entity) {
    settleAnimationEnergy(entity);
    entity.invincibleTicks = std::max(0, entity.invincibleTicks - 1);
    if (!entity.visible || !entity.model) return;
    entity.scriptCtx.entity = entity.handle;
    entity.scriptCtx.local["self"] = entity.handle;
    tick.scripts.runHook(entity.model->thinkScript, entity.scriptCtx, "entity-think");
    tick.scripts.runHook(entity.model->updateScript, entity.scriptCtx, "entity-update");
    if (!entity.alive) {
        updateDeadEntity(tick, entity);
        return;
    }
    entity.animation.update(1);
    if (!entity.animationEffect || !entity.animation.finished()) return;
    entity.alive = entity.visible = false;
    tick.scripts.runHook(entity.model->onKillScript, entity.scriptCtx, "landing-effect-onkill");
}

}  // namespace

void updateEntities(Tick& tick) {
    tick.world.entities.visit([&](RuntimeEntity& entity) { updateEntity(tick, entity); });
}

void setEntityAnimation(RuntimeEntity& entity, const generated::Animation* animation) {
    if (!animation || animation == entity.animation.animation()) return;
    entity.animation.setAnimation(animation);
    entity.lastFrame = kNoFrame;
}

int activeEnemies(const World& world) {
    return static_cast<int>(std::ranges::count_if(world.entities, [](const RuntimeEntity& entity) {
        return entity.alive && openborTypeBit(entity.model) == kTypeEnemy;
    }));
}

}  // namespace port
