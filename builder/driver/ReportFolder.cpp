#include "driver/ReportFolder.hpp"

#include "analysis/CompatibilityReports.hpp"
#include "analysis/HtmlReport.hpp"

namespace tindrel {

void writeReportFolder(const ProjectScan& project, const ProjectAnalysis& analysis,
                       GameReader& game, const std::filesystem::path& folder, ReportPlace place) {
    writeReports(project, analysis, folder);
    writeHtmlReport(project, analysis, game, folder, place == ReportPlace::kPort);
}

}  // namespace tindrel
