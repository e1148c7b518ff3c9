#pragma once

// Loads the scripts of a game. Whatever was asked for once, a file or an inline command, is kept
// with all that preprocessing had to say, so that every later run of it is the same.

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
};

// An animation command behind its helper.
struct Command {
    Script script;  // may have an error and a program: a missing helper still lets a command run
    Function* helperMain = nullptr;
    Function* frame = nullptr;
};

class ScriptLibrary {
  public:
    // The calls of its scripts are answered by `host`, which may be null.
    ScriptLibrary(const std::filesystem::path& root, ScriptHost* host, bool asWritten = false)
        : sources_(root, asWritten), host_(host) {}

    const Script& file(std::string_view raw);
    const Command& command(std::string_view rawHelper, std::string_view text);

    // Compiles a function of a script; gives the steps that it cost. Throws std::runtime_error once
    // the library is full.
    std::size_t compile(Function& function);

    // The steps that new scripts have cost since the last call.
    [[nodiscard]] std::size_t takeCost() { return std::exchange(cost_, 0); }
    [[nodiscard]] const Names& names() const { return names_; }

  private:
    // A file as the start of the text that its animation commands complete.
    struct Helper {
        const Script* script = nullptr;
        PreprocessorState state;
        std::unordered_set<std::string> called;  // lower-cased names of its settled calls
    };

    const Script& load(const std::filesystem::path& path);
    const Helper& helper(const std::filesystem::path& path);
    [[nodiscard]] bool full() const { return kept_ > kMaxLibrary; }
    std::unique_ptr<Program> program(Tokens tokens, Program* base = nullptr);
    static bool reaches(const Helper& helper, const Function* function);
    Tokens lexed(std::string text);
    std::unique_ptr<Program> onHelper(const Helper& helper, const std::string& text);
    void pay(const PreprocessorState& state, const PreprocessorState& before);
    void build(Command& command, const Helper& helper, const std::filesystem::path& path,
               std::string_view text);

    ScriptSources sources_;
    ScriptHost* host_;
    Names names_;
    TextMap<std::unique_ptr<Script>> scripts_;  // by UTF-8 path
    TextMap<const Script*> files_;              // by the name that was asked for
    TextMap<std::unique_ptr<Script>> refused_;  // by the name that was asked for
    TextMap<Helper> helpers_;                   // by UTF-8 path
    TextMap<Command> commands_;                 // by helper and text
    std::string key_;
    std::size_t kept_ = 0;  // bytes
    std::size_t cost_ = 0;
};

}  // namespace port::script
