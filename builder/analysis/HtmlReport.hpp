#pragma once

// The same analysis as a page to keep open while repairing a game.

#include <filesystem>
#include <string>

#include "analysis/ProjectAnalysis.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

// Where the page's pictures and links lead: the assets of the port that the reports stand in, the
// project's data folder by a relative path, or nowhere, for a game that is unpacked only meanwhile.
enum class PageLinks { kPortAssets, kDataFolder, kNone };

// Writes index.html, one page without scripts, into `reportsFolder`, which must exist. `title` is
// what the game came in as. Throws ("write") for a full disk.
void writeHtmlReport(const ProjectScan& project, const ProjectAnalysis& analysis, GameReader& game,
                     const std::filesystem::path& reportsFolder, PageLinks pageLinks,
                     const std::string& title);

}  // namespace tindrel
