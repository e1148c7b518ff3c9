#pragma once

// A conservative screen of script sources: which functions a script calls that the port's script
// machine does not know. It reads text and parses nothing, and errs toward reporting.

#include <deque>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "analysis/BaseNames.hpp"
#include "analysis/IncludeGraph.hpp"
#include "analysis/ScriptReport.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

// Steps that putting findings in the order of the text may take in one analysis, about a second's,
// in equal shares for all script files: what is found in one must not depend on what was looked at
// before it. A file beyond its share has all its findings, in another order.
inline constexpr std::uint64_t kWalkSteps = 200'000'000;
// Stands among the findings of a file whose includes are too dense to be put in order.
inline constexpr std::string_view kWalkLimitTag = "include-walk-limit";

// What an include that leads nowhere, or out of the data folder, is reported as. `path` is as the
// file has it; the report is UTF-8.
[[nodiscard]] std::string missingInclude(std::string_view path);
[[nodiscard]] std::string unsafeInclude(std::string_view path);

// What is wrong with a "bindentity" call whose arguments begin `rest`; empty for nothing.
[[nodiscard]] std::string_view bindentityTag(std::string_view rest);

// Scans one project. Every file is read and scanned once, whatever includes it.
class ScriptScanner {
  public:
    ScriptScanner(GameReader& game, const ProjectScan& project,
                  std::uint64_t walkSteps = kWalkSteps);

    // The distinct unsupported names and tags of `file` with everything that it includes, or of
    // `inlineText` with what that includes as seen from `file`: first what is wrong with includes,
    // then the "bindentity" calls, then function names, each in the order of the text.
    [[nodiscard]] ScriptReport scanScriptSource(const std::filesystem::path& file,
                                                std::optional<std::string_view> inlineText = {});

    // How many parameters each function takes, by its name in lower case, where `file` or what it
    // includes defines it first. Null when the includes are too dense to be put in order.
    using ParameterCounts = std::unordered_map<std::string_view, std::size_t>;
    [[nodiscard]] const ParameterCounts* parameterCounts(const std::filesystem::path& file);

    enum class Lookup { kFound, kMissing, kUnsafe };
    // The script that `raw` names: below the data folder, else beside `current` (when given), else
    // the one file of that base name. The rules are those of the port's script machine.
    [[nodiscard]] Lookup findScript(std::string_view raw, const std::filesystem::path& current,
                                    std::filesystem::path& found);

  private:
    // Findings in the order of a report's sections.
    // A name that code calls has a second symbol, which stands in no report.
    enum class Section { kInclude, kBindentity, kCall, kCodeCall };
    struct Symbol {
        std::string text;
        Section section;
    };
    struct Signature {
        SymbolId name;
        std::size_t parameters;
    };

    struct Include {
        Lookup lookup = Lookup::kMissing;
        FileId file = 0;  // where one was found
    };

    [[nodiscard]] SymbolId intern(std::string_view text, Section section);
    [[nodiscard]] SymbolId internCodeCall(std::string_view name);
    [[nodiscard]] FileId fileId(const std::filesystem::path& file);
    [[nodiscard]] Include include(std::string_view raw, const std::filesystem::path& file,
                                  std::string_view folder);
    void scanPending();
    void scanText(FileId id, std::string_view text, const std::filesystem::path& file);
    void prepareProject();
    [[nodiscard]] bool reachesDepthLimit(FileId id);
    [[nodiscard]] std::vector<SymbolId> findingsOf(FileId id);
    void scanMendedCalls(FileId id, std::string_view text);
    [[nodiscard]] std::vector<std::uint64_t> mend(FileId id, std::vector<SymbolId>& findings);
    [[nodiscard]] ScriptReport report(FileId id);

    GameReader& game_;
    const ProjectScan& project_;
    bool prepared_ = false;

    IncludeGraph graph_;
    std::deque<std::filesystem::path> paths_;  // of each file; empty for inline text
    std::vector<std::vector<Signature>> signatures_;
    struct MendedCall {
        SymbolId name;
        std::uint64_t line;
    };
    std::unordered_map<FileId, std::vector<MendedCall>> mendedCalls_;  // that may be
    std::unordered_map<std::string, FileId> fileIds_;
    std::vector<FileId> pending_;
    // By the folder of the file that includes, and the path as written. Scripts share both.
    std::unordered_map<std::string, Include> includes_;

    std::deque<Symbol> symbols_;
    std::unordered_map<std::string_view, SymbolId> symbolIds_;

    // Answers for the project's own files, computed together: for those that are whole, which no
    // limit of depth cuts off from anything.
    std::vector<bool> whole_;
    std::vector<std::vector<SymbolId>> undefined_;
    std::vector<int> heights_;
    std::unordered_map<FileId, ScriptReport> reports_;
    std::unordered_map<FileId, std::optional<ParameterCounts>> parameterCounts_;
    std::uint64_t walkSteps_;
    std::uint64_t walkShare_ = 0;

    std::optional<BaseNames> baseNames_;  // made when a script is not at its path
};

}  // namespace tindrel
