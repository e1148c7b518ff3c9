#pragma once

// The numbers by which scripts name things: a range for each kind, so that none is ever taken for
// another.

#include <cstdint>

namespace port {

// Below them stand the actors, see Actor.hpp.
constexpr std::uintptr_t kFirstSpriteHandle = 0x10000000;
constexpr std::uintptr_t kFirstScreenHandle = 0x18000000;
constexpr std::uintptr_t kFirstStreamHandle = 0x1C000000;
constexpr std::uintptr_t kFirstModelHandle = 0x20000000;  // by the row in the table

}  // namespace port
