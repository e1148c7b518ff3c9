#pragma once

// Which items players take up. Nothing collects any other: it lies where it is.

#include "GeneratedCharacters.hpp"

namespace port {

// Whether the item itself is what is thrown.
[[nodiscard]] bool isThrowable(const generated::Character& item);

// A weapon, ammunition, or a thing to throw.
[[nodiscard]] bool canBePickedUp(const generated::Character& item);

}  // namespace port
