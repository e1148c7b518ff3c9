#pragma once

// A run compared with another: by a number that two runs share if their worlds are the same, and by
// the first field in which they part. Both go over the fields that the records list.

#include <cstdint>
#include <string>
#include <string_view>
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

// The fields in the order of their lists, each once for all elements that have it, such as
// "world.entities.health", and a digit each that tells their values apart, 60 times of 61. That is
// short enough to be kept for every second of a run.
struct FieldDigits {
    std::vector<std::string> names;
    std::string digits;  // of the alphabet of base64
};
[[nodiscard]] FieldDigits fieldDigits(const RunState& run);
// The name of the first field whose digit in `digits`, of another run, is another one; empty when
// there is none.
[[nodiscard]] std::string firstOtherField(const RunState& run, std::string_view digits);

// One line a field, such as "world.player1.health=100". Fields that are equal count as such in
// their text, so numbers stand with all their digits.
[[nodiscard]] std::vector<std::string> fieldLines(const RunState& run);
// The first line of `a` that `b` has otherwise, and that of `b`; empty when there is none.
[[nodiscard]] std::string firstDifference(const RunState& a, const RunState& b);

}  // namespace port
