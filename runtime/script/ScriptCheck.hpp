#pragma once

// Compiles scripts without running any, to tell what of them would break off in a run.

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ScriptCode.hpp"
#include "ScriptPreprocessor.hpp"

namespace port::script {

// A place at which a function ends with an error when a run comes there.
struct ScriptBreak {
    std::string error;           // as the run reports it
    std::string token;           // empty at the end of the text
    std::filesystem::path file;  // empty in the text of a command
    std::size_t line = 0;        // from 1; 0 where the text is beyond a limit
};

// A line of which a mend was needed.
struct MendedPlace {
    ScriptMend mend{};
    std::filesystem::path file;  // empty in the text of a command
    std::size_t line = 0;        // from 1
};

struct CheckedFunction {
    std::string name;                // lower case
    std::vector<std::string> calls;  // other functions of the game's scripts, lower case
    std::vector<ScriptBreak> breaks;
    std::vector<MendedPlace> mended;
};

struct CheckedScript {
    std::string error;                         // the script as a whole cannot be had
    bool closed = true;                        // no comment, text or bracket is left open
    std::vector<std::filesystem::path> files;  // all that were read for it
    std::vector<CheckedFunction> functions;
    std::vector<MendedPlace> mended;  // directives

    [[nodiscard]] const CheckedFunction* find(std::string_view lowerName) const;
};

class ScriptCheck {
  public:
    explicit ScriptCheck(const std::filesystem::path& root, bool asWritten = false)
        : sources_(root, asWritten) {}

    // All functions of a script with what it includes. The answer holds until the next file().
    const CheckedScript& file(std::string_view raw);
    // The function of an animation command behind the script of the last file(), whose functions
    // and macros it sees; an empty path is a script without any. Lines count in `command`.
    CheckedFunction command(std::string_view command);

    // What was done so far, in about the time that a byte of text takes.
    [[nodiscard]] std::size_t work() const { return work_; }

  private:
    std::string expand(std::string_view text, PreprocessorState& state);
    std::unique_ptr<Program> program(std::string text, Program* base);
    CheckedFunction check(Function& function, const LineOrigins& origins);
    [[nodiscard]] std::size_t lineOf(const Tokens& tokens, std::size_t token);

    ScriptSources sources_;
    std::size_t work_ = 0;
    // Of the last file(). Names last as long as a program.
    std::filesystem::path path_;
    PreprocessorState state_;
    LineOrigins origins_;
    std::unique_ptr<Names> names_;
    std::unique_ptr<Program> program_;
    std::unordered_map<const Function*, std::string> functionNames_;
    // Where the lines of the text that was asked about last end.
    const std::string* lineText_ = nullptr;
    std::vector<std::size_t> lineEnds_;
    CheckedScript checked_;
};

}  // namespace port::script
