#pragma once

// The names that a script may call because the port's script machine serves them.

#include <span>
#include <string_view>

namespace tindrel {

[[nodiscard]] bool isKnownScriptName(std::string_view lowerName);

// All of them, in no particular order.
[[nodiscard]] std::span<const std::string_view> knownScriptNames();

}  // namespace tindrel
