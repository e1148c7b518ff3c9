#pragma once

// The stages of combat, in their order. They share what was taken at its start.

#include "Crowd.hpp"
#include "ModelFacts.hpp"
#include "Strikes.hpp"

namespace port {

// Whom no attack means, though a projectile may hit them.
constexpr int kNeverStruck = kTypeItem | kTypeProjectile | kTypeNone;

struct Combat {
    Tick& tick;
    Crowd crowd;
    // Player 1 attacks and is hit as it was at the start, whatever the stages do to it.
    const generated::Animation* player1Animation;
    const generated::Frame* player1Frame;
    RectF player1Body;

    explicit Combat(Tick& running)
        : tick(running),
          crowd(running),
          player1Animation(running.world.player1.animation.animation()),
          player1Frame(running.world.player1.animation.frame()),
          player1Body(bodyOf(running.world.player1)) {}

    // Its attack from where it is now.
    [[nodiscard]] Strike player1Strike() const {
        const Player1& player = tick.world.player1;
        Strike strike = strikeOf(player);
        strike.animation = player1Animation;
        strike.frame = player1Frame;
        strike.box = attackFor(player.model ? player1Frame : nullptr, player.worldX,
                               player.z + player.altitude, player.facing);
        return strike;
    }
};

// Entities and players who touch.
void runCollisionHooks(Combat& combat);
// Actors who were thrown hit others while they fly.
void hitWithFallingActors(Combat& combat);
void strikeWithPlayer1(Combat& combat);
void strikeWithCoopPlayers(Combat& combat);
void strikeWithEntities(Combat& combat);
void hitWithProjectiles(Combat& combat);

}  // namespace port
