#pragma once

// Answers the scripts of a game by the table of what they may call.

#include "HostCall.hpp"

namespace port {

class Host final : public ScriptHost {
  public:
    // What the services refer to must last as long as the host.
    explicit Host(HostServices services) : services_(std::move(services)) {}

    [[nodiscard]] const HostFunction* findHostFunction(std::string_view loweredName) const override;
    ScriptValue resolveCall(HostTarget& target, std::span<const ScriptValue> constants) override;
    bool callHostFunction(const HostTarget& target, std::span<const ScriptValue> args,
                          ScriptContext& context, UnansweredNames& unsupported,
                          ScriptValue& result) override;

  private:
    HostServices services_;
};

}  // namespace port
