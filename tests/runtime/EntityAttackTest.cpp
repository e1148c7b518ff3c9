// How entities choose their attacks and arm themselves.

#include "EntityAttack.hpp"

#include "EntityRules.hpp"
#include "EntityTrial.hpp"

namespace port {
namespace {

struct EntityAttack : EntityTrial {
    generated::Character& model =
        makeModel("enemy", {"idle", "walk", "attackers", "attack1", "SHOOT2", "throw30", "attack"});
    RuntimeEntity& enemy = add(model, 520);

    EntityAttack() {
        const_cast<generated::Animation&>(model.animations[4]).throwFrame = 0;
        config.grabRange = 0;
        model.grabDistance = 0;
    }
    std::string attack(float distance, ActorHandle target = kNobody) {
        enemy.attackTicks = enemy.attackCooldown = 0;
        enemy.animation.setAnimation(model.animations);
        quietly([&] { startEnemyAttack(tick, enemy, distance, target); });
        return playing(enemy);
    }
};

TEST_F(EntityAttack, RestsTheLongerTheTamerItIs) {
    const auto rest = [&](int aggression) {
        model.aggression = aggression;
        attack(10);
        return enemy.attackCooldown - enemy.attackTicks;
    };
    EXPECT_EQ(rest(0), 18);
    EXPECT_EQ(enemy.attackTicks, 11);
    EXPECT_EQ(rest(300), 2);
    EXPECT_EQ(rest(-300), 68);
    EXPECT_EQ(rest(-100000), 68);
    EXPECT_EQ(rest(-5), 18) << "divided toward zero";
    model.aiAttack = kAiAlways;
    EXPECT_EQ(rest(-300), 2);
}

TEST_F(EntityAttack, TakesTurnsAmongTheAttacksThatSuitTheDistance) {
    std::string order;
    for (world.tick = 0; world.tick < 3; ++world.tick) order += attack(10) + " ";
    EXPECT_EQ(order, "attack1 SHOOT2 throw30 ") << "names with a number only";
    world.tick = 0;
    model.aggression = 1;
    EXPECT_EQ(attack(10), "SHOOT2") << "the eager are ahead";
    model.aggression = -1;
    EXPECT_EQ(attack(10), "attack1");
    EXPECT_EQ(attack(33), "SHOOT2") << "from afar";
    model.aiAttack = kAiMelee;
    EXPECT_EQ(attack(33), "SHOOT2");
    world.tick = 1;
    EXPECT_EQ(attack(10), "throw30") << "the second of two for close quarters";
    model.aiAttack = kAiNoAttack;
    EXPECT_EQ(attack(10), "idle");
}

TEST_F(EntityAttack, AGrabComesFirstWhereItReachesAndHolds) {
    generated::Character& grabber = makeModel("enemy", {"idle", "attack1", "grab"});
    enemy.model = &grabber;
    grabber.grabDistance = 30;
    generated::Character victim = *player.model;
    player.model = &victim;
    EXPECT_EQ(attack(30, kPlayer1Handle), "grab");
    EXPECT_EQ(attack(31, kPlayer1Handle), "attack1");
    EXPECT_EQ(attack(30), "attack1") << "nobody to grab";
    player.altitude = -2;
    EXPECT_EQ(attack(30, kPlayer1Handle), "attack1");
    player.altitude = 0;
    player.fallTicks = 1;
    EXPECT_EQ(attack(30, kPlayer1Handle), "attack1");
    player.fallTicks = 0;
    victim.grabResistance = 1;
    EXPECT_EQ(attack(30, kPlayer1Handle), "attack1");
    grabber.grabForce = 1;
    EXPECT_EQ(attack(30, kPlayer1Handle), "grab");
    victim.noGrab = true;
    EXPECT_EQ(attack(30, kPlayer1Handle), "attack1");
}

TEST_F(EntityAttack, RunsToItsEndAndTellsItsHook) {
    model.onDoAttackScript = hook("attack.c", "attack");
    player.model = nullptr;  // unseen
    enemy.mp = 4;
    const_cast<generated::Animation&>(model.animations[3]).energyCost = 5;
    const_cast<generated::Animation&>(model.animations[3]).energyMode = 1;
    world.tick = 0;
    EXPECT_EQ(attack(10), "idle") << "it cannot pay";
    EXPECT_EQ(enemy.attackTicks, 0);
    enemy.mp = 5;
    EXPECT_EQ(attack(10), "attack1");
    EXPECT_EQ(global("hooks"), "attack.c:attack1 ");
    turn(10);
    EXPECT_EQ(playing(enemy), "attack1");
    turn();
    EXPECT_EQ(playing(enemy), "idle");
    EXPECT_EQ(enemy.attackCooldown, 18);
}

TEST_F(EntityAttack, TakesUpTheNearestWeaponOfItsList) {
    const char* list[] = {"none", "Club"};
    model.weapons = list;
    model.weaponCount = 2;
    model.speed = 3;
    generated::Character& item = makeModel("item", {"idle"});
    item.name = "Bat on the floor";
    item.weaponNumber = 2;
    item.weaponDropCounter = 3;
    generated::Character& none = makeModel("item", {"idle"});
    none.weaponNumber = 1;
    add(none, 520);
    RuntimeEntity& far = add(item, 690);
    RuntimeEntity& near = add(item, 560, 240);
    turn();
    EXPECT_EQ(enemy.worldX, 523);
    EXPECT_EQ(enemy.z, 201.2F);
    EXPECT_EQ(enemy.facing, 1);
    enemy.worldX = 540;
    enemy.z = 226;
    turn();
    ASSERT_NE(enemy.equippedWeapon, nullptr);
    EXPECT_STREQ(enemy.equippedWeapon->name, "Club");
    EXPECT_EQ(enemy.weaponItemModel, &item);
    EXPECT_EQ(enemy.weaponDropsRemaining, 3);
    EXPECT_FALSE(near.alive || near.visible);
    EXPECT_EQ(log, "AI picked weapon model=Bat on the floor index=2\n");
    EXPECT_FALSE(tryEntityPickupWeapon(tick, enemy)) << "one is enough";
    enemy.equippedWeapon = nullptr;
    enemy.worldX = 509;
    enemy.z = 200;
    EXPECT_FALSE(tryEntityPickupWeapon(tick, enemy)) << "too far to mind";
    EXPECT_TRUE(far.alive);
}

}  // namespace
}  // namespace port
