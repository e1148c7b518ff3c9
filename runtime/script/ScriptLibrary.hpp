#pragma once

// Loads the scripts of a game. Whatever was asked for once, a file or an inline command, is kept
// with all that preprocessing had to say, so that every later run of it is the same.

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ScriptCode.hpp"
#include "ScriptPreprocessor.hpp"

namespace port::script {

// A script ready to run, or `error` instead of a program.
struct Script {
    std::string error;
    std::vector<std::string> unsupported;
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
    explicit ScriptLibrary(const std::filesystem::path& root) : sources_(root) {}

    const Script& file(std::string_view raw);
    const Command& command(std::string_view rawHelper, std::string_view text);

    [[nodiscard]] const Names& names() const { return names_; }

  private:
    // A file as the start of the text that its animation commands complete.
    struct Helper {
        const Script* script = nullptr;
        PreprocessorState state;
        bool closed = false;  // nothing that follows can change what it means
    };

    std::filesystem::path find(std::string_view raw, const std::filesystem::path& relative);
    const Script& load(const std::filesystem::path& path);
    const Helper& helper(const std::filesystem::path& path);
    void build(Command& command, const Helper& helper, const std::filesystem::path& path,
               std::string_view text);

    ScriptSources sources_;
    Names names_;
    TextMap<std::unique_ptr<Script>> scripts_;  // by UTF-8 path
    TextMap<const Script*> files_;              // by the name that was asked for
    TextMap<std::unique_ptr<Script>> refused_;  // by the name that was asked for
    TextMap<Helper> helpers_;                   // by UTF-8 path
    TextMap<Command> commands_;                 // by helper and text
    std::string key_;
};

}  // namespace port::script
