#pragma once

// The copy of the game's data folder below the port.

#include <filesystem>

#include "reader/ProjectScan.hpp"

namespace tindrel {

// Copies every folder and regular file of the scan below `target`, links excepted. An entry that
// cannot be copied is absent. Throws ("create_directories", "copy_file") when the disk takes no
// more.
void copyAssets(const ProjectScan& project, const std::filesystem::path& target);

}  // namespace tindrel
