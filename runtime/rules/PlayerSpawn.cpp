#include "PlayerSpawn.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "Ground.hpp"
#include "StageRules.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

// Unlike an actor's terrain, edges that cross count as swapped here.
bool holds(const generated::Geometry& area, float x, float z) {
    if (!area.openborShape) return terrainContains(area, x, z);
    const RowEdges row = shapeEdges(area.shape, z);
    return row.within && x >= std::min(row.left, row.right) && x <= std::max(row.left, row.right);
}

bool blocks(const generated::Geometry& area) {
    if (equalsFolded(area.kind, "hole")) return true;
    return equalsFolded(area.kind, "wall") && terrainHeight(area) > 0;
}

std::int64_t depthOf(const generated::Stage& stage) {
    return std::int64_t{stage.zMax} - stage.zMin;
}

struct PlayerStart {
    bool defined;
    int x, z, a;
};

PlayerStart playerStart(const generated::Stage& stage, int slot) {
    switch (slot) {
        case 0:
            return {stage.player1SpawnDefined, stage.playerStartX, stage.playerStartZ,
                    stage.playerStartA};
        case 1:
            return {stage.player2SpawnDefined, stage.player2StartX, stage.player2StartZ,
                    stage.player2StartA};
        case 2:
            return {stage.player3SpawnDefined, stage.player3StartX, stage.player3StartZ,
                    stage.player3StartA};
        default:
            return {stage.player4SpawnDefined, stage.player4StartX, stage.player4StartZ,
                    stage.player4StartA};
    }
}

}  // namespace

bool spawnPointBlocked(const generated::Stage& stage, float x, float z) {
    return std::ranges::any_of(
        std::span(stage.geometry, stage.geometryCount),
        [&](const generated::Geometry& area) { return blocks(area) && holds(area, x, z); });
}

StagePlayerSpawn findSafePlayerSpawnPoint(const generated::Stage& stage, StagePlayerSpawn raw,
                                          int logicalWidth, int scrollDir) {
    constexpr int kRadius = 12;
    constexpr float kStepX = 16;
    constexpr float kStepZ = 8;
    const float zLow = static_cast<float>(std::min(stage.zMin, stage.zMax));
    const float zHigh = static_cast<float>(std::max(stage.zMin, stage.zMax));
    const auto direction = static_cast<float>(scrollDir);
    StagePlayerSpawn spawn = raw;
    spawn.x = std::max(0.0F, raw.x);
    spawn.z = std::clamp(raw.z, zLow, zHigh);
    if (!spawnPointBlocked(stage, spawn.x, spawn.z)) return spawn;

    StagePlayerSpawn candidate = spawn;
    candidate.adjusted = true;
    for (int radius = 1; radius <= kRadius; ++radius) {
        for (int zi = -radius; zi <= radius; ++zi) {
            const int xi = radius - std::abs(zi);
            for (const int sign : {1, -1}) {
                candidate.x =
                    std::max(0.0F, spawn.x + static_cast<float>(xi * sign) * direction * kStepX);
                candidate.z = std::clamp(spawn.z + static_cast<float>(zi) * kStepZ, zLow, zHigh);
                if (!spawnPointBlocked(stage, candidate.x, candidate.z)) return candidate;
            }
        }
    }
    const float ahead = static_cast<float>(std::max(16, logicalWidth / 10));
    candidate.x = std::max(0.0F, spawn.x + direction * ahead);
    candidate.z = static_cast<float>(stage.zMin + std::max<std::int64_t>(0, depthOf(stage) / 2));
    return candidate;
}

StagePlayerSpawn stagePlayerSpawn(const generated::Stage* stage, int slot, float cameraX,
                                  int logicalWidth, int scrollDir) {
    constexpr int kNarrowView = 320;
    constexpr int kPlayerGap = 30;
    StagePlayerSpawn spawn;
    spawn.facing = scrollDir < 0 ? -1 : 1;
    if (!stage) return spawn;
    slot = std::clamp(slot, 0, 3);
    const PlayerStart start = playerStart(*stage, slot);
    if (start.defined) {
        spawn.x = static_cast<float>(start.x);
        spawn.z = static_cast<float>(start.z);
        spawn.altitude = static_cast<float>(-std::max(0, start.a));
    } else {
        const float margin = static_cast<float>(stageView(logicalWidth) - kNarrowView) * 0.5F;
        const int screenX = scrollDir < 0 ? 300 - kPlayerGap * slot : 20 + kPlayerGap * slot;
        spawn.x = cameraX + std::max(0.0F, margin) + static_cast<float>(screenX);
        spawn.z = static_cast<float>(stage->zMin) + (depthOf(*stage) > 5 ? 5.0F : 0.0F);
    }
    return findSafePlayerSpawnPoint(*stage, spawn, logicalWidth, scrollDir);
}

}  // namespace port
