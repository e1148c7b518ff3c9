#pragma once

// Key sequences as "com" and "cancel" write them.

#include <string>

#include "analysis/LineArguments.hpp"

namespace tindrel {

// Why a port's matcher never sees the sequence, as a sentence with code between backquotes: a token
// that it does not know, no key, or a step that cannot happen. Empty where it can match.
[[nodiscard]] std::string faultOfInputSequence(Args args);

}  // namespace tindrel
