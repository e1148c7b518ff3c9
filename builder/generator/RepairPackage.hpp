#pragma once

// AI-Repair: all issues, what of the scripts breaks off, the sources that these name, and a guide
// for whoever mends the game.

#include <filesystem>

#include "analysis/ProjectAnalysis.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

// Where issues.json holds raw control bytes of the game, issues-strict.json stands beside it with
// all of them escaped. Throws ("create_directories", "copy_file", "exists", "write").
void writeRepairPackage(const ProjectScan& project, const ProjectAnalysis& analysis,
                        const std::filesystem::path& outputFolder);

}  // namespace tindrel
