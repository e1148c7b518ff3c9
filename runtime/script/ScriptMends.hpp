#pragma once

// What authors plainly meant where a script, taken to the letter, loses it. A machine that takes
// scripts as they are written mends nothing.

#include <cstdint>

namespace port::script {

enum class ScriptMend : std::uint8_t {
    MacroComment,    // "#define X 1 // ...": the comment is no part of the text
    IncludeComment,  // "#import "x.h" // ...": nor of the path
    Undefine,        // "#undef X": the macro goes
    Declarators,     // "int a, b = 2, c;": declarations in turn
    Step,            // "while (c-- > 0)": the value before the step, as in C
};

}  // namespace port::script
