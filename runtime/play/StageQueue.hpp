#pragma once

// What a stage sends and says as it is walked.

#include "Tick.hpp"

namespace port {

// The stage's list runs strictly in its order: what is not reached yet holds all that is behind it.
// A stage without a list sends and says whatever is reached.
void processStageInstructions(Tick& tick);

}  // namespace port
