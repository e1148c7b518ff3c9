#pragma once

// How entities come to their end, and what keeps them from acting.

#include "Tick.hpp"

namespace port {

// Its health is gone: hook and sound of a death, and the animation that shows it.
void endLife(Tick& tick, RuntimeEntity& entity, const char* event);

// Whether this tick goes by without the entity's doing: it is dead or leaves, it is an effect,
// frozen or held.
[[nodiscard]] bool passesTurn(Tick& tick, RuntimeEntity& entity);

}  // namespace port
