#pragma once

// What the language makes of a value, whichever kind it is.

#include <cmath>
#include <cstdint>
#include <string>

#include "ScriptVM.hpp"

namespace port::script {

// Whether a condition holds: not 0, not empty, not null.
[[nodiscard]] bool truth(const ScriptValue& value);
// As a number; a text that begins with none is 0.
[[nodiscard]] double num(const ScriptValue& value);
// As text; a number with six significant digits, an array as "[array]".
[[nodiscard]] std::string str(const ScriptValue& value);
// By text if either side is one, by identity if either is an array, else within a millionth.
[[nodiscard]] bool eq(const ScriptValue& a, const ScriptValue& b);

// The number that a text begins with, as for stod; 0 if there is none or it is out of range.
[[nodiscard]] double parsedNumber(const std::string& text);
// The value of a Num token.
[[nodiscard]] double literalNumber(const std::string& text);

// As a 64-bit integer, towards zero. What does not fit is the least one, as on the machines that
// the games were made for, where the language leaves it open.
[[nodiscard]] inline std::int64_t integer(double value) {
    constexpr double kLimit = 9223372036854775808.0;
    return value >= -kLimit && value < kLimit ? static_cast<std::int64_t>(value) : INT64_MIN;
}

}  // namespace port::script
