#pragma once

// Directives, macros and includes of a script, line by line, ahead of the lexer.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "ScriptMacros.hpp"
#include "ScriptMends.hpp"
#include "ScriptSources.hpp"

namespace port::script {

// Where a line of an expanded text stood.
struct LineOrigin {
    std::uint32_t file = 0;  // among the files of the text
    std::uint32_t line = 0;  // from 1
};

using MendedLines = std::vector<std::pair<ScriptMend, LineOrigin>>;

// What spans all files of a run.
struct PreprocessorState {
    Macros macros;
    FunctionMacros funcMacros;
    std::unordered_set<const ScriptSource*> imported;
    std::vector<std::string> unsupported;  // every complaint, in order, not deduplicated
    std::vector<char> active{1};           // conditions open in the main text
    std::uint64_t version = 0;      // grows with every true change of the first three sets above
    std::size_t produced = 0;       // bytes of expanded text
    std::size_t consumed = 0;       // bytes of source, whatever came of them
    bool full = false;              // a limit was reached: nothing more is added
    MendedLines* mended = nullptr;  // filled along with the text, if anybody asks
};

// An expanded text. Most of it stands in the sources as it is, and is not copied.
struct ExpandedText {
    // Lines that follow each other in one file.
    struct Segment {
        std::string_view text;
        LineOrigin origin;        // of the first line
        std::uint32_t lines = 0;  // a line break each
        bool made = false;        // no source has them so
    };
    std::vector<const ScriptSource*> files;  // in the order of reading; one may come again
    std::vector<Segment> segments;
    // Of the segments that are made.
    std::unique_ptr<std::pmr::monotonic_buffer_resource> memory =
        std::make_unique<std::pmr::monotonic_buffer_resource>();

    [[nodiscard]] std::string joined() const;
};

// The expanded text of `source`, which the answer views. Refuses nothing: complaints go to
// `state.unsupported`. Texts that follow each other may share one state.
[[nodiscard]] ExpandedText preprocess(ScriptSources& sources, ScriptSource& source,
                                      PreprocessorState& state);

// The same for a text that is taken to stand in `file`.
[[nodiscard]] std::string preprocessScript(ScriptSources& sources,
                                           const std::filesystem::path& file,
                                           std::string_view source, PreprocessorState& state);

}  // namespace port::script
