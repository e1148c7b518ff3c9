#pragma once

// How attacks lead on: into a counter by whom they meet, or into a move that follows a hit.

#include "AnimationPlayer.hpp"

namespace port {

struct CounterResult {
    const generated::Animation* animation = nullptr;  // null: no counter
    bool takesDamage = true;
    bool rage = false;
};

// An attack as far as it matters to whom it meets.
struct Attempt {
    bool hostile = false;
    bool unblockable = false;
    bool fromFront = false;  // the attacker stands where the victim looks
    int damage = 0;
};

// The counter with which the running animation answers the attack in its current frame. One in
// rage survives what would kill it.
[[nodiscard]] CounterResult counterFor(const generated::Character* model,
                                       const AnimationPlayer& current, const Attempt& attempt,
                                       int currentHealth);

// How a hit has ended.
struct HitOutcome {
    bool blocked = false;
    bool hostile = false;
    bool lethal = false;
    bool targetNoGrab = false;
};

// Whether the move that follows a hit comes, for an animation's `followCond`.
[[nodiscard]] bool followConditionPass(int condition, const HitOutcome& outcome);

}  // namespace port
