// Thrown actors as projectiles.

#include "CombatStages.hpp"
#include "Flash.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

bool isThrown(const Actor& actor) {
    return actor.alive && actor.landingMode >= 1 && actor.altitude < 0;
}

// Fells as the frame says, but whom it fells hits nobody in turn.
Hit hitInFall(const Strike& strike) {
    Hit hit = hitOf(strike);
    hit.knockdown = true;
    hit.landingDamage = hit.landingMode = 0;
    hit.landingType = -1;
    return hit;
}

bool meetsFirst(Actor& source, const Strike& strike, const Actor& target, const RectF& body) {
    return target.alive && target.model && &target != &source && overlaps(strike.box, body) &&
           source.landingHitTargets.insert(target.handle).second;
}

void hitPlayers(Combat& combat, PlayerActor& source, const Strike& strike) {
    World& world = combat.tick.world;
    if (meetsFirst(source, strike, world.player1, combat.player1Body)) {
        damagePlayer(combat.tick, hitInFall(strike));
    }
    for (RuntimeCoopPlayer& target : world.coop) {
        if (meetsFirst(source, strike, target, bodyOf(target))) {
            damageCoopPlayer(combat.tick, target, hitInFall(strike));
        }
    }
}

// Those of the same kind only: a thrown enemy sweeps enemies away.
void hitEntities(Combat& combat, RuntimeEntity& source, const Strike& strike) {
    combat.crowd.visitTouching(strike.box, Crowd::kEverybody, [&](RuntimeEntity& target) {
        const RectF body = bodyOf(target);
        if (!target.visible || !equalsFolded(source.model->type, target.model->type) ||
            !meetsFirst(source, strike, target, body)) {
            return true;
        }
        damageEnemy(combat.tick, target, hitInFall(strike));
        queueAttackFlash(combat.tick.world, *strike.frame, target, false, strike.box, body);
        combat.crowd.changed(target);
        return true;
    });
}

}  // namespace

void hitWithFallingActors(Combat& combat) {
    World& world = combat.tick.world;
    if (isThrown(world.player1)) hitPlayers(combat, world.player1, combat.player1Strike());
    for (RuntimeCoopPlayer& player : world.coop) {
        if (isThrown(player)) hitPlayers(combat, player, strikeOf(player));
    }
    combat.crowd.visit([&](RuntimeEntity& entity) {
        if (entity.visible && isThrown(entity)) hitEntities(combat, entity, strikeOf(entity));
    });
}

}  // namespace port
