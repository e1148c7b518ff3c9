#pragma once

// The two reports that are made from the same models as the character table.

#include <filesystem>
#include <vector>

#include "reader/ModelDef.hpp"

namespace tindrel {

// reports/advanced-animation-rendering.txt: how much of the game uses the drawing features.
void writeRenderingReport(const std::vector<ModelDef>& models,
                          const std::filesystem::path& outputFolder);

// reports/gameplay-data.json: every model's animations, frame by frame.
void writeGameplayData(const std::vector<ModelDef>& models,
                       const std::filesystem::path& outputFolder);

}  // namespace tindrel
