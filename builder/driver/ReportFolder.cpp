#include "driver/ReportFolder.hpp"

#include "PathEncoding.hpp"
#include "analysis/CompatibilityReports.hpp"
#include "analysis/MendedLines.hpp"
#include "analysis/ScriptCheckReport.hpp"
#include "driver/OutputNames.hpp"
#include "platform/FileStatus.hpp"

namespace tindrel {

namespace {

// What an input is called; a path such as "." has no name of its own.
std::string nameOf(const std::filesystem::path& input, const ProjectScan& project) {
    const std::filesystem::path name =
        nameSelection(tindrel::absolute(input).lexically_normal()).name;
    return PathEncoding::utf8(name.empty() ? project.root.filename() : name);
}

}  // namespace

void writeReportFolder(const std::filesystem::path& input, const ProjectScan& project,
                       const ProjectAnalysis& analysis, GameReader& game,
                       const std::filesystem::path& folder, PageLinks links) {
    writeReports(project, analysis, folder);
    writeScriptCheck(analysis.scriptCheck, folder / "script-check.txt");
    writeMendedLines(game, folder / kMendedLinesName);
    writeHtmlReport(project, analysis, game, folder, links, nameOf(input, project));
}

}  // namespace tindrel
