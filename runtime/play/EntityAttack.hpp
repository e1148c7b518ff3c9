#pragma once

// How entities arm themselves and attack.

#include "Tick.hpp"

namespace port {

// A grab of a target within reach, else an attack that suits the distance in x, if the entity is
// free to attack and can pay. Without a target there is no grab.
void startEnemyAttack(Tick& tick, RuntimeEntity& entity, float targetDistance = 0,
                      ActorHandle target = kNobody);

// An unarmed entity of a model with weapons walks to the nearest of them that lies near and takes
// it up. True when it spends its turn so.
bool tryEntityPickupWeapon(Tick& tick, RuntimeEntity& entity);

}  // namespace port
