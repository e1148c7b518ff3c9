#include "Damage.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "AnimationLookup.hpp"
#include "Defence.hpp"
#include "Entities.hpp"
#include "Frames.hpp"
#include "Knockdown.hpp"
#include "Log.hpp"
#include "ModelFacts.hpp"
#include "Spawning.hpp"
#include "Weapons.hpp"

namespace port {
namespace {

constexpr int kEntityStunTicks = 8;
constexpr int kPlayerStunTicks = 10;
constexpr int kFreezeTicks = 120;
// In the air, if only just: what has not left the ground cannot come down on it.
constexpr float kLiftOff = -1;

// When a model loses its weapon. Beyond it: at the end of the stage only.
enum WeaponLossFlag { kLostWhenHit = 0, kLostInFall = 1, kLostInDeath = 2 };

// `fallDie`: how a model dies.
enum FallDie { kFallWhenDying = 0, kFallThenDie = 2, kDieStanding = 1 };

struct Reaction {
    bool pain;
    bool knockdown;
};

int forcedFacing(const Hit& hit, int facing) {
    const int travel = hit.knockDirection < 0 ? -1 : 1;
    switch (hit.forceDirection) {
        case 1:
            return travel;
        case -1:
            return -travel;
        case 2:
            return 1;
        case -2:
            return -1;
        default:
            return facing;
    }
}

// Comes before the damage is known: it happens also to a victim whose defence takes all of it.
Reaction beginReaction(Actor& victim, const Hit& hit) {
    victim.facing = forcedFacing(hit, victim.facing);
    const float power = std::abs(static_cast<float>(hit.dropVy));
    return {!victim.model->noPain && defenseAllowsPain(victim.model, hit.damage, hit.attackType),
            resolveKnockdown(victim.model, victim.knockdownMeter, hit.knockdown, hit.attackType,
                             power)};
}

// A hit that did not mean to hurt still throws its victim.
bool defended(const Hit& hit, int damage) {
    return damage == 0 && hit.damage != 0;
}

void setDamageLocals(ScriptContext& context, const Hit& hit, int damage, bool knockdown) {
    auto& local = context.local;
    local["attacker"] = hit.attacker;
    local["damage"] = static_cast<double>(damage);
    local["attacktype"] = static_cast<double>(hit.attackType);
    local["drop"] = knockdown ? 1.0 : 0.0;
    for (const char* unused : {"noblock", "guardcost", "jugglecost", "pauseadd"}) {
        local[unused] = 0.0;
    }
}

// Null where damage takes no weapon away.
const generated::Character* weaponLossOf(const Actor& victim) {
    const generated::Character* weapon = victim.equippedWeapon;
    if (!weapon || victim.model->noDrop) return nullptr;
    return weapon->weaponLossDefined ? weapon : victim.model;
}

void loseWeaponWhenHit(Tick& tick, Actor& victim, bool knockdown) {
    const generated::Character* loss = weaponLossOf(victim);
    if (!loss) return;
    const bool inFall = loss->weaponLossFlag == kLostInFall || victim.equippedWeapon->animalWeapon;
    if (loss->weaponLossFlag == kLostWhenHit || (knockdown && inFall)) {
        dropWeapon(tick, victim, false);
    }
}

// Where the hit puts its victim, at once: it gives no speed.
float driven(const Actor& victim, const Hit& hit, const RuntimeConfig& config) {
    const float own = std::abs(hit.dropVx);
    const float launch = own > 0.0001F ? own : static_cast<float>(config.knockback);
    return victim.worldX + hit.knockDirection * launch;
}

// All that death brings before the animation.
void die(Tick& tick, Actor& victim, const char* event) {
    const generated::Character& model = *victim.model;
    const generated::Character* loss = weaponLossOf(victim);
    if (loss && loss->weaponLossFlag == kLostInDeath) dropWeapon(tick, victim, false);
    if (model.summonKill > 0) unsummonChildren(tick, victim.handle, model.summonKill >= 2);
    tick.scripts.runHook(model.onDeathScript, victim.scriptCtx, event);
    playDieSound(tick.events, &model);
    victim.alive = false;
}

const generated::Animation* deathAnimation(const generated::Character& model, int attackType,
                                           bool falling) {
    const auto* burnt = attackType == kAttackBurn ? exactAnimation(&model, "bdeath") : nullptr;
    if (burnt) return burnt;
    const auto* fall = falling ? exactAnimation(&model, "fall") : nullptr;
    if (fall) return fall;
    const auto* death = exactAnimation(&model, "death");
    return death ? death : findAnimation(&model, "fall");
}

const generated::Animation* reactionOf(const Actor& victim, const char* base, int attackType) {
    const auto* own = reactionAnimation(victim.model, base, attackType);
    return own ? own : findAnimation(victim.model, base);
}

// Unlike an entity, a player begins an animation anew that runs already.
void startAnimation(PlayerActor& player, const generated::Animation* animation) {
    player.animation.setAnimation(animation);
    player.lastFrame = kNoFrame;
}

void startFall(Actor& victim, const Hit& hit) {
    victim.landingDamage = hit.landingDamage;
    victim.landingMode = hit.landingMode;
    victim.landingType = hit.landingType;
    victim.landingHitTargets.clear();
    victim.altitude = kLiftOff;
    victim.verticalVelocity = static_cast<float>(hit.dropVy);
}

void creditKill(World& world, const RuntimeEntity& victim, ActorHandle attacker) {
    if (attacker < kPlayer1Handle || attacker > kLastPlayerHandle || !victim.spawn) return;
    Actor* player = world.find(attacker);
    if (player) player->score += std::max(0, victim.spawn->score);
}

void killEntity(Tick& tick, RuntimeEntity& victim, const Hit& hit) {
    const generated::Character& model = *victim.model;
    creditKill(tick.world, victim, hit.attacker);
    die(tick, victim, "entity-ondeath");
    victim.grabbed = false;
    const bool burnt = hit.attackType == kAttackBurn && exactAnimation(&model, "bdeath");
    victim.deathFollowDeath = !burnt && model.fallDie == kFallThenDie &&
                              exactAnimation(&model, "fall") && exactAnimation(&model, "death");
    const bool falling = victim.deathFollowDeath || model.fallDie == kFallWhenDying;
    const auto* animation = deathAnimation(model, hit.attackType, falling);
    setEntityAnimation(victim, animation);
    victim.deathTicks = deathDuration(model, animation);
    const bool obstacle = openborTypeBit(&model) == kTypeObstacle;
    logLine(obstacle ? "Object destroyed: " : "Enemy defeated: ", model.name);
}

void freeze(RuntimeEntity& victim) {
    if (victim.freezeTicks <= 0) victim.preFreezePaletteMap = victim.paletteMap;
    victim.freezeTicks = std::max(victim.freezeTicks, kFreezeTicks);
    if (victim.model->freezeMap > 0) victim.paletteMap = victim.model->freezeMap;
    victim.lastFrame = kNoFrame;
}

void fellEntity(Tick& tick, RuntimeEntity& victim, const Hit& hit) {
    const generated::Character& model = *victim.model;
    tick.scripts.runHook(model.onFallScript, victim.scriptCtx, "entity-onfall");
    victim.reactionType = hit.attackType;
    victim.fallTicks = tick.config.fallTicks;
    victim.bouncesRemaining = std::max(0, model.bounce);
    startFall(victim, hit);
    victim.juggleRemaining = std::max(1, model.jugglePoints);
    setEntityAnimation(victim, reactionOf(victim, "fall", hit.attackType));
}

void hurtEntity(Tick& tick, RuntimeEntity& victim, const Hit& hit) {
    tick.scripts.runHook(victim.model->onPainScript, victim.scriptCtx, "entity-onpain");
    victim.reactionType = hit.attackType;
    victim.hitStun = kEntityStunTicks;
    setEntityAnimation(victim, reactionOf(victim, "pain", hit.attackType));
}

void killPlayer(Tick& tick, PlayerActor& victim, const Hit& hit, const char* event) {
    die(tick, victim, event);
    const bool falling = victim.model->fallDie != kDieStanding;
    startAnimation(victim, deathAnimation(*victim.model, hit.attackType, falling));
    logLine("GAME OVER");
}

}  // namespace

void takeHealth(Actor& victim, int damage) {
    victim.health =
        static_cast<int>(std::max<std::int64_t>(0, std::int64_t{victim.health} - damage));
}

void damageEnemy(Tick& tick, RuntimeEntity& victim, const Hit& hit) {
    if (!victim.model || !victim.alive || victim.invincibleTicks > 0) return;
    const Reaction reaction = beginReaction(victim, hit);
    const int damage = effectiveDamage(victim.model, hit.damage, hit.attackType);
    if (defended(hit, damage)) return;
    loseWeaponWhenHit(tick, victim, reaction.knockdown);
    victim.scriptCtx.entity = victim.handle;
    victim.scriptCtx.local["self"] = victim.handle;
    setDamageLocals(victim.scriptCtx, hit, damage, reaction.knockdown);
    tick.scripts.runHook(victim.model->takeDamageScript, victim.scriptCtx, "entity-takedamage");
    // Its own script may have ended it: nobody dies twice.
    if (!victim.alive) return;
    takeHealth(victim, damage);
    victim.worldX = std::max(0.0F, driven(victim, hit, tick.config));
    logLine("Hit enemy ", victim.model->name, " damage=", damage, " hp=", victim.health,
            reaction.knockdown ? " knockdown" : "");
    if (victim.health == 0) {
        killEntity(tick, victim, hit);
        return;
    }
    if (hit.attackType == kAttackFreeze) freeze(victim);
    if (reaction.knockdown) {
        fellEntity(tick, victim, hit);
    } else if (reaction.pain) {
        hurtEntity(tick, victim, hit);
    }
}

void damagePlayer(Tick& tick, const Hit& hit) {
    Player1& victim = tick.world.player1;
    if (!victim.model || victim.invincibleTicks > 0) return;
    const Reaction reaction = beginReaction(victim, hit);
    setDamageLocals(victim.scriptCtx, hit, hit.damage, reaction.knockdown);
    tick.scripts.runHook(victim.model->takeDamageScript, victim.scriptCtx, "player-takedamage");
    const int damage = effectiveDamage(victim.model, hit.damage, hit.attackType);
    if (defended(hit, damage)) return;
    // Whoever reacts to a hit is safe from the next one; its script has heard of it all the same.
    if (!victim.alive || victim.hitStun > 0 || victim.fallTicks > 0) return;
    loseWeaponWhenHit(tick, victim, reaction.knockdown);
    takeHealth(victim, damage);
    const auto rightEnd = static_cast<float>(std::max(1, tick.world.stage.length) - 1);
    victim.worldX = std::min(std::max(0.0F, driven(victim, hit, tick.config)), rightEnd);
    logLine("Player hit damage=", damage, " hp=", victim.health);
    if (victim.health == 0) {
        killPlayer(tick, victim, hit, "player-ondeath");
    } else if (reaction.knockdown) {
        tick.scripts.runHook(victim.model->onFallScript, victim.scriptCtx, "player-onfall");
        victim.reactionType = hit.attackType;
        victim.fallTicks = tick.config.fallTicks;
        startFall(victim, hit);
        startAnimation(victim, reactionOf(victim, "fall", hit.attackType));
    } else if (reaction.pain) {
        tick.scripts.runHook(victim.model->onPainScript, victim.scriptCtx, "player-onpain");
        victim.hitStun = kPlayerStunTicks;
        startAnimation(victim, reactionOf(victim, "pain", hit.attackType));
    }
}

void damageCoopPlayer(Tick& tick, RuntimeCoopPlayer& victim, const Hit& hit) {
    if (!victim.model || victim.invincibleTicks > 0) return;
    const Reaction reaction = beginReaction(victim, hit);
    setDamageLocals(victim.scriptCtx, hit, hit.damage, reaction.knockdown);
    tick.scripts.runHook(victim.model->takeDamageScript, victim.scriptCtx, "coop-takedamage");
    const int damage = effectiveDamage(victim.model, hit.damage, hit.attackType);
    if (defended(hit, damage)) return;
    if (!victim.alive || victim.hitStun > 0) return;
    loseWeaponWhenHit(tick, victim, reaction.knockdown);
    takeHealth(victim, damage);
    // The camera holds a co-op player, not the end of the stage.
    victim.worldX = std::max(0.0F, driven(victim, hit, tick.config));
    logLine("Coop player hit damage=", damage, " hp=", victim.health);
    victim.reactionType = hit.attackType;
    if (victim.health == 0) {
        killPlayer(tick, victim, hit, "coop-ondeath");
        return;
    }
    if (!reaction.knockdown && !reaction.pain) return;
    if (reaction.knockdown) {
        tick.scripts.runHook(victim.model->onFallScript, victim.scriptCtx, "coop-onfall");
        startFall(victim, hit);
        victim.jumping = victim.knockdownAir = true;
        victim.runningJump = false;
    } else {
        tick.scripts.runHook(victim.model->onPainScript, victim.scriptCtx, "coop-onpain");
    }
    victim.hitStun = kPlayerStunTicks;
    startAnimation(victim,
                   reactionOf(victim, reaction.knockdown ? "fall" : "pain", hit.attackType));
}

}  // namespace port
