#include "HostFunctions.hpp"

#include "KeyTable.hpp"

namespace port {
namespace {

// Whether a function is promised is for those who judge a game.
constexpr Reading SCREENED = PLAIN;
constexpr Reading UNSCREENED = PLAIN;

constexpr auto kFunctions = sortedTable(std::to_array<HostFunction>({
#define HOST_FUNCTION(name, needs, function, screening, beforehand) \
    {#name, needs, host::function, host::known::beforehand, (screening) == MENDED},
#include "HostFunctions.def"
#undef HOST_FUNCTION
                                        }),
                                        &HostFunction::name);

}  // namespace

std::span<const HostFunction> hostFunctions() {
    return kFunctions;
}

const HostFunction* findHostFunction(std::string_view loweredName) {
    return findRow(kFunctions, &HostFunction::name, loweredName);
}

ScriptValue host::known::result(HostCall& call) {
    for (const ScriptValue& argument : call.args) {
        if (std::holds_alternative<std::monostate>(argument)) return {};
    }
    return findHostFunction(call.name)->run(call);
}

}  // namespace port
