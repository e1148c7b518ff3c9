#pragma once

// The machine that runs a game's scripts: its values, its contexts and the host that it serves.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "ScriptMemory.hpp"
#include "ScriptText.hpp"
#include "UnansweredNames.hpp"

namespace port {

struct ScriptArray;
using ScriptArrayPtr = ScriptShared<ScriptArray>;

// Empty, number, text, truth, handle or array, in this order; 16 bytes, so that one is moved like a
// number.
using ScriptValue =
    std::variant<std::monostate, double, ScriptText, bool, std::uintptr_t, ScriptArrayPtr>;
static_assert(sizeof(ScriptValue) == 16);

// Values by name.
using ScriptVariables =
    std::unordered_map<ScriptName, ScriptValue, ScriptNameHash, std::equal_to<>,
                       ScriptAllocator<std::pair<const ScriptName, ScriptValue>>>;

// Shared by reference between the variables that hold it.
struct ScriptArray {
    std::vector<ScriptValue, ScriptAllocator<ScriptValue>> indexed;
    ScriptVariables named;
    // Names in the order of first insertion.
    std::vector<ScriptName, ScriptAllocator<ScriptName>> namedOrder;
    std::size_t cursor = 0;   // place in namedOrder
    std::size_t holders = 0;  // variables and values that hold it

    ScriptArray() { ScriptMemory::take(sizeof(ScriptArray)); }
    ScriptArray(const ScriptArray&) = delete;
    ScriptArray& operator=(const ScriptArray&) = delete;
    ~ScriptArray();
};

[[nodiscard]] inline ScriptArrayPtr newScriptArray() {
    return ScriptArrayPtr(new ScriptArray);
}

// One actor's variables; its owner keeps it from run to run.
struct ScriptContext {
    ScriptVariables local;
    // Whom the script is for and whom it met: 0 nobody, 1 player 1, 2 to 4 the co-op players, above
    // that the serial number of an entity.
    std::uintptr_t entity = 0, other = 0;
    bool player = false;
    int playerIndex = 0;
};

struct ScriptRunResult {
    bool ok = true;
    std::string error;
    UnansweredNames unsupported;
};

// A function of the host: a row of its own table, which the machine only hands back.
struct HostFunction;

// What a call leads to in the host.
struct HostTarget {
    static constexpr std::size_t kNoRow = static_cast<std::size_t>(-1);

    const HostFunction* function = nullptr;  // null: the host has none of that name
    std::size_t row = kNoRow;                // of a table of the host's, which a constant names
};

// Answers the calls that the language itself does not settle.
class ScriptHost {
  public:
    virtual ~ScriptHost() = default;
    // Asked once for each call that stands in a script; null for a name that is none of its own.
    [[nodiscard]] virtual const HostFunction* findHostFunction(
        std::string_view loweredName) const = 0;
    // Asked once for each such call too, with the arguments that are constants; the others are
    // empty. Sets the row that they name, and gives the result where it is the same at each call;
    // empty where it is not.
    virtual ScriptValue resolveCall(HostTarget& /*target*/,
                                    std::span<const ScriptValue> /*constants*/) {
        return {};
    }
    // False if the function is not for these arguments: the call counts as one that nothing
    // answers. `result` is empty before the call. May run further scripts.
    virtual bool callHostFunction(const HostTarget& target, std::span<const ScriptValue> args,
                                  ScriptContext& context, UnansweredNames& unsupported,
                                  ScriptValue& result) = 0;

    // Both at once, by a name as a script spells it. What nothing answers is added to
    // `unsupported` and yields the empty value.
    ScriptValue callScriptFunction(std::string_view name, std::span<const ScriptValue> args,
                                   ScriptContext& context, UnansweredNames& unsupported);
};

// What a break or continue outside any loop throws out of a run. They are no std::exception:
// whoever runs a script decides whether such a script ends more than itself.
struct BreakSignal {};
struct ContinueSignal {};

class ScriptVM {
  public:
    ScriptVM();
    ~ScriptVM();
    ScriptVM(const ScriptVM&) = delete;
    ScriptVM& operator=(const ScriptVM&) = delete;

    // The folder below which script files are found, and whether these are taken to the letter,
    // also where their authors plainly meant otherwise. Forgets all scripts; not during a run.
    void setRoot(const std::filesystem::path& root, bool asWritten = false);
    [[nodiscard]] const std::filesystem::path& root() const { return root_; }
    // Not owned; null for none. Forgets all scripts, whose calls are resolved; not during a run.
    void setHost(ScriptHost* host);
    [[nodiscard]] ScriptHost* host() const { return host_; }
    // Variables that all scripts of the game share.
    [[nodiscard]] ScriptVariables& globals() { return globals_; }
    [[nodiscard]] const ScriptVariables& globals() const { return globals_; }

    // Runs `function` of a script file, else its "main". An empty path is no script and no error.
    // What goes wrong stands in the result; a host may run further scripts from inside a call.
    ScriptRunResult runFile(std::string_view path, ScriptContext& context,
                            std::string_view function = "main");
    // Runs the "main" of the helper file, if one is given, and then `command`, which sees the
    // helper's functions and macros. A missing helper is an error and still lets the command run.
    ScriptRunResult runAnimationCommand(std::string_view helperPath, std::string_view command,
                                        ScriptContext& context);

    // Compile what the first of those runs would, which pays for it all the same: but for time
    // nothing tells the difference. Give the steps that it cost; 0 for what was compiled before.
    std::size_t prepareFile(std::string_view path);
    std::size_t prepareAnimationCommand(std::string_view helperPath, std::string_view command);

    // Steps (about an instruction each) that all runs from here on may take together, also those
    // inside each other. Once there are none left a run ends with "script step limit exceeded".
    void setSteps(std::int64_t steps) { steps_ = steps; }
    // Below 0 by what the last run wanted and did not get.
    [[nodiscard]] std::int64_t stepsLeft() const { return steps_; }

    // The numbers that scripts draw: the same for every machine, so that a game replays the same.
    [[nodiscard]] const std::mt19937& random() const { return random_; }

  private:
    struct Machine;

    template <typename Work>
    void run(ScriptRunResult& result, ScriptContext& context, Work work);
    template <typename Prepare>
    std::size_t prepared(Prepare prepare);

    std::filesystem::path root_;
    bool asWritten_ = false;
    ScriptHost* host_ = nullptr;
    ScriptVariables globals_;
    std::int64_t steps_;
    std::mt19937 random_{0x0B0B0B};
    std::unique_ptr<Machine> machine_;
};

}  // namespace port
