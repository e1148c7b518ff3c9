#include "EntityFall.hpp"

#include <algorithm>

#include "AnimationLookup.hpp"
#include "Damage.hpp"
#include "Defence.hpp"
#include "Entities.hpp"
#include "EntityEnd.hpp"
#include "EntityRules.hpp"
#include "Frames.hpp"
#include "KnownAnimations.hpp"
#include "Movement.hpp"
#include "Spawning.hpp"

namespace port {
namespace {

// As little above the ground as this counts as on it.
constexpr float kAboveGround = 0.1F;
// Entities fall alike whatever gravity the settings give to players.
constexpr float kEntityGravity = 0.35F;

bool bounces(const RuntimeEntity& entity) {
    return entity.bouncesRemaining > 0 && entity.verticalVelocity > 0.05F;
}

void bounce(RuntimeEntity& entity, float ground) {
    constexpr int kTicksInAir = 8;
    entity.altitude = ground - kAboveGround;
    entity.verticalVelocity = bounceVelocity(entity.verticalVelocity, entity.model->bounceFactor);
    --entity.bouncesRemaining;
    entity.fallTicks = std::max(entity.fallTicks, kTicksInAir);
}

void takeLandingDamage(Tick& tick, RuntimeEntity& entity) {
    if (entity.landingDamage <= 0 || !entity.alive) return;
    takeHealth(entity, effectiveDamage(entity.model, entity.landingDamage, entity.landingType));
    if (entity.health == 0) endLife(tick, entity, "entity-ondeath");
}

void startRising(Tick& tick, RuntimeEntity& entity) {
    const generated::Character& model = *entity.model;
    const generated::Animation* fallen = entity.animation.animation();
    queueEffect(tick.world, model.dustFallModel, kModelDust, entity.place(), entity.handle);
    applyLandFrame(tick.world, entity.animation, entity.place(), entity.handle);
    entity.lastFrame = kNoFrame;
    if (fallen && fallen->landFrame >= 0) {
        entity.recoveryTicks = animationDuration(fallen, entity.animation.frameIndex());
        return;
    }
    entity.recoveryTicks = ticksToRise(tick.config.recoveryTicks, model.riseTime);
    const generated::Animation* animation = nullptr;
    if (model.riseAttackType > 0) {
        animation = reactionAnimation(&model, "rise", entity.reactionType);
    }
    setEntityAnimation(entity, animation ? animation : findAnimation(&model, "rise"));
}

void land(Tick& tick, RuntimeEntity& entity, float ground) {
    takeLandingDamage(tick, entity);
    entity.landingDamage = entity.landingMode = 0;
    entity.landingType = -1;
    entity.altitude = ground;
    entity.verticalVelocity = 0;
    entity.fallTicks = 0;
    if (entity.alive) startRising(tick, entity);
}

}  // namespace

bool isInAir(const RuntimeEntity& entity, float ground) {
    return entity.fallTicks > 0 ||
           (entity.model->subjectToGravity && entity.altitude < ground - kAboveGround);
}

bool fall(Tick& tick, RuntimeEntity& entity, float ground) {
    entity.fallTicks = std::max(0, entity.fallTicks - 1);
    const float before = entity.verticalVelocity;
    entity.altitude += before;
    entity.verticalVelocity += kEntityGravity * (1 - actorAntigravity(entity));
    applyDropFrameOnApex(entity.animation, before, entity.verticalVelocity);
    const bool contact = entity.altitude >= ground;
    const bool thrownUp = contact && bounces(entity);
    if (thrownUp) {
        bounce(entity, ground);
    } else if (contact) {
        land(tick, entity, ground);
    }
    entity.animation.update(1);
    return !thrownUp;
}

void rise(RuntimeEntity& entity) {
    entity.animation.update(1);
    if (--entity.recoveryTicks > 0) return;
    entity.invincibleTicks = std::max(entity.invincibleTicks, ticksOfRisingGuard(*entity.model));
    entity.juggleRemaining = std::max(1, entity.model->jugglePoints);
    setEntityAnimation(entity, findAnimation(entity.model, KnownAnimation::Idle));
}

}  // namespace port
