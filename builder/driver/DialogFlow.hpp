#pragma once

#include "platform/Console.hpp"
#include "platform/Dialogs.hpp"

namespace tindrel {

// From a game that the user picks to its portable package, asking before each step. Returns the
// exit code, which a failed build or package does not change.
[[nodiscard]] int runDialogFlow(const Dialogs& dialogs, const Console& console);

}  // namespace tindrel
