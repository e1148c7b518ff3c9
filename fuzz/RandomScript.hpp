#pragma once

// Scripts that call what a port answers, with arguments that make sense or do not.

#include <string>

#include "Dice.hpp"

namespace tindrel::fuzz {

// A program whose "main" makes `calls` calls, some of them in loops, and hands results on.
[[nodiscard]] std::string randomScript(Dice& dice, int calls);

}  // namespace tindrel::fuzz
