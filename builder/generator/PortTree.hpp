#pragma once

// The port folder: tree, copied assets, configuration, reports, tables and the runtime's source.

#include <filesystem>

#include "analysis/ProjectAnalysis.hpp"
#include "generator/RuntimeEmission.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

// Writes the whole port below `outputFolder`. Throws runtime_error when that lies inside the data
// folder, filesystem_error ("create_directories", "copy_file", "write", ...) when the disk fails. A
// file of the game that cannot be copied is merely absent from the port.
void generatePort(const ProjectScan& project, const ProjectAnalysis& analysis, GameReader& game,
                  const std::filesystem::path& outputFolder,
                  PortSettings settings = PortSettings::kFresh);

}  // namespace tindrel
