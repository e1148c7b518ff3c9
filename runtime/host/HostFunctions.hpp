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
    ScriptValue (*resolve)(HostCall&);  // null: nothing is known of a call before it is made
    bool mended;                        // nobody answers it where a game is taken to the letter
};

// Sorted by name.
[[nodiscard]] std::span<const HostFunction> hostFunctions();
// Null for a name that the table has not.
[[nodiscard]] const HostFunction* findHostFunction(std::string_view loweredName);

namespace host {

#define HOST_FUNCTION(name, needs, function, screening, beforehand) \
    ScriptValue function(HostCall& call);
#include "HostFunctions.def"
#undef HOST_FUNCTION

// What constant arguments say of a call: see ScriptHost::resolveCall(). Arguments that are no
// constants are empty, and there is no actor yet.
namespace known {

constexpr ScriptValue (*nothing)(HostCall&) = nullptr;
// The function does the same with the same arguments, whatever the world.
ScriptValue result(HostCall& call);
// An argument names a row of the function's table.
ScriptValue actorKey(HostCall& call);
ScriptValue modelKey(HostCall& call);
ScriptValue playerKey(HostCall& call);
ScriptValue variantKey(HostCall& call);
ScriptValue levelKey(HostCall& call);
ScriptValue settableLevelKey(HostCall& call);
ScriptValue entryKey(HostCall& call);
ScriptValue drawKey(HostCall& call);

}  // namespace known
}  // namespace host
}  // namespace port
