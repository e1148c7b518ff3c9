// What a stage sends and says as it is walked.

#include "StageQueue.hpp"

#include <vector>

#include "Entities.hpp"
#include "WorldTrial.hpp"

namespace port {
namespace {

struct StageQueue : WorldTrial {
    std::vector<generated::Spawn> spawns;
    std::vector<generated::StageEvent> stageEvents;
    std::vector<generated::StageInstruction> instructions;
    generated::Stage row = generated::kStages[2];

    StageQueue() {
        row.direction = "right";
        row.bossMusic = "data/music/song.wav";
        row.bossMusicOffset = 44;
    }
    generated::Spawn& spawn(int at, const char* model = "robot") {
        const int id = static_cast<int>(spawns.size());
        instructions.push_back({static_cast<int>(instructions.size()), 0, id});
        return spawns.emplace_back(generated::Spawn{id, model, "", "", "", "", 100, 210, 0, 0, at,
                                                    -1, 0, 0, false, false, true});
    }
    void event(const char* kind, int at, int value = 0, int group = 0) {
        const int id = static_cast<int>(stageEvents.size());
        instructions.push_back({static_cast<int>(instructions.size()), 1, id});
        stageEvents.push_back({id, kind, at, value, group, true, ""});
    }
    void open(bool listed = true) {
        row.spawns = spawns.data();
        row.spawnCount = spawns.size();
        row.events = stageEvents.data();
        row.eventCount = stageEvents.size();
        row.instructions = instructions.data();
        row.instructionCount = listed ? instructions.size() : 0;
        world.stage = freshStageRun(row);
        world.stage.length = 1000;
    }
    // A tick with the camera there; how many have come so far.
    std::size_t at(float cameraX) {
        world.camera.x = cameraX;
        quietly([&] { processStageInstructions(tick); });
        return world.entities.size();
    }
    void killAllBut(int count) {
        world.entities.visit([&](RuntimeEntity& entity) {
            if (entity.alive && --count < 0) entity.alive = false;
        });
    }
};

TEST_F(StageQueue, WhatIsNotReachedHoldsAllThatIsBehindIt) {
    spawn(900);
    spawn(100);
    instructions.push_back({2, 0, 77});
    spawn(0);
    open();
    world.stage.length = 2000;
    EXPECT_EQ(at(899), 0U);
    EXPECT_EQ(at(900), 3U) << "a number that nothing has is passed over";
    EXPECT_TRUE(
        log.starts_with("Stage action spawn id=0 model=robot at=900 worldX=1000\n"
                        "Stage action spawn id=1 model=robot at=100 worldX=1000\n"))
        << log;
    EXPECT_EQ(world.stage.nextInstruction, 4U);
    EXPECT_EQ(at(950), 3U) << "each comes once";
}

TEST_F(StageQueue, AGateLetsItsOwnPlaceComeAndHoldsTheRestUntilTheyAreDead) {
    event("WAIT", 100);
    spawn(100);
    spawn(100);
    spawn(150);
    open();
    EXPECT_EQ(at(99), 0U);
    EXPECT_EQ(at(100), 2U);
    EXPECT_TRUE(log.starts_with("Wait gate armed at 100\n"));
    EXPECT_EQ(at(150), 2U);
    EXPECT_TRUE(world.stage.scrollBlocked);
    killAllBut(1);
    EXPECT_EQ(at(150), 2U);
    killAllBut(0);
    EXPECT_EQ(at(150), 3U);
    EXPECT_FALSE(world.stage.scrollBlocked);
}

TEST_F(StageQueue, AGroupComesUpToItsMaximumOnceItHasFallenBelowItsMinimum) {
    spawn(0);
    event("group", 0, 1, 3);
    for (int i = 0; i < 8; ++i) spawn(0);
    spawns[3].spawnType = 1;
    spawns[4].model = "puff";
    spawns[5].spawnType = 2;
    open();
    EXPECT_EQ(at(0), 3U) << "with one enemy, two more";
    killAllBut(1);
    EXPECT_EQ(at(0), 3U);
    killAllBut(0);
    EXPECT_EQ(at(0), 9U) << "what is no plain enemy does not count, so all are through";
}

TEST_F(StageQueue, ToTheLeftDistanceCountsFromTheRightEnd) {
    spawn(100);
    row.direction = "left";
    open();
    EXPECT_EQ(at(581), 0U);
    EXPECT_EQ(at(580), 1U);
    EXPECT_EQ(world.entities[0].worldX, 680) << "on the screen of the moment";
}

TEST_F(StageQueue, GatesForPlayersAndBlockadesAreSaid) {
    event("nojoin", 0, 1);
    event("blockade", 50);
    event("blockade", 60, 20);
    open();
    at(60);
    EXPECT_TRUE(world.stage.noJoin);
    EXPECT_EQ(world.camera.backtrackFloor, 50) << "never further back";
    EXPECT_EQ(log,
              "Join gate closed at 0\nBlockade floor=50 trigger=50\nBlockade floor=50 "
              "trigger=60\n");
    event("canjoin", 0);
    open();
    world.stage.noJoin = true;
    at(60);
    EXPECT_FALSE(world.stage.noJoin);
}

TEST_F(StageQueue, WhoeverIsSentComesAsTheStageWants) {
    generated::Spawn& first = spawn(0, "hero");
    first.a = 30;
    first.map = "2";
    first.flip = true;
    first.health = 7;
    generated::Spawn& second = spawn(0, "hero");
    second.a = -30;
    second.map = "red";
    second.boss = true;
    spawn(0, "nobody");
    spawn(0).boss = true;
    open();
    ASSERT_EQ(at(0), 4U);
    const RuntimeEntity& hero = world.entities[0];
    EXPECT_EQ(hero.altitude, -30);
    EXPECT_EQ(hero.paletteMap, 2);
    EXPECT_EQ(hero.facing, -1);
    EXPECT_EQ(hero.maxHealth, 7);
    EXPECT_EQ(hero.mp, 30);
    EXPECT_EQ(hero.guardPoints, 0) << "without the model's 12";
    const RuntimeEntity& plain = world.entities[1];
    EXPECT_EQ(plain.altitude, 0);
    EXPECT_EQ(plain.paletteMap, 0);
    EXPECT_EQ(plain.health, 120);
    EXPECT_EQ(world.entities[2].model, nullptr) << "an unknown model stalls nothing";
    EXPECT_EQ(activeEnemies(world), 1);
    ASSERT_EQ(events.bossMusic.size(), 1U) << "one boss music a stage";
    EXPECT_EQ(events.bossMusic[0].loopOffset, 44);
}

TEST_F(StageQueue, AStageWithoutAListSendsWhateverIsReachedInWaves) {
    spawn(200);
    for (int i = 0; i < 5; ++i) spawn(100);
    spawn(100, "puff");
    spawn(0).id = -1;
    event("group", 0, 1, 2);
    event("wait", 100);
    open(false);
    EXPECT_EQ(at(100), 3U) << "two enemies, and one that is none";
    EXPECT_TRUE(
        log.starts_with("Group rule min=1 max=2 at=0\nWait cleared at 100\n"
                        "Spawn trigger id=1 model=robot at=100 worldX=200 boss=0 "
                        "state=COMPLETED\n"))
        << log;
    killAllBut(1);
    EXPECT_EQ(at(100), 3U);
    killAllBut(0);
    EXPECT_EQ(at(100), 5U);

    spawns.clear();
    open(false);
    at(100);
    EXPECT_TRUE(world.stage.scrollBlocked) << "with enemies the gate holds";
    killAllBut(0);
    at(100);
    EXPECT_FALSE(world.stage.scrollBlocked);
    EXPECT_EQ(log, "Wait cleared at 100\n");
}

}  // namespace
}  // namespace port
