#pragma once

#include "GeneratedCharacters.hpp"

namespace port {

// Whether a hit fells the victim. `meter` gathers the force of the hits that were to fell it and
// did not yet, and is empty again once one does. `power` is the size of the hit's upward velocity.
[[nodiscard]] bool resolveKnockdown(const generated::Character* model, float& meter, bool requested,
                                    int attackType, float power);

}  // namespace port
