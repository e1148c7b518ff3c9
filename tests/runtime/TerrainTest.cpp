// Walls, holes and platforms under actors.

#include "Terrain.hpp"

#include "EntityTrial.hpp"
#include "Ground.hpp"

namespace port {
namespace {

struct Terrain : EntityTrial {
    RuntimeEntity& walker = add(makeEnemy(), 90);

    // Puts the walker to x, coming from 90; whether a hole is reported.
    bool step(float x, float altitude = 0) {
        walker.worldX = x;
        walker.altitude = altitude;
        bool hole = false;
        quietly([&] { hole = applyActorTerrain(tick, walker, 90, 200); });
        return hole;
    }
};

TEST_F(Terrain, ShapesHoldWhatLiesBetweenTheirSlantedEdges) {
    generated::Geometry area{};
    area.openborShape = true;
    // From 100..200 at the lower end to 150..170 at the upper.
    const float shape[] = {100, 300, 50, 0, 70, 100, 40, 20, 0};
    std::copy(std::begin(shape), std::end(shape), area.shape);
    EXPECT_TRUE(terrainContains(area, 100, 300));
    EXPECT_FALSE(terrainContains(area, 124, 280)) << "the edge is at 125 half-way up";
    EXPECT_TRUE(terrainContains(area, 185, 280));
    EXPECT_TRUE(terrainContains(area, 150, 260));
    EXPECT_FALSE(terrainContains(area, 150, 259));
    std::swap(area.shape[kLowerLeft], area.shape[kLowerRight]);
    EXPECT_FALSE(terrainContains(area, 150, 300)) << "nothing lies between crossed edges";
    area.shape[kShapeDepth] = 0;
    EXPECT_FALSE(terrainContains(area, 150, 300));
}

TEST_F(Terrain, AWallBarsWhomItTowersAbove) {
    ground(GeometryKind::Wall, 500, 10, 50);
    ground(GeometryKind::Wall, 100, 50, 20);
    ground(GeometryKind::Wall, 120, 50, 30);
    models.back().onBlockWScript = hook("wall.c", "height");
    EXPECT_FALSE(step(130));
    EXPECT_EQ(walker.worldX, 90);
    EXPECT_EQ(global("hooks"), "wall.c:30 ") << "the highest of them";
    EXPECT_FALSE(walker.scriptCtx.local.contains("height")) << "the variables are for the hook";
    step(130, -25);
    EXPECT_EQ(walker.worldX, 90);
    step(130, -30);
    EXPECT_EQ(walker.worldX, 130) << "level with its top";
    step(110, -25);
    EXPECT_EQ(walker.worldX, 110) << "above the lower one";
    models.back().subjectToWall = false;
    step(130);
    EXPECT_EQ(walker.worldX, 130);
    walker.scriptedBounds = walker.heldBounds = kBoundWalls;
    step(130);
    EXPECT_EQ(walker.worldX, 90) << "a script has the last word";
    walker.heldBounds = 0;
    models.back().subjectToWall = true;
    step(130);
    EXPECT_EQ(walker.worldX, 130);
}

TEST_F(Terrain, AHoleLetsFallWhomNoWallCarries) {
    ground(GeometryKind::Hole, 100, 100, 0);
    EXPECT_TRUE(step(150));
    EXPECT_TRUE(step(150, -2));
    EXPECT_FALSE(step(150, -3)) << "over it in the air";
    models.back().subjectToHole = false;
    EXPECT_FALSE(step(150));
    models.back().subjectToHole = true;
    ground(GeometryKind::Wall, 150, 10, -5);
    EXPECT_FALSE(step(155)) << "a wall covers it, however low";
    EXPECT_TRUE(step(145));
}

TEST_F(Terrain, PlatformsCarryAndBar) {
    RuntimeEntity& carrier = add(makeModel("obstacle", {"idle"}), 200, 210);
    carry(carrier, 40, 20, 25);
    EXPECT_EQ(dynamicPlatformHeight(world, 200, 200, kNobody), 25);
    EXPECT_EQ(dynamicPlatformHeight(world, 200, 211, kNobody), 0) << "in front of it";
    EXPECT_EQ(dynamicPlatformHeight(world, 200, 200, carrier.handle), 0);
    carrier.facing = -1;
    EXPECT_EQ(dynamicPlatformHeight(world, 240, 210, kNobody), 25) << "mirrored";
    turn();  // now it stands in the roster
    EXPECT_EQ(dynamicPlatformHeight(world, 240, 210, kNobody), 25);
    RuntimeEntity& higher = add(makeModel("obstacle", {"idle"}), 230, 210);
    carry(higher, 40, 20, 60);
    EXPECT_EQ(dynamicPlatformHeight(world, 200, 200, kNobody), 60);
    step(200, -24);
    EXPECT_EQ(walker.worldX, 90) << "it stands in the way like a wall";
    step(200, -60);
    EXPECT_EQ(walker.worldX, 200);
    generated::Character& free = models.front();
    free.subjectToPlatform = false;
    EXPECT_EQ(dynamicPlatformHeight(world, walker), 0);
    step(200);
    EXPECT_EQ(walker.worldX, 200);
    higher.visible = false;
    EXPECT_EQ(dynamicPlatformHeight(world, 200, 200, kNobody), 25);
}

}  // namespace
}  // namespace port
