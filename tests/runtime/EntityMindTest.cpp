// Whom entities mind, and how they move.

#include "EntityRules.hpp"
#include "EntityTrial.hpp"
#include "ModelFacts.hpp"

namespace port {
namespace {

struct EntityMind : EntityTrial {
    generated::Character& model = makeEnemy();
    RuntimeEntity& enemy = add(model, 700);

    EntityMind() { player.model = findCharacter("hero"); }
    // How far it gets in a tick from where it stood at first.
    GroundStep walk() {
        enemy.worldX = 700;
        enemy.z = 200;
        turn();
        return {enemy.worldX - 700, enemy.z - 200};
    }
};

TEST_F(EntityMind, WalksTowardItsTargetAsFastAsItIsEager) {
    player.z = 300;
    model.speed = 0;
    EXPECT_EQ(walk().x, -0.5F) << "the slowest step";
    EXPECT_EQ(enemy.facing, -1);
    EXPECT_EQ(playing(enemy), "walk");
    model.speed = 4;
    EXPECT_NEAR(walk().x, -2.2, 1e-4);
    EXPECT_EQ(walk().z, 1.5F);
    model.aggression = 500;
    EXPECT_NEAR(walk().x, -4 * (0.55 + 100.0 / 220), 1e-4);
    player.z = 202;
    player.worldX = 600;
    EXPECT_EQ(walk().z, 0) << "near enough";
    model.noFlip = true;
    player.worldX = 900;
    enemy.facing = -1;
    EXPECT_GT(walk().x, 0);
    EXPECT_EQ(enemy.facing, -1);
    model.noMove = true;
    EXPECT_EQ(walk().x, 0);
    model.noMove = false;
    config.enemyAI = false;
    EXPECT_EQ(walk().x, 0);
}

TEST_F(EntityMind, MindsOnlyWhomItSeesAndHates) {
    model.speed = 10;
    generated::Character hidden = *player.model;
    hidden.stealth = 3;
    player.model = &hidden;
    EXPECT_EQ(walk().x, 0) << "stealthier than it perceives";
    model.perception = 3;
    EXPECT_LT(walk().x, 0);
    RuntimeCoopPlayer& mate = joinCoop("mate");
    mate.worldX = 900;
    mate.z = 200;
    EXPECT_LT(walk().x, 0) << "as near as the first: not nearer";
    mate.worldX = 899;
    EXPECT_GT(walk().x, 0);
    add(makeModel("npc", {"idle"}), 600).facing = 1;
    EXPECT_GT(walk().x, 0) << "no enemy of its own accord";
    model.hostileMask = kTypeNpc;
    EXPECT_LT(walk().x, 0);
    world.entities[1].visible = false;
    EXPECT_EQ(walk().x, 0) << "the mask has made peace with the players";
    add(makeModel("item", {"idle"}), 600);
    model.hostileMask = -1;
    EXPECT_GT(walk().x, 0) << "things are nobody's enemies";
}

TEST_F(EntityMind, EachKindOfMovementHasItsWay) {
    model.speed = 4;
    const auto step = [&](unsigned bits, std::uint64_t ticks = 0, std::uint64_t place = 0) {
        model.aiMove = static_cast<int>(bits);
        return walkStep(model, {{-100, 50}, -1, ticks, place});
    };
    const auto is = [](GroundStep a, float x, float z) {
        return std::abs(a.x - x) < 1e-4F && std::abs(a.z - z) < 1e-4F;
    };
    EXPECT_TRUE(is(step(2), -2.2F, 1.5F)) << "plain chase";
    EXPECT_TRUE(is(step(kAiChaseX), -2.2F, 0));
    EXPECT_TRUE(is(step(kAiChaseZ), 0, 1.5F));
    EXPECT_TRUE(is(step(kAiAvoid), 2.2F, -1.5F));
    EXPECT_TRUE(is(step(kAiAvoid | kAiAvoidX | kAiAvoidZ), 2.2F, -1.5F)) << "not turned twice";
    EXPECT_TRUE(is(step(kAiAvoidZ), -2.2F, -1.5F));
    EXPECT_TRUE(is(step(kAiWander, 89), 2.2F, 0));
    EXPECT_TRUE(is(step(kAiWander, 89, 1), -2.2F, 0));
    EXPECT_TRUE(is(step(kAiWander, 90, 1), 0, 1.2F));
    EXPECT_TRUE(is(step(kAiWander, 270), 0, -1.2F));
    EXPECT_TRUE(is(step(kAiBiker), -2.2F, 1.5F));
    EXPECT_TRUE(is(step(kAiStar, 29), -2.2F, -1));
    EXPECT_TRUE(is(step(kAiStar, 30), -2.2F, 1));
    model.speed = 0;
    EXPECT_TRUE(is(step(kAiArrow), -1, 0.5F)) << "what rushes is not that slow";
}

TEST_F(EntityMind, DodgesOnlyFromPlayer1) {
    model.aiAttack = kAiDodge;
    model.speed = 4;
    player.worldX = 660;
    joinCoop("mate").attackTicks = 5;
    world.coop[0].worldX = 690;
    EXPECT_EQ(walk().x, 0) << "it attacks";
    enemy.attackTicks = 0;
    player.attackTicks = 5;
    EXPECT_EQ(walk().x, 2) << "a step back";
    model.aiAttack = kAiDodgeMove;
    EXPECT_EQ(walk().z, 4);
    player.z = 201;
    EXPECT_EQ(walk().z, -4);
    player.worldX = 640;
    EXPECT_EQ(walk().z, 0) << "too far to be a threat";
}

}  // namespace
}  // namespace port
