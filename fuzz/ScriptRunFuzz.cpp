#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Require.hpp"
#include "ScriptVM.hpp"

using tindrel::fuzz::require;

// Arrays that hold each other are never freed, as scripts may make them.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "detect_leaks=0";
}

namespace {

// Forgets and keeps variables, so that nothing may be remembered across a call.
struct Host : port::ScriptHost {
    port::ScriptValue callScriptFunction(const std::string& name,
                                         const std::vector<port::ScriptValue>& args,
                                         port::ScriptContext& context,
                                         std::vector<std::string>& unsupported) override {
        if (name == "forget") context.local.clear();
        if (!args.empty()) return args.back();
        if (unsupported.size() < 100) unsupported.push_back(name);
        return {};
    }
};

port::ScriptRunResult runOnce(port::ScriptVM& vm, const std::string& text) {
    port::ScriptContext context;
    vm.globals().clear();
    vm.setSteps(100'000);
    port::ScriptRunResult result;
    try {
        result = vm.runAnimationCommand("", text, context);
    } catch (const port::BreakSignal&) {
        result.error = "break";
    } catch (const port::ContinueSignal&) {
        result.error = "continue";
    }
    return result;
}

}  // namespace

// The text as the body of a function, which it may end to define others.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (text.find("rand") != text.npos) return 0;  // a second run would draw other numbers
    Host host;
    port::ScriptVM vm;
    vm.setRoot("/nonexistent");
    vm.setHost(&host);
    const port::ScriptRunResult first = runOnce(vm, text);
    const port::ScriptRunResult second = runOnce(vm, text);
    require(first.error == second.error, "a run does not depend on those before");
    require(first.unsupported == second.unsupported, "nor does what it reports");
    return 0;
}
