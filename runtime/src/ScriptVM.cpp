#include "ScriptVM.hpp"

#include <exception>
#include <stdexcept>
#include <type_traits>

#include "ScriptExec.hpp"
#include "ScriptLibrary.hpp"
#include "ScriptLimits.hpp"

namespace port {

// Scripts tell the kinds of a value apart by the order of the alternatives.
static_assert(std::is_same_v<std::variant_alternative_t<1, ScriptValue>, double>);
static_assert(std::is_same_v<std::variant_alternative_t<4, ScriptValue>, std::uintptr_t>);

struct ScriptVM::Machine {
    Machine(const std::filesystem::path& root, ScriptHost* host, bool asWritten)
        : library(root, host, asWritten) {}

    script::ScriptLibrary library;
    std::vector<std::unique_ptr<script::Exec>> execs;  // one for each run that is under way
    std::size_t runs = 0;
};

ScriptVM::ScriptVM()
    : steps_(script::kLoadingSteps),
      machine_(std::make_unique<Machine>(root_, host_, asWritten_)) {}
ScriptVM::~ScriptVM() = default;

void ScriptVM::setRoot(const std::filesystem::path& root, bool asWritten) {
    root_ = root;
    asWritten_ = asWritten;
    machine_ = std::make_unique<Machine>(root_, host_, asWritten_);
}

void ScriptVM::setHost(ScriptHost* host) {
    host_ = host;
    machine_ = std::make_unique<Machine>(root_, host_, asWritten_);
}

ScriptValue ScriptHost::callScriptFunction(std::string_view name, std::span<const ScriptValue> args,
                                           ScriptContext& context, UnansweredNames& unsupported) {
    ScriptValue result;
    const HostTarget target{findHostFunction(script::lower(name))};
    if (target.function != nullptr &&
        callHostFunction(target, args, context, unsupported, result)) {
        return result;
    }
    unsupported.add(name);
    return {};
}

template <typename Work>
void ScriptVM::run(ScriptRunResult& result, ScriptContext& context, Work work) {
    struct Depth {
        explicit Depth(std::size_t& runs) : count(++runs) {}
        ~Depth() { --count; }
        std::size_t& count;
    };
    Machine& machine = *machine_;
    const Depth depth(machine.runs);
    try {
        if (machine.runs > script::kMaxRuns)
            throw std::runtime_error("script recursion limit exceeded");
        if (machine.execs.size() < machine.runs) {
            machine.execs.push_back(
                std::make_unique<script::Exec>(machine.library, globals_, steps_, random_));
        }
        script::Exec& exec = *machine.execs[machine.runs - 1];
        exec.begin(host_, context, result.unsupported);
        work(exec);
    } catch (const std::exception& error) {
        result.ok = false;
        result.error = error.what();
    }
}

ScriptRunResult ScriptVM::runFile(std::string_view path, ScriptContext& context,
                                  std::string_view function) {
    ScriptRunResult result;
    if (path.empty()) return result;
    run(result, context, [&](script::Exec& exec) {
        script::Script& script = machine_->library.file(path);
        exec.charge(machine_->library.takeCost(script));
        result.unsupported = UnansweredNames(script.complaints);
        if (!script.program) throw std::runtime_error(script.error);
        script::Function* wanted = script.program->find(function);
        if (wanted == nullptr) wanted = script.program->find("main");
        if (wanted == nullptr) throw std::runtime_error("requested function/main() not found");
        exec.call(*wanted);
    });
    return result;
}

ScriptRunResult ScriptVM::runAnimationCommand(std::string_view helperPath, std::string_view command,
                                              ScriptContext& context) {
    ScriptRunResult result;
    if (helperPath.empty() && command.empty()) return result;
    run(result, context, [&](script::Exec& exec) {
        script::Command& known = machine_->library.command(helperPath, command);
        exec.charge(machine_->library.takeCost(known));
        result.unsupported = UnansweredNames(known.script.complaints);
        result.ok = known.script.error.empty();
        result.error = known.script.error;
        if (!known.script.program) return;
        if (result.ok && known.helperMain != nullptr) exec.call(*known.helperMain);
        if (known.frame == nullptr) {
            throw std::runtime_error("generated animation function not found");
        }
        exec.call(*known.frame);
    });
    return result;
}

// What goes wrong ends no more than the preparing: whatever needs the script says so when it runs.
template <typename Prepare>
std::size_t ScriptVM::prepared(Prepare prepare) {
    try {
        return prepare(machine_->library);
    } catch (const std::exception&) {
        return 0;
    }
}

std::size_t ScriptVM::prepareFile(std::string_view path) {
    if (path.empty()) return 0;
    return prepared(
        [&](script::ScriptLibrary& library) { return library.prepareFile(path, "main"); });
}

std::size_t ScriptVM::prepareAnimationCommand(std::string_view helperPath,
                                              std::string_view command) {
    if (helperPath.empty() && command.empty()) return 0;
    return prepared([&](script::ScriptLibrary& library) {
        return library.prepareCommand(helperPath, command);
    });
}

}  // namespace port
