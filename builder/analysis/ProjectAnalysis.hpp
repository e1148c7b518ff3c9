#pragma once

// The judgement on a whole project: counters, a table of its commands, and every occurrence that
// the port does not fully honour.

#include <array>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/BrokenScripts.hpp"
#include "analysis/CommandRegistry.hpp"
#include "analysis/ScriptReport.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

// A file that diagnostics name. `display` is its path in UTF-8 with the system's separators.
struct SourceFile {
    std::filesystem::path relative;  // to the project root
    std::string display;
    bool loaded = true;                       // the game reaches it, see LoadedFiles.hpp
    std::array<std::uint64_t, 5> byStatus{};  // what was judged in it, by CompatStatus
};

// One diagnostic. Its file and texts live in the ProjectAnalysis or are static.
struct Issue {
    int level = 0;  // 0 GREEN, 1 YELLOW, 2 RED
    const SourceFile* file = nullptr;
    std::uint64_t line = 0;    // 1 for a whole-file issue
    std::string_view command;  // lower case, or "script-file", "inline-script-api"
    std::string_view message;  // the impact text
    CompatStatus status = CompatStatus::kUnknown;
    bool parserSupported = false, runtimeSupported = false;
    // Why this very line is not raised where other lines of its command are, with code between
    // backquotes; empty where there is no more to say than the message.
    std::string_view reason{};
};

// "GREEN", "YELLOW", "RED"; "UNKNOWN" above 2.
[[nodiscard]] std::string_view levelName(int level);

// The verdict on one "@cmd" line.
struct AnimationCommandAudit {
    const SourceFile* file = nullptr;
    std::uint64_t line = 0;
    std::string command;  // function name and arguments, as the message shows them
    std::string helper;   // value of the "animationscript" line that governs this line
    std::string message;  // the verdict with its prefix
    CompatStatus status = CompatStatus::kPartial;
    std::shared_ptr<const ScriptReport>
        helperReport{};  // what the helper lacks, where that decided
};

// What one script file, or one "@script" block, uses and the port's script machine does not know.
struct ScriptFinding {
    const SourceFile* file = nullptr;
    std::uint64_t line = 0;  // 1 for a whole file
    ScriptReport report;
};

using CommandName = std::string;

// Movable, not copyable: issues point into it.
struct ProjectAnalysis {
    ProjectAnalysis() = default;
    ProjectAnalysis(ProjectAnalysis&&) = default;
    ProjectAnalysis& operator=(ProjectAnalysis&&) = default;
    ProjectAnalysis(const ProjectAnalysis&) = delete;
    ProjectAnalysis& operator=(const ProjectAnalysis&) = delete;
    ~ProjectAnalysis() = default;

    std::uint64_t textFiles = 0;
    std::uint64_t recognized = 0, unknown = 0, supported = 0, partial = 0, unsupported = 0;
    std::uint64_t models = 0, stages = 0, animations = 0, scripts = 0, audioFiles = 0;
    std::int32_t logicalWidth = 320, logicalHeight = 240;
    std::string openBorHint;  // where the resolution came from
    std::map<CommandName, std::uint64_t> commandCounts;
    std::map<CommandName, CompatStatus> commandStatus;
    std::vector<Issue> issues;  // in the order of the walk
    std::vector<ScriptFinding> scriptFindings;
    std::deque<AnimationCommandAudit> animationAudit;  // issues view its messages
    ScriptCheckup scriptCheck;
    std::map<CommandName, std::map<CompatStatus, std::uint64_t>> commandStatusCounts;

    std::deque<SourceFile> files;   // what Issue::file points at
    std::deque<std::string> texts;  // what messages view that are not static
};

// Reads and judges everything below the data folder. `game` reads the same folder as `project`.
// A project without data yields the fresh record. Throws for a file-system error.
[[nodiscard]] ProjectAnalysis analyzeProject(const ProjectScan& project, GameReader& game);

}  // namespace tindrel
