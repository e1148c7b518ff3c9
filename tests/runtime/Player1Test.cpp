// What player 1 does, and how that differs from what co-op players do.

#include "Player1.hpp"

#include "Grabs.hpp"
#include "Player1Moves.hpp"
#include "PlayerTrial.hpp"

namespace port {
namespace {

struct Player1Moves : PlayerTrial {
    RuntimeEntity& addEnemy(float x) {
        RuntimeEntity& enemy = addEntity("robot");
        enemy.worldX = x;
        enemy.z = 200;
        updateRoster(world);
        return enemy;
    }
    // Until the player stands again; the highest altitude on the way.
    float fly() {
        float highest = 0;
        for (int i = 0; i < 200 && player.altitude < 0; ++i) {
            ticks();
            highest = std::min(highest, player.altitude);
        }
        return highest;
    }
};

TEST_F(Player1Moves, WalksAndRunsWithinTheStage) {
    hold({config.keyRight, config.keyDown});
    ticks(2);
    EXPECT_EQ(player.worldX, 156);
    EXPECT_EQ(player.z, 206) << "as fast across as along";
    EXPECT_EQ(playing(player), "walk");
    EXPECT_EQ(player.scriptCtx.local.at("movex"), ScriptValue(3.0));
    hold({config.keyRight, config.keyRun});
    ticks();
    EXPECT_NEAR(player.worldX, 156 + 3 * 1.65, 0.001);
    EXPECT_EQ(playing(player), "run");
    model.onBlockSScript = model.onBlockZScript = "scripts/none.c";
    player.worldX = 998;
    player.z = 299;
    hold({config.keyRight, config.keyDown});
    world.camera.x = 100;
    ticks();
    EXPECT_EQ(player.worldX, 999) << "the edge of the screen does not hold player 1";
    EXPECT_EQ(player.z, 299 + 3) << "the model is not subject to the depth";
    EXPECT_EQ(player.scriptCtx.local.at("plane"), ScriptValue(0.0));
    model.subjectToMaxZ = true;
    ticks();
    EXPECT_EQ(player.z, 300);
    EXPECT_EQ(player.scriptCtx.local.at("plane"), ScriptValue(1.0));
    hold({});
    ticks();
    EXPECT_EQ(playing(player), "idle");
}

TEST_F(Player1Moves, DashesForAWhileWhereverItFaces) {
    model.speed = 1;
    press({config.keyDash});
    EXPECT_EQ(log, "Player dash facing=1 ticks=12\n");
    EXPECT_EQ(player.worldX, 156);
    ticks(11);
    EXPECT_EQ(player.worldX, 150 + 12 * 6);
    ticks();
    EXPECT_EQ(player.worldX, 150 + 12 * 6);
}

TEST_F(Player1Moves, JumpsForwardAlsoFromAStandstill) {
    model.noMove = true;
    config.gravity = 0.5F;
    press({config.keyJump});
    EXPECT_EQ(log, "Player jump height=4 vx=3\n");
    EXPECT_TRUE(player.jumping) << "also a model that cannot walk";
    EXPECT_EQ(player.worldX, 153);
    EXPECT_NEAR(player.altitude, -4.1F, 0.001);
    EXPECT_EQ(player.verticalVelocity, -3.5F) << "by the settings' gravity, unlike an entity";
    ticks(9);
    EXPECT_EQ(player.worldX, 180);
    fly();
    EXPECT_EQ(log, "Player landed\n");
    EXPECT_FALSE(player.jumping);
    EXPECT_EQ(player.jumpVelocityX, 0);
    EXPECT_EQ(playing(player), "land");

    model.jumpHeight = 0;
    quietly([&] { startPlayerJump(tick); });
    EXPECT_EQ(player.verticalVelocity, -1);
    fly();
    model.runSpeed = 5;
    model.runJumpLength = 2;
    model.runJumpHeight = 7;
    model.runLand = true;
    quietly([&] { startPlayerJump(tick, true); });
    EXPECT_EQ(log, "Player jump height=7 vx=10 run\n");
    hold({config.keyRight});
    fly();
    EXPECT_GT(player.dashTicks, 0) << "it runs on";
}

TEST_F(Player1Moves, SteersInTheAirToTheRightInEitherDirection) {
    model.jumpMoveX = 2;
    model.jumpMoveZ = 1;
    press({config.keyJump});
    hold({config.keyLeft, config.keyUp});
    ticks();
    EXPECT_NEAR(player.jumpVelocityX, 3.1F, 0.001) << "facing follows dx";
    EXPECT_NEAR(player.jumpVelocityZ, -0.08F, 0.001);
}

TEST_F(Player1Moves, ALandFrameTakesTimeToRecover) {
    animation("jump").landFrame = 2;
    animation("jump").loop = false;
    for (generated::Frame& frame : frames[3]) frame.delay = 40;
    press({config.keyJump});
    fly();
    EXPECT_EQ(player.animation.frameIndex(), 2U);
    EXPECT_EQ(player.recoveryTicks, 4 * 40 + 1);
}

TEST_F(Player1Moves, FallsRecoversAndIsSafeAfterwards) {
    model.riseInv = 2;
    model.walkoffMoveX = 2;
    player.altitude = -20;
    player.verticalVelocity = -1;
    player.fallTicks = 3;
    hold({config.keyRight});
    ticks();
    EXPECT_EQ(player.worldX, 150) << "who is thrown does not steer";
    ticks(2);
    EXPECT_EQ(player.fallTicks, 0);
    ticks();
    EXPECT_NEAR(player.worldX, 150 + 3 * 0.7, 0.001);
    fly();
    EXPECT_EQ(player.recoveryTicks, 18);
    EXPECT_EQ(playing(player), "rise");
    ticks(18);
    EXPECT_EQ(player.recoveryTicks, 0);
    EXPECT_EQ(player.invincibleTicks, 120);
    EXPECT_EQ(playing(player), "idle");
}

TEST_F(Player1Moves, ALandingCanKill) {
    player.altitude = -0.05F;
    player.verticalVelocity = 1;
    player.fallTicks = 3;
    player.health = 5;
    player.landingDamage = 5;
    ticks();
    EXPECT_FALSE(player.alive);
    EXPECT_EQ(playing(player), "death");
    EXPECT_EQ(log, "GAME OVER\n");
    EXPECT_EQ(player.recoveryTicks, 0);
    EXPECT_EQ(player.landingType, -1);
    ticks(3);
    EXPECT_EQ(player.animation.tick(), 0);
    EXPECT_EQ(player.animation.frameIndex(), 0U) << "unlike a co-op player, it lies still";
}

TEST_F(Player1Moves, AHoleHurtsButNeverKills) {
    makeHole();
    player.health = 5;
    ticks();
    EXPECT_EQ(player.health, 1);
    EXPECT_EQ(player.worldX, 30);
    EXPECT_EQ(player.z, 220);
    EXPECT_EQ(log, "Hole reset, hp=1\n");
}

TEST_F(Player1Moves, ChainsAttacksThatHit) {
    press({config.keyAttack});
    EXPECT_EQ(log, "Player combo attack 1 chain=0 attack1 facing=1\n");
    EXPECT_EQ(player.attackTicks, 6) << "six frames, one tick gone";
    EXPECT_EQ(player.comboWindow, 23);
    player.attackHasHit = true;
    ticks();
    press({config.keyAttack});
    EXPECT_TRUE(player.queuedAttack);
    ticks(4);
    EXPECT_FALSE(player.queuedAttack);
    EXPECT_EQ(playing(player), "attack2");
    EXPECT_EQ(player.attackId, 2U);
    press({config.keyAttack});
    ticks(6);
    EXPECT_EQ(playing(player), "attack1") << "one that misses begins anew";
    ticks(7);
    EXPECT_EQ(playing(player), "idle");
    ticks(30);
    EXPECT_EQ(player.comboStep, 0);
    EXPECT_EQ(player.attackCooldown, 0);
}

TEST_F(Player1Moves, AnAttackLeapsInItsFrame) {
    animation("attack1").jumpFrame = 2;
    animation("attack1").jumpVelocityX = 2;
    animation("attack1").jumpVelocityY = -5;
    press({config.keyAttack});
    ticks();
    EXPECT_FALSE(player.jumping);
    ticks();
    EXPECT_EQ(log, "jumpframe triggered y=-5 x=2 z=0\n");
    EXPECT_EQ(player.verticalVelocity, -5);
    ticks();
    EXPECT_EQ(player.worldX, 152);
    fly();
    EXPECT_EQ(player.attackTicks, 0) << "landing ends it";
}

TEST_F(Player1Moves, CommandsStandForAllOtherActions) {
    const generated::Command commands[] = {{"j", "freespecial2"}};
    model.commands = commands;
    model.commandCount = 1;
    model.onDoAttackScript = "scripts/none.c";
    player.comboWindow = 20;
    press({config.keyJump, config.keyDash});
    EXPECT_EQ(playing(player), "freespecial2");
    EXPECT_FALSE(player.jumping);
    EXPECT_EQ(player.dashTicks, 0);
    EXPECT_EQ(player.comboWindow, 0);
    EXPECT_EQ(player.attackId, 1U);
    EXPECT_EQ(player.scriptCtx.local.at("attack"), ScriptValue("freespecial2"));
    EXPECT_NE(warnings.find("player-com "), warnings.npos);

    const generated::Cancel cancels[] = {{0, 9, 1, "a", "attack2"}};
    animation("freespecial2").cancels = cancels;
    animation("freespecial2").cancelCount = 1;
    press({config.keyAttack});
    EXPECT_EQ(playing(player), "freespecial2") << "without a hit";
    player.attackHits = 1;
    ticks();
    press({config.keyAttack, config.keyDash});
    EXPECT_EQ(player.attackId, 2U);
    EXPECT_EQ(player.dashTicks, 12) << "a cancel leaves the dash";
}

TEST_F(Player1Moves, AMoveThatCostsTooMuchLeavesThePressToOthers) {
    const generated::Command commands[] = {{"j", "freespecial2"}};
    model.commands = commands;
    model.commandCount = 1;
    animation("freespecial2").energyCost = 1000;
    press({config.keyJump});
    EXPECT_TRUE(player.jumping);
}

TEST_F(Player1Moves, AChargedAttackStrikesAtTheRelease) {
    generated::Animation charge = animation("attack2");
    charge.name = "chargeattack";
    charge.chargeTime = 10;
    animations[14] = charge;
    hold({config.keyAttack});
    ticks(6);
    EXPECT_EQ(playing(player), "idle");
    hold({});
    ticks();
    EXPECT_EQ(playing(player), "chargeattack");
    ticks(40);
    hold({config.keyAttack});
    ticks(5);
    hold({});
    ticks();
    EXPECT_EQ(playing(player), "attack1") << "too short for it";
}

TEST_F(Player1Moves, HoldsBlockInsteadOfDashing) {
    model.holdBlock = true;
    hold({config.keyDash});
    ticks(2);
    EXPECT_EQ(player.blockState, 1);
    EXPECT_EQ(player.dashTicks, 0);
    hold({});
    ticks();
    EXPECT_EQ(player.blockState, 0);
}

TEST_F(Player1Moves, GrabsTheNearestAndThrowsIt) {
    RuntimeEntity& far = addEnemy(175);
    addEnemy(130);
    RuntimeEntity& near = addEnemy(130);
    RuntimeEntity& high = addEnemy(151);
    high.altitude = -0.2F;
    press({config.keyGrab});
    EXPECT_EQ(player.grabbedEntity, near.handle) << "of equals the later";
    EXPECT_EQ(log, "Grabbed enemy Robot\n");
    EXPECT_EQ(player.facing, -1);
    EXPECT_EQ(near.worldX, 136);
    EXPECT_TRUE(near.grabbed);
    ticks(300);
    EXPECT_TRUE(near.grabbed) << "for as long as it likes";
    hold({config.keyLeft, config.keyJump});
    ticks();
    EXPECT_FALSE(player.jumping);
    EXPECT_EQ(player.worldX, 150);
    press({config.keyThrow});
    EXPECT_FALSE(near.grabbed);
    EXPECT_EQ(player.grabbedEntity, kNobody);
    EXPECT_EQ(near.health, near.maxHealth - 24);
    EXPECT_EQ(near.worldX, 150 - 18 - 12) << "and as far as a hit drives it";
    EXPECT_EQ(near.verticalVelocity, -4);
    EXPECT_TRUE(log.ends_with("Throw executed damage=24 distance=18 height=4\n")) << log;
    EXPECT_FALSE(far.grabbed);
}

}  // namespace
}  // namespace port
