// Who blocks what, and what it costs.

#include "Blocking.hpp"

#include "FightTrial.hpp"

namespace port {
namespace {

struct Blocking : FightTrial {
    Cast& robot = cast("enemy", {"idle", "block", "guardbreak", "blockpain3"});
    Cast& source = cast("enemy", {"idle"});
    generated::Frame& frame = arm(source, "attack1");
    RuntimeEntity& enemy = enter(robot, 200, -1);
    RuntimeEntity& other = enter(source, 120, 1);
    RuntimeCoopPlayer& mate = join(100, 1);

    // By an attack of player 1, who stands where the entity looks.
    bool entityBlocks(ActorHandle attacker = kPlayer1Handle) {
        enemy.alive = true;
        return tryBlockEntity(tick, enemy, frame, attacker);
    }
    bool playerBlocks(ActorHandle attacker) {
        player.alive = true;
        return tryBlockPlayer(tick, player, frame, attacker);
    }
};

TEST_F(Blocking, AnEntityBlocksByWillDirectionAndLuck) {
    EXPECT_FALSE(entityBlocks()) << "without odds";
    enemy.blockState = BS_NATIVE | BS_IGNORE_CHANCE;
    EXPECT_TRUE(entityBlocks());
    enemy.facing = 1;
    EXPECT_FALSE(entityBlocks());
    EXPECT_FALSE(entityBlocks(kNobody)) << "nobody stands nowhere";
    enemy.worldX = 99;
    EXPECT_TRUE(entityBlocks(mate.handle)) << "also before co-op players";
    EXPECT_TRUE(entityBlocks(other.handle));
    enemy.worldX = 200;
    enemy.blockState |= BS_IGNORE_DIR;
    EXPECT_TRUE(entityBlocks());
    enemy.blockState = BS_NATIVE | BS_IGNORE_CHANCE;
    robot.row.blockBack = true;
    EXPECT_TRUE(entityBlocks());

    std::mt19937 same(0xB10C2026);
    EXPECT_EQ(world.blockRandom, same) << "no number was drawn so far";
    enemy.blockState = 0;
    for (const int odds : {1, 1, 1, 1, 1, 1, 6, 6, 6, 6, 0}) {
        robot.row.blockOdds = odds;
        const bool lucky = (same() & static_cast<unsigned>(odds)) == 0;
        EXPECT_EQ(entityBlocks(), lucky) << "a mask, not a range: " << odds;
    }
    enemy.blockState = BS_ACTIVE;
    robot.row.blockOdds = 0x7fffffff;
    EXPECT_TRUE(entityBlocks());
    EXPECT_EQ(world.blockRandom, same) << "who must block needs no luck";
}

TEST_F(Blocking, SomeAttacksGoThrough) {
    enemy.blockState = BS_ACTIVE;
    defend(robot, {defense("all")});
    frame.attack.penetration = 2;
    EXPECT_FALSE(entityBlocks());
    robot.defenses[0].blockPower = 2;
    EXPECT_FALSE(entityBlocks());
    robot.defenses[0].blockPower = 3;
    EXPECT_TRUE(entityBlocks());
    robot.row.blockThreshold = 6;
    EXPECT_FALSE(entityBlocks());
    robot.defenses[0].blockThreshold = 5;
    EXPECT_TRUE(entityBlocks()) << "10 of damage do not reach 6 + 5";
    robot.defenses[0].blockThreshold = 4;
    EXPECT_FALSE(entityBlocks());
    robot.row.blockThreshold = 2'000'000'000;
    robot.defenses[0].blockThreshold = 2'000'000'000;
    EXPECT_TRUE(entityBlocks());
    frame.attack.penetration = 9;
    enemy.blockState |= BS_IGNORE_ELIG;
    EXPECT_TRUE(entityBlocks());
    robot.row.animationCount = 0;
    EXPECT_FALSE(entityBlocks()) << "nothing to show";
}

TEST_F(Blocking, ABlockCostsGuardAndHealth) {
    enemy.blockState = BS_ACTIVE;
    robot.row.guardPoints = 20;
    robot.row.globalBlockRatio = true;
    enemy.guardPoints = 5;
    frame.attack.guardCost = 7;
    frame.attack.damage = 40;
    frame.attack.type = 3;
    robot.row.didBlockScript =
        hear("block.c", "getlocalvar(\"damage\") + getlocalvar(\"pauseadd\")");
    frame.attack.pauseTime = 4;
    robot.row.blockPain = 40;
    EXPECT_TRUE(entityBlocks());
    EXPECT_EQ(enemy.guardPoints, 0);
    EXPECT_EQ(enemy.health, 90);
    EXPECT_EQ(running(enemy), "blockpain3");
    EXPECT_EQ(enemy.hitStun, 4);
    EXPECT_TRUE(enemy.blocking);
    EXPECT_EQ(global("heard"), "44 ");
    EXPECT_FALSE(entityBlocks());
    EXPECT_EQ(running(enemy), "guardbreak");
    enemy.blockState |= BS_IGNORE_GUARD | BS_IGNORE_BLOCKPAIN;
    enemy.health = 10;
    frame.attack.pauseTime = 0;
    EXPECT_TRUE(entityBlocks());
    EXPECT_EQ(running(enemy), "block");
    EXPECT_EQ(enemy.hitStun, 2);
    EXPECT_FALSE(enemy.alive) << "a block can be the last";
    EXPECT_EQ(events.sounds.size(), 1U);
}

TEST_F(Blocking, PlayersHoldTheirBlockAndHaveRulesOfTheirOwn) {
    EXPECT_FALSE(playerBlocks(other.handle));
    hero->animations[1].name = "BlockHigh";
    play(player, "blockhigh");
    EXPECT_TRUE(playerBlocks(other.handle)) << "the animation is enough";
    play(player, "idle");
    player.blockState = BS_ACTIVE;
    hero->row.blockOdds = -1;
    EXPECT_TRUE(playerBlocks(other.handle)) << "no odds, no luck";
    mate.worldX = 150;
    EXPECT_FALSE(playerBlocks(mate.handle)) << "a fellow player stands nowhere";
    player.blockState |= BS_IGNORE_DIR;
    EXPECT_TRUE(playerBlocks(mate.handle));
    EXPECT_EQ(world.blockRandom, std::mt19937(0xB10C2026));

    hero->row.didBlockScript = hear("block.c", "getlocalvar(\"guardcost\") + getlocalvar(\"tag\")");
    frame.attack.guardCost = 2;
    frame.attack.tag = 5;
    mate.blockState = BS_ACTIVE;
    mate.worldX = 100;
    EXPECT_TRUE(playerBlocks(other.handle));
    EXPECT_TRUE(tryBlockPlayer(tick, mate, frame, other.handle));
    EXPECT_EQ(global("heard"), "7 2 ") << "co-op players are told less";
    EXPECT_EQ(mate.hitStun, 2);

    animate(*hero, "guardbreak");
    play(player, "idle");
    hero->row.guardPoints = 10;
    player.guardPoints = 0;
    EXPECT_FALSE(playerBlocks(other.handle));
    EXPECT_EQ(running(player), "idle") << "a guard that is down does not break";
    player.guardPoints = 10;
    hero->row.globalBlockRatio = true;
    hero->row.onDeathScript = hear("died.c", "\"died\"");
    player.health = 1;
    EXPECT_TRUE(playerBlocks(other.handle));
    EXPECT_FALSE(player.alive);
    EXPECT_EQ(global("heard"), "7 2 7 ") << "no death script";
}

}  // namespace
}  // namespace port
