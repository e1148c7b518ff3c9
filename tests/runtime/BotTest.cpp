#include "Bot.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "PlayerSpawn.hpp"
#include "Wayfinding.hpp"
#include "WorldTrial.hpp"

namespace port {
namespace {

using generated::Geometry;

Geometry area(const char* kind, int x, int z, int w, int h) {
    return {kind, x, z, w, h, 0, 100, false, {}};
}

struct Maze {
    std::vector<Geometry> areas;
    generated::Stage stage{};

    explicit Maze(std::vector<Geometry> geometry) : areas(std::move(geometry)) {
        stage.geometry = areas.data();
        stage.geometryCount = areas.size();
        stage.zMin = 0;
        stage.zMax = 200;
    }
    // Walks as a player would, a pixel at a time, until there is nowhere to go. Fails where the way
    // leads into a wall or does not end.
    [[nodiscard]] GroundPoint walk(GroundPoint from, GroundPoint to) const {
        for (int steps = 0; steps < 3000; ++steps) {
            const Heading way = wayTo(stage, from, to, {2, 2});
            if (way == Heading{}) return from;
            from.x += static_cast<float>(way.dx);
            from.z += static_cast<float>(way.dz);
            if (spawnPointBlocked(stage, from.x, from.z)) break;
        }
        ADD_FAILURE() << "lost at " << from.x << ' ' << from.z;
        return from;
    }
};

TEST(Wayfinding, GoesRoundWallsAndHolesAndUpToWhatItCannotReach) {
    // A pocket that opens to the left and hides the goal on its right, and a hole beside it.
    const Maze pocket({area("wall", 300, 40, 20, 100), area("wall", 240, 40, 60, 20),
                       area("wall", 240, 120, 60, 20), area("hole", 320, 0, 60, 60)});
    const GroundPoint end = pocket.walk({270, 90}, {420, 90});
    EXPECT_NEAR(end.x, 420, 2);
    EXPECT_NEAR(end.z, 90, 2);

    const Maze barred({area("wall", 300, 0, 20, 200)});
    EXPECT_NEAR(barred.walk({100, 100}, {400, 60}).x, 299, 3);
    EXPECT_NEAR(barred.walk({100, 100}, {400, 60}).z, 60, 3);
}

struct BotTest : WorldTrial {
    Bot bot;

    BotTest() { config.logicalWidth = 320; }

    RuntimeEntity& enemyAt(float x, float z) {
        RuntimeEntity& enemy = addEntity("robot");
        enemy.worldX = x;
        enemy.z = z;
        return enemy;
    }
    // Plays passes in which only the bot's player moves, by a pixel; counts the blows.
    int blowsIn(int passes) {
        int blows = 0;
        for (int i = 0; i < passes; ++i) {
            ++world.tick;
            const HeldInput held = bot.play(world, config);
            const auto holds = [&](int key) {
                return held.keys[static_cast<std::size_t>(key)] ? 1 : 0;
            };
            const int dx = holds(config.keyRight) - holds(config.keyLeft);
            player.worldX += static_cast<float>(dx);
            player.z += static_cast<float>(holds(config.keyDown) - holds(config.keyUp));
            if (dx != 0) player.facing = dx;
            blows += holds(config.keyAttack);
        }
        return blows;
    }
};

TEST_F(BotTest, GoesToTheNearestEnemyAndStrikesFromBeside) {
    player.worldX = 100;
    player.z = 200;
    RuntimeEntity& enemy = enemyAt(220, 220);
    enemyAt(400, 200);
    EXPECT_GT(blowsIn(150), 0);
    EXPECT_NEAR(enemy.worldX - player.worldX, 30, 7);
    EXPECT_NEAR(player.z, enemy.z, 5);
    EXPECT_EQ(player.facing, 1);
}

TEST_F(BotTest, TriesOtherStancesWhileBlowsDoNotTellAndTurnsToOthersInTheEnd) {
    player.worldX = 180;
    RuntimeEntity& tough = enemyAt(200, player.z);
    RuntimeEntity& other = enemyAt(290, player.z);
    float nearest = 1000, farthest = 0;
    for (int i = 0; i < 500; ++i) {
        blowsIn(1);
        nearest = std::min(nearest, std::abs(tough.worldX - player.worldX));
        farthest = std::max(farthest, std::abs(tough.worldX - player.worldX));
    }
    EXPECT_LT(nearest, 20);
    EXPECT_GT(farthest, 60);
    blowsIn(700);
    EXPECT_LT(std::abs(other.worldX - player.worldX), 80);
}

TEST_F(BotTest, WalksOnWhenNobodyIsLeftAndGivesEachCoopPlayerItsPad) {
    RuntimeCoopPlayer& friendOfHero = joinCoop("hero");
    friendOfHero.gamepadId = 2;
    friendOfHero.worldX = player.worldX;
    friendOfHero.z = player.z;
    const HeldInput held = bot.play(world, config);
    EXPECT_TRUE(held.keys[static_cast<std::size_t>(config.keyRight)]);
    EXPECT_TRUE(held.pads[2].connected);
    EXPECT_TRUE(held.pads[2].buttons & kPadRight);
    EXPECT_FALSE(held.pads[0].connected);
}

}  // namespace
}  // namespace port
