#pragma once

// The machine that runs a game's scripts: its values, its contexts and the host that it serves.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

namespace port {

struct ScriptArray;
using ScriptArrayPtr = std::shared_ptr<ScriptArray>;

// Empty, number, text, truth, handle or array, in this order.
using ScriptValue =
    std::variant<std::monostate, double, std::string, bool, std::uintptr_t, ScriptArrayPtr>;

// Shared by reference between the variables that hold it.
struct ScriptArray {
    std::vector<ScriptValue> indexed;
    std::unordered_map<std::string, ScriptValue> named;
    std::vector<std::string> namedOrder;  // names in the order of first insertion
    std::size_t cursor = 0;               // place in namedOrder
};

// One actor's variables; its owner keeps it from run to run.
struct ScriptContext {
    std::unordered_map<std::string, ScriptValue> local;
    void* entity = nullptr;
    void* other = nullptr;
    bool player = false;
    int playerIndex = 0;
};

struct ScriptRunResult {
    bool ok = true;
    std::string error;
    std::vector<std::string> unsupported;
};

// Answers the calls that the language itself does not settle.
class ScriptHost {
  public:
    virtual ~ScriptHost() = default;
    // A call that nothing answers is added to `unsupported` and yields the empty value.
    virtual ScriptValue callScriptFunction(const std::string& name,
                                           const std::vector<ScriptValue>& args,
                                           ScriptContext& context,
                                           std::vector<std::string>& unsupported) = 0;
};

class ScriptVM {
  public:
    // The folder below which script files are found.
    void setRoot(const std::filesystem::path& root) { root_ = root; }
    [[nodiscard]] const std::filesystem::path& root() const { return root_; }
    // Not owned; null for none.
    void setHost(ScriptHost* host) { host_ = host; }
    [[nodiscard]] ScriptHost* host() const { return host_; }
    // Variables that all scripts of the game share.
    [[nodiscard]] std::unordered_map<std::string, ScriptValue>& globals() { return globals_; }

  private:
    std::filesystem::path root_;
    ScriptHost* host_ = nullptr;
    std::unordered_map<std::string, ScriptValue> globals_;
};

}  // namespace port
