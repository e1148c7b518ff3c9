#pragma once

// Key sequences as "com" and "cancel" write them.

#include "analysis/LineArguments.hpp"

namespace tindrel {

// Whether a port's matcher takes the sequence: every token is known, at least one names a key, and
// every step can happen.
[[nodiscard]] bool isInputSequence(Args args);

}  // namespace tindrel
