#pragma once

// The animations that entities ask for tick by tick, found once for every model of the table.

#include <cstdint>

#include "AnimationLookup.hpp"

namespace port {

enum class KnownAnimation : std::uint8_t { Idle, Walk, Run, Dodge, Grab };

// As the lookups by the name in lower case.
[[nodiscard]] const generated::Animation* findAnimation(const generated::Character* model,
                                                        KnownAnimation wanted);
[[nodiscard]] const generated::Animation* findActionAnimation(const generated::Character* base,
                                                              const generated::Character* weapon,
                                                              KnownAnimation wanted);

// The animations "attack", "shoot" and "throw" with a number, in the order of the table. Those that
// throw or toss something reach far; the others are for fights at close quarters.
enum class AttackReach : std::uint8_t { Any, Far, Close };
[[nodiscard]] bool hasAttackAnimations(const generated::Character& model);
// The one at `turn`, counted round and round; null if there is none.
[[nodiscard]] const generated::Animation* attackAnimation(const generated::Character& model,
                                                          AttackReach reach, std::uint64_t turn);

}  // namespace port
