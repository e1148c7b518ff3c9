#include "Strikes.hpp"

#include <algorithm>

#include "AnimationLookup.hpp"
#include "Blocking.hpp"
#include "Entities.hpp"
#include "Flash.hpp"
#include "PlayerMotion.hpp"

namespace port {
namespace {

// A counter is only hurt, not thrown.
Hit counteredHit(const Strike& strike) {
    Hit hit;
    hit.damage = strike.frame->attack.damage;
    hit.knockDirection = static_cast<float>(strike.facing);
    hit.dropVy = strike.frame->dropVy;
    hit.attackType = strike.frame->attack.type;
    hit.attacker = strike.attacker;
    return hit;
}

bool tryBlock(Tick& tick, RuntimeEntity& target, const Strike& strike) {
    return tryBlockEntity(tick, target, *strike.frame, strike.attacker);
}

bool tryBlock(Tick& tick, PlayerActor& target, const Strike& strike) {
    return tryBlockPlayer(tick, target, *strike.frame, strike.attacker);
}

void hurt(Tick& tick, RuntimeEntity& target, const Hit& hit) {
    damageEnemy(tick, target, hit);
}

void hurt(Tick& tick, Player1& /*the only one*/, const Hit& hit) {
    damagePlayer(tick, hit);
}

void hurt(Tick& tick, RuntimeCoopPlayer& target, const Hit& hit) {
    damageCoopPlayer(tick, target, hit);
}

void restartPlayerAttack(PlayerActor& attacker, const generated::Animation* animation) {
    attacker.animation.setAnimation(animation);
    beginAttack(attacker);
    attacker.comboWindow = 0;
}

template <class Standing>
void startCounter(Standing& target, const generated::Animation* animation) {
    target.hitStun = target.fallTicks = target.recoveryTicks = 0;
    startFollowUp(target, animation);
}

// A co-op player has neither a fall nor a recovery to break off.
void startCounter(RuntimeCoopPlayer& target, const generated::Animation* animation) {
    target.hitStun = 0;
    startFollowUp(target, animation);
}

void noteHit(World& world, const Strike& strike, const Actor& target, const RectF& body) {
    const PointF place = middleOf(strike.box, body);
    world.lastHit = {place.x, target.z, place.y - target.z, strike.frame->attack.type};
    if (Actor* attacker = world.find(strike.attacker)) attacker->opponent = target.handle;
}

template <class Target>
bool meetAny(Tick& tick, const Strike& strike, Target& target, const RectF& body, bool hostile) {
    const generated::AttackBox& attack = strike.frame->attack;
    noteHit(tick.world, strike, target, body);
    const Attempt attempt = {hostile, attack.penetration > 0, isAhead(target, strike.worldX),
                             attack.damage};
    const CounterResult counter =
        counterFor(target.model, target.animation, attempt, target.health);
    bool blocked = false;
    if (counter.animation) {
        if (counter.takesDamage && attack.damage > 0) hurt(tick, target, counteredHit(strike));
        // The dead strike nobody.
        if (target.alive) startCounter(target, counter.animation);
    } else {
        blocked = tryBlock(tick, target, strike);
        if (!blocked) hurt(tick, target, hitOf(strike));
    }
    queueAttackFlash(tick.world, *strike.frame, target, blocked, strike.box, body);
    return blocked;
}

}  // namespace

Strike strikeOf(const Actor& attacker) {
    if (!attacker.model) return {};
    const generated::Frame* frame = attacker.animation.frame();
    return {attacker.animation.animation(),
            frame,
            attackFor(frame, attacker.worldX, attacker.z + attacker.altitude, attacker.facing),
            attacker.handle,
            attacker.worldX,
            attacker.facing};
}

Hit hitOf(const Strike& strike) {
    const generated::Frame& frame = *strike.frame;
    const generated::AttackBox& attack = frame.attack;
    return {.damage = attack.damage,
            .knockDirection = static_cast<float>(strike.facing),
            .knockdown = frame.knockdown,
            .dropVy = frame.dropVy,
            .attackType = attack.type,
            .attacker = strike.attacker,
            .landingDamage = attack.landingDamage,
            .landingMode = attack.landingMode,
            .landingType = attack.landingType,
            .dropVx = frame.dropVx,
            .forceDirection = attack.forceDirection};
}

bool meet(Tick& tick, const Strike& strike, RuntimeEntity& target, const RectF& body,
          bool hostile) {
    return meetAny(tick, strike, target, body, hostile);
}

bool meet(Tick& tick, const Strike& strike, Player1& target, const RectF& body, bool hostile) {
    return meetAny(tick, strike, target, body, hostile);
}

bool meet(Tick& tick, const Strike& strike, RuntimeCoopPlayer& target, const RectF& body,
          bool hostile) {
    return meetAny(tick, strike, target, body, hostile);
}

void countHit(Actor& attacker) {
    attacker.energyPending.hit = true;
    attacker.attackHasHit = true;
    ++attacker.attackHits;
}

void setHitLocals(ScriptContext& context, const Strike& strike, ActorHandle target, bool blocked) {
    const generated::Frame& frame = *strike.frame;
    context.local["damagetaker"] = target;
    context.local["damage"] = static_cast<double>(frame.attack.damage);
    context.local["drop"] = frame.knockdown ? 1.0 : 0.0;
    context.local["attacktype"] = static_cast<double>(frame.attack.type);
    context.local["blocked"] = blocked ? 1.0 : 0.0;
}

const generated::Animation* followUp(const Actor& attacker, const Strike& strike,
                                     const Actor& target, bool hostile, bool blocked) {
    const HitOutcome outcome = {blocked, hostile, !target.alive, target.model->noGrab};
    if (!followConditionPass(strike.animation->followCond, outcome)) return nullptr;
    return followAnimationFor(attacker.model, strike.animation);
}

void startFollowUp(RuntimeEntity& attacker, const generated::Animation* animation) {
    setEntityAnimation(attacker, animation);
    startAttackCounters(attacker);
}

void startFollowUp(Player1& attacker, const generated::Animation* animation) {
    restartPlayerAttack(attacker, animation);
    attacker.queuedAttack = attacker.animJumpTriggered = false;
}

void startFollowUp(RuntimeCoopPlayer& attacker, const generated::Animation* animation) {
    restartPlayerAttack(attacker, animation);
}

}  // namespace port
