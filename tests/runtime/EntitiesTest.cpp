// The turns of entities: what ends them, what holds them, how they fall, and what their ground
// allows.

#include <functional>

#include "EntityTrial.hpp"
#include "NamedHost.hpp"
#include "Spawning.hpp"

namespace port {
namespace {

struct EntityTurns : EntityTrial {
    generated::Character& model = makeModel("npc", {"idle", "rise", "death", "fall"});
    RuntimeEntity& entity = add(model, 300);

    EntityTurns() {
        config.enemyAI = false;
        world.player1.alive = false;
    }
    void drop(int damage, int bounces) {
        entity.altitude = -1;
        entity.verticalVelocity = 2;
        entity.fallTicks = 28;
        entity.bouncesRemaining = bounces;
        entity.landingDamage = damage;
        entity.landingMode = 1;
    }
};

TEST_F(EntityTurns, EndByTimeByDistanceAndAfterTheirDeath) {
    model.onKillScript = hook("kill.c", "trigger");
    model.onDeathScript = hook("death.c", "self");
    entity.lifeTicks = 2;
    turn();
    EXPECT_TRUE(entity.alive);
    turn();
    EXPECT_FALSE(entity.alive);
    EXPECT_EQ(playing(entity), "death");
    EXPECT_EQ(entity.deathTicks, 30);
    turn(30);
    EXPECT_TRUE(entity.visible);
    turn();
    EXPECT_FALSE(entity.visible);
    model.lifespanSeconds = 0.175F;
    EXPECT_EQ(entityOf(&model).lifeTicks, 11) << "ten and a half";

    model.offscreenKill = 50;
    RuntimeEntity& far = add(model, static_cast<float>(config.logicalWidth) + 50);
    turn();
    EXPECT_TRUE(far.alive);
    far.worldX += 1;
    turn();
    EXPECT_FALSE(far.alive);
    EXPECT_FALSE(far.visible);
    RuntimeEntity& effect = add(model, 100);
    effect.animationEffect = true;
    turn(10);
    EXPECT_FALSE(effect.visible);
    EXPECT_EQ(global("hooks"), "death.c:5 kill.c:0 kill.c:1 kill.c:0 ");
}

TEST_F(EntityTurns, FrozenAndHeldOnesStayWhereTheyAreAndPlayOn) {
    entity.scriptVelocityX = 3;
    entity.freezeTicks = 2;
    entity.paletteMap = 4;
    entity.preFreezePaletteMap = 1;
    entity.lastFrame = 0;
    turn();
    EXPECT_EQ(entity.animation.tick(), 1);
    EXPECT_EQ(entity.paletteMap, 4);
    turn();
    EXPECT_EQ(entity.paletteMap, 1);
    EXPECT_EQ(entity.lastFrame, kNoFrame) << "the frame is shown anew";
    EXPECT_EQ(entity.preFreezePaletteMap, -1);
    entity.grabbed = true;
    turn();
    EXPECT_EQ(entity.worldX, 300);
    EXPECT_EQ(entity.animation.tick(), 2);
    entity.grabbed = false;
    turn();
    EXPECT_EQ(entity.worldX, 303);
}

TEST_F(EntityTurns, TwoBouncesEndWithTheThirdContact) {
    model.bounceFactor = 0.4F;
    drop(7, 2);
    turn();
    EXPECT_EQ(entity.bouncesRemaining, 1);
    EXPECT_FLOAT_EQ(entity.verticalVelocity, -0.94F) << "0.4 of 2.35";
    EXPECT_FLOAT_EQ(entity.altitude, -0.1F);
    while (entity.bouncesRemaining > 0) turn();
    EXPECT_FLOAT_EQ(entity.verticalVelocity, -0.604F) << "0.4 of 1.51";
    EXPECT_EQ(entity.health, 100);
    for (int i = 0; i < 10 && entity.fallTicks > 0; ++i) turn();
    EXPECT_EQ(entity.health, 93);
    EXPECT_EQ(entity.altitude, 0);
    EXPECT_EQ(playing(entity), "rise");
    EXPECT_EQ(entity.recoveryTicks, config.recoveryTicks);
    EXPECT_EQ(entity.landingDamage, 0);
    model.riseInv = 2;
    turn(config.recoveryTicks);
    EXPECT_EQ(playing(entity), "idle");
    EXPECT_EQ(entity.invincibleTicks, 120);
}

TEST_F(EntityTurns, NoBounceIsWeakerThanHalfAPixel) {
    drop(0, 1);
    entity.verticalVelocity = 1;
    turn();
    EXPECT_EQ(entity.verticalVelocity, -0.675F) << "by half, where the model does not say";
    model.bounceFactor = 0.1F;
    drop(0, 1);
    turn();
    EXPECT_EQ(entity.verticalVelocity, -0.5F);
}

TEST_F(EntityTurns, ABounceEndsTheTurnAndAFatalLandingTheLife) {
    entity.z = 2000;
    drop(0, 1);
    turn();
    EXPECT_EQ(entity.z, 2000) << "not yet held in the stage";
    drop(100, 0);
    turn();
    EXPECT_EQ(entity.z, 1000);
    EXPECT_FALSE(entity.alive);
    EXPECT_EQ(playing(entity), "death");
    EXPECT_EQ(entity.recoveryTicks, 0);
}

TEST_F(EntityTurns, ALandFrameLastsAsLongAsWhatIsLeftOfItsAnimation) {
    std::vector<generated::Frame> three(3, *entity.animation.frame());
    generated::Animation falling = model.animations[3];
    falling.frames = three.data();
    falling.frameCount = 3;
    falling.landFrame = 1;
    entity.animation.setAnimation(&falling);
    drop(0, 0);
    turn();
    EXPECT_EQ(entity.animation.frameIndex(), 1U);
    EXPECT_EQ(entity.recoveryTicks, 21) << "two frames of ten ticks and one";
    EXPECT_EQ(playing(entity), "fall");
}

TEST_F(EntityTurns, GravityTakesOnlyThoseItConcernsAndNotOverAPlatform) {
    entity.altitude = -20;
    model.subjectToGravity = false;
    turn(2);
    EXPECT_EQ(entity.altitude, -20);
    model.subjectToGravity = true;
    config.gravity = 5;
    RuntimeEntity& carrier = add(makeModel("obstacle", {"idle"}), 300, 210);
    carry(carrier, 40, 20, 20);
    turn(2);
    EXPECT_EQ(entity.altitude, -20);
    carrier.visible = false;
    turn(2);
    EXPECT_FLOAT_EQ(entity.altitude, -19.65F) << "their own gravity";
}

TEST_F(EntityTurns, HolesTurnThemAroundUnlessTheyIgnoreThem) {
    ground(GeometryKind::Hole, 310, 50, 0);
    entity.scriptVelocityX = 20;
    const auto walk = [&] {
        entity.worldX = 300;
        entity.facing = 1;
        turn();
        return std::pair(entity.worldX, entity.facing);
    };
    EXPECT_EQ(walk(), std::pair(300.0F, -1));
    model.noFlip = true;
    EXPECT_EQ(walk(), std::pair(300.0F, 1));
    model.noFlip = false;
    model.facingAdjust = 2;
    EXPECT_EQ(walk(), std::pair(300.0F, -1)) << "the model's own way, not the way back";
    model.aiMove = 0x10000;
    EXPECT_EQ(walk(), std::pair(320.0F, -1));
    EXPECT_TRUE(entity.alive);
}

TEST_F(EntityTurns, TheScreenAndTheDepthHoldThoseTheyConcern) {
    world.camera.x = 100;
    entity.worldX = 50;
    entity.z = 1005;
    model.onBlockZScript = hook("block.c", "plane");
    model.onMoveZScript = hook("move.c", "movez");
    turn();
    EXPECT_EQ(entity.worldX, 50);
    EXPECT_EQ(entity.z, 1000);
    EXPECT_EQ(global("hooks"), "block.c:1 move.c:-5 ");
    entity.subjectToScreen = true;
    model.subjectToMaxZ = false;
    entity.z = 1005;
    turn();
    EXPECT_EQ(entity.worldX, 104);
    EXPECT_EQ(entity.z, 1005);
    world.stage.length = 20;
    turn();
    EXPECT_EQ(entity.worldX, 104) << "a stage shorter than its camera's place";
}

TEST_F(EntityTurns, ChildrenFollowAndAreRecalled) {
    generated::Character& small = makeModel("npc", {"idle", "walk", "respawn"});
    small.speed = 2;
    small.runSpeed = 0;
    RuntimeEntity& child = add(small, 150);
    child.parentHandle = entity.handle;
    turn();
    EXPECT_EQ(child.worldX, 152);
    EXPECT_EQ(playing(child), "walk");
    EXPECT_EQ(child.facing, 1);
    child.worldX = 200;
    turn();
    EXPECT_EQ(child.worldX, 200) << "near enough";
    EXPECT_EQ(playing(child), "idle");
    small.childRecallOffsetX = 30;
    small.childFollowOffsetX = 10;
    entity.facing = -1;
    child.worldX = -11;
    turn();
    EXPECT_EQ(child.worldX, 260) << "behind a parent who looks to the left";
    EXPECT_EQ(child.facing, -1);
    EXPECT_EQ(playing(child), "respawn");
    entity.alive = false;
    child.worldX = 0;
    turn();
    EXPECT_EQ(child.worldX, 0);
}

struct Spawner final : NamedHost {
    std::function<void()> spawn;
    bool answer(const std::string&, std::span<const ScriptValue>, ScriptContext&, UnansweredNames&,
                ScriptValue&) override {
        spawn();
        return true;
    }
};

TEST_F(EntityTurns, WhoComesWhileChildrenAreSentAwayStays) {
    folder.write("data/again.c", "void main(){ again(); }");
    Spawner host;
    scripts.open(folder.path(), folder.path() / "data", &host);
    generated::Character& child = makeModel("npc", {"idle"});
    child.onKillScript = "again.c";
    host.spawn = [&] { add(child, 20).parentHandle = kPlayer1Handle; };
    add(child, 10).parentHandle = kPlayer1Handle;
    add(child, 30).parentHandle = entity.handle;
    quietly([&] { unsummonChildren(tick, kPlayer1Handle, true); });
    ASSERT_EQ(world.entities.size(), 4U);
    EXPECT_FALSE(world.entities[1].alive || world.entities[1].visible);
    EXPECT_TRUE(world.entities[2].alive) << "another's";
    EXPECT_TRUE(world.entities[3].alive);
}

TEST_F(EntityTurns, TheDeadLeaveTheRosterAndNewcomersCountAtOnce) {
    const auto count = [&] {
        int present = 0;
        visitRoster(world, world.roster.present, [&](const RuntimeEntity&) {
            ++present;
            return false;
        });
        return present;
    };
    turn();
    add(model, 10);
    EXPECT_EQ(count(), 2);
    turn();
    entity.visible = false;
    turn();
    EXPECT_EQ(count(), 1);
    world.entities.clear();
    EXPECT_EQ(count(), 0) << "handles of another stage name nobody";
    add(model, 10);
    turn();
    EXPECT_EQ(count(), 1);
}

}  // namespace
}  // namespace port
