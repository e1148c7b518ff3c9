#pragma once

// How actors come to their end, and what keeps entities from acting.

#include "Tick.hpp"

namespace port {

// Anybody, at once and without a hook; an entity is gone from the stage.
void removeActor(Actor& actor);

// Its health is gone: hook and sound of a death, and the animation that shows it.
void endLife(Tick& tick, RuntimeEntity& entity, const char* event);

// Whether this tick goes by without the entity's doing: it is dead or leaves, it is an effect,
// frozen or held.
[[nodiscard]] bool passesTurn(Tick& tick, RuntimeEntity& entity);

}  // namespace port
