// Stages whose walls close the way, and whoever has got into a wall.

#include "StageReach.hpp"

#include "EntityTrial.hpp"
#include "StageFlow.hpp"
#include "StageRules.hpp"
#include "Terrain.hpp"

namespace port {
namespace {

struct Walls : EntityTrial {
    static constexpr int kWidth = 480;

    Walls() { stage.spawnCount = stage.instructionCount = 0; }
    [[nodiscard]] StageReach reach(float x = 500, float z = 200) const {
        return stageReach(world.stage, {x, z});
    }
    [[nodiscard]] float scrolled(float cameraX) {
        world.camera.x = cameraX;
        return stageScrollPosition(world.stage, world.camera, kWidth);
    }
};

TEST_F(Walls, TheWayEndsWhereTallOnesLeaveNoneRoundThem) {
    EXPECT_FALSE(reach().closed);
    ground(GeometryKind::Wall, 1000, 100, 399);
    ground(GeometryKind::Hole, 1200, 100, 1000);
    EXPECT_FALSE(reach().closed) << "what one jumps over";
    ground(GeometryKind::Wall, 1004, 10, 1000);
    EXPECT_TRUE(reach().closed);
    EXPECT_EQ(reach().x, 1000);
    EXPECT_FALSE(reach(1010).closed) << "from within it nothing can be said";
    world.stage.scrollDir = -1;
    EXPECT_EQ(reach(1500).x, 1016);
    EXPECT_FALSE(reach(500).closed) << "it is behind";
    world.stage.scrollDir = 1;
    areas.back().h = 997;
    EXPECT_FALSE(reach().closed) << "along the nearest edge";
    areas.back().h = 1000;
    world.stage.verticalScroll = true;
    EXPECT_FALSE(reach().closed);
    world.stage.verticalScroll = false;
    world.stage.length = 1 << 24;
    EXPECT_FALSE(reach().closed) << "too long to look at";
}

TEST_F(Walls, AWindingWayIsFollowed) {
    const auto wall = [&](int x, int z, int width, int depth) {
        ground(GeometryKind::Wall, x, width, 1000);
        areas.back().z = z;
        areas.back().h = depth;
    };
    wall(600, 0, 20, 700);
    wall(600, 700, 200, 20);
    wall(800, 300, 20, 700);
    EXPECT_TRUE(reach(500, 900).closed) << "nothing leads past the shelf";
    areas[1].w = 190;
    EXPECT_FALSE(reach(500, 900).closed);
}

TEST_F(Walls, WhatWaitsBehindAClosedWayComesAtItsEnd) {
    world.stage.reach = {true, 1000};
    const float end = 1000 - kEndOfWay - kWidth * 0.65F;
    EXPECT_FLOAT_EQ(scrolled(end - 1), end - 1);
    EXPECT_FLOAT_EQ(scrolled(end), 2000 - kWidth);
    world.camera.fixed = true;
    EXPECT_FLOAT_EQ(scrolled(end), end);
    world.camera.fixed = false;
    world.stage.scrollDir = -1;
    const float leftEnd = 1000 + kEndOfWay - kWidth * 0.35F;
    EXPECT_FLOAT_EQ(scrolled(leftEnd + 1), 2000 - kWidth - leftEnd - 1);
    EXPECT_FLOAT_EQ(scrolled(leftEnd), 2000 - kWidth);

    world.stage.scrollDir = 1;
    player.worldX = 1000 - kEndOfWay;
    EXPECT_TRUE(stageEndReached(world, kWidth));
    world.stage.reach = {};
    EXPECT_FALSE(stageEndReached(world, kWidth));
}

TEST_F(Walls, WhoHasGotIntoOneMayLeaveIt) {
    ground(GeometryKind::Wall, 100, 300, 1000);
    RuntimeEntity& walker = add(makeEnemy(), 0);
    const auto goes = [&](float from, float to) {
        walker.worldX = to;
        quietly([&] { static_cast<void>(applyActorTerrain(tick, walker, from, walker.z)); });
        return walker.worldX == to;
    };
    EXPECT_TRUE(goes(150, 140));
    EXPECT_FALSE(goes(150, 160)) << "deeper in";
    EXPECT_TRUE(goes(350, 360));
    world.stage.reach = {true, 96};
    EXPECT_FALSE(goes(350, 360)) << "behind it there is nothing";
    EXPECT_TRUE(goes(350, 340));
    EXPECT_FALSE(goes(90, 110)) << "from without it stays a wall";
    config.asWritten = true;
    EXPECT_FALSE(goes(150, 140));
}

}  // namespace
}  // namespace port
