#pragma once

// Everything that a person reads of an analysis, in one folder.

#include <filesystem>

#include "analysis/HtmlReport.hpp"
#include "analysis/ProjectAnalysis.hpp"
#include "input/PreparedInput.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

// The report files and the page of pictures, which is called after `input`. Throws
// ("create_directories", "write").
void writeReportFolder(const std::filesystem::path& input, const ProjectScan& project,
                       const ProjectAnalysis& analysis, GameReader& game,
                       const std::filesystem::path& folder, PageLinks links);

// The links of a page that is written outside a port.
[[nodiscard]] inline PageLinks pageLinks(const PreparedInput& prepared) {
    return prepared.ownsTempDir ? PageLinks::kNone : PageLinks::kDataFolder;
}

}  // namespace tindrel
