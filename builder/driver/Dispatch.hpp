#pragma once

// One run of the builder: its commands, in the order of their steps, and its exit codes.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Console.hpp"
#include "platform/Dialogs.hpp"

namespace tindrel {

// `arguments` are UTF-8 with the program's name first. Without any other the dialogs are asked for;
// where there are none the usage is shown. Returns the exit code and throws nothing standard.
[[nodiscard]] int runBuilder(const std::vector<std::string>& arguments, const Console& console,
                             const std::function<std::optional<Dialogs>()>& findDialogs);

}  // namespace tindrel
