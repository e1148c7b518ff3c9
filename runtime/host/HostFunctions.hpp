#pragma once

// The table of what scripts may call.

#include <cstddef>
#include <span>
#include <string_view>

#include "HostCall.hpp"
#include "ScriptVM.hpp"

namespace port {

struct HostFunction {
    std::string_view name;  // in lower case
    std::size_t needs;      // arguments at least
    ScriptValue (*run)(HostCall&);
    bool mended;  // nobody answers it where a game is taken to the letter
};

// Sorted by name.
[[nodiscard]] std::span<const HostFunction> hostFunctions();
// Null for a name that the table has not.
[[nodiscard]] const HostFunction* findHostFunction(std::string_view loweredName);

namespace host {

#define HOST_FUNCTION(name, needs, function, screening) ScriptValue function(HostCall& call);
#include "HostFunctions.def"
#undef HOST_FUNCTION

}  // namespace host
}  // namespace port
