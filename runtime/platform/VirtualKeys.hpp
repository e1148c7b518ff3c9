#pragma once

// The keyboard of another system in virtual key codes.

#include <array>
#include <cstdint>

namespace port::platform {

// The codes that are down while a key is: one, or two where both keys of a pair count as one, too.
// 0 for none.
using VirtualKeys = std::array<std::uint8_t, 2>;

// Of the key at the place `scanCode` that the layout in use gives the meaning `keyCode`, both as
// SDL numbers them. Letters and , . - = go by their meaning, so that a key does what is printed on
// it; all others go by their place, as do the letters' keys of layouts that have none of these.
[[nodiscard]] VirtualKeys virtualKeysOf(int scanCode, int keyCode);

}  // namespace port::platform
