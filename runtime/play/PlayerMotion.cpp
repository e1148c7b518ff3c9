#include "PlayerMotion.hpp"

#include <algorithm>
#include <cmath>
#include <string>

#include "AnimationEnergy.hpp"
#include "AnimationLookup.hpp"
#include "AttackChains.hpp"
#include "Blocking.hpp"
#include "Damage.hpp"
#include "Defence.hpp"
#include "Factions.hpp"
#include "Frames.hpp"
#include "Log.hpp"
#include "Movement.hpp"
#include "Roster.hpp"
#include "Terrain.hpp"

namespace port {
namespace {

constexpr int kHolePenalty = 10;
constexpr int kLeastCooldown = 2;
constexpr int kAttackTicksPerCooldown = 3;
constexpr int kAlwaysNext = 2;  // comboStyle: also after an attack that has missed
constexpr float kLeastMove = 0.001F;

InputHistory historyOf(World& world, const PlayerActor& player) {
    return inputSlotOf(world, player).inputHistory;
}

TargetOffset nearestTarget(const World& world, const PlayerActor& player) {
    TargetOffset nearest;
    float distance = INFINITY;
    visitRoster(world, world.roster.present, [&](const RuntimeEntity& entity) {
        if (!entity.alive || !entity.visible || !entity.model) return false;
        const float dx = entity.worldX - player.worldX;
        const float dz = entity.z - player.z;
        const float away = std::abs(dx) + std::abs(dz);
        if (away < distance && modelCanDamage(player.model, entity.model, true)) {
            distance = away;
            nearest = {dx, dz, entity.altitude - player.altitude};
        }
        return false;
    });
    return nearest;
}

}  // namespace

float groundUnder(const World& world, const Actor& actor) {
    return -dynamicPlatformHeight(world, actor);
}

const generated::Animation* actionAnimation(const Actor& actor,
                                            std::initializer_list<std::string_view> names) {
    for (const std::string_view name : names) {
        const auto* found = findActionAnimation(actor.model, actor.equippedWeapon, name);
        if (found) return found;
    }
    return nullptr;
}

void startAnimation(Actor& actor, const generated::Animation* animation) {
    if (!animation) return;
    actor.animation.setAnimation(animation);
    actor.lastFrame = kNoFrame;
}

void showAnimation(Actor& actor, const generated::Animation* animation) {
    if (animation != actor.animation.animation()) startAnimation(actor, animation);
}

float runSpeed(const generated::Character& model, const RuntimeConfig& config) {
    return model.runSpeed > 0 ? model.runSpeed : std::max(0.0F, model.speed) * config.runMultiplier;
}

void liftOff(const World& world, Actor& actor, float launchSpeed) {
    actor.altitude = groundUnder(world, actor) - kOffGround;
    actor.verticalVelocity = -std::abs(launchSpeed);
}

void fall(const RuntimeConfig& config, Actor& actor) {
    const float before = actor.verticalVelocity;
    actor.altitude += before;
    actor.verticalVelocity += config.gravity * (1 - actorAntigravity(actor));
    applyDropFrameOnApex(actor.animation, before, actor.verticalVelocity);
}

void clampDepth(const World& world, Actor& actor) {
    actor.z = depthOnStage(world.stage.row, actor);
}

void comeDown(Actor& actor, float ground) {
    actor.altitude = ground;
    actor.verticalVelocity = 0;
    actor.landingDamage = actor.landingMode = 0;
    actor.landingType = -1;
    actor.landingHitTargets.clear();
}

bool surviveLanding(Tick& tick, PlayerActor& player, const PlayerEvents& events) {
    if (player.landingDamage <= 0) return true;
    takeHealth(player, effectiveDamage(player.model, player.landingDamage, player.landingType));
    if (player.health > 0) return true;
    player.alive = false;
    tick.scripts.runHook(player.model->onDeathScript, player.scriptCtx, events.death);
    playDieSound(tick.events, player.model);
    const auto* death = exactAnimation(player.model, "death");
    startAnimation(player, death ? death : findAnimation(player.model, "fall"));
    logLine("GAME OVER");
    return false;
}

int remainingTicks(const Actor& actor) {
    return animationDuration(actor.animation.animation(), actor.animation.frameIndex());
}

void protectRising(Actor& actor) {
    actor.invincibleTicks = std::max(actor.invincibleTicks, ticksOfRisingGuard(*actor.model));
}

void sufferHole(Actor& actor) {
    actor.health = std::max(1, actor.health - kHolePenalty);
}

void runMoveHooks(Tick& tick, PlayerActor& player, float oldX, float oldZ,
                  const PlayerEvents& events) {
    const float x = player.worldX - oldX;
    const float z = player.z - oldZ;
    auto& local = player.scriptCtx.local;
    if (std::abs(x) > kLeastMove) {
        local["movex"] = static_cast<double>(x);
        tick.scripts.runHook(player.model->onMoveXScript, player.scriptCtx, events.moveX);
    }
    if (std::abs(z) > kLeastMove) {
        local["movez"] = static_cast<double>(z);
        tick.scripts.runHook(player.model->onMoveZScript, player.scriptCtx, events.moveZ);
    }
}

void startAttackCounters(Actor& actor) {
    actor.attackTicks = animationDuration(actor.animation.animation());
    actor.attackCooldown = std::max(kLeastCooldown, actor.attackTicks / kAttackTicksPerCooldown);
    actor.projectileFired = actor.attackHasHit = false;
    actor.attackHits = 0;
}

void beginAttack(PlayerActor& player) {
    player.lastFrame = kNoFrame;
    startAttackCounters(player);
    // An entity that no attack has met yet remembers 0.
    if (++player.attackId == 0) player.attackId = 1;
}

void runAttackHook(Tick& tick, PlayerActor& player, const generated::Character& model,
                   const ScriptValue& attack, const char* event) {
    player.scriptCtx.local["attack"] = attack;
    player.scriptCtx.local["target"] = 0.0;
    tick.scripts.runHook(model.onDoAttackScript, player.scriptCtx, event);
}

int nextAttackNumber(const World& world, PlayerActor& player) {
    const bool goesOn =
        player.comboWindow > 0 && (player.attackHasHit || player.model->comboStyle == kAlwaysNext);
    if (goesOn) {
        ++player.comboStep;
    } else {
        player.comboStep = 0;
        player.comboBranch = -1;
    }
    return dynamicChainAttackNumber(player.model, player.comboStep, player.comboBranch,
                                    nearestTarget(world, player));
}

const generated::Character& commandModel(const PlayerActor& player) {
    return player.equippedWeapon ? *player.equippedWeapon : *player.model;
}

bool startCommand(Tick& tick, PlayerActor& player, const PlayerEvents& events) {
    const auto* target =
        commandTarget(&commandModel(player), historyOf(tick.world, player), player.facing);
    if (!target || !beginEnergyAnimation(player, target)) return false;
    beginAttack(player);
    runCommandHook(tick, player, events);
    return true;
}

bool startCancel(Tick& tick, PlayerActor& player) {
    const auto* target = cancelTarget(&commandModel(player), player.animation.animation(),
                                      player.animation.frameIndex(), player.attackHits,
                                      historyOf(tick.world, player), player.facing);
    if (!target || !beginEnergyAnimation(player, target)) return false;
    beginAttack(player);
    return true;
}

void runCommandHook(Tick& tick, PlayerActor& player, const PlayerEvents& events) {
    const std::string name = player.animation.animation()->name;
    runAttackHook(tick, player, commandModel(player), name.empty() ? "freespecial" : name,
                  events.command);
}

const generated::Animation* chargeAnimation(World& world, const PlayerActor& player) {
    const PlayerSlot& input = inputSlotOf(world, player);
    if (!((input.newKeys | input.releasedKeys) & SK_ATTACK)) return nullptr;
    const auto* animation = actionAnimation(player, {"chargeattack"});
    return animation && animation->chargeTime > 0 ? animation : nullptr;
}

std::optional<int> releasedCharge(World& world, const PlayerActor& player) {
    if (!(inputSlotOf(world, player).releasedKeys & SK_ATTACK)) return std::nullopt;
    const InputHistory history = historyOf(world, player);
    return heldDuration(history, static_cast<int>(history.size()) - 1, SK_ATTACK);
}

bool holdBlock(World& world, PlayerActor& player, bool ready) {
    if (!player.model->holdBlock || !ready) return false;
    const auto* block = findAnimation(player.model, "block");
    if (!block) return false;
    const auto active = static_cast<unsigned>(BS_ACTIVE);
    const auto state = static_cast<unsigned>(player.blockState);
    if (inputSlotOf(world, player).playKeys & SK_SPECIAL) {
        player.blockState = static_cast<int>(state | active);
        if (player.attackTicks <= 0) showAnimation(player, block);
        return true;
    }
    if (!(state & active)) return false;
    player.blockState = static_cast<int>(state & ~active);
    if (playsBlock(player)) startAnimation(player, actionAnimation(player, {"idle"}));
    return false;
}

}  // namespace port
