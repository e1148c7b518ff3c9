#pragma once

// The names that a script may call because the port's script machine serves them.

#include <string_view>
#include <unordered_set>

namespace tindrel {

// In lower case.
[[nodiscard]] const std::unordered_set<std::string_view>& knownScriptNames();

// Names that look like calls and are none, or that the machine serves besides, unless a game is
// taken to the letter.
[[nodiscard]] const std::unordered_set<std::string_view>& mendedScriptNames();

}  // namespace tindrel
