#pragma once

// The same analysis as a page to keep open while repairing a game.

#include <filesystem>

#include "analysis/ProjectAnalysis.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

// Writes index.html, one page without scripts, into `reportsFolder`, which must exist. Its
// pictures and links lead to "../assets/openbor-data" with `besideAssets`, for the reports of a
// port; otherwise to the project's data folder by a relative path, or nowhere where there is none.
// Throws ("write") for a full disk.
void writeHtmlReport(const ProjectScan& project, const ProjectAnalysis& analysis, GameReader& game,
                     const std::filesystem::path& reportsFolder, bool besideAssets);

}  // namespace tindrel
