#pragma once

// Whether a bot's report still speaks of the game beside it.

#include <filesystem>
#include <string>

#include "analysis/PlaytestFile.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

// Why it does not, as a sentence with code between backquotes; empty where nothing is known against
// it. `report` is its file, by whose time of change it is taken to have been played; `tables` the
// folder of the port's generated tables, empty without a port.
[[nodiscard]] std::string whyOutdated(const PlayedGame& played, const std::filesystem::path& report,
                                      const std::filesystem::path& tables,
                                      const ProjectScan& project, GameReader& game);

}  // namespace tindrel
