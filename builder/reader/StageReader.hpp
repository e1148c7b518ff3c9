#pragma once

// One stage file: layers, geometry and the timeline of spawns and events.

#include "reader/StageDef.hpp"
#include "reader/TextLines.hpp"

namespace tindrel {

// `entry` is the level set of the stage, with the depth limits that hold at its "file" line.
// Sets the fields that come from the file and from the entry; `sourceFile` stays empty.
[[nodiscard]] StageDef parseStage(const TextFile& file, const LevelSetDef& entry);

}  // namespace tindrel
