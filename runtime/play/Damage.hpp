#pragma once

// What a hit does to its victim. Entities, player 1 and co-op players take damage under rules of
// their own. A victim without a model takes none.

#include "Tick.hpp"

namespace port {

struct Hit {
    int damage = 0;            // before defence
    float knockDirection = 1;  // where it drives the victim; below 0: to the left
    bool knockdown = false;
    int dropVy = -3;
    int attackType = 0;
    ActorHandle attacker = kNobody;
    int landingDamage = 0, landingMode = 0, landingType = -1;
    float dropVx = 0;
    int forceDirection = 0;
};

// Never below 0.
void takeHealth(Actor& victim, int damage);

void damageEnemy(Tick& tick, RuntimeEntity& victim, const Hit& hit);
void damagePlayer(Tick& tick, const Hit& hit);
void damageCoopPlayer(Tick& tick, RuntimeCoopPlayer& victim, const Hit& hit);

}  // namespace port
