// Who hits whom, in which order.

#include "Combat.hpp"

#include <cmath>
#include <random>

#include "Crowd.hpp"
#include "FightTrial.hpp"
#include "Flash.hpp"
#include "ModelFacts.hpp"

namespace port {
namespace {

struct CombatTrial : FightTrial {
    Cast& robot = cast("enemy", {"idle", "pain", "fall", "death"});

    void fight() {
        quietly([&] { resolveCombat(tick); });
    }
    // Player 1 strikes with a new attack.
    void punch() {
        ++player.attackId;
        attack(player, "attack1");
        fight();
    }
};

TEST_F(CombatTrial, BoxesTurnWithTheirActor) {
    generated::Frame frame = arm(robot, "attack1");
    frame.offsetX = 3;
    frame.offsetY = 5;
    const RectF right = attackFor(&frame, 100, 200, 1);
    const RectF left = attackFor(&frame, 100, 200, -1);
    EXPECT_EQ(right.x, 97);
    EXPECT_EQ(left.x + left.w, 103);
    EXPECT_EQ(right.y, 200 - 5 - 40);
    EXPECT_TRUE(overlaps(right, left));
    EXPECT_FALSE(overlaps({0, 0, 10, 10}, {10, 0, 10, 10})) << "edges only touch";
    EXPECT_FALSE(overlaps({0, 0, -20, 10}, {-15, 0, 10, 10}));
    EXPECT_EQ(bboxFor(nullptr, 100, 200).y, 172);
    frame.hasAttack = false;
    EXPECT_EQ(attackFor(&frame, 100, 200).w, 0);
    // Numbers that no int could add up.
    frame.bbox = {2'000'000'000, -2'000'000'000, 2'000'000'000, 2'000'000'000};
    frame.offsetX = -2'000'000'000;
    EXPECT_GT(bboxFor(&frame, 100, 200, 1).x, 3.9e9F);
}

TEST_F(CombatTrial, AnAttackHitsEachOfThoseItTouchesOnce) {
    arm(*hero, "attack1").hitFlash = "puff";
    hero->row.didHitScript = hear("hit.c", "getlocalvar(\"damage\") + getlocalvar(\"blocked\")");
    RuntimeEntity& near = enter(robot, 110);
    RuntimeEntity& far = enter(robot, 120);
    RuntimeEntity& grabbed = enter(robot, 115);
    grabbed.grabbed = true;
    RuntimeEntity& item = enter(cast("item", {"idle"}), 115);
    RuntimeEntity& friendly = enter(cast("npc", {"idle"}), 115);
    RuntimeEntity& behind = enter(robot, 80);
    punch();
    EXPECT_EQ(near.health, 90);
    EXPECT_EQ(far.health, 90);
    EXPECT_EQ(grabbed.health + item.health + friendly.health + behind.health, 400);
    EXPECT_EQ(player.attackHits, 2);
    EXPECT_EQ(events.sounds.size(), 2U);
    EXPECT_EQ(world.pendingChildSpawns.size(), 2U) << "flashes";
    EXPECT_TRUE(player.attackHasHit && player.energyPending.hit);
    EXPECT_EQ(global("heard"), "10 10 ");
    EXPECT_EQ(player.scriptCtx.local.at("damagetaker"), ScriptValue(far.handle));
    EXPECT_EQ(player.opponent, far.handle);
    EXPECT_EQ(world.lastHit.x, world.pendingChildSpawns[1].worldX) << "where the flash is";
    EXPECT_EQ(world.lastHit.altitude, world.pendingChildSpawns[1].altitude);
    EXPECT_EQ(world.lastHit.z, far.z);
    near.worldX = far.worldX = 110;
    fight();
    EXPECT_EQ(near.health, 90) << "the same attack";
    near.worldX = far.worldX = 110;
    hero->animations.back().attackOne = true;
    punch();
    EXPECT_EQ(near.health, 80);
    EXPECT_EQ(far.health, 90) << "the first in the order of coming";
    player.attackTicks = 0;
    ++player.attackId;
    fight();
    EXPECT_EQ(far.health, 90);
}

TEST_F(CombatTrial, OnlyPlayer1IsHeldToTheJuggle) {
    arm(*hero, "attack1");
    RuntimeCoopPlayer& mate = join(100);
    RuntimeEntity& enemy = enter(robot, 110);
    const auto fly = [&] {
        enemy.worldX = 110;
        enemy.fallTicks = 5;
    };
    enemy.juggleRemaining = 1;
    fly();
    punch();
    EXPECT_EQ(enemy.health, 90);
    EXPECT_EQ(enemy.juggleRemaining, 0);
    fly();
    punch();
    EXPECT_EQ(enemy.health, 90);
    player.attackTicks = 0;
    fly();
    mate.attackId = 1'000'007;
    attack(mate, "attack1");
    hero->row.didHitScript =
        hear("hit.c", "getlocalvar(\"damage\") + \"/\" + getlocalvar(\"blocked\")");
    fight();
    EXPECT_EQ(enemy.health, 80);
    EXPECT_EQ(enemy.lastPlayerAttackId, 2'000'007U) << "the same memory, a range for each player";
    EXPECT_EQ(global("heard"), "/0 ") << "co-op players are told less";
    fly();
    player.worldX = 500;
    fight();
    EXPECT_EQ(enemy.health, 80);
}

TEST_F(CombatTrial, AnEnemyHitsOnePreferringPlayer1) {
    arm(robot, "attack1");
    robot.row.canDamageMask = kTypePlayer | kTypeEnemy;
    robot.row.didHitScript = hear("hit.c", "getlocalvar(\"damagetaker\")");
    player.worldX = 80;
    RuntimeCoopPlayer& mate = join(95);
    RuntimeEntity& enemy = enter(robot, 100);
    RuntimeEntity& other = enter(robot, 90, 1);
    const auto swing = [&] {
        player.hitStun = mate.hitStun = 0;
        play(player, "idle");
        attack(enemy, "attack1");
        fight();
        fight();
        return std::to_string(100 - player.health) + " " + std::to_string(100 - mate.health) + " " +
               std::to_string(100 - other.health);
    };
    player.blockState = 1;
    EXPECT_EQ(swing(), "0 0 0") << "a blocked hit is a hit";
    EXPECT_EQ(enemy.attackHits, 1);
    player.blockState = 0;
    EXPECT_EQ(swing(), "10 0 0");
    player.worldX = 500;
    EXPECT_EQ(swing(), "10 10 0");
    mate.alive = false;
    EXPECT_EQ(swing(), "10 10 10");
    other.worldX = 90;
    robot.row.canDamageMask = kTypePlayer;
    EXPECT_EQ(swing(), "10 10 10");
    robot.row.type = "npc";
    player.worldX = 80;
    EXPECT_EQ(swing(), "10 10 10") << "only enemies strike";
}

TEST_F(CombatTrial, NoAttackMeansItemsAndOnlyEnemiesAreHostileByNature) {
    arm(*hero, "attack1");
    animate(*hero, "follow1");
    hero->animations[5].followAnim = 1;
    hero->animations[5].followCond = 2;
    RuntimeEntity& barrel = enter(cast("obstacle", {"idle"}), 110);
    punch();
    EXPECT_EQ(barrel.health, 90);
    EXPECT_EQ(running(player), "attack1");
    Cast& friendly = cast("npc", {"idle"});
    RuntimeEntity& item = enter(cast("item", {"idle"}), 90);
    RuntimeEntity& held = enter(friendly, 90);
    RuntimeEntity& other = enter(friendly, 90);
    held.grabbed = true;
    hero->row.canDamageMask = kTypeItem | kTypeNpc;
    stand(player, 80, 1);
    punch();
    EXPECT_EQ(item.health + held.health, 200);
    EXPECT_EQ(other.health, 90);

    arm(robot, "attack1");
    animate(robot, "follow1");
    robot.animations[4].followAnim = 1;
    robot.animations[4].followCond = 2;
    robot.row.canDamageMask = kTypeItem | kTypeNpc;
    player.worldX = 500;
    RuntimeEntity& enemy = enter(robot, 100);
    for (const bool grabbed : {true, false}) {
        other.worldX = 90;
        enemy.grabbed = grabbed;
        attack(enemy, "attack1");
        fight();
        EXPECT_EQ(item.health + held.health, 200);
        EXPECT_EQ(other.health, grabbed ? 90 : 80);
        EXPECT_EQ(running(enemy), "attack1");
    }
}

TEST_F(CombatTrial, CountersAnswerAndMovesFollow) {
    generated::Frame& blow = arm(*hero, "attack1");
    blow.attack.type = 3;
    robot.row.takeDamageScript =
        hear("take.c", "getlocalvar(\"attacker\") + \"/\" + getlocalvar(\"attacktype\")");
    arm(*hero, "follow1");
    animate(robot, "follow2");
    hero->animations[5].followAnim = 1;
    hero->animations[5].followCond = 3;
    robot.animations[0].followAnim = 2;
    robot.animations[0].counterStart = 0;
    robot.animations[0].counterEnd = 3;
    robot.animations[0].counterCond = 1;
    robot.animations[0].counterTakesDamage = true;
    RuntimeEntity& enemy = enter(robot, 110);
    RuntimeEntity& second = enter(robot, 112);
    enemy.hitStun = enemy.fallTicks = enemy.recoveryTicks = 3;
    blow.knockdown = true;
    const unsigned before = player.attackId;
    player.comboWindow = 9;
    player.queuedAttack = true;
    punch();
    EXPECT_EQ(enemy.health, 90);
    EXPECT_EQ(global("heard"), "1/3 ");
    EXPECT_EQ(running(enemy), "follow2");
    EXPECT_EQ(enemy.hitStun + enemy.fallTicks + enemy.recoveryTicks, 0) << "it is hurt, not felled";
    EXPECT_EQ(enemy.attackTicks, 6);
    EXPECT_EQ(enemy.attackCooldown, 2);
    EXPECT_EQ(running(player), "follow1");
    EXPECT_EQ(player.attackId, before + 2) << "what follows is another attack";
    EXPECT_EQ(player.attackHits + player.comboWindow, 0);
    EXPECT_FALSE(player.attackHasHit || player.queuedAttack);
    EXPECT_EQ(second.health, 100) << "it takes the place of the first";

    enemy.health = 5;
    enemy.worldX = 110;
    second.worldX = 400;
    play(enemy, "idle");
    punch();
    EXPECT_FALSE(enemy.alive);
    EXPECT_EQ(running(enemy), "fall") << "the dead counter nothing";
    EXPECT_EQ(running(player), "attack1") << "nothing follows a last blow here";
    robot.animations[0].counterCond = 4;
    hero->animations[5].followCond = 4;
    robot.row.noGrab = true;
    second.worldX = 110;
    second.health = 5;
    punch();
    EXPECT_EQ(second.health, 5) << "rage";
    EXPECT_EQ(running(second), "follow2");
    EXPECT_EQ(running(player), "attack1") << "not on whom nobody can grab";
}

TEST_F(CombatTrial, PlayersCounterToo) {
    arm(robot, "attack1");
    animate(*hero, "follow2");
    generated::Animation& stance = hero->animations[0];
    stance.followAnim = 2;
    stance.counterStart = stance.counterEnd = 0;
    stance.counterCond = 3;
    stance.counterTakesDamage = false;
    RuntimeEntity& enemy = enter(robot, 110);
    attack(enemy, "attack1");
    fight();
    EXPECT_EQ(running(player), "follow2");
    EXPECT_EQ(player.health, 100);
    EXPECT_EQ(player.attackId, 1U);
    stand(player, 100, -1);
    attack(enemy, "attack1");
    fight();
    EXPECT_EQ(running(player), "pain") << "not from behind";
}

TEST_F(CombatTrial, TheThrownHitTheirOwnKindOnceAFall) {
    arm(robot, "fall", 7).hitFlash = "puff";
    robot.animations.erase(robot.animations.begin() + 2);
    robot.row.animationCount = robot.animations.size();
    RuntimeEntity& thrown = enter(robot, 100, 1);
    RuntimeEntity& other = enter(robot, 110);
    RuntimeEntity& barrel = enter(cast("obstacle", {"idle"}), 110);
    RuntimeCoopPlayer& mate = join(105);
    play(thrown, "fall");
    thrown.landingMode = 1;
    fight();
    EXPECT_EQ(other.health, 100) << "on the ground";
    thrown.altitude = -1;
    fight();
    fight();
    EXPECT_EQ(other.health, 93);
    EXPECT_EQ(other.fallTicks, 28);
    EXPECT_EQ(world.pendingChildSpawns.size(), 1U) << "a flash";
    EXPECT_EQ(other.landingMode, 0) << "it hits nobody in turn";
    EXPECT_EQ(thrown.health + barrel.health + mate.health + player.health, 400);

    hero->frames[3].hasAttack = true;  // "fall"
    hero->frames[3].attack = robot.frames.back().attack;
    player.landingMode = 1;
    player.altitude = -1;
    play(player, "fall");
    fight();
    EXPECT_EQ(mate.health, 93);
    EXPECT_TRUE(mate.knockdownAir);
    EXPECT_EQ(player.health, 100);

    player.landingMode = 0;
    join(106);
    RuntimeCoopPlayer& falling = world.coop[0];
    falling.landingMode = 1;
    falling.worldX = 90;
    play(falling, "fall");
    fight();
    EXPECT_EQ(player.health, 93);
    EXPECT_EQ(world.coop[1].health, 93);
    EXPECT_EQ(falling.health, 93) << "but not itself";
    EXPECT_EQ(other.health, 93) << "nor entities";
}

TEST_F(CombatTrial, WhoeverTouchesRunsItsHook) {
    robot.row.onEntityCollisionScript =
        hear("touch.c", "getlocalvar(\"self\") + \">\" + getlocalvar(\"target\")");
    hero->row.onEntityCollisionScript = robot.row.onEntityCollisionScript;
    join(105);
    RuntimeEntity& enemy = enter(robot, 110);
    enter(robot, 300);
    enter(robot, 110).visible = false;
    fight();
    const std::string name = std::to_string(enemy.handle);
    EXPECT_EQ(global("heard"), name + ">1 1>" + name + " " + name + ">2 2>" + name + " ");
    EXPECT_EQ(player.scriptCtx.local.count("target") + player.scriptCtx.local.count("other"), 0U);
    EXPECT_EQ(player.scriptCtx.local.at("self"), ScriptValue(kPlayer1Handle));
    EXPECT_EQ(player.scriptCtx.other, kNobody);
}

TEST_F(CombatTrial, ProjectilesHitEachOnceAndFlyOn) {
    Cast& knife = cast("none", {"idle"});
    knife.row.removeConfig = 0;
    RuntimeProjectile thrown;
    thrown.model = &knife.row;
    thrown.ownerModel = &hero->row;
    thrown.animation.setAnimation(&knife.animations[0]);
    thrown.worldX = 110;
    thrown.facing = -1;
    RuntimeEntity& first = enter(robot, 110);
    RuntimeEntity& second = enter(robot, 112);
    RuntimeEntity& friendly = enter(cast("npc", {"idle"}), 112);
    world.projectiles.push_back(thrown);
    fight();
    EXPECT_EQ(first.health, 99) << "a body alone hurts a little";
    EXPECT_EQ(second.health, 99);
    EXPECT_EQ(first.worldX, 98);
    EXPECT_EQ(friendly.health + player.health, 200);
    EXPECT_NE(log.find("Projectile hit Robot\n"), log.npos);
    first.worldX = 110;
    fight();
    EXPECT_EQ(first.health, 99);

    arm(knife, "attack1", 20);
    knife.animations[1].attackOne = true;
    thrown.animation.setAnimation(&knife.animations[1]);
    thrown.fromPlayer = false;
    thrown.hitMask = kTypePlayer | kTypeNpc;
    thrown.worldX = 120;
    RuntimeCoopPlayer& mate = join(100);
    world.projectiles = {thrown};
    player.blockState = 1;
    friendly.worldX = 400;
    fight();
    EXPECT_EQ(player.health, 80) << "no block against it, and the mask alone decides";
    EXPECT_EQ(mate.health, 100) << "its attack is spent";
    EXPECT_EQ(first.health, 99);
    EXPECT_TRUE(world.projectiles[0].attackSpent && world.projectiles[0].alive);
    knife.row.removeConfig = 1;
    knife.animations[1].attackOne = false;
    thrown.hitTargets = {kPlayer1Handle};
    thrown.hitMask = 0;
    world.projectiles = {thrown};
    fight();
    EXPECT_EQ(mate.health, 80);
    EXPECT_FALSE(world.projectiles[0].alive);
    EXPECT_NE(log.find("Projectile hit coop player\n"), log.npos);
}

TEST_F(CombatTrial, AnExplosionHitsAllWhateverItsFlightHasSpent) {
    Cast& bomb = cast("projectile", {});
    arm(bomb, "idle", 5);
    arm(bomb, "attack2", 20);
    bomb.animations[0].attackOne = true;
    RuntimeProjectile thrown;
    thrown.model = &bomb.row;
    thrown.ownerModel = &hero->row;
    thrown.animation.setAnimation(&bomb.animations[0]);
    thrown.worldX = 95;
    thrown.bomb = true;
    thrown.hitMask = kTypeEnemy | kTypeProjectile;
    RuntimeEntity& twin = enter(bomb, 105);
    RuntimeEntity& first = enter(robot, 110);
    RuntimeEntity& second = enter(robot, 112);
    generated::Spawn worth{};
    worth.score = 40;
    second.spawn = &worth;
    second.health = 20;
    world.projectiles.push_back(thrown);
    fight();
    EXPECT_EQ(first.health, 95);
    EXPECT_EQ(second.health, 20) << "the contact sets it off";
    EXPECT_TRUE(world.projectiles[0].exploded && world.projectiles[0].attackSpent);
    first.worldX = 110;
    fight();
    EXPECT_EQ(first.health, 75) << "the explosion hits anew";
    EXPECT_EQ(second.health, 0);
    EXPECT_EQ(player.score, 40);
    const auto again = [&] {
        world.projectiles[0].hitTargets.clear();
        first.worldX = 110;
        first.hitStun = 0;
        fight();
        return first.hitStun > 0;
    };
    bomb.frames[1].attack.damage = -5;
    EXPECT_TRUE(again()) << "a hit that is not meant to hurt";
    EXPECT_EQ(first.health, 75);
    bomb.frames[1].hasAttack = false;
    EXPECT_FALSE(again()) << "the smoke of an explosion hits nobody";
    EXPECT_EQ(twin.health, 100) << "its like is left alone";
}

TEST_F(CombatTrial, AFlashStandsWhereTheyMet) {
    generated::Frame frame = arm(robot, "attack1");
    RuntimeEntity& target = enter(robot, 100, -1);
    generated::Character& row = robot.row;
    const RectF attack = {80, 150, 20, 20};
    const RectF body = {90, 160, 20, 40};
    const auto flash = [&](bool blocked) {
        world.pendingChildSpawns.clear();
        queueAttackFlash(world, frame, target, blocked, attack, body);
        return world.pendingChildSpawns.empty() ? std::string()
                                                : world.pendingChildSpawns[0].model->name;
    };
    frame.hitFlash = "puff";
    frame.blockFlash = "NONE";
    row.flashModel = "mate";
    row.blockFlashModel = "club";
    EXPECT_EQ(flash(false), "Puff");
    const PendingChildSpawn& seen = world.pendingChildSpawns[0];
    EXPECT_EQ(seen.worldX, 95);
    EXPECT_EQ(seen.z, 200);
    EXPECT_EQ(seen.altitude, 165 - 200);
    EXPECT_EQ(seen.facing, -1);
    EXPECT_EQ(seen.effectSpawnType, 9);
    EXPECT_EQ(flash(true), "Club");
    frame.hitFlash = "nobody";
    EXPECT_EQ(flash(false), "Mate");
    frame.hitFlash = "puff";
    row.noAttackFlash = true;
    EXPECT_EQ(flash(false), "Mate") << "the target's own only";
    frame.attack.noFlash = 1;
    EXPECT_EQ(flash(false), "");
}

// The tree against looking at everybody, while bodies move, die and come.
TEST_F(CombatTrial, TheCrowdTellsWhatLookingAtEachWould) {
    std::mt19937 random(7);
    const auto pick = [&](unsigned below) { return static_cast<float>(random() % below); };
    Cast& barrel = cast("obstacle", {"idle"});
    Cast& broken = cast("odd", {"idle"});
    broken.frames[0].bbox.w = -5;
    Crowd crowd(tick);
    for (int round = 0; round < 300; ++round) {
        if (round % 3 == 0) enter(round % 2 == 0 ? robot : barrel, pick(600));
        if (round % 50 == 0) enter(broken, pick(600));
        RuntimeEntity& moved = world.entities[random() % world.entities.size()];
        moved.worldX = round % 40 == 7 ? NAN : pick(600);
        moved.altitude = -pick(100);
        if (round % 20 == 0) moved.alive = false;
        crowd.changed(moved);
        const RectF box = {pick(600), 100 + pick(100), pick(80), pick(60)};
        const int types = round % 2 == 0 ? Crowd::kEverybody : kTypeObstacle;
        std::vector<ActorHandle> found;
        crowd.visitTouching(box, types, [&](RuntimeEntity& entity) {
            found.push_back(entity.handle);
            return true;
        });
        std::vector<ActorHandle> expected;
        for (const RuntimeEntity& entity : world.entities) {
            const bool wanted = types == Crowd::kEverybody || openborTypeBit(entity.model) == types;
            if (entity.alive && wanted && overlaps(bodyOf(entity), box)) {
                expected.push_back(entity.handle);
            }
        }
        ASSERT_EQ(found, expected) << "round " << round;
    }
}

}  // namespace
}  // namespace port
