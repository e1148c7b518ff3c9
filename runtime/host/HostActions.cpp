// What actors are told to do.

#include <algorithm>

#include "AnimationEnergy.hpp"
#include "AnimationLookup.hpp"
#include "Damage.hpp"
#include "EntityEnd.hpp"
#include "HostFunctions.hpp"
#include "PlayerMotion.hpp"

namespace port::host {
namespace {

struct Toss {
    float lift, vx, vz;
};

// Off the ground, so that the fall does not end where it begins.
void lift(Actor& actor, float speed) {
    constexpr float kOff = 0.5F;
    actor.altitude -= kOff;
    actor.verticalVelocity = -speed;
}

void push(Actor& actor, const Toss& toss) {
    actor.scriptVelocityX = toss.vx;
    actor.scriptVelocityZ = toss.vz;
}

// Player 1 keeps the speed of a jump apart from what scripts give it.
void toss(Player1& player, const Toss& toss) {
    if (toss.lift == 0 && !player.jumping) return push(player, toss);
    player.jumpVelocityX = toss.vx;
    player.jumpVelocityZ = toss.vz;
    if (toss.lift == 0) return;
    lift(player, toss.lift);
    player.jumping = true;
    player.scriptVelocityX = player.scriptVelocityZ = 0;
}

void toss(RuntimeCoopPlayer& player, const Toss& toss) {
    push(player, toss);
    if (toss.lift == 0) return;
    lift(player, toss.lift);
    player.jumping = true;
}

void toss(RuntimeEntity& entity, const Toss& toss) {
    push(entity, toss);
    if (toss.lift != 0) lift(entity, toss.lift);
}

// Calls visit with the actor as what it is.
template <class Visit>
void asItsKind(Actor& actor, Visit visit) {
    if (actor.handle == kPlayer1Handle) return visit(static_cast<Player1&>(actor));
    if (isPlayer(actor)) return visit(static_cast<RuntimeCoopPlayer&>(actor));
    return visit(static_cast<RuntimeEntity&>(actor));
}

// Handle 0 is nobody here, also in an actor's script.
Actor* namedActor(const HostCall& call) {
    return call.handle(0) == kNobody ? nullptr : call.actor(0);
}

const std::string& nameOr(HostCall& call, std::size_t index, const char* fallback) {
    return call.has(index) ? call.text(index) : call.scratch = fallback;
}

void chargeAnimations(HostCall& call, const Actor& actor) {
    if (actor.model) call.chargeScan(actor.model->animationCount);
}

const char* performAttackEvent(const Actor& actor) {
    if (actor.handle == kPlayer1Handle) return "script-player-performattack";
    return isPlayer(actor) ? "script-coop-performattack" : "script-entity-performattack";
}

// The counters of an attack that has begun.
void startCounters(Player1& player) {
    beginAttack(player);
    player.queuedAttack = player.animJumpTriggered = false;
}

void startCounters(RuntimeCoopPlayer& player) {
    beginAttack(player);
}

void startCounters(RuntimeEntity& entity) {
    entity.lastFrame = kNoFrame;
    startAttackCounters(entity);
}

}  // namespace

ScriptValue tossActor(HostCall& call) {
    Actor* actor = namedActor(call);
    if (!actor) return false;
    const Toss given = {call.pixels(1), call.pixels(2), call.pixels(3)};
    asItsKind(*actor, [&](auto& one) { toss(one, given); });
    return true;
}

ScriptValue setAnimation(HostCall& call) {
    Actor* actor = call.actor(0);
    if (!actor) return false;
    chargeAnimations(call, *actor);
    const auto* animation = findAnimation(actor->model, nameOr(call, 1, "idle"));
    startAnimation(*actor, animation);
    return animation != nullptr;
}

ScriptValue setFrame(HostCall& call) {
    Actor* actor = call.actor(0);
    if (!actor) return false;
    actor->animation.setFrame(static_cast<std::size_t>(std::max(0, call.integer(1))));
    actor->lastFrame = kNoFrame;
    return true;
}

ScriptValue performAttack(HostCall& call) {
    Actor* actor = call.actor(0);
    if (!actor || !actor->model) return false;
    chargeAnimations(call, *actor);
    const std::string name = nameOr(call, 1, "attack1");
    if (!beginEnergyAnimation(*actor, actionAnimation(*actor, {name}))) return false;
    asItsKind(*actor, [](auto& one) { startCounters(one); });
    actor->scriptCtx.local["attack"] = ScriptText(name);
    call.tick.scripts.runHook(actor->model->onDoAttackScript, actor->scriptCtx,
                              performAttackEvent(*actor));
    return true;
}

ScriptValue damageActor(HostCall& call) {
    Actor* actor = call.actor(0);
    if (!actor || !actor->alive) return false;
    Hit hit;
    hit.damage = call.integer(call.count() == 2 ? 1 : 2, 1);
    hit.knockDirection = -1;
    hit.attacker = call.caller();
    if (actor->handle == kPlayer1Handle) {
        damagePlayer(call.tick, hit);
    } else if (isPlayer(*actor)) {
        damageCoopPlayer(call.tick, static_cast<RuntimeCoopPlayer&>(*actor), hit);
    } else {
        damageEnemy(call.tick, static_cast<RuntimeEntity&>(*actor), hit);
    }
    return true;
}

ScriptValue killActor(HostCall& call) {
    Actor* actor = namedActor(call);
    if (call.has(1)) call.tag("killentity-trigger");
    if (!actor) return 0.0;
    removeActor(*actor);
    return 1.0;
}

}  // namespace port::host
