#include "generator/RepairPackage.hpp"

#include <set>
#include <string>

#include "generator/FixedTexts.hpp"
#include "generator/PortFiles.hpp"
#include "generator/TableText.hpp"
#include "platform/FileStatus.hpp"
#include "platform/OutputFile.hpp"
#include "reader/DataPaths.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

struct IssueSpelling {
    static constexpr std::string_view kEscaped = "\t\n\"\\";
};

void copySources(const ProjectScan& project, const ProjectAnalysis& analysis,
                 const fs::path& folder) {
    std::set<fs::path> seen;
    for (const Issue& issue : analysis.issues) {
        const fs::path& relative = issue.file->relative;
        if (!seen.insert(relative).second) continue;
        const fs::path source = project.root / relative;
        if (!tindrel::exists(source)) continue;
        const fs::path copy = folder / relative;
        createDirectories(copy.parent_path());
        const std::error_code error = replaceWithCopy(source, copy);
        if (error) throw fs::filesystem_error("copy_file", source, copy, error);
    }
}

void writeIssues(const ProjectScan& project, const ProjectAnalysis& analysis,
                 const fs::path& path) {
    std::string line;
    appendValue<IssueSpelling>(line, displayPath(project.root));
    OutputFile out(path);
    out << "{\n  \"source\": " << line << ",\n  \"issues\": [\n";
    for (const Issue& issue : analysis.issues) {
        line = "    ";
        JsonObject<IssueSpelling>(line)
            .add("level", compatStatusName(issue.status))
            .add("file", issue.file->display)
            .add("line", issue.line)
            .add("command", issue.command)
            .add("message", issue.message)
            .close();
        line += &issue == &analysis.issues.back() ? "\n" : ",\n";
        out << line;
    }
    out << "  ]\n}\n";
    out.close();
}

}  // namespace

void writeRepairPackage(const ProjectScan& project, const ProjectAnalysis& analysis,
                        const fs::path& outputFolder) {
    const fs::path package = outputFolder / "AI-Repair";
    const fs::path sources = package / "original-sources";
    const fs::path logs = package / "logs";
    for (const fs::path& folder : {package, sources, logs}) createDirectories(folder);
    copySources(project, analysis, sources);
    writeIssues(project, analysis, package / "issues.json");
    writeTextFile(package / "README-AI-REPAIR.md", text::kRepairReadme);
    writeTextFile(logs / "runtime.log", text::kRuntimeLogPlaceholder);
}

}  // namespace tindrel
