#pragma once

// Answers the scripts of a game by the table of what they may call.

#include "HostCall.hpp"

namespace port {

class Host final : public ScriptHost {
  public:
    // The services, and what the tick refers to, must last as long as the host.
    Host(HostServices& services, const Tick& tick) : services_(services), tick_(tick) {}

    [[nodiscard]] const HostFunction* findHostFunction(std::string_view loweredName) const override;
    ScriptValue resolveCall(HostTarget& target, std::span<const ScriptValue> constants) override;
    bool callHostFunction(const HostTarget& target, std::span<const ScriptValue> args,
                          ScriptContext& context, UnansweredNames& unsupported,
                          ScriptValue& result) override;

  private:
    HostServices& services_;
    Tick tick_;
};

}  // namespace port
