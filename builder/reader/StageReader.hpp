#pragma once

// One stage file: layers, geometry and the timeline of spawns and events.

#include "reader/StageDef.hpp"
#include "reader/TextLines.hpp"

namespace tindrel {

// Sets the fields that come from the file and from its level set; `sourceFile` stays empty.
// `reading` notes what is mended; without one the file's lines say how they are read.
[[nodiscard]] StageDef parseStage(const TextFile& file, const LevelSetDef& set,
                                  const DepthLimits& depth, Reading& reading);
[[nodiscard]] inline StageDef parseStage(const TextFile& file, const LevelSetDef& set = {},
                                         const DepthLimits& depth = {}) {
    Reading reading(file.reading().asWritten());
    return parseStage(file, set, depth, reading);
}

}  // namespace tindrel
