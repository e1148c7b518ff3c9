#include "PlayerSpawn.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <ostream>
#include <utility>
#include <vector>

namespace port {

bool operator==(const StagePlayerSpawn& a, const StagePlayerSpawn& b) {
    return a.x == b.x && a.z == b.z && a.altitude == b.altitude && a.facing == b.facing &&
           a.adjusted == b.adjusted;
}

std::ostream& operator<<(std::ostream& out, const StagePlayerSpawn& spawn) {
    return out << spawn.x << ' ' << spawn.z << ' ' << spawn.altitude << " facing " << spawn.facing
               << (spawn.adjusted ? " adjusted" : "");
}

namespace {

using generated::Geometry;

Geometry box(const char* kind, int x, int z, int w, int h, int altitude) {
    return {kind, x, z, w, h, 0, altitude, false, {}};
}

struct Ground {
    std::vector<Geometry> areas;
    generated::Stage stage{};

    explicit Ground(const std::vector<Geometry>& geometry, int zMin = 0, int zMax = 300)
        : areas(geometry) {
        stage.geometry = areas.data();
        stage.geometryCount = areas.size();
        stage.zMin = zMin;
        stage.zMax = zMax;
    }
    Ground(const Ground&) = delete;
    [[nodiscard]] bool blocked(float x, float z) const { return spawnPointBlocked(stage, x, z); }
    [[nodiscard]] StagePlayerSpawn safe(float x, float z, int scrollDir = 1,
                                        int logicalWidth = 320) const {
        return findSafePlayerSpawnPoint(stage, {x, z, -7, scrollDir, false}, logicalWidth,
                                        scrollDir);
    }
};

StagePlayerSpawn moved(float x, float z, int facing = 1) {
    return {x, z, -7, facing, true};
}

TEST(PlayerSpawn, HolesAndWallsAboveTheGroundBlockToTheirEdges) {
    const Ground ground({box("wall", 100, 50, 10, 20, 1), box("wall", 200, 50, 10, 20, 0),
                         box("hole", 200, 70, 10, 20, 0), box("platform", 300, 50, 10, 20, 9)});
    EXPECT_TRUE(ground.blocked(100, 50));
    EXPECT_TRUE(ground.blocked(110, 70));
    EXPECT_FALSE(ground.blocked(99.5F, 60));
    EXPECT_FALSE(ground.blocked(110.5F, 60));
    EXPECT_FALSE(ground.blocked(105, 49.5F));
    EXPECT_FALSE(ground.blocked(105, 70.5F));
    EXPECT_FALSE(ground.blocked(205, 60)) << "a wall of no height";
    EXPECT_TRUE(ground.blocked(205, 70)) << "a hole under a wall";
    EXPECT_FALSE(ground.blocked(305, 60));
}

TEST(PlayerSpawn, ShapesBlockBetweenTheirEdgesWhicheverIsLeft) {
    Geometry slope{"wall", 0, 0, 0, 0, 0, 0, true, {100, 200, 20, 0, 120, 100, 40, 10, 0}};
    const auto blocked = [&](float x, float z) { return Ground({slope}).blocked(x, z); };
    EXPECT_TRUE(blocked(100, 200));
    EXPECT_TRUE(blocked(220, 160));
    EXPECT_TRUE(blocked(110, 180));
    EXPECT_FALSE(blocked(109.5F, 180));
    EXPECT_FALSE(blocked(210.5F, 180));
    EXPECT_FALSE(blocked(150, 159.5F));
    EXPECT_FALSE(blocked(150, 200.5F));
    slope.shape[7] = 0;
    slope.altitude = 10;
    EXPECT_FALSE(blocked(150, 180)) << "a shape has its own height";
    slope.kind = "hole";
    std::swap(slope.shape[2], slope.shape[4]);
    std::swap(slope.shape[3], slope.shape[5]);
    EXPECT_TRUE(blocked(150, 180));
}

TEST(PlayerSpawn, ABlockedPlaceMovesToTheNearestFreeOneInOrder) {
    EXPECT_EQ(Ground({}, 150, 90).safe(-5, 120), (StagePlayerSpawn{0, 120, -7, 1, false}));
    EXPECT_EQ(Ground({box("wall", 90, 96, 20, 8, 1)}).safe(100, 100), moved(100, 92));
    const Ground column({box("wall", 90, 0, 20, 300, 1)});
    EXPECT_EQ(column.safe(100, 100), moved(116, 100));
    EXPECT_EQ(column.safe(100, 100, -1), moved(84, 100, -1));
    EXPECT_EQ(Ground({box("wall", 90, 0, 900, 300, 1)}).safe(100, 100), moved(84, 100));
    EXPECT_EQ(Ground({box("wall", 0, 0, 900, 101, 1)}, 0, 104).safe(104, 100), moved(104, 104));
    EXPECT_EQ(Ground({box("wall", 1, 0, 90, 300, 1)}).safe(5, 100), moved(0, 100));
}

TEST(PlayerSpawn, TheSearchEndsTwelveStepsAwayAndThenTakesAPlaceAhead) {
    EXPECT_EQ(Ground({box("wall", 0, 0, 291, 300, 1)}).safe(100, 100), moved(292, 100));
    const Ground wide({box("wall", 0, 0, 292, 300, 1)}, 40, 241);
    EXPECT_EQ(wide.safe(100, 100), moved(132, 140));
    EXPECT_EQ(wide.safe(100, 100, -1, INT_MIN), moved(84, 140, -1));
    EXPECT_EQ(wide.safe(20, 100, -1), moved(0, 140, -1));
    EXPECT_EQ(Ground({box("hole", 0, 0, 900, 300, 0)}, 241, 40).safe(100, 100), moved(132, 241));
    const Ground endless(
        {box("hole", 0, INT_MIN, 900, INT_MAX, 0), box("hole", 0, -1, INT_MAX, INT_MAX, 0)},
        INT_MIN, INT_MAX);
    EXPECT_EQ(endless.safe(0, 0), moved(32, -1));
}

TEST(PlayerSpawn, PlayersLineUpFromTheEdgeThatTheStageScrollsFrom) {
    const Ground ground({}, 100, 106), shallow({}, 100, 105);
    const auto place = [&](int slot, int width, int scrollDir) {
        return stagePlayerSpawn(&ground.stage, slot, 1000, width, scrollDir);
    };
    EXPECT_EQ(place(INT_MIN, 320, 1), (StagePlayerSpawn{1020, 105, 0, 1, false}));
    EXPECT_EQ(place(INT_MAX, 480, 1), (StagePlayerSpawn{1190, 105, 0, 1, false}));
    EXPECT_EQ(place(2, INT_MIN, -1), (StagePlayerSpawn{1240, 105, 0, -1, false}));
    EXPECT_EQ(stagePlayerSpawn(&shallow.stage, 0, 0, 320, 1).z, 100.F);
    EXPECT_EQ(stagePlayerSpawn(nullptr, 2, 1000, 320, -1), (StagePlayerSpawn{20, 0, 0, -1, false}));
}

TEST(PlayerSpawn, AStageMayNameThePlaceOfEachPlayer) {
    Ground ground({box("hole", 380, 0, 40, 300, 0)});
    generated::Stage& stage = ground.stage;
    const auto place = [&](int slot) { return stagePlayerSpawn(&stage, slot, 1000, 320, 1); };
    stage.player1SpawnDefined = stage.player2SpawnDefined = true;
    stage.player3SpawnDefined = stage.player4SpawnDefined = true;
    stage.playerStartX = 100, stage.playerStartZ = 110, stage.playerStartA = 30;
    stage.player2StartX = 200, stage.player2StartZ = 120, stage.player2StartA = INT_MIN;
    stage.player3StartX = 300, stage.player3StartZ = 999, stage.player3StartA = 0;
    stage.player4StartX = 400, stage.player4StartZ = 140, stage.player4StartA = 5;
    EXPECT_EQ(place(0), (StagePlayerSpawn{100, 110, -30, 1, false}));
    EXPECT_EQ(place(1), (StagePlayerSpawn{200, 120, 0, 1, false}));
    EXPECT_EQ(place(2), (StagePlayerSpawn{300, 300, 0, 1, false}));
    EXPECT_EQ(place(3), (StagePlayerSpawn{432, 140, -5, 1, true}));
    EXPECT_FALSE(std::signbit(place(2).altitude)) << "scripts would print a minus";
}

}  // namespace
}  // namespace port
