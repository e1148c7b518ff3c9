#pragma once

// One stage file: layers, geometry and the timeline of spawns and events.

#include "reader/StageDef.hpp"
#include "reader/TextLines.hpp"

namespace tindrel {

// `entry` is the level set of the stage, with the depth limits that hold at its "file" line.
// Sets the fields that come from the file and from the entry; `sourceFile` stays empty.
// `reading` notes what is mended; without one the file's lines say how they are read.
[[nodiscard]] StageDef parseStage(const TextFile& file, const LevelSetDef& entry, Reading& reading);
[[nodiscard]] inline StageDef parseStage(const TextFile& file, const LevelSetDef& entry) {
    Reading reading(file.reading().asWritten());
    return parseStage(file, entry, reading);
}

}  // namespace tindrel
