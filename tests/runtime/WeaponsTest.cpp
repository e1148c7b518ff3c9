// Weapons: taken up, reloaded, lost.

#include "Weapons.hpp"

#include <array>

#include "WorldTrial.hpp"

namespace port {
namespace {

struct Weapons : WorldTrial {
    const generated::Character& club = *findCharacter("club");
    generated::Character clubItem = club, ammunition = club, stone = club, food = club;

    Weapons() {
        clubItem.weaponNumber = 1;
        clubItem.weaponDropCounter = 2;
        ammunition.reloadAmount = 5;
        stone.subtype = "Projectile";
        stone.shootNum = -1;
    }
    RuntimeEntity& lay(const generated::Character& model, float dx = 0, float dz = 0) {
        RuntimeEntity& item = addEntity("club");
        item.model = &model;
        item.worldX = player.worldX + dx;
        item.z = player.z + dz;
        return item;
    }
    void pickUp(PlayerActor& who) {
        quietly([&] { tryPickupWeapon(tick, who); });
    }
    // The items on the ground afterwards.
    std::size_t drop(Actor& who, bool stageLoss = false) {
        quietly([&] {
            dropWeapon(tick, who, stageLoss);
            flushWeaponDrops(tick);
        });
        return static_cast<std::size_t>(
            std::ranges::count_if(world.entities, &RuntimeEntity::visible));
    }
};

TEST_F(Weapons, WhatLiesWithinReachIsTakenUpInTheOrderOfComing) {
    lay(food);
    lay(clubItem, 25);
    lay(clubItem, 0, -19);
    pickUp(player);
    EXPECT_EQ(player.equippedWeapon, nullptr);
    RuntimeEntity& first = lay(clubItem, -24, 18);
    RuntimeEntity& second = lay(stone);
    first.weaponDropsRemaining = 7;
    pickUp(player);
    EXPECT_FALSE(first.alive || first.visible);
    EXPECT_TRUE(second.alive);
    EXPECT_EQ(player.equippedWeapon, &club);
    EXPECT_EQ(player.weaponItemModel, &clubItem);
    EXPECT_EQ(player.weaponDropsRemaining, 7) << "those of the item that lay there";
    pickUp(player);
    EXPECT_EQ(player.equippedWeapon, &stone) << "itself";
    EXPECT_EQ(player.weaponUses, 0);
    EXPECT_EQ(player.weaponItemModel, nullptr) << "the first item did not give it";
}

TEST_F(Weapons, AmmunitionGoesToAWeaponThatShootsAndOnlyPlayer1SaysSo) {
    RuntimeEntity& box = lay(ammunition);
    pickUp(player);
    EXPECT_TRUE(box.alive) << "nothing to load";
    for (PlayerActor* who :
         {static_cast<PlayerActor*>(&player), static_cast<PlayerActor*>(&joinCoop("hero"))}) {
        who->worldX = player.worldX;
        who->z = player.z;
        who->equippedWeapon = &club;
        who->weaponUses = 2147483645;
        lay(ammunition);
        pickUp(*who);
        EXPECT_EQ(who->weaponUses, 2147483647);
        EXPECT_EQ(log, who == &player ? "Ammo reload +5 uses=2147483647\n" : "");
    }
}

TEST_F(Weapons, AnItemFallsOneTimeFewerThanItsCounter) {
    std::array poses = {club.animations[0], club.animations[0]};
    poses[1].name = "Respawn";
    clubItem.animations = poses.data();
    clubItem.animationCount = poses.size();
    lay(clubItem);
    pickUp(player);
    player.facing = -1;
    player.altitude = -30;
    EXPECT_EQ(drop(player), 1U);
    const RuntimeEntity& item = world.entities[1];
    EXPECT_EQ(item.model, &clubItem);
    EXPECT_EQ(item.worldX, player.worldX - 12);
    EXPECT_EQ(item.altitude, -30);
    EXPECT_EQ(item.animation.animation(), &poses[1]);
    EXPECT_EQ(item.weaponDropsRemaining, 1);
    EXPECT_EQ(player.equippedWeapon, nullptr);
    EXPECT_EQ(player.weaponItemModel, nullptr);
    EXPECT_EQ(player.weaponDropsRemaining, -1);
    pickUp(player);
    EXPECT_EQ(drop(player), 0U) << "the counter is down";

    clubItem.weaponDropCounter = 1;
    lay(clubItem);
    pickUp(player);
    EXPECT_EQ(drop(player), 0U) << "a counter of 1 puts nothing back";
}

TEST_F(Weapons, ALossLeavesWhatTheWeaponElseTheActorSays) {
    generated::Character hero = *player.model, gun = club;
    RuntimeEntity& robot = addEntity("robot");
    robot.model = player.model = &hero;
    hero.weaponLossIndex = 1;
    robot.equippedWeapon = player.equippedWeapon = &gun;
    player.weaponItemModel = &clubItem;
    EXPECT_EQ(drop(player, true), 1U) << "the end of a stage puts nothing back";
    EXPECT_EQ(player.equippedWeapon, &club);
    drop(robot);
    EXPECT_EQ(robot.equippedWeapon, &club);
    gun.weaponLossDefined = true;
    gun.weaponLossIndex = -1;
    player.equippedWeapon = robot.equippedWeapon = &gun;
    quietly([&] { loseWeapons(tick); });
    EXPECT_EQ(player.equippedWeapon, nullptr);
    EXPECT_EQ(robot.equippedWeapon, nullptr) << "everybody";
}

}  // namespace
}  // namespace port
