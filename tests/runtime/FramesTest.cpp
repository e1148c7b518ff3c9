// What entering a frame does to the world.

#include "Frames.hpp"

#include "Entities.hpp"
#include "NamedHost.hpp"
#include "Spawning.hpp"
#include "WorldTrial.hpp"

namespace port {
namespace {

struct Frames : WorldTrial {
    // The animations go on by a tick, and the frames that are current then take effect.
    void pass() {
        ++world.tick;
        player.animation.update();
        for (RuntimeCoopPlayer& mate : world.coop) mate.animation.update();
        updateEntities(tick);
        enter();
    }
    // As they are, without a tick.
    void enter() {
        events.sounds.clear();
        quietly([&] {
            enterFrames(tick);
            flushChildSpawns(tick);
        });
    }
    [[nodiscard]] std::vector<std::string> sounds() const {
        std::vector<std::string> names;
        for (const SoundCue& cue : events.sounds) names.emplace_back(cue.name);
        return names;
    }
};

TEST_F(Frames, EachTakesEffectOnceWhenItIsFirstDrawn) {
    play(player, "follow1");
    const ActorPlace before = player.place();
    enter();
    EXPECT_EQ(player.worldX, before.x + 5);
    EXPECT_EQ(player.z, before.z + 3);
    EXPECT_EQ(player.altitude, before.altitude - 2) << "up is negative";
    EXPECT_EQ(global("noted"), "7") << "the frame's own command sees the helper's functions";
    EXPECT_EQ(global("animation"), "follow1");
    EXPECT_STREQ(player.shown.frame->sprite, "data/chars/red.gif");
    EXPECT_EQ(sounds(), std::vector<std::string>{"data/sounds/hit.wav"});
    enter();
    EXPECT_EQ(player.worldX, before.x + 5) << "the same frame again";
    EXPECT_TRUE(sounds().empty());

    pass();  // frame 1
    EXPECT_TRUE(sounds().empty()) << "a bare name is no sound";
    EXPECT_EQ(world.shake.quakeIntensity, 7);
    EXPECT_EQ(world.shake.quakeTicks, 6) << "two for each of three loops";
    EXPECT_EQ(world.entities.size(), 0U);

    pass();  // frame 2
    ASSERT_EQ(world.entities.size(), 1U);
    const RuntimeEntity& puff = world.entities[0];
    EXPECT_STREQ(puff.model->name, "Puff");
    EXPECT_EQ(puff.worldX, player.worldX + 10);
    EXPECT_EQ(puff.z, player.z + 2);
    EXPECT_EQ(puff.altitude, player.altitude - 5);
    EXPECT_EQ(puff.facing, 1);
    EXPECT_EQ(puff.parentHandle, kPlayer1Handle);
    EXPECT_EQ(puff.scriptCtx.local.at("spawn_type"), ScriptValue(2.0));
    EXPECT_EQ(puff.lastFrame, kNoFrame) << "it is drawn from the next frame on";

    pass();  // frame 3
    EXPECT_EQ(player.facing, -1);
    EXPECT_EQ(player.altitude, -10);
    EXPECT_STREQ(player.shown.frame->sprite, "none");
    EXPECT_EQ(puff.lastFrame, 0U);

    pass();  // frame 4
    ASSERT_NE(player.equippedWeapon, nullptr);
    EXPECT_STREQ(player.equippedWeapon->name, "Club");
    EXPECT_EQ(player.weaponUses, 3);
    EXPECT_EQ(log, "Player weapon index=1 model=Club uses=3\n");
    EXPECT_EQ(player.scriptCtx.local.at("weapon"), ScriptValue(1.0));
}

TEST_F(Frames, OnlyTheFrameThatIsCurrentWhenItIsDrawnTakesEffect) {
    play(player, "follow1");
    const float x = player.worldX;
    pass();  // the animation is at its second frame by then
    EXPECT_TRUE(sounds().empty());
    EXPECT_EQ(player.worldX, x);
    play(player, "follow2");
    for (int i = 0; i < 5; ++i) pass();
    EXPECT_EQ(player.worldX, x + 2) << "a loop of one frame is entered once";
}

TEST_F(Frames, ALeftwardActorMovesAndSpawnsTheOtherWay) {
    player.facing = -1;
    play(player, "follow1");
    const float x = player.worldX;
    enter();
    EXPECT_EQ(player.worldX, x - 5);
    player.animation.setFrame(2);
    enter();
    ASSERT_EQ(world.entities.size(), 1U);
    EXPECT_EQ(world.entities[0].worldX, x - 5 - 10);
    EXPECT_EQ(world.entities[0].facing, -1);
}

TEST_F(Frames, ASummonIsAloneWhileItLivesAndGoesWhenItIsSentAway) {
    const auto summon = [&] {
        play(player, "follow3");
        enter();
        return world.entities.size();
    };
    EXPECT_EQ(summon(), 1U);
    EXPECT_TRUE(world.entities[0].summonedChild);
    EXPECT_EQ(summon(), 1U);
    pass();
    EXPECT_FALSE(world.entities[0].alive);
    EXPECT_FALSE(world.entities[0].visible);
    EXPECT_EQ(world.entities[0].scriptCtx.local.at("trigger"), ScriptValue(1.0));
    EXPECT_EQ(summon(), 2U) << "the dead stay in their place";
}

TEST_F(Frames, AFullStageTakesNoMoreChildren) {
    for (int i = 0; i < 1023; ++i) addEntity("puff");
    const auto summon = [&] {
        unsummonChildren(tick, kPlayer1Handle, false);
        play(player, "follow3");
        enter();
        return world.entities.size();
    };
    EXPECT_EQ(summon(), 1024U);
    EXPECT_EQ(summon(), 1025U) << "the dead leave room for the living";
    queueEffect(world, "puff", kModelDust, {}, kNobody);
    enter();
    EXPECT_EQ(warnings, "Spawn refused: the stage is full\n");
    EXPECT_EQ(world.entities.add({}), nullptr) << "there is no other way in";
    EXPECT_EQ(world.entities.size(), 1025U);
}

TEST_F(Frames, EntryGoesFromPlayer1OverTheOthersToTheEntities) {
    joinCoop("mate");
    RuntimeCoopPlayer& second = joinCoop("hero");
    RuntimeCoopPlayer& mate = world.coop[0];
    RuntimeEntity& hero = addEntity("hero");
    const float x = mate.worldX;
    scripts.machine().globals().clear();
    play(player, "idle");
    play(second, "follow2");
    play(hero, "follow2");
    second.animation.setFrame(0);
    enter();
    EXPECT_EQ(mate.worldX, x + 3);
    EXPECT_EQ(world.shake.quakeTicks, 0) << "noquake";
    EXPECT_NE(mate.shown.frame, nullptr);
    EXPECT_EQ(global("order"), "dF0F0dF0") << "a co-op player has no draw hook";
}

TEST_F(Frames, AScriptThatChangesTheAnimationChangesNoFrameThatWasEntered) {
    folder.write("data/scripts/turn.c", "void main(){ turn(); }");
    struct Turn final : NamedHost {
        Actor* actor = nullptr;
        bool answer(const std::string&, std::span<const ScriptValue>, ScriptContext&,
                    UnansweredNames&, ScriptValue&) override {
            play(*actor, "follow1");
            return true;
        }
    } host;
    host.actor = &player;
    scripts.open(folder.path(), folder.path() / "data", &host);
    generated::Character model = *player.model;
    model.animationScript = "scripts/turn.c";
    model.onDrawScript = "";
    player.model = &model;
    play(player, "walk");
    enter();
    EXPECT_STREQ(player.shown.frame->sprite, "data/chars/green.gif") << "what was entered is shown";
    EXPECT_STREQ(player.animation.animation()->name, "follow1");
    EXPECT_EQ(player.lastFrame, kNoFrame) << "the new animation's frame waits";
}

TEST_F(Frames, HitsDeathsAndDustBringTheirOwn) {
    generated::Animation attack{};
    attack.hitFx = "data/sounds/HIT";
    generated::Character model = *player.model;
    model.dieSound = "sounds/die.wav";
    playHitFx(events, &attack);
    playHitFx(events, nullptr);
    playDieSound(events, &model);
    playDieSound(events, nullptr);
    EXPECT_EQ(sounds(), (std::vector<std::string>{"data/sounds/HIT", "sounds/die.wav"}));
    EXPECT_STREQ(events.sounds[1].diagnostic, "diesound diagnostic: ");

    for (const char* name : {"puff", "nobody", ""}) {
        queueEffect(world, name, kModelDust, {30, 40, -7, -1}, kPlayer1Handle);
    }
    enter();
    ASSERT_EQ(world.entities.size(), 1U);
    const RuntimeEntity& dust = world.entities[0];
    EXPECT_EQ(dust.scriptCtx.local.at("spawn_type"), ScriptValue(10.0));
    EXPECT_EQ(dust.altitude, 0) << "dust lies on the ground";
    EXPECT_EQ(dust.facing, -1);
    pass();
    pass();
    EXPECT_TRUE(dust.visible);
    pass();
    pass();
    EXPECT_FALSE(dust.visible) << "an effect goes when it has played";
}

TEST_F(Frames, LandingAndTheApexMoveForwardOnly) {
    generated::Animation animation = *exactAnimation(player.model, "follow1");
    animation.landFrame = 2;
    animation.landDustModel = "Puff";
    animation.dropFrame = 3;
    AnimationPlayer frames;
    frames.setAnimation(&animation);
    const auto land = [&] { applyLandFrame(world, frames, {10, 20, -5, -1}, kPlayer1Handle); };
    land();
    EXPECT_EQ(frames.frameIndex(), 2U);
    ASSERT_EQ(world.pendingChildSpawns.size(), 1U);
    EXPECT_EQ(world.pendingChildSpawns[0].effectSpawnType, 8);
    EXPECT_EQ(world.pendingChildSpawns[0].worldX, 10);
    land();
    EXPECT_EQ(world.pendingChildSpawns.size(), 1U) << "it has landed";

    applyDropFrameOnApex(frames, -1, -0.5F);
    EXPECT_EQ(frames.frameIndex(), 2U) << "still rising";
    applyDropFrameOnApex(frames, -0.5F, 0);
    EXPECT_EQ(frames.frameIndex(), 3U);
    frames.setFrame(4);
    applyDropFrameOnApex(frames, -0.5F, 0);
    EXPECT_EQ(frames.frameIndex(), 4U);
    animation.landFrame = 5;
    frames.setFrame(0);
    land();
    EXPECT_EQ(frames.frameIndex(), 0U) << "there is no such frame";
}

TEST_F(Frames, AQuakeRunsOutByThePicture) {
    world.shake.quakeTicks = 2;
    world.shake.quakeIntensity = 1000000000;
    world.tick = 1;
    shakeScreen(world);
    EXPECT_EQ(world.shake.rockX, 1 << 24) << "no further than a picture reaches";
    shakeScreen(world);
    EXPECT_EQ(world.shake.quakeIntensity, 0);
    shakeScreen(world);
    EXPECT_EQ(world.shake.rockX, 0);
}

}  // namespace
}  // namespace port
