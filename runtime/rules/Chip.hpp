#pragma once

// What a hit still costs whom it does not get through to.

#include "GeneratedCharacters.hpp"

namespace port {

// The part of the damage that gets through a block, 0 or more. `defence` may be null.
[[nodiscard]] int blockedChipDamage(const generated::Character& model,
                                    const generated::Defense* defence, int raw);

// Takes that part from health, from MP, or from both, as model and defence want it. Neither falls
// below 0, nor health below 1 where the model does not die by it.
void applyBlockedChip(int& hp, int& mp, const generated::Character& model,
                      const generated::Defense* defence, int raw);

}  // namespace port
