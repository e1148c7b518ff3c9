#pragma once

// GeneratedStages.hpp and .cpp: every stage as a constant table, and stage-data.json.

#include <filesystem>
#include <vector>

#include "reader/StageDef.hpp"

namespace tindrel {

// Throws ("create_directories", "write").
void writeGeneratedStages(const std::vector<StageDef>& stages,
                          const std::filesystem::path& outputFolder);

}  // namespace tindrel
