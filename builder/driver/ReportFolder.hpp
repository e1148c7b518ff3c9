#pragma once

// Everything that a person reads of an analysis, in one folder.

#include <filesystem>

#include "analysis/ProjectAnalysis.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

enum class ReportPlace { kPort, kElsewhere };

// The report files and the page of pictures, which in a port shows the port's own assets. Throws
// ("create_directories", "write").
void writeReportFolder(const ProjectScan& project, const ProjectAnalysis& analysis,
                       GameReader& game, const std::filesystem::path& folder, ReportPlace place);

}  // namespace tindrel
