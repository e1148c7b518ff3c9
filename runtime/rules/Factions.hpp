#pragma once

// Who sees whom, who is whose enemy, and who can hurt whom.

#include "GeneratedCharacters.hpp"

namespace port {

// An auxiliary model (no model, or of type none, projectile, shot or empty) fights on its owner's
// side, where it has one.

// False without a target.
[[nodiscard]] bool modelCanPerceive(const generated::Character* observer,
                                    const generated::Character* target,
                                    const generated::Character* owner = nullptr);
// By the masks of the attacker, else of its owner, else `legacyDefault`.
[[nodiscard]] bool modelIsHostileTo(const generated::Character* attacker,
                                    const generated::Character* target, bool legacyDefault,
                                    const generated::Character* owner = nullptr);
[[nodiscard]] bool modelCanDamage(const generated::Character* attacker,
                                  const generated::Character* target, bool legacyDefault,
                                  const generated::Character* owner = nullptr);

}  // namespace port
