#pragma once

// The entities that a stage sends.

#include "Tick.hpp"

namespace port {

// Lets the spawn of that place in the stage's row enter, with its hooks and the boss's music. Null
// when the stage is full.
RuntimeEntity* spawnStageEntity(Tick& tick, std::size_t spawn);

// Whether the limits of a group hold for the spawn: an enemy that is no special kind of spawn.
[[nodiscard]] bool countsInGroup(const StageRun& stage, std::size_t spawn);

}  // namespace port
