#include "Host.hpp"

#include "HostFunctions.hpp"

namespace port {

const HostFunction* Host::findHostFunction(std::string_view loweredName) const {
    const HostFunction* const function = port::findHostFunction(loweredName);
    const bool unknown = function != nullptr && function->mended && services_.config.asWritten;
    return unknown ? nullptr : function;
}

bool Host::callHostFunction(const HostFunction& function, std::span<const ScriptValue> args,
                            ScriptContext& context, UnansweredNames& unsupported,
                            ScriptValue& result) {
    if (args.size() < function.needs) return false;
    Tick tick{services_.world,  services_.drive,   services_.input,
              services_.config, services_.scripts, services_.events};
    HostCall call{tick, services_, context, function.name, args, unsupported};
    result = function.run(call);
    return true;
}

}  // namespace port
