#include "Combat.hpp"

#include "CombatStages.hpp"

namespace port {
namespace {

void runCollisionHook(Tick& tick, Actor& self, ActorHandle target) {
    const char* script = self.model->onEntityCollisionScript;
    if (*script == '\0') return;
    ScriptContext& context = self.scriptCtx;
    const ScriptValue standing = context.local["self"];
    context.local["self"] = self.handle;
    context.local["target"] = context.local["other"] = target;
    context.other = target;
    tick.scripts.runHook(script, context, "actor-entitycollision");
    context.other = kNobody;
    context.local.erase("target");
    context.local.erase("other");
    // A variable that an actor's scripts always have.
    context.local["self"] = standing;
}

void collide(Tick& tick, RuntimeEntity& entity, PlayerActor& player, const RectF& body) {
    if (!player.alive || !player.model || !overlaps(bodyOf(entity), body)) return;
    runCollisionHook(tick, entity, player.handle);
    if (entity.alive && player.alive) runCollisionHook(tick, player, entity.handle);
}

}  // namespace

void runCollisionHooks(Combat& combat) {
    World& world = combat.tick.world;
    combat.crowd.visit([&](RuntimeEntity& entity) {
        if (!entity.visible) return;
        collide(combat.tick, entity, world.player1, combat.player1Body);
        for (RuntimeCoopPlayer& player : world.coop) {
            if (entity.alive) collide(combat.tick, entity, player, bodyOf(player));
        }
    });
}

// Who strikes first wins: the order decides between two who hit each other in one tick.
void resolveCombat(Tick& tick) {
    Combat combat(tick);
    runCollisionHooks(combat);
    hitWithFallingActors(combat);
    strikeWithPlayer1(combat);
    strikeWithCoopPlayers(combat);
    strikeWithEntities(combat);
    hitWithProjectiles(combat);
}

}  // namespace port
