#pragma once

// What a model's defences make of a hit.

#include "GeneratedCharacters.hpp"

namespace port {

// Attack types beyond the plain numbers; a negative type is a landing.
enum AttackType {
    kAttackBlast = 1001,
    kAttackBurn = 1002,
    kAttackFreeze = 1003,
    kAttackShock = 1004,
    kAttackSteal = 1005
};

// The entry for just this type, else the last "normal", else the last "all"; null for none.
[[nodiscard]] const generated::Defense* defenseFor(const generated::Character* model,
                                                   int attackType);
// The whole number nearest to raw * factor, halves up; 0 at least, and no more than an int holds.
[[nodiscard]] int scaledDamage(int raw, float factor);
// What is left of the damage, 0 or more.
[[nodiscard]] int effectiveDamage(const generated::Character* model, int raw, int attackType);
[[nodiscard]] bool defenseAllowsPain(const generated::Character* model, int raw, int attackType);

}  // namespace port
