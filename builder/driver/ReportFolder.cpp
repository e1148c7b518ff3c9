#include "driver/ReportFolder.hpp"

#include "analysis/CompatibilityReports.hpp"
#include "analysis/ScriptCheckReport.hpp"

namespace tindrel {

void writeReportFolder(const ProjectScan& project, const ProjectAnalysis& analysis,
                       GameReader& game, const std::filesystem::path& folder, PageLinks links) {
    writeReports(project, analysis, folder);
    writeScriptCheck(analysis.scriptCheck, folder / "script-check.txt");
    writeHtmlReport(project, analysis, game, folder, links);
}

}  // namespace tindrel
