#pragma once

// Finding models and their animations by name, and how long an animation lasts. Names compare
// without regard to case.

#include <cstddef>
#include <string_view>

#include "GeneratedCharacters.hpp"

namespace port {

// The first model whose `modelName` or `name` is this one; null if there is none or no name.
[[nodiscard]] const generated::Character* findCharacter(const char* name);

// The first animation of just this name; null if there is none, or no model.
[[nodiscard]] const generated::Animation* exactAnimation(const generated::Character* model,
                                                         std::string_view wanted);

// The first animation whose name is or holds `preferred`, else the model's first one; null only
// without a model or animations. An empty name matches only an animation of empty name.
[[nodiscard]] const generated::Animation* findAnimation(const generated::Character* model,
                                                        std::string_view preferred);

// The weapon's own animation of just this name, else what findAnimation finds on the actor; but
// null where the weapon's `modelCopyFlags` keep the actor's animations out (bit 0).
[[nodiscard]] const generated::Animation* findActionAnimation(const generated::Character* base,
                                                              const generated::Character* weapon,
                                                              std::string_view preferred);
[[nodiscard]] bool keepsBaseAnimationsOut(const generated::Character& weapon);

// The animation "follow" + `followAnim` that `source` names; null if it names none.
[[nodiscard]] const generated::Animation* followAnimationFor(const generated::Character* model,
                                                             const generated::Animation* source);

// The reaction to an attack type: the special forms of "pain" and "fall", `base` + type for types
// of 2 to 999, then `base`. Exact names only; null if the model has none of them.
[[nodiscard]] const generated::Animation* reactionAnimation(const generated::Character* model,
                                                            std::string_view base, int attackType);

// Ticks of one run through the frames from `first` on, plus one: 1 to 36000. A frame that holds for
// ever makes it 36000.
[[nodiscard]] int animationDuration(const generated::Animation* animation, std::size_t first = 0);

// How long a dead actor stays: its death animation where the model wants it, else half a second.
[[nodiscard]] int deathDuration(const generated::Character& model,
                                const generated::Animation* animation);

}  // namespace port
