#include "EntityAttack.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

#include "AnimationEnergy.hpp"
#include "Entities.hpp"
#include "EntityRules.hpp"
#include "KnownAnimations.hpp"
#include "Log.hpp"
#include "ModelFacts.hpp"
#include "PlayerMotion.hpp"
#include "Roster.hpp"
#include "Terrain.hpp"
#include "TextFields.hpp"
#include "Weapons.hpp"

namespace port {
namespace {

using generated::Animation;
using generated::Character;

bool canStartAttack(const RuntimeEntity& entity) {
    return entity.alive && entity.model && !entity.grabbed && entity.attackCooldown <= 0 &&
           entity.attackTicks <= 0 && entity.fallTicks <= 0 && entity.recoveryTicks <= 0 &&
           !aiAttacks(*entity.model, kAiNoAttack);
}

// Co-op players have no fall of their own: theirs counts as a jump.
bool isFallingOrJumping(const World& world, const Actor& actor) {
    if (actor.handle == kPlayer1Handle) {
        return world.player1.jumping || world.player1.fallTicks > 0;
    }
    if (actor.handle <= kLastPlayerHandle) {
        return static_cast<const PlayerActor&>(actor).jumping;
    }
    return static_cast<const RuntimeEntity&>(actor).fallTicks > 0;
}

bool isGrounded(const World& world, const Actor& actor) {
    constexpr float kOnGround = 2;
    return std::abs(actor.altitude - groundUnder(world, actor)) < kOnGround &&
           !isFallingOrJumping(world, actor);
}

// A model without a grab plays what stands in for it.
const Animation* grabOf(const Tick& tick, const Character& attacker, const Character& body,
                        float distance, ActorHandle handle) {
    const Actor* target = std::as_const(tick.world).find(handle);
    if (!target || !target->model || !isGrounded(tick.world, *target)) return nullptr;
    if (target->model->noGrab || body.grabForce < target->model->grabResistance) return nullptr;
    const int reach = std::max(tick.config.grabRange, body.grabDistance);
    if (!(distance <= static_cast<float>(reach))) return nullptr;
    return findAnimation(&attacker, KnownAnimation::Grab);
}

const Animation* chooseAttack(const Tick& tick, const Character& body, const Character& attacks,
                              float distance) {
    const std::uint64_t turn =
        tick.world.tick + static_cast<std::uint64_t>(std::max(0, body.aggression));
    const float longDistance = static_cast<float>(tick.config.enemyAttackRange) * 1.15F;
    const Animation* chosen = nullptr;
    if (aiAttacks(body, kAiLong) || distance > longDistance) {
        chosen = attackAnimation(attacks, AttackReach::Far, turn);
    }
    if (!chosen && aiAttacks(body, kAiMelee)) {
        chosen = attackAnimation(attacks, AttackReach::Close, turn);
    }
    return chosen ? chosen : attackAnimation(attacks, AttackReach::Any, turn);
}

bool namesWeapon(const Character& body, int number) {
    if (number < 1 || static_cast<std::size_t>(number) > body.weaponCount) return false;
    const char* name = body.weapons[number - 1];
    return *name != '\0' && !equalsFolded(name, "none");
}

RuntimeEntity* nearestWeapon(Tick& tick, const RuntimeEntity& entity) {
    constexpr float kWorthTheWay = 180;
    RuntimeEntity* nearest = nullptr;
    float best = 0;
    visitRoster(tick.world, tick.world.roster.weapons, [&](RuntimeEntity& item) {
        if (!item.alive || !item.visible || !item.model || &item == &entity) return false;
        const float distance = std::abs(item.worldX - entity.worldX) + std::abs(item.z - entity.z);
        if (nearest && !(distance < best)) return false;
        if (!factsOf(*item.model).isWeaponItem) return false;
        if (!namesWeapon(*entity.model, item.model->weaponNumber)) return false;
        nearest = &item;
        best = distance;
        return false;
    });
    return best <= kWorthTheWay ? nearest : nullptr;
}

void takeUp(Tick& tick, RuntimeEntity& entity, RuntimeEntity& item) {
    const int index = item.model->weaponNumber;
    setWeaponIndex(tick, entity, index);
    holdItem(entity, item);
    item.alive = item.visible = false;
    logLine("AI picked weapon model=", item.model->name, " index=", index);
}

void walkTo(RuntimeEntity& entity, GroundStep distance) {
    constexpr float kThere = 2;
    const float step = std::max(0.5F, entity.model->speed);
    if (std::abs(distance.x) > kThere) {
        entity.worldX += toward(distance.x, step);
        entity.facing = distance.x < 0 ? -1 : 1;
    }
    if (std::abs(distance.z) > kThere) {
        entity.z += toward(distance.z, std::min(step, 1.2F));
    }
    setEntityAnimation(entity, findAnimation(entity.model, KnownAnimation::Walk));
}

}  // namespace

void startEnemyAttack(Tick& tick, RuntimeEntity& entity, float targetDistance, ActorHandle target) {
    if (!canStartAttack(entity)) return;
    const Character& body = *entity.model;
    const Character& attacker = entity.equippedWeapon ? *entity.equippedWeapon : body;
    const Animation* attack = grabOf(tick, attacker, body, targetDistance, target);
    if (!attack) {
        const Character& attacks = hasAttackAnimations(attacker) ? attacker : body;
        attack = chooseAttack(tick, body, attacks, targetDistance);
    }
    if (!beginEnergyAnimation(entity, attack)) return;
    entity.opponent = target;
    entity.lastFrame = kNoFrame;
    entity.attackTicks = animationDuration(attack);
    entity.attackCooldown = entity.attackTicks + restAfterAttack(body);
    entity.attackHasHit = entity.projectileFired = false;
    if (*body.onDoAttackScript == '\0') return;
    entity.scriptCtx.local["attack"] = std::string(attack->name);
    entity.scriptCtx.local["target"] = target;
    tick.scripts.runHook(body.onDoAttackScript, entity.scriptCtx, "entity-ondoattack");
}

bool tryEntityPickupWeapon(Tick& tick, RuntimeEntity& entity) {
    constexpr float kReachX = 20, kReachZ = 14;
    if (!entity.alive || !entity.model || entity.equippedWeapon) return false;
    if (entity.model->weaponCount == 0) return false;
    RuntimeEntity* item = nearestWeapon(tick, entity);
    if (!item) return false;
    const GroundStep distance = {item->worldX - entity.worldX, item->z - entity.z};
    if (std::abs(distance.x) <= kReachX && std::abs(distance.z) <= kReachZ) {
        takeUp(tick, entity, *item);
    } else {
        walkTo(entity, distance);
    }
    return true;
}

}  // namespace port
