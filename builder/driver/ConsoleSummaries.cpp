#include "driver/ConsoleSummaries.hpp"

#include <cstddef>
#include <ostream>
#include <string_view>

#include "reader/DataPaths.hpp"

namespace tindrel {
namespace {

// The count in the closing line includes the last of these.
constexpr std::size_t kShownIssues = 41;

std::string_view required(bool present) {
    return present ? "OK" : "MISSING";
}
std::string_view optional(bool present) {
    return present ? "FOUND" : "none";
}

}  // namespace

void printScanSummary(std::ostream& out, const ProjectScan& scan) {
    out << "OpenBOR project: " << displayPath(scan.root) << '\n'
        << "data/: " << required(scan.hasData) << '\n'
        << "models.txt: " << required(scan.hasModels) << '\n'
        << "levels.txt: " << required(scan.hasLevels) << '\n'
        << "menu.txt: " << optional(scan.hasMenu) << "  video.txt: " << optional(scan.hasVideo)
        << "  lifebar.txt: " << optional(scan.hasLifebar)
        << "  script.txt: " << optional(scan.hasScript) << '\n'
        << "files=" << scan.fileCount << " images=" << scan.imageCount
        << " audio=" << scan.audioCount << " text=" << scan.textCount << '\n';
    for (const std::string& warning : scan.warnings) out << "[WARN] " << warning << '\n';
    out.flush();
}

void printCompatibilitySummary(std::ostream& out, const ProjectAnalysis& analysis) {
    out << "Compatibility: text_files=" << analysis.textFiles << " models=" << analysis.models
        << " stages=" << analysis.stages << " animations=" << analysis.animations
        << " scripts=" << analysis.scripts << " resolution=" << analysis.logicalWidth << 'x'
        << analysis.logicalHeight << " supported=" << analysis.supported
        << " partial=" << analysis.partial << " unsupported=" << analysis.unsupported
        << " unknown=" << analysis.unknown << '\n';
    std::size_t shown = 0;
    for (const Issue& issue : analysis.issues) {
        if (shown++ == kShownIssues) {
            out << "... " << analysis.issues.size() - (kShownIssues - 1)
                << " more issues in the report files\n";
            break;
        }
        out << '[' << compatStatusName(issue.status) << "] " << issue.file->display << ':'
            << issue.line << ' ' << issue.command << " - " << issue.message << '\n';
    }
    out.flush();
}

}  // namespace tindrel
