#pragma once

// Compiles scripts without running any, to tell what of them would break off in a run.

#include <cstddef>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
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
    std::vector<std::string> calls;  // whatever answers them, lower case, sorted
    std::vector<ScriptBreak> breaks;
    std::vector<MendedPlace> mended;
};

struct CheckedScript {
    std::string error;                       // the script as a whole cannot be had
    bool closed = true;                      // no comment, text or bracket is left open
    std::vector<const ScriptSource*> files;  // all that were read for it
    std::vector<const CheckedFunction*> functions;
    std::vector<MendedPlace> mended;  // directives

    [[nodiscard]] const CheckedFunction* find(std::string_view lowerName) const;
};

// A constant text that stands as an argument of a call, while somebody is told of it.
struct TextArgument {
    std::string_view function;  // as written
    std::string_view text;
    std::size_t index = 0;  // of `count` arguments
    std::size_t count = 0;
    const std::filesystem::path& file;
    std::size_t line = 0;  // from 1
};

// Where each line of a text stood.
struct LineOrigins {
    std::vector<const std::filesystem::path*> files;
    std::vector<LineOrigin> lines;
};

class ScriptCheck {
  public:
    // `told` hears of all constant texts in the calls of scripts that file() reads, of each place
    // once or more often.
    explicit ScriptCheck(const std::filesystem::path& root, bool asWritten = false,
                         std::function<void(const TextArgument&)> told = nullptr)
        : sources_(root, asWritten), told_(std::move(told)) {}

    // All functions of a script with what it includes. The answer holds until the next file().
    const CheckedScript& file(std::string_view raw);
    // The function of an animation command behind the script of the last file(), whose functions
    // and macros it sees; an empty path is a script without any. Lines count in `command`.
    CheckedFunction command(std::string_view command);

    // What was done so far, in about the time that a byte of text takes.
    [[nodiscard]] std::size_t work() const { return work_; }

  private:
    // Lines of one file that mean the same in whatever script they stand. Scripts share most of
    // what they include, so each piece is read once.
    struct Piece {
        bool whole = false;         // else all else is unknown: what follows belongs to it
        std::ptrdiff_t braces = 0;  // opened and not closed
        std::ptrdiff_t parens = 0;
        std::vector<CheckedFunction> functions;
        std::vector<std::size_t> names;  // theirs, see nameOf()
        std::size_t script = 0;          // the last one that it was found in
    };

    using Segments = std::span<const ExpandedText::Segment>;

    ExpandedText expand(ScriptSource& source, PreprocessorState& state);
    std::unique_ptr<Program> program(std::string text, Names& names, Program* base);
    std::size_t takePieces(const ExpandedText& text);
    const Piece& piece(const ScriptSource& source, Segments segments);
    Piece read(std::string text, const LineOrigins& origins);
    void tellTexts(const Tokens& tokens, const LineOrigins& origins);
    CheckedFunction check(Function& function, const LineOrigins& origins);
    std::size_t nameOf(const Function& function);
    bool defines(std::size_t name);
    [[nodiscard]] std::size_t lineOf(const Tokens& tokens, std::size_t token);

    ScriptSources sources_;
    std::function<void(const TextArgument&)> told_;
    std::size_t work_ = 0;
    // By file, and by its lines and what macros made of them.
    std::unordered_map<const ScriptSource*, TextMap<Piece>> pieces_;
    std::size_t kept_ = 0;               // bytes of them, about
    TextMap<std::size_t> names_;         // of functions, numbered from 0
    std::vector<std::size_t> definers_;  // by name, the last script that defines it
    std::size_t scripts_ = 0;            // so many were begun
    std::string place_;
    // Of the last file(). Names last as long as a program.
    std::filesystem::path path_;
    PreprocessorState state_;
    LineOrigins origins_;  // of the text behind the pieces
    std::unique_ptr<Names> programNames_;
    std::unique_ptr<Program> program_;  // the same
    std::deque<CheckedFunction> functions_;
    std::ptrdiff_t braces_ = 0;
    std::ptrdiff_t parens_ = 0;
    // Where the lines of the text that was asked about last end.
    const std::string* lineText_ = nullptr;
    std::vector<std::size_t> lineEnds_;
    CheckedScript checked_;
};

}  // namespace port::script
