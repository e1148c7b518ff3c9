#pragma once

// The numbers by which entities approach, attack, follow and fall.

#include <cstdint>

#include "Actor.hpp"

namespace port {

// Bits of a model's `aiAttack`.
enum AiAttack : unsigned {
    kAiLong = 1,
    kAiMelee = 2,
    kAiNoAttack = 4,
    kAiAlways = 8,
    kAiDodge = 0x10000,
    kAiDodgeMove = 0x20000
};
// Bits of a model's `aiMove`.
enum AiMove : unsigned {
    kAiChaseZ = 1U << 2U,
    kAiChaseX = 1U << 3U,
    kAiAvoid = 1U << 4U,
    kAiAvoidZ = 1U << 5U,
    kAiAvoidX = 1U << 6U,
    kAiWander = 1U << 7U,
    kAiBiker = 1U << 8U,
    kAiArrow = 1U << 9U,
    kAiStar = 1U << 10U,
    kAiBomb = 1U << 11U,
    kAiNoMove = 1U << 12U,
    kAiIgnoreHoles = 0x10000
};
[[nodiscard]] inline bool aiAttacks(const generated::Character& model, unsigned bits) {
    return (static_cast<unsigned>(model.aiAttack) & bits) != 0;
}
[[nodiscard]] inline bool aiMoves(const generated::Character& model, unsigned bits) {
    return (static_cast<unsigned>(model.aiMove) & bits) != 0;
}

// Pixels along the ground.
struct GroundStep {
    float x = 0, z = 0;
};

// `size` pixels toward something at this distance.
[[nodiscard]] inline float toward(float distance, float size) {
    return distance < 0 ? -size : size;
}

// What an entity that knows a target walks in a tick. `distance` leads to the target; `place`
// spreads those who wander over their ways and must stay the same for an entity.
struct Walk {
    GroundStep distance;
    int facing = 1;
    std::uint64_t tick = 0, place = 0;
};
[[nodiscard]] GroundStep walkStep(const generated::Character& model, const Walk& walk);

// Ticks between the end of an attack and the next one: 2 to 90.
[[nodiscard]] int restAfterAttack(const generated::Character& model);

// The velocity after a contact with the ground that throws the actor up again.
[[nodiscard]] float bounceVelocity(float velocity, float bounceFactor);

// Ticks on the ground after a fall, of the usual number; 1 or more.
[[nodiscard]] int ticksToRise(int usual, int riseTime);

}  // namespace port
