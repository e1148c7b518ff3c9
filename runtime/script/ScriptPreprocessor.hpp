#pragma once

// Directives, macros and includes of a script, line by line, ahead of the lexer.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "ScriptMacros.hpp"
#include "ScriptMends.hpp"
#include "ScriptPaths.hpp"

namespace port::script {

// The script files below one root, each read once, and how they are taken.
class ScriptSources {
  public:
    explicit ScriptSources(std::filesystem::path root, bool takeAsWritten = false)
        : paths(std::move(root)), asWritten(takeAsWritten) {}
    // The bytes of a file; null if it cannot be read. The answer never expires.
    const std::string* text(const std::filesystem::path& path);

    // What an include names.
    struct Included {
        bool safe = false;
        std::filesystem::path path{};
        std::string name{};                 // the same in UTF-8
        const std::string* text = nullptr;  // null if it cannot be read
    };
    // What the file `by`, or its name in UTF-8, includes as `raw`. The answer never expires.
    const Included& included(const std::filesystem::path& by, std::string_view byName,
                             std::string_view raw);

    ScriptPaths paths;
    const bool asWritten;

  private:
    struct Source {
        bool readable = false;
        std::string text;
    };
    std::unordered_map<std::string, Source> sourceCache_;
    TextMap<Included> included_;  // by includer and text
    std::string key_;
};

// Where each line of an expanded text stood, and which directives were mended.
struct LineOrigins {
    struct Line {
        std::uint32_t file = 0;  // among `files`
        std::uint32_t line = 0;  // from 1
    };
    std::vector<std::filesystem::path> files;  // in the order of reading; one may come again
    std::vector<Line> lines;
    std::vector<std::pair<ScriptMend, Line>> mended;
};

// What spans all files of a run.
struct PreprocessorState {
    Macros macros;
    FunctionMacros funcMacros;
    std::unordered_set<std::string> imported;  // UTF-8 paths
    std::vector<std::string> unsupported;      // every complaint, in order, not deduplicated
    std::vector<char> active{1};               // conditions open in the main text
    std::uint64_t version = 0;       // grows with every true change of the three sets above
    std::size_t produced = 0;        // bytes of expanded text
    std::size_t consumed = 0;        // bytes of source, whatever came of them
    bool full = false;               // a limit was reached: nothing more is added
    LineOrigins* origins = nullptr;  // filled along with the text, if anybody asks
};

// The expanded text of `source`, which stands in `file`. Refuses nothing: complaints go to
// `state.unsupported`. Texts that follow each other may share one state.
[[nodiscard]] std::string preprocessScript(ScriptSources& sources,
                                           const std::filesystem::path& file,
                                           std::string_view source, PreprocessorState& state,
                                           int depth = 0);

}  // namespace port::script
