// What players 2 to 4 do otherwise than player 1, and how they join.

#include "CoopPlayers.hpp"

#include "Joins.hpp"
#include "PlayerTrial.hpp"

namespace port {
namespace {

struct CoopPlayers : PlayerTrial {
    RuntimeCoopPlayer& coop = addCoop();

    void press(unsigned buttons) { PlayerTrial::press({}, buttons); }
};

TEST_F(CoopPlayers, MoveInTheAirOnlyByTheirSteering) {
    press(kPadB);
    EXPECT_TRUE(coop.jumping);
    EXPECT_EQ(coop.worldX, 150) << "player 1 would have leapt forward";
    hold({}, 0, kPadRight | kPadUp);
    ticks();
    EXPECT_NEAR(coop.worldX, 150.7F, 0.001);
    EXPECT_NEAR(coop.z, 199.3F, 0.001);
    model.runJumpLength = 3;
    coop.runningJump = true;
    ticks();
    EXPECT_NEAR(coop.worldX, 153.7F, 0.001) << "as far as its run";
    EXPECT_NEAR(coop.z, 199.3F, 0.001) << "a run jump keeps its row";
    model.runMoveZ = true;
    ticks();
    EXPECT_NEAR(coop.z, 198.6F, 0.001);
}

TEST_F(CoopPlayers, StayOnTheScreenWhileTheyWalk) {
    world.camera.x = 100;
    coop.worldX = 415;
    hold({}, 0, kPadRight);
    ticks();
    EXPECT_EQ(coop.worldX, 416);
    coop.worldX = 50;
    ticks();
    EXPECT_EQ(coop.worldX, 104);
    coop.jumping = true;
    coop.altitude = -30;
    coop.worldX = 50;
    ticks();
    EXPECT_LT(coop.worldX, 60) << "nothing holds them in the air";
}

TEST_F(CoopPlayers, NeitherDashNorGrab) {
    RuntimeEntity& enemy = addEntity("robot");
    enemy.worldX = 160;
    updateRoster(world);
    press(kPadLeftShoulder | kPadY);
    EXPECT_EQ(coop.worldX, 150);
    EXPECT_FALSE(enemy.grabbed);
}

TEST_F(CoopPlayers, AnAttackWaitsInTheAirForTheGround) {
    press(kPadB);
    press(kPadA);
    EXPECT_EQ(playing(coop), "jumpattack");
    EXPECT_EQ(coop.comboWindow, 24) << "player 1's is shut in the air";
    const int left = coop.attackTicks;
    for (int i = 0; i < 100 && coop.jumping; ++i) ticks();
    EXPECT_EQ(coop.attackTicks, left);
    EXPECT_EQ(playing(coop), "jumpattack") << "it goes on";
    ticks(left);
    EXPECT_EQ(playing(coop), "idle");
}

TEST_F(CoopPlayers, AttacksAreNotQueuedAndCoolDown) {
    press(kPadA);
    EXPECT_EQ(playing(coop), "attack1");
    EXPECT_EQ(coop.attackCooldown, 2);
    EXPECT_TRUE(log.empty());
    coop.attackHasHit = true;
    ticks();
    press(kPadA);
    ticks(6);
    EXPECT_EQ(playing(coop), "idle");
    press(kPadA);
    EXPECT_EQ(playing(coop), "attack2") << "the window is open still";
    ticks(10);
    coop.attackCooldown = 9;
    press(kPadA);
    EXPECT_EQ(playing(coop), "idle") << "the window does not help";
    EXPECT_GT(coop.comboWindow, 0);
}

TEST_F(CoopPlayers, SpecialsNeedTheGround) {
    const generated::Command commands[] = {{"a", "freespecial2"}};
    model.commands = commands;
    model.commandCount = 1;
    coop.jumping = true;
    coop.altitude = -30;
    press(kPadA);
    EXPECT_EQ(playing(coop), "jumpattack") << "player 1's special would have come";
    ticks();
    stand(coop);
    coop.jumping = false;
    coop.attackTicks = coop.attackCooldown = 0;
    model.onDoAttackScript = "scripts/none.c";
    press(kPadA);
    EXPECT_EQ(playing(coop), "freespecial2");
    EXPECT_NE(warnings.find("coop-com "), warnings.npos);
}

TEST_F(CoopPlayers, AreThrownWithoutAFallOrATimeToRise) {
    model.riseInv = 1;
    model.onDeathScript = "scripts/none.c";
    const auto comeDown = [&](int damage) {
        coop.jumping = coop.knockdownAir = true;
        coop.altitude = -0.5F;
        coop.verticalVelocity = 2;
        coop.hitStun = 10;
        coop.landingDamage = damage;
        ticks();
    };
    comeDown(0);
    EXPECT_FALSE(coop.jumping);
    EXPECT_FALSE(coop.knockdownAir);
    EXPECT_EQ(coop.invincibleTicks, 60);
    EXPECT_EQ(playing(coop), "idle") << "player 1 would rise";
    hold({}, 0, kPadRight);
    ticks(9);
    EXPECT_EQ(coop.worldX, 150) << "the stun runs out on the ground";
    EXPECT_EQ(coop.hitStun, 0);
    ticks();
    EXPECT_EQ(coop.worldX, 153);

    comeDown(1000);
    EXPECT_FALSE(coop.alive);
    EXPECT_NE(warnings.find("coop-ondeath "), warnings.npos);
    EXPECT_EQ(playing(coop), "death");
    const std::size_t frame = coop.animation.frameIndex();
    ticks();
    EXPECT_EQ(coop.animation.frameIndex(), frame + 1) << "the dead play their animation";
}

TEST_F(CoopPlayers, ComeBackFromAHoleSideBySide) {
    addCoop(3);
    makeHole();
    world.coop[1].health = 5;
    ticks();
    EXPECT_EQ(world.coop[0].worldX, 30 + 18);
    EXPECT_EQ(world.coop[1].worldX, 30 + 36) << "by their place, not their slot";
    EXPECT_EQ(world.coop[1].z, 220 + 14);
    EXPECT_EQ(world.coop[1].health, 1);
}

TEST_F(CoopPlayers, MoveByTheirScriptsInEveryState) {
    coop.scriptVelocityX = player.scriptVelocityX = 2;
    coop.attackTicks = player.attackTicks = 3;
    ticks();
    EXPECT_EQ(coop.worldX, 152);
    EXPECT_EQ(player.worldX, 150) << "player 1 only while it walks";
}

struct Joins : PlayerTrial {
    bool join(int slot) {
        bool joined = false;
        quietly([&] { joined = joinPlayerSlot(tick, slot); });
        return joined;
    }
};

TEST_F(Joins, TheNextInLineComesIn) {
    folder.write("data/scripts/join2.c", "void main(){ setglobalvar(\"who\", 2); }");
    folder.write("data/scripts/joinall.c", "void main(){ setglobalvar(\"all\", 1); }");
    scripts.open(folder.path(), folder.path() / "data", nullptr);
    EXPECT_FALSE(join(2)) << "P3 before P2";
    EXPECT_FALSE(join(0));
    EXPECT_FALSE(join(4));
    world.stage.noJoin = true;
    EXPECT_FALSE(join(1));
    world.stage.noJoin = false;
    config.maxPlayers = 1;
    EXPECT_FALSE(join(1));
    config.maxPlayers = 4;
    stage.credits = 3;
    stage.lives = 0;
    world.slots[1].selectIndex = 99;
    EXPECT_TRUE(join(1));
    EXPECT_EQ(log, "Player 2 joined in progress model=Mate\n") << "the last that can be selected";
    ASSERT_EQ(world.coop.size(), 1U);
    const RuntimeCoopPlayer& coop = world.coop[0];
    EXPECT_EQ(coop.handle, 2U);
    EXPECT_EQ(coop.gamepadId, 1);
    EXPECT_EQ(coop.paletteMap, 1);
    EXPECT_EQ(coop.livesRemaining, 1);
    EXPECT_EQ(coop.creditsRemaining, 3);
    EXPECT_EQ(coop.scriptCtx.local.at("playerindex"), ScriptValue(1.0));
    EXPECT_EQ(global("who") + global("all"), "21");
    EXPECT_TRUE(world.slots[1].joined);
    EXPECT_FALSE(join(1));

    // P4 came at the start: P3, the next in line, would not follow it.
    world.slots[3].joined = true;
    world.coop.push_back(world.coop.back());
    EXPECT_FALSE(join(3));
    EXPECT_FALSE(join(2));
}

TEST_F(Joins, APressOnItsPadIsEnough) {
    const auto pressed = [&](unsigned first, unsigned others) {
        hold({}, first, others);
        input = nextInput({}, next);
        bool joined = false;
        quietly([&] { joined = updateInProgressJoins(tick); });
        return joined;
    };
    EXPECT_FALSE(pressed(kPadA, 0)) << "player 1's";
    EXPECT_FALSE(pressed(0, kPadB));
    config.gamepad = false;
    EXPECT_FALSE(pressed(0, kPadStart));
    config.gamepad = true;
    drive = PlayerDrive::Nobody;
    EXPECT_FALSE(pressed(0, kPadStart));
    drive = PlayerDrive::Devices;
    EXPECT_TRUE(pressed(0, kPadStart));
    EXPECT_EQ(world.coop.size(), 1U) << "one at a time";
    EXPECT_TRUE(pressed(0, kPadA));
    EXPECT_TRUE(pressed(0, kPadA));
    EXPECT_FALSE(pressed(0, kPadA));
    EXPECT_EQ(world.coop.size(), 3U);
}

}  // namespace
}  // namespace port
