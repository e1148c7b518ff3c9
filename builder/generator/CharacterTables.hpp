#pragma once

// GeneratedCharacters.hpp and .cpp: every model as a constant table, and two reports made from it.

#include <filesystem>
#include <vector>

#include "reader/ModelDef.hpp"

namespace tindrel {

// Throws ("create_directories", "write").
void writeGeneratedCharacters(const std::vector<ModelDef>& models,
                              const std::filesystem::path& outputFolder);

}  // namespace tindrel
