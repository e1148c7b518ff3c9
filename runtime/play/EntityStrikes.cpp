// Attacks of enemies: on player 1, else on a co-op player, else on another entity; one for each
// attack.

#include "CombatStages.hpp"
#include "Factions.hpp"
#include "Frames.hpp"
#include "ModelFacts.hpp"

namespace port {
namespace {

bool entityAttacks(const RuntimeEntity& entity) {
    return openborTypeBit(entity.model) == kTypeEnemy && entity.attackTicks > 0 &&
           !entity.grabbed && !entity.attackHasHit;
}

template <class Target>
void strikeTarget(Combat& combat, RuntimeEntity& attacker, const Strike& strike, Target& target,
                  const RectF& body, bool hostile, const char* event) {
    Tick& tick = combat.tick;
    playHitFx(tick.events, strike.animation);
    countHit(attacker);  // whatever comes of it
    const bool blocked = meet(tick, strike, target, body, hostile);
    setHitLocals(attacker.scriptCtx, strike, target.handle, blocked);
    tick.scripts.runHook(attacker.model->didHitScript, attacker.scriptCtx, event);
    if (const auto* next = followUp(attacker, strike, target, hostile, blocked)) {
        startFollowUp(attacker, next);
    }
    combat.crowd.changed(attacker);
}

// False when the player is not hit.
template <class Player>
bool strikePlayer(Combat& combat, RuntimeEntity& attacker, const Strike& attack, Player& target,
                  const RectF& body) {
    if (!target.alive || !target.model || !overlaps(attack.box, body) ||
        !modelCanDamage(attacker.model, target.model, true)) {
        return false;
    }
    strikeTarget(combat, attacker, attack, target, body, true, "entity-didhit");
    return true;
}

void strikeEntity(Combat& combat, RuntimeEntity& attacker, const Strike& attack) {
    // Without a mask of its own it can damage none of them, as often as it strikes in a crowd.
    const int types = attacker.model->canDamageMask;
    combat.crowd.visitTouching(attack.box, types, [&](RuntimeEntity& target) {
        if (&target == &attacker || target.grabbed ||
            (openborTypeBit(target.model) & kNeverStruck) != 0 ||
            !modelCanDamage(attacker.model, target.model, false)) {
            return true;
        }
        const bool hostile = modelIsHostileTo(attacker.model, target.model, false);
        strikeTarget(combat, attacker, attack, target, bodyOf(target), hostile,
                     "entity-didhit-entity");
        combat.crowd.changed(target);
        return false;
    });
}

void strikeAnyone(Combat& combat, RuntimeEntity& attacker) {
    World& world = combat.tick.world;
    const Strike attack = strikeOf(attacker);
    if (strikePlayer(combat, attacker, attack, world.player1, combat.player1Body)) return;
    for (RuntimeCoopPlayer& player : world.coop) {
        if (strikePlayer(combat, attacker, attack, player, bodyOf(player))) return;
    }
    strikeEntity(combat, attacker, attack);
}

}  // namespace

void strikeWithEntities(Combat& combat) {
    combat.crowd.visit([&](RuntimeEntity& entity) {
        if (entityAttacks(entity)) strikeAnyone(combat, entity);
    });
}

}  // namespace port
