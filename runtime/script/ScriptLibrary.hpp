#pragma once

// Loads the scripts of a game. Whatever was asked for once, a file or an inline command, is kept
// with all that preprocessing had to say, so that every later run of it is the same. What making it
// has cost in steps stays with it, for the run that comes first.

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "ScriptCode.hpp"
#include "ScriptLimits.hpp"
#include "ScriptPreprocessor.hpp"
#include "ScriptVM.hpp"

namespace port::script {

// The function that an animation command is turned into, and its text: the command stands in whole
// lines behind kFrameHead lines.
inline constexpr std::string_view kFrameFunction = "__tindrel_animation_frame";
inline constexpr std::size_t kFrameHead = 2;
[[nodiscard]] std::string frameText(std::string_view command);
// Exists only as the place that the includes of a command without helper are relative to.
inline constexpr std::string_view kFrameFile = "__generated_animation_command.c";

// A script ready to run, or `error` instead of a program.
struct Script {
    std::string error;
    UnansweredNames::Complaints complaints;  // of preprocessing; null for none
    std::unique_ptr<Program> program;
    std::size_t making = 0;  // steps that no run has paid
};

// A file as the start of the text that its animation commands complete.
struct Helper {
    Script* script = nullptr;
    PreprocessorState state;
    std::unordered_set<std::string> called;  // lower-cased names of its settled calls
    std::size_t making = 0;                  // beside the script's
};

// An animation command behind its helper.
struct Command {
    Script script;  // may have an error and a program: a missing helper still lets a command run
    Helper* helper = nullptr;
    Function* helperMain = nullptr;
    Function* frame = nullptr;
};

class ScriptLibrary {
  public:
    // The calls of its scripts are answered by `host`, which may be null.
    ScriptLibrary(const std::filesystem::path& root, ScriptHost* host, bool asWritten = false)
        : sources_(root, asWritten), host_(host) {}

    Script& file(std::string_view raw);
    Command& command(std::string_view rawHelper, std::string_view text);

    // The steps that making these has cost, for the first that asks. A function is compiled if it
    // is not; throws std::runtime_error where the library is full.
    static std::size_t takeCost(Script& script) { return std::exchange(script.making, 0); }
    static std::size_t takeCost(Command& command);
    std::size_t takeCost(Function& function);

    // Makes what the first run of `function` of a file, or of a command, would have to, while there
    // is room to spare. Gives the steps that it cost; that run pays them all the same.
    std::size_t prepareFile(std::string_view raw, std::string_view function);
    std::size_t prepareCommand(std::string_view rawHelper, std::string_view text);

    [[nodiscard]] const Names& names() const { return names_; }

  private:
    Script& load(const std::filesystem::path& path);
    Helper& helper(const std::filesystem::path& path);
    [[nodiscard]] bool full() const { return kept_ > kMaxLibrary; }
    void compile(Function& function);
    void compileReached(Function* function);
    // Gives the cost since the last call to what was made.
    void settle(std::size_t& making);
    std::unique_ptr<Program> program(Tokens tokens, Program* base = nullptr);
    static bool reaches(const Helper& helper, const Function* function);
    Tokens lexed(std::string text);
    std::unique_ptr<Program> onHelper(const Helper& helper, const std::string& text);
    void pay(const PreprocessorState& state, const PreprocessorState& before);
    void build(Command& command, Helper& helper, const std::filesystem::path& path,
               std::string_view text);

    ScriptSources sources_;
    ScriptHost* host_;
    Names names_;
    TextMap<std::unique_ptr<Script>> scripts_;  // by UTF-8 path
    TextMap<Script*> files_;                    // by the name that was asked for
    TextMap<std::unique_ptr<Script>> refused_;  // by the name that was asked for
    TextMap<Helper> helpers_;                   // by UTF-8 path
    TextMap<Command> commands_;                 // by helper and text
    std::string key_;
    std::size_t kept_ = 0;  // bytes
    std::size_t cost_ = 0;  // of what is being made
    std::size_t made_ = 0;  // steps, for all that was
};

}  // namespace port::script
