#include "Host.hpp"

#include "HostFunctions.hpp"

namespace port {

const HostFunction* Host::findHostFunction(std::string_view loweredName) const {
    const HostFunction* const function = port::findHostFunction(loweredName);
    const bool unknown = function != nullptr && function->mended && tick_.config.asWritten;
    return unknown ? nullptr : function;
}

ScriptValue Host::resolveCall(HostTarget& target, std::span<const ScriptValue> constants) {
    const HostFunction& function = *target.function;
    if (!function.resolve || constants.size() < function.needs) return {};
    ScriptContext nobody;
    UnansweredNames unsaid;
    HostCall call{tick_, services_, nobody, function.name, constants, unsaid};
    ScriptValue always = function.resolve(call);
    target.row = call.row;
    return always;
}

bool Host::callHostFunction(const HostTarget& target, std::span<const ScriptValue> args,
                            ScriptContext& context, UnansweredNames& unsupported,
                            ScriptValue& result) {
    const HostFunction& function = *target.function;
    if (args.size() < function.needs) return false;
    HostCall call{tick_, services_, context, function.name, args, unsupported, target.row};
    result = function.run(call);
    return true;
}

}  // namespace port
