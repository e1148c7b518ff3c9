#pragma once

// What moves cost their user in MP or health, and when it falls due.

#include "Actor.hpp"

namespace port {

// Whether `energyDisable` frees a model of this type of the cost.
[[nodiscard]] bool costDisabled(const generated::Character* model, int disable);

// Whether the means suffice: mode 1 pays by MP only, 2 by health only, any other by MP and else by
// health. False without an animation, or where the cost is disabled.
[[nodiscard]] bool hasAnimationEnergy(const generated::Animation* animation,
                                      const generated::Character* model, int hp, int mp);

// Takes the cost; health never falls below 1 by it.
void debitAnimationEnergy(int cost, int mode, int& hp, int& mp);

// Ends the actor's pending cost: due if the move hit.
void finishAnimationEnergy(Actor& actor);

// Starts a move if its user can pay. Models with `globalNoCost` pay once the move has hit.
bool beginEnergyAnimation(Actor& actor, const generated::Animation* animation);

// Ends the pending cost of a move that runs no longer.
void settleAnimationEnergy(Actor& actor);

}  // namespace port
