#pragma once

// A run compared with another: by a number that two runs share if their worlds are the same, and by
// the first field in which they part. Both go over the fields that the records list.

#include <cstdint>
#include <string>
#include <vector>

#include "ScriptVM.hpp"
#include "World.hpp"

namespace port {

// What two runs on the same inputs must agree in.
struct RunState {
    const World& world;
    const ScriptVM& scripts;  // shared variables and random numbers
    int screen = 0;           // the frontend's state
};

// FNV-1a of 64 bits over all fields in their order, whatever the machine's byte order.
[[nodiscard]] std::uint64_t worldHash(const RunState& run);
// As 16 lower-case hexadecimal digits.
[[nodiscard]] std::string hashDigits(std::uint64_t hash);

// One line a field, such as "world.player1.health=100". Fields that are equal count as such in
// their text, so numbers stand with all their digits.
[[nodiscard]] std::vector<std::string> fieldLines(const RunState& run);
// The first line of `a` that `b` has otherwise, and that of `b`; empty when there is none.
[[nodiscard]] std::string firstDifference(const RunState& a, const RunState& b);

}  // namespace port
