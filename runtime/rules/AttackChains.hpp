#pragma once

// Which attack follows which.

#include <span>
#include <vector>

#include "GeneratedCharacters.hpp"

namespace port {

// Ticks within which the next attack of a chain must be pressed.
[[nodiscard]] int comboWindowFor(const generated::Character& model, int fallback);

// Ticks that attack must be held for the charge attack of that animation.
[[nodiscard]] int chargeThreshold(const generated::Animation& animation);

// The model's chain cut into lists at numbers of 0 and less.
[[nodiscard]] std::vector<std::span<const int>> comboBranches(const generated::Character* model);

// The largest N among the animations "attackN", 1 at least.
[[nodiscard]] int highestAttackIndex(const generated::Character* model);

// The attack of that step of the first branch, which goes round; without a chain all attacks do.
[[nodiscard]] int chainAttackNumber(const generated::Character* model, int step);

// Where an attack's nearest target stands, seen from the attacker.
struct TargetOffset {
    float dx = 99999, dz = 99999, da = 0;
};

// Whether the target is in the range of that attack. False without the exact animation.
[[nodiscard]] bool attackRangePass(const generated::Character* model, int attack,
                                   const TargetOffset& target);

// As chainAttackNumber, but where the model wants it (`comboStyle` 1) the target's distance chooses
// the branch. `branch` is the one that was chosen before, -1 for none.
[[nodiscard]] int dynamicChainAttackNumber(const generated::Character* model, int step, int& branch,
                                           const TargetOffset& target);

}  // namespace port
