#pragma once

// Whether a hit is blocked, and what a block costs and does.

#include "Tick.hpp"

namespace port {

// Bits of an actor's `blockState`, which scripts write.
enum BlockState {
    BS_ACTIVE = 1,  // blocks whatever it does
    BS_NATIVE = 2,
    BS_IGNORE_CHANCE = 4,
    BS_IGNORE_GUARD = 8,
    BS_IGNORE_DIR = 16,
    BS_IGNORE_ELIG = 32,
    BS_IGNORE_BLOCKPAIN = 64
};

// Whether the animation that the actor plays is one of its blocks.
[[nodiscard]] bool playsBlock(const Actor& actor);

// True when the frame's attack was blocked; the blocker then has paid for it, perhaps with its
// life, and its hook has run.
[[nodiscard]] bool tryBlockEntity(Tick& tick, RuntimeEntity& entity, const generated::Frame& frame,
                                  ActorHandle attacker);
// Any player, each under its own rules.
[[nodiscard]] bool tryBlockPlayer(Tick& tick, PlayerActor& player, const generated::Frame& frame,
                                  ActorHandle attacker);

}  // namespace port
