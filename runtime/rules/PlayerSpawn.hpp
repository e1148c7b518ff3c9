#pragma once

// Where a stage puts its players: the stage's own places, or else a row of them at the edge that
// the stage scrolls from, moved out of walls and holes.

#include "GeneratedStages.hpp"

namespace port {

struct StagePlayerSpawn {
    float x = 20;
    float z = 0;
    float altitude = 0;
    int facing = 1;
    bool adjusted = false;  // moved to a free place
};

// Whether the point lies in a wall that stands above the ground, or in a hole, even under a wall.
[[nodiscard]] bool spawnPointBlocked(const generated::Stage& stage, float x, float z);

// `raw` inside the stage's depth, or the nearest free point in a raster of 16 by 8 pixels; a place
// ahead in mid-depth where nothing near is free. `scrollDir` is 1 or -1.
[[nodiscard]] StagePlayerSpawn findSafePlayerSpawnPoint(const generated::Stage& stage,
                                                        StagePlayerSpawn raw, int logicalWidth,
                                                        int scrollDir);

// The place of the player of `slot`, clamped to 0 to 3. Without a stage, that of a fresh record.
[[nodiscard]] StagePlayerSpawn stagePlayerSpawn(const generated::Stage* stage, int slot,
                                                float cameraX, int logicalWidth, int scrollDir);

}  // namespace port
