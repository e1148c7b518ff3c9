// Attacks of players on entities.

#include "CombatStages.hpp"
#include "Factions.hpp"
#include "Frames.hpp"
#include "ModelFacts.hpp"

namespace port {
namespace {

bool inAir(const RuntimeEntity& entity) {
    return entity.fallTicks > 0 || entity.altitude < 0;
}

bool canStrike(const PlayerActor& player, const RuntimeEntity& target, unsigned attackId) {
    const int type = openborTypeBit(target.model);
    return !target.grabbed && target.lastPlayerAttackId != attackId && (type & kNeverStruck) == 0 &&
           modelCanDamage(player.model, target.model, type == kTypeEnemy || type == kTypeObstacle);
}

// Attacks of player 1 and of co-op players share one memory in the target. Co-op players have
// ranges of their own in it.
unsigned attackIdOf(const Player1& player) {
    return player.attackId;
}

unsigned attackIdOf(const RuntimeCoopPlayer& player) {
    constexpr unsigned kRange = 1'000'000;
    return static_cast<unsigned>(player.handle) * kRange + player.attackId % kRange;
}

// Only player 1 is held to the number of hits that a target takes in the air.
bool useJuggle(const Player1& /*player*/, RuntimeEntity& target) {
    if (!inAir(target)) return true;
    if (target.juggleRemaining <= 0) return false;
    --target.juggleRemaining;
    return true;
}

bool useJuggle(const RuntimeCoopPlayer& /*player*/, RuntimeEntity& /*target*/) {
    return true;
}

void runHitHook(Tick& tick, Player1& player, const Strike& strike, ActorHandle target,
                bool blocked) {
    setHitLocals(player.scriptCtx, strike, target, blocked);
    tick.scripts.runHook(player.model->didHitScript, player.scriptCtx, "player-didhit");
}

void runHitHook(Tick& tick, RuntimeCoopPlayer& player, const Strike& /*strike*/, ActorHandle target,
                bool blocked) {
    player.scriptCtx.local["damagetaker"] = target;
    player.scriptCtx.local["blocked"] = blocked ? 1.0 : 0.0;
    tick.scripts.runHook(player.model->didHitScript, player.scriptCtx, "coop-didhit");
}

template <class Player>
void strikeEntities(Combat& combat, Player& player, const Strike& strike) {
    combat.crowd.visitTouching(strike.box, Crowd::kEverybody, [&](RuntimeEntity& target) {
        const unsigned attackId = attackIdOf(player);
        if (!canStrike(player, target, attackId) || !useJuggle(player, target)) return true;
        playHitFx(combat.tick.events, strike.animation);
        target.lastPlayerAttackId = attackId;
        const bool hostile = openborTypeBit(target.model) == kTypeEnemy;
        const bool blocked = meet(combat.tick, strike, target, bodyOf(target), hostile);
        combat.crowd.changed(target);
        countHit(player);
        runHitHook(combat.tick, player, strike, target.handle, blocked);
        if (const auto* next = followUp(player, strike, target, hostile, blocked)) {
            startFollowUp(player, next);
            return false;
        }
        return !strike.animation->attackOne;
    });
}

bool playerAttacks(const PlayerActor& player) {
    return player.alive && player.attackTicks > 0;
}

}  // namespace

void strikeWithPlayer1(Combat& combat) {
    Player1& player = combat.tick.world.player1;
    if (playerAttacks(player)) strikeEntities(combat, player, combat.player1Strike());
}

void strikeWithCoopPlayers(Combat& combat) {
    for (RuntimeCoopPlayer& player : combat.tick.world.coop) {
        if (playerAttacks(player)) strikeEntities(combat, player, strikeOf(player));
    }
}

}  // namespace port
