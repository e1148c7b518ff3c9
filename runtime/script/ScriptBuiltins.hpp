#pragma once

// The functions of the language itself.

#include <cstddef>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "ScriptVM.hpp"

namespace port::script {

class Exec;

struct BuiltinCall {
    Exec& exec;
    ScriptContext& context;
    ScriptVariables& globals;
    std::mt19937& random;
    std::span<ScriptValue> args;
    ScriptValue& result;  // empty before the call
};

struct Builtin {
    std::string_view name;
    std::size_t needs;          // arguments at least; a call with fewer is not this function's
    bool (*run)(BuiltinCall&);  // false: not this function's either
};

// By lower-cased name and number of arguments; null if the language has no such function.
[[nodiscard]] const Builtin* findBuiltin(std::string_view name, std::size_t count);

}  // namespace port::script
