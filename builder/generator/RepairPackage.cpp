#include "generator/RepairPackage.hpp"

#include <algorithm>
#include <set>
#include <string>

#include "PathEncoding.hpp"
#include "analysis/ScriptCheckReport.hpp"
#include "generator/FixedTexts.hpp"
#include "generator/PortFiles.hpp"
#include "generator/TableText.hpp"
#include "platform/FileStatus.hpp"
#include "platform/OutputFile.hpp"
#include "reader/DataPaths.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

// Control bytes stand raw in issues.json, which strict parsers refuse.
struct IssueSpelling {
    static constexpr Escapes kEscapes = escapes("\t\n\"\\", Escape::kNone);
};

bool hasControl(std::string_view text) {
    return std::any_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x20; });
}

void copySources(const ProjectScan& project, const ProjectAnalysis& analysis,
                 const fs::path& folder) {
    std::set<fs::path::string_type> seen;
    const auto copy = [&](const fs::path& relative) {
        if (!seen.insert(relative.native()).second) return;
        const fs::path source = project.root / relative;
        if (!tindrel::exists(source)) return;
        const fs::path target = folder / relative;
        createDirectories(target.parent_path());
        const std::error_code error = replaceWithCopy(source, target);
        if (error) throw fs::filesystem_error("copy_file", source, target, error);
    };
    for (const Issue& issue : analysis.issues) copy(issue.file->relative);
    for (const BrokenScript& broken : analysis.scriptCheck.broken) {
        copy(PathEncoding::path(broken.file));
    }
}

// Tells whether what it wrote holds raw control bytes.
template <class Spelling>
bool writeIssues(const ProjectScan& project, const ProjectAnalysis& analysis,
                 const fs::path& path) {
    std::string line;
    appendValue<Spelling>(line, displayPath(project.root));
    bool isRaw = hasControl(line);
    OutputFile out(path);
    out << "{\n  \"source\": " << line << ",\n  \"issues\": [\n";
    for (const Issue& issue : analysis.issues) {
        line = "    ";
        JsonObject<Spelling>(line)
            .add("level", compatStatusName(issue.status))
            .add("file", issue.file->display)
            .add("line", issue.line)
            .add("command", issue.command)
            .add("message", issue.message)
            .close();
        isRaw = isRaw || hasControl(line);
        line += &issue == &analysis.issues.back() ? "\n" : ",\n";
        out << line;
    }
    out << "  ]\n}\n";
    out.close();
    return isRaw;
}

}  // namespace

void writeRepairPackage(const ProjectScan& project, const ProjectAnalysis& analysis,
                        const fs::path& outputFolder) {
    const fs::path package = outputFolder / "AI-Repair";
    const fs::path sources = package / "original-sources";
    const fs::path logs = package / "logs";
    for (const fs::path& folder : {package, sources, logs}) createDirectories(folder);
    copySources(project, analysis, sources);
    if (writeIssues<IssueSpelling>(project, analysis, package / "issues.json")) {
        writeIssues<JsonSpelling>(project, analysis, package / "issues-strict.json");
    }
    writeScriptCheck(analysis.scriptCheck, package / "script-check.txt");
    writeTextFile(package / "README-AI-REPAIR.md", text::kRepairReadme);
    writeTextFile(logs / "runtime.log", text::kRuntimeLogPlaceholder);
}

}  // namespace tindrel
