#include "Terrain.hpp"

#include <algorithm>
#include <cmath>
#include <span>

#include "Ground.hpp"
#include "Movement.hpp"
#include "StageReach.hpp"

namespace port {
namespace {

bool moved(const Actor& actor, float oldX, float oldZ) {
    return actor.worldX != oldX || actor.z != oldZ;
}

// What the geometry under an actor comes to.
struct Footing {
    const generated::Geometry* wall = nullptr;  // the highest that bars the way
    int wallIndex = 0;                          // among all walls of the stage
    bool covered = false;                       // by a wall of any height
    bool hole = false;
};

Footing footingOf(const StageRun& stage, float x, float z, float above) {
    // As far above a hole as this an actor still falls into it.
    constexpr float kHoleReach = 2;
    Footing footing;
    int walls = 0;
    for (std::size_t i = 0; i < stage.geometryKinds.size(); ++i) {
        const GeometryKind kind = stage.geometryKinds[i];
        const int wallIndex = kind == GeometryKind::Wall ? walls++ : 0;
        const generated::Geometry& area = stage.row->geometry[i];
        if (kind == GeometryKind::Other || !terrainContains(area, x, z)) continue;
        const float height = terrainHeight(area);
        if (kind == GeometryKind::Hole) {
            footing.hole |= height + kHoleReach >= above;
            continue;
        }
        footing.covered = true;
        const float least = footing.wall ? terrainHeight(*footing.wall) : std::max(0.0F, above);
        if (height <= least) continue;
        footing.wall = &area;
        footing.wallIndex = wallIndex;
    }
    return footing;
}

// Whoever was sent or thrown into a wall may leave it, if not by going deeper into it.
bool leavesWall(const Tick& tick, const Actor& actor, float oldX, float oldZ) {
    if (tick.config.asWritten) return false;
    const StageRun& stage = tick.world.stage;
    const generated::Geometry* wall = footingOf(stage, oldX, oldZ, -actor.altitude).wall;
    return wall &&
           wayOutOf(*wall, stage, {actor.worldX, actor.z}) <= wayOutOf(*wall, stage, {oldX, oldZ});
}

void runWallHook(Tick& tick, Actor& actor, const Footing& footing, bool alongX) {
    const generated::Geometry& wall = *footing.wall;
    auto& local = actor.scriptCtx.local;
    const bool shaped = wall.openborShape;
    local["plane"] = alongX ? 0.0 : 2.0;
    local["index"] = static_cast<double>(footing.wallIndex);
    local["height"] = static_cast<double>(terrainHeight(wall));
    local["depth"] =
        shaped ? static_cast<double>(wall.shape[kShapeDepth]) : static_cast<double>(wall.depth);
    local["type"] = shaped ? static_cast<double>(wall.shape[kShapeType]) : 0.0;
    tick.scripts.runHook(actor.model->onBlockWScript, actor.scriptCtx, "actor-onblockw");
    for (const char* name : {"plane", "index", "height", "depth", "type"}) local.erase(name);
}

}  // namespace

bool applyActorTerrain(Tick& tick, Actor& actor, float oldX, float oldZ) {
    const StageRun& stage = tick.world.stage;
    if (!stage.row) return false;
    const generated::Character* model = actor.model;
    const auto stepBack = [&] {
        actor.worldX = oldX;
        actor.z = oldZ;
    };
    const bool barred = isHeldBy(actor, kBoundPlatforms) && moved(actor, oldX, oldZ) &&
                        visitPlatforms(tick.world, actor.worldX, actor.z, actor.handle,
                                       [&](float altitude) { return altitude > -actor.altitude; });
    if (barred) stepBack();
    const Footing footing = footingOf(stage, actor.worldX, actor.z, -actor.altitude);
    if (footing.wall && isHeldBy(actor, kBoundWalls) && moved(actor, oldX, oldZ) &&
        !leavesWall(tick, actor, oldX, oldZ)) {
        const bool alongX = std::abs(actor.worldX - oldX) >= std::abs(actor.z - oldZ);
        stepBack();
        if (model && *model->onBlockWScript != '\0') runWallHook(tick, actor, footing, alongX);
        return false;
    }
    return footing.hole && !footing.covered && isHeldBy(actor, kBoundHoles);
}

}  // namespace port
