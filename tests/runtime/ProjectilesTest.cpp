// What is thrown and shot, until it hits somebody.

#include "Projectiles.hpp"

#include "Weapons.hpp"
#include "WorldTrial.hpp"

namespace port {
namespace {

struct Projectiles : WorldTrial {
    generated::Character hero = *player.model;
    generated::Character club = *findCharacter("club");  // goes off on the ground
    generated::Character puff = *findCharacter("puff");  // has nothing to go off with
    generated::Animation attack = *exactAnimation(&hero, "follow1");

    Projectiles() {
        player.model = &hero;
        attack.throwFrame = attack.tossFrame = -1;
        player.animation.setAnimation(&attack);
    }
    // One attack up to its frame; the model that flew, or empty.
    std::string attackTo(std::size_t frame) {
        player.projectileFired = false;
        player.animation.setAnimation(&attack);
        player.animation.setFrame(frame);
        world.projectiles.clear();
        quietly([&] {
            maybeSpawnProjectile(tick, player, true);
            loseSpentWeapon(tick, player);
        });
        return world.projectiles.empty() ? "" : world.projectiles[0].model->name;
    }
    RuntimeProjectile& shoot(const generated::Character& model, float altitude, bool bomb) {
        world.projectiles.clear();
        Shot shot{&model, 100, 200, altitude};
        shot.bomb = bomb;
        quietly([&] { spawnProjectile(tick, shot); });
        return world.projectiles.back();
    }
    // How many are left.
    std::size_t fly(int ticks) {
        quietly([&] {
            for (int i = 0; i < ticks; ++i) updateProjectiles(tick);
        });
        return world.projectiles.size();
    }
};

TEST_F(Projectiles, AnAttackThrowsOnceWhenItsFrameHasCome) {
    attack.throwFrame = 2;
    attack.custKnife = "Puff";
    attack.projectileOffsetY = 20;
    attack.projectileVelocityX = 4;
    attack.projectileVelocityY = 1;
    player.facing = -1;
    player.altitude = -5;
    EXPECT_EQ(attackTo(1), "");
    EXPECT_FALSE(player.projectileFired);
    EXPECT_EQ(attackTo(3), "Puff");
    EXPECT_EQ(log, "Projectile spawned: Puff kind=knife vx=-4 vy=-1\n");
    maybeSpawnProjectile(tick, player, true);
    ASSERT_EQ(world.projectiles.size(), 1U);
    const RuntimeProjectile& knife = world.projectiles[0];
    EXPECT_EQ(knife.altitude, -25);
    EXPECT_EQ(knife.facing, -1);
    EXPECT_EQ(knife.ownerModel, &hero);
    EXPECT_FALSE(knife.subjectToGravity);

    attack.throwFrame = 0;
    attack.custKnife = "nobody";
    EXPECT_EQ(attackTo(0), "");
    EXPECT_EQ(warnings, "Projectile model missing: nobody\n");
    EXPECT_TRUE(player.projectileFired) << "said once an attack";
}

TEST_F(Projectiles, TheAnimationNamesThemBeforeTheWeaponAndTheWeaponBeforeItsBearer) {
    hero.bombModel = "Mate";
    hero.knifeModel = "Robot";
    attack.throwFrame = 0;
    EXPECT_EQ(attackTo(0), "Robot");
    hero.projectModel = "Hero";
    EXPECT_EQ(attackTo(0), "Hero");
    player.equippedWeapon = &club;
    club.knifeModel = "Puff";
    EXPECT_EQ(attackTo(0), "Puff");
    attack.custKnife = "Club";
    EXPECT_EQ(attackTo(0), "Club");

    attack.throwFrame = -1;
    attack.tossFrame = 0;
    EXPECT_EQ(attackTo(0), "Mate") << "a weapon that has no bomb";
    EXPECT_TRUE(world.projectiles[0].subjectToGravity);
    const int jump = std::max(1, findCharacter("mate")->jumpHeight);
    EXPECT_EQ(world.projectiles[0].vy, static_cast<float>(-jump)) << "a bomb is thrown up";
    attack.projectileVelocityY = 0.5F;
    attackTo(0);
    EXPECT_EQ(world.projectiles[0].vy, -0.5F);
}

TEST_F(Projectiles, AWeaponGoesWithItsLastShotAndOnlyAShootingItemIsDropped) {
    attack.throwFrame = 0;
    attack.custKnife = "Puff";
    club.weaponDropCounter = 5;
    for (const bool dropped : {false, true}) {
        club.typeShot = dropped;
        player.equippedWeapon = player.weaponItemModel = &club;
        player.weaponDropsRemaining = -1;
        player.weaponUses = 3;
        for (int shot = 0; shot < 2; ++shot) EXPECT_EQ(attackTo(0), "Puff");
        EXPECT_EQ(player.equippedWeapon, &club);
        attackTo(0);
        EXPECT_EQ(player.equippedWeapon, nullptr);
        EXPECT_EQ(world.pendingWeaponDrops.size(), dropped ? 1U : 0U);
    }
    club.shootNum = 0;
    player.equippedWeapon = &club;
    attackTo(0);
    EXPECT_EQ(player.equippedWeapon, &club) << "a weapon without shots has no end of them";
}

TEST_F(Projectiles, OnesThatFallBounceAndEndOnTheGround) {
    EXPECT_EQ(shoot(puff, -1, false).life, 360);
    EXPECT_EQ(fly(359), 1U) << "what does not fall flies on";
    EXPECT_EQ(fly(1), 0U);

    puff.subjectToGravity = true;
    puff.antigravity = 1;
    shoot(puff, -1, false);
    EXPECT_EQ(fly(99), 1U) << "nothing draws it down";
    puff.antigravity = 0;
    puff.bounce = 1;
    puff.bounceFactor = 2;
    RuntimeProjectile& ball = shoot(puff, -0.1F, false);
    fly(2);
    EXPECT_EQ(log, "Projectile bounce: Puff left=0\n");
    EXPECT_FLOAT_EQ(ball.vy, -2 * 0.7F) << "two ticks of gravity, doubled";
    EXPECT_FLOAT_EQ(ball.altitude, -0.1F);
    EXPECT_EQ(fly(20), 0U) << "the second time it ends";
}

TEST_F(Projectiles, TheyEndHalfAViewBeyondTheScreen) {
    world.camera.x = 50;
    shoot(puff, -1, false).worldX = 50 + 320 + 160;
    EXPECT_EQ(fly(1), 1U);
    world.projectiles[0].worldX += 1;
    EXPECT_EQ(fly(1), 0U);
    shoot(puff, -1, false).worldX = 50 - 161;
    EXPECT_EQ(fly(1), 0U);
}

TEST_F(Projectiles, ABombGoesOffOnTheGroundIfItCan) {
    club.dieSound = "sounds/die.wav";
    RuntimeProjectile& bomb = shoot(club, -0.1F, true);
    bomb.vx = 3;
    bomb.hitTargets = {kPlayer1Handle};
    fly(2);
    EXPECT_TRUE(bomb.exploded);
    EXPECT_EQ(bomb.altitude, 0);
    EXPECT_EQ(bomb.vx, 0);
    EXPECT_TRUE(bomb.hitTargets.empty()) << "the explosion hits anew";
    EXPECT_EQ(bomb.lastFrame, kNoFrame);
    ASSERT_EQ(events.sounds.size(), 1U);
    EXPECT_EQ(events.sounds[0].name, "sounds/die.wav");
    EXPECT_EQ(bomb.life, 3) << "as long as its animation of two ticks, and one";
    EXPECT_EQ(fly(2), 1U);
    EXPECT_EQ(fly(1), 0U);

    shoot(puff, -0.1F, true);
    EXPECT_EQ(fly(2), 0U) << "nothing to go off with";
}

TEST_F(Projectiles, ContactSetsOffBombsAndEndsWhatIsToBeRemoved) {
    puff.removeConfig = club.removeConfig = 0;
    RuntimeProjectile& knife = shoot(puff, -1, false);
    EXPECT_FALSE(projectileContact(tick, knife));
    EXPECT_TRUE(knife.alive) << "it flies on through its target";
    puff.removeConfig = 1;
    EXPECT_FALSE(projectileContact(tick, knife));
    EXPECT_FALSE(knife.alive);

    EXPECT_FALSE(projectileContact(tick, shoot(club, -1, true))) << "it has no attack2";
    EXPECT_TRUE(world.projectiles[0].alive);
    club.removeConfig = 1;
    EXPECT_FALSE(projectileContact(tick, shoot(club, -1, true)));
    EXPECT_FALSE(world.projectiles[0].alive);
    shoot(club, -1, true);
    generated::Animation explosion = club.animations[0];
    explosion.name = "ATTACK2";
    club.animations = &explosion;
    EXPECT_TRUE(projectileContact(tick, world.projectiles[0]));
    EXPECT_FALSE(projectileContact(tick, world.projectiles[0])) << "once";
}

TEST_F(Projectiles, TheirNumberIsBounded) {
    quietly([&] {
        for (std::size_t i = 0; i < kMostProjectiles; ++i) {
            ASSERT_TRUE(spawnProjectile(tick, {&puff}));
        }
        EXPECT_FALSE(spawnProjectile(tick, {&puff}));
        world.projectiles[0].life = 1;
        updateProjectiles(tick);
        EXPECT_TRUE(spawnProjectile(tick, {&puff}));
        EXPECT_FALSE(spawnProjectile(tick, {}));
    });
}

}  // namespace
}  // namespace port
