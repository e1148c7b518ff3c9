#pragma once

// What a person reads of an analysis.

#include <filesystem>

#include "analysis/ProjectAnalysis.hpp"

namespace tindrel {

// Creates `folder` with its parents and writes compatibility-report.txt,
// animation-command-audit.txt and analysis.json; where that holds raw control bytes of the game,
// also analysis-strict.json with all of them escaped. Throws ("create_directories", "write").
void writeReports(const ProjectScan& project, const ProjectAnalysis& analysis,
                  const std::filesystem::path& folder);

}  // namespace tindrel
