#pragma once

// A host for tests, which answers by name what it is asked.

#include <set>
#include <span>
#include <string>
#include <string_view>

#include "ScriptVM.hpp"

namespace port {

class NamedHost : public ScriptHost {
  public:
    // By lower-cased name. False for what it does not answer.
    virtual bool answer(const std::string& name, std::span<const ScriptValue> args,
                        ScriptContext& context, UnansweredNames& unsupported,
                        ScriptValue& result) = 0;

  private:
    // Whoever asks only hands the row back: here it is a name.
    const HostFunction* findHostFunction(std::string_view loweredName) const final {
        static std::set<std::string, std::less<>> names;
        return reinterpret_cast<const HostFunction*>(&*names.emplace(loweredName).first);
    }
    bool callHostFunction(const HostTarget& target, std::span<const ScriptValue> args,
                          ScriptContext& context, UnansweredNames& unsupported,
                          ScriptValue& result) final {
        const auto& name = reinterpret_cast<const std::string&>(*target.function);
        return answer(name, args, context, unsupported, result);
    }
};

}  // namespace port
