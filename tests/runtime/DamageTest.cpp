// What hits do to entities, to player 1 and to co-op players.

#include "Damage.hpp"

#include "Defence.hpp"
#include "FightTrial.hpp"
#include "NamedHost.hpp"

namespace port {
namespace {

struct Damage : FightTrial {
    Cast& robot = cast("enemy", {"idle", "pain", "fall", "death"});
    RuntimeCoopPlayer& mate = join(100);
    RuntimeEntity& enemy = enter(robot, 100, 1);

    void hurtEnemy(const Hit& hit) {
        quietly([&] { damageEnemy(tick, enemy, hit); });
    }
    void hurtPlayer(const Hit& hit) {
        quietly([&] { damagePlayer(tick, hit); });
    }
    void hurtMate(const Hit& hit) {
        quietly([&] { damageCoopPlayer(tick, mate, hit); });
    }
    void hurtAll(const Hit& hit) {
        hurtEnemy(hit);
        hurtPlayer(hit);
        hurtMate(hit);
    }
};

TEST_F(Damage, HurtsAndDrivesAway) {
    hurtEnemy({.damage = 7, .knockDirection = -1, .attackType = 3});
    EXPECT_EQ(log, "Hit enemy Robot damage=7 hp=93\n");
    hurtPlayer({.damage = 8, .attackType = 3, .dropVx = -20});
    EXPECT_EQ(log, "Player hit damage=8 hp=92\n");
    hurtMate({.damage = 9, .attackType = 3});
    EXPECT_EQ(log, "Coop player hit damage=9 hp=91\n");
    EXPECT_EQ(enemy.worldX, 100 - 12);
    EXPECT_EQ(player.worldX, 100 + 20) << "its size alone, whatever its sign";
    EXPECT_EQ(enemy.hitStun, 8);
    EXPECT_EQ(player.hitStun, 10);
    EXPECT_EQ(mate.hitStun, 10);
    for (const Actor* actor :
         {static_cast<Actor*>(&player), static_cast<Actor*>(&mate), static_cast<Actor*>(&enemy)}) {
        EXPECT_EQ(running(*actor), "pain");
    }
    EXPECT_EQ(enemy.reactionType, 3);
    EXPECT_EQ(mate.reactionType, 3);
    EXPECT_EQ(player.reactionType, 0) << "player 1 keeps it of falls only";

    enemy.worldX = player.worldX = mate.worldX = 999;
    player.hitStun = mate.hitStun = 0;
    hurtAll({.damage = 1});
    EXPECT_EQ(enemy.worldX, 1011);
    EXPECT_EQ(player.worldX, 999) << "player 1 stays on the stage";
    EXPECT_EQ(mate.worldX, 1011);
    enemy.worldX = player.worldX = mate.worldX = 5;
    player.hitStun = mate.hitStun = 0;
    hurtAll({.damage = 1, .knockDirection = -1});
    EXPECT_EQ(enemy.worldX + player.worldX + mate.worldX, 0);
}

TEST_F(Damage, APlayerWhoReactsIsSafeAndStillHearsOfIt) {
    hero->row.takeDamageScript = hear("take.c", "getlocalvar(\"damage\")");
    robot.row.takeDamageScript = hero->row.takeDamageScript;
    player.fallTicks = mate.hitStun = enemy.hitStun = enemy.fallTicks = 5;
    defend(robot, {defense("all")});
    robot.defenses[0].factor = 0.5F;
    defend(*hero, robot.defenses);
    hurtAll({.damage = 8});
    EXPECT_EQ(global("heard"), "4 8 8 ") << "an entity is told what its defence leaves";
    EXPECT_EQ(player.health, 100);
    EXPECT_EQ(mate.health, 100);
    EXPECT_EQ(enemy.health, 96);
    mate.hitStun = 0;
    mate.knockdownAir = true;
    hurtMate({.damage = 8});
    EXPECT_EQ(mate.health, 96) << "a fall alone does not save a co-op player";

    player.fallTicks = 0;
    player.invincibleTicks = mate.invincibleTicks = enemy.invincibleTicks = 1;
    scripts.machine().globals().clear();
    hurtAll({.damage = 8});
    EXPECT_EQ(global("heard"), "") << "nobody hears of what cannot touch them";
    EXPECT_EQ(enemy.health, 96);
}

TEST_F(Damage, AHitThatIsWhollyDefendedStillCountsTowardAFall) {
    hero->row.takeDamageScript = robot.row.takeDamageScript =
        hear("take.c", "getlocalvar(\"drop\")");
    robot.row.knockdownCount = hero->row.knockdownCount = 6;
    defend(robot, {defense("all")});
    robot.defenses[0].factor = 0;
    defend(*hero, robot.defenses);
    hurtAll({.damage = 50, .knockdown = true});
    EXPECT_EQ(global("heard"), "0 0 ") << "only players hear of it";
    EXPECT_EQ(log, "");
    for (const float meter : {enemy.knockdownMeter, player.knockdownMeter, mate.knockdownMeter}) {
        EXPECT_EQ(meter, 3);
    }
    hurtAll({.damage = 0, .knockdown = true});
    EXPECT_EQ(running(enemy) + running(player) + running(mate), "fallfallfall")
        << "a hit that was not meant to hurt";
    EXPECT_EQ(enemy.health, 100);
}

TEST_F(Damage, AFallIsEachKindsOwn) {
    robot.row.bounce = 2;
    robot.row.jugglePoints = 0;
    hero->row.onFallScript = robot.row.onFallScript = hear("fall.c", "\"fell\"");
    for (Actor* actor :
         {static_cast<Actor*>(&player), static_cast<Actor*>(&mate), static_cast<Actor*>(&enemy)}) {
        actor->landingHitTargets = {77};
        actor->attackTicks = 9;
    }
    mate.runningJump = true;
    hurtAll({.damage = 1,
             .knockdown = true,
             .dropVy = -5,
             .attackType = 4,
             .landingDamage = 6,
             .landingMode = 1,
             .landingType = 2});
    EXPECT_EQ(global("heard"), "fell fell fell ");
    for (const Actor* actor :
         {static_cast<Actor*>(&player), static_cast<Actor*>(&mate), static_cast<Actor*>(&enemy)}) {
        EXPECT_EQ(actor->altitude, -1);
        EXPECT_EQ(actor->verticalVelocity, -5);
        EXPECT_EQ(actor->landingDamage, 6);
        EXPECT_EQ(actor->landingMode, 1);
        EXPECT_EQ(actor->landingType, 2);
        EXPECT_EQ(actor->reactionType, 4);
        EXPECT_TRUE(actor->landingHitTargets.empty()) << "a new fall hits all anew";
        EXPECT_EQ(actor->attackTicks, 9);
    }
    EXPECT_EQ(enemy.fallTicks, 28);
    EXPECT_EQ(enemy.bouncesRemaining, 2);
    EXPECT_EQ(enemy.juggleRemaining, 1);
    EXPECT_EQ(player.fallTicks, 28);
    EXPECT_FALSE(player.jumping);
    EXPECT_EQ(mate.hitStun, 10) << "a co-op player falls as from a jump";
    EXPECT_TRUE(mate.jumping && mate.knockdownAir);
    EXPECT_FALSE(mate.runningJump);
}

TEST_F(Damage, TheHitTurnsItsVictimWhereItIsToldTo) {
    const auto facing = [&](int force, float direction) {
        enemy.facing = 1;
        hurtEnemy({.damage = 1, .knockDirection = direction, .forceDirection = force});
        return enemy.facing;
    };
    EXPECT_EQ(facing(0, -1), 1);
    EXPECT_EQ(facing(1, -1), -1);
    EXPECT_EQ(facing(-1, 1), -1);
    EXPECT_EQ(facing(-1, -1), 1);
    EXPECT_EQ(facing(2, -1), 1);
    EXPECT_EQ(facing(-2, 1), -1);
}

TEST_F(Damage, DeathsAreEachKindsOwn) {
    generated::Spawn spawn{};
    spawn.score = 300;
    enemy.spawn = &spawn;
    enemy.grabbed = true;
    const char* died = hear("died.c", "\"died\"");
    hero->row.onDeathScript = robot.row.onDeathScript = died;
    robot.row.dieSound = "die.wav";
    hurtEnemy({.damage = 1000, .knockdown = true, .attacker = mate.handle});
    EXPECT_EQ(log, "Hit enemy Robot damage=1000 hp=0 knockdown\nEnemy defeated: Robot\n");
    EXPECT_EQ(mate.score, 300);
    EXPECT_EQ(player.score, 0);
    EXPECT_FALSE(enemy.alive || enemy.grabbed);
    EXPECT_EQ(running(enemy), "fall");
    EXPECT_EQ(enemy.deathTicks, 30);
    EXPECT_EQ(events.sounds.size(), 1U);
    hurtEnemy({.damage = 1});
    EXPECT_EQ(log, "") << "the dead are left alone";
    hurtPlayer({.damage = 1000});
    EXPECT_EQ(log, "Player hit damage=1000 hp=0\nGAME OVER\n");
    EXPECT_EQ(running(player), "fall");
    hurtMate({.damage = 1000, .attackType = 5});
    EXPECT_EQ(mate.reactionType, 5);
    EXPECT_FALSE(player.alive || mate.alive);
    EXPECT_EQ(global("heard"), "died died died ");
}

TEST_F(Damage, ADeathTakesChildrenAlongAndNobodysScore) {
    generated::Spawn debt{};
    debt.score = -5;
    enemy.spawn = &debt;
    RuntimeEntity& child = enter(robot, 300);
    RuntimeEntity& summoned = enter(robot, 300);
    child.parentHandle = summoned.parentHandle = enemy.handle;
    summoned.summonedChild = true;
    const auto left = [&](int summonKill) {
        robot.row.summonKill = summonKill;
        enemy.alive = true;
        hurtEnemy({.damage = 1000, .attacker = kPlayer1Handle});
        return int{child.alive} + int{summoned.alive};
    };
    EXPECT_EQ(left(0), 2);
    EXPECT_EQ(left(1), 1);
    EXPECT_TRUE(child.alive);
    EXPECT_EQ(left(2), 0);
    EXPECT_EQ(player.score, 0);
}

TEST_F(Damage, TheWayToDieIsTheModels) {
    animate(robot, "bdeath");
    const auto death = [&](int fallDie, int attackType) {
        robot.row.fallDie = hero->row.fallDie = fallDie;
        RuntimeEntity& victim = enter(robot, 50);
        player.alive = true;
        player.health = 1;
        quietly([&] {
            damageEnemy(tick, victim, {.damage = 1000, .attackType = attackType});
            damagePlayer(tick, {.damage = 1000, .attackType = attackType});
        });
        return running(victim) + (victim.deathFollowDeath ? "+ " : " ") + running(player);
    };
    EXPECT_EQ(death(0, 0), "fall fall");
    EXPECT_EQ(death(1, 0), "death death");
    EXPECT_EQ(death(2, 0), "fall+ fall");
    EXPECT_EQ(death(2, kAttackBurn), "bdeath fall") << "the hero has no burnt death";
    robot.animations[2].name = "other";  // was "fall"
    EXPECT_EQ(death(0, 0), "death fall");
    EXPECT_EQ(death(2, 0), "death fall");
    robot.row.type = "Obstacle";
    robot.row.noDieBlink = 2;
    RuntimeEntity& crate = enter(robot, 10);
    quietly([&] { damageEnemy(tick, crate, {.damage = 1000}); });
    EXPECT_EQ(crate.deathTicks, animationDuration(crate.animation.animation()));
    EXPECT_NE(log.find("Object destroyed: Robot\n"), log.npos);
}

TEST_F(Damage, ItsOwnScriptMayEndAnEntityOnce) {
    struct Kill final : NamedHost {
        RuntimeEntity* victim = nullptr;
        bool answer(const std::string&, std::span<const ScriptValue>, ScriptContext&,
                    UnansweredNames&, ScriptValue&) override {
            victim->health = 0;
            victim->alive = false;
            return true;
        }
    } host;
    host.victim = &enemy;
    scripts.open(folder.path(), folder.path() / "data", &host);
    folder.write("data/scripts/end.c", "void main(){ killentity(getlocalvar(\"self\")); }");
    robot.row.takeDamageScript = "scripts/end.c";
    robot.row.onDeathScript = hear("died.c", "\"died\"");
    hurtEnemy({.damage = 5});
    EXPECT_FALSE(enemy.alive);
    EXPECT_EQ(log, "");
    EXPECT_EQ(global("heard"), "");
}

TEST_F(Damage, FrostHoldsAndRemembersTheColours) {
    robot.row.freezeMap = 4;
    enemy.paletteMap = 2;
    hurtEnemy({.damage = 1, .attackType = kAttackFreeze});
    EXPECT_EQ(enemy.freezeTicks, 120);
    EXPECT_EQ(enemy.paletteMap, 4);
    enemy.freezeTicks = 200;
    enemy.lastFrame = 0;
    hurtEnemy({.damage = 1, .attackType = kAttackFreeze});
    EXPECT_EQ(enemy.freezeTicks, 200);
    EXPECT_EQ(enemy.preFreezePaletteMap, 2) << "not the frozen ones";
    EXPECT_EQ(enemy.lastFrame, kNoFrame) << "its picture takes the colours at once";
}

TEST_F(Damage, PainMayBeRefused) {
    defend(robot, {defense("all")});
    robot.defenses[0].pain = 10;
    hurtEnemy({.damage = 9});
    EXPECT_EQ(enemy.health, 91);
    EXPECT_EQ(running(enemy), "idle");
    hero->row.noPain = true;
    hurtPlayer({.damage = 50});
    EXPECT_EQ(player.health, 50);
    EXPECT_EQ(player.hitStun, 0);
}

TEST_F(Damage, AWeaponGoesWhenItsLossSaysSo) {
    generated::Character club = *findCharacter("club");
    const auto kept = [&](int flag, const Hit& hit) {
        RuntimeEntity& victim = enter(robot, 50);
        victim.equippedWeapon = &club;
        club.weaponLossFlag = flag;
        quietly([&] { damageEnemy(tick, victim, hit); });
        return victim.equippedWeapon != nullptr;
    };
    const Hit pain = {.damage = 1};
    const Hit fall = {.damage = 1, .knockdown = true};
    const Hit lethal = {.damage = 1000};
    club.weaponLossDefined = true;
    robot.row.weaponLossFlag = 3;
    EXPECT_FALSE(kept(0, pain));
    EXPECT_TRUE(kept(1, pain));
    EXPECT_FALSE(kept(1, fall));
    EXPECT_TRUE(kept(2, fall));
    EXPECT_FALSE(kept(2, lethal));
    EXPECT_TRUE(kept(3, lethal));
    club.animalWeapon = true;
    EXPECT_FALSE(kept(3, fall));
    robot.row.noDrop = true;
    EXPECT_TRUE(kept(0, lethal));
    robot.row.noDrop = club.weaponLossDefined = false;
    EXPECT_TRUE(kept(0, pain)) << "the model's rule, where the weapon has none";
}

}  // namespace
}  // namespace port
