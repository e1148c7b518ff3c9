#pragma once

// The names that a script may call because the port's script machine serves them.

#include <string_view>
#include <unordered_set>

namespace tindrel {

// In lower case.
[[nodiscard]] const std::unordered_set<std::string_view>& knownScriptNames();

}  // namespace tindrel
