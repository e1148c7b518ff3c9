// What entering a frame does to the world.

#include "Engine.hpp"
#include "EngineTrial.hpp"

namespace port {
namespace {

struct EngineFrames : EngineTrial {
    EngineFrames() { EXPECT_TRUE(initialize()); }

    // Effects that the audio system decoded in the last ticks.
    [[nodiscard]] int effects() const {
        int count = 0;
        for (std::size_t at = 0; (at = log.find("Decoded effect:", at)) != log.npos; ++at) ++count;
        return count;
    }
};

TEST_F(EngineFrames, EachFrameTakesEffectOnceWhenItIsFirstDrawn) {
    probe.play("follow1");
    const ActorPlace before = probe.playerPlace();
    probe.drawStage();
    ActorPlace place = probe.playerPlace();
    EXPECT_EQ(place.x, before.x + 5);
    EXPECT_EQ(place.z, before.z + 3);
    EXPECT_EQ(place.altitude, before.altitude - 2) << "up is negative";
    EXPECT_EQ(global("noted"), "7") << "the frame's own command sees the helper's functions";
    EXPECT_EQ(global("animation"), "follow1");
    EXPECT_EQ(probe.playerSprite()->width, 8);
    probe.drawStage();
    EXPECT_EQ(probe.playerPlace().x, place.x) << "the same frame again";

    ticks(1);  // frame 1
    EXPECT_EQ(effects(), 0) << "a bare name is no sound";
    EXPECT_EQ(probe.quakeIntensity(), 7);
    EXPECT_EQ(probe.quakeTicks(), 6) << "two for each of three loops, from the next frame on";
    EXPECT_EQ(probe.entities().size(), 0U);

    ticks(1);  // frame 2
    EXPECT_EQ(warnings, "") << "a missing sound is silent";
    ASSERT_EQ(probe.entities().size(), 1U);
    const RuntimeEntity& puff = probe.entities()[0];
    EXPECT_STREQ(puff.model->name, "Puff");
    EXPECT_EQ(puff.worldX, place.x + 10);
    EXPECT_EQ(puff.z, place.z + 2);
    EXPECT_EQ(puff.altitude, place.altitude - 5);
    EXPECT_EQ(puff.facing, 1);
    EXPECT_EQ(puff.parentHandle, kPlayer1Handle);
    EXPECT_EQ(puff.scriptCtx.local.at("spawn_type"), ScriptValue(2.0));
    EXPECT_EQ(puff.lastFrame, kNoFrame) << "it is drawn from the next frame on";

    ticks(1);  // frame 3
    EXPECT_EQ(probe.playerPlace().facing, -1);
    EXPECT_EQ(probe.playerPlace().altitude, -10);
    EXPECT_EQ(probe.playerSprite(), nullptr) << "the picture \"none\"";
    EXPECT_EQ(puff.lastFrame, 0U);

    ticks(1);  // frame 4
    ASSERT_NE(probe.playerWeapon(), nullptr);
    EXPECT_STREQ(probe.playerWeapon()->name, "Club");
    EXPECT_EQ(probe.playerWeaponUses(), 3);
    EXPECT_TRUE(logged("Player weapon index=1 model=Club uses=3")) << log;
    EXPECT_EQ(probe.playerContext().local.at("weapon"), ScriptValue(1.0));
}

TEST_F(EngineFrames, ASoundWithAPathPlaysAndMovementFollowsTheFacing) {
    probe.play("follow1");
    ticks(1);  // the animation is at its second frame by the draw pass
    EXPECT_EQ(effects(), 0) << "only the frame that is current when it is drawn takes effect";
    probe.play("follow1");
    const float x = probe.playerPlace().x;
    captured([&] {
        probe.drawStage();
        return 0;
    });
    EXPECT_EQ(effects(), 1) << log;
    EXPECT_EQ(probe.playerPlace().x, x + 5);
}

TEST_F(EngineFrames, ALeftwardActorMovesAndSpawnsTheOtherWay) {
    probe.playerFacing() = -1;
    probe.play("follow1");
    const float x = probe.playerPlace().x;
    probe.drawStage();
    EXPECT_EQ(probe.playerPlace().x, x - 5);
    probe.player().setFrame(2);
    probe.drawStage();
    ASSERT_EQ(probe.entities().size(), 1U);
    EXPECT_EQ(probe.entities()[0].worldX, x - 5 - 10);
    EXPECT_EQ(probe.entities()[0].facing, -1);
}

TEST_F(EngineFrames, AOneFrameLoopIsEnteredOnce) {
    probe.play("follow2");
    const float x = probe.playerPlace().x;
    ticks(5);
    EXPECT_EQ(probe.playerPlace().x, x + 2);
}

TEST_F(EngineFrames, ASummonIsAloneWhileItLivesAndGoesWhenItIsSentAway) {
    probe.play("follow3");
    probe.drawStage();
    ASSERT_EQ(probe.entities().size(), 1U);
    EXPECT_TRUE(probe.entities()[0].summonedChild);
    probe.play("follow3");
    probe.drawStage();
    EXPECT_EQ(probe.entities().size(), 1U);
    ticks(1);
    EXPECT_FALSE(probe.entities()[0].alive);
    EXPECT_FALSE(probe.entities()[0].visible);
    EXPECT_EQ(probe.entities()[0].scriptCtx.local.at("trigger"), ScriptValue(1.0));
    probe.play("follow3");
    probe.drawStage();
    EXPECT_EQ(probe.entities().size(), 2U) << "the dead stay in their place";
}

TEST_F(EngineFrames, AFullStageTakesNoMoreChildren) {
    for (int i = 0; i < 1023; ++i) probe.entities().emplace_back();
    const auto summon = [&] {
        probe.unsummon(kPlayer1Handle);
        probe.play("follow3");
        probe.drawStage();
        return probe.entities().size();
    };
    EXPECT_EQ(summon(), 1024U);
    EXPECT_EQ(summon(), 1025U) << "the dead leave room for the living";
    probe.entities().emplace_back();
    EXPECT_EQ(summon(), 1026U) << "refused";
}

TEST_F(EngineFrames, EntryGoesFromPlayer1OverTheOthersToTheEntities) {
    probe.config().activePlayers = 2;
    probe.joinedPlayers()[1] = true;
    captured([&] {
        probe.beginGame();
        return 0;
    });
    probe.coop()[0].model = &generated::kCharacters[2];  // Mate, without scripts
    probe.coop()[0].animation.setAnimation(findAnimation(probe.coop()[0].model, "idle"));
    const float x = probe.coop()[0].worldX;
    ticks(1);
    EXPECT_EQ(probe.coop()[0].worldX, x + 3);
    EXPECT_EQ(probe.quakeTicks(), 0) << "noquake";
    ASSERT_NE(probe.coop()[0].sprite, nullptr);
    std::vector<int> kinds;
    for (const SceneQueueTrace& item : probe.trace()) kinds.push_back(item.kind);
    EXPECT_EQ(kinds, (std::vector<int>{1, 4, 4, 2, 8}));
}

TEST_F(EngineFrames, HitsDeathsAndDustBringTheirOwn) {
    generated::Animation attack{};
    attack.hitFx = "data/sounds/HIT";  // found in another case and without its extension
    generated::Character model = *probe.playerModel();
    model.dieSound = "levels/street.txt";
    captured([&] {
        probe.playHitFx(&attack);
        probe.playHitFx(nullptr);
        probe.playDieSound(&model);
        probe.playDieSound(nullptr);
        return 0;
    });
    EXPECT_EQ(effects(), 1) << log;
    EXPECT_EQ(warnings, "diesound diagnostic: unsupported audio extension: .txt\n");

    probe.queueModelDust("puff", 30, 40, -1, kPlayer1Handle);
    probe.queueModelDust("nobody", 30, 40, -1, kPlayer1Handle);
    probe.queueModelDust("", 30, 40, -1, kPlayer1Handle);
    probe.drawStage();
    ASSERT_EQ(probe.entities().size(), 1U);
    const RuntimeEntity& dust = probe.entities()[0];
    EXPECT_EQ(dust.scriptCtx.local.at("spawn_type"), ScriptValue(10.0));
    EXPECT_EQ(dust.altitude, 0);
    ticks(2);
    EXPECT_TRUE(dust.visible);
    ticks(2);
    EXPECT_FALSE(dust.visible) << "an effect goes when it has played";
}

TEST_F(EngineFrames, LandingAndTheApexMoveForwardOnly) {
    generated::Animation animation = *exactAnimation(probe.playerModel(), "follow1");
    animation.landFrame = 2;
    animation.landDustModel = "Puff";
    animation.dropFrame = 3;
    AnimationPlayer player;
    player.setAnimation(&animation);
    probe.land(player, {10, 20, -5, -1});
    EXPECT_EQ(player.frameIndex(), 2U);
    ASSERT_EQ(probe.pendingChildren().size(), 1U);
    const PendingChildSpawn& dust = probe.pendingChildren()[0];
    EXPECT_TRUE(dust.animationEffect);
    EXPECT_EQ(dust.effectSpawnType, 8);
    EXPECT_EQ(dust.worldX, 10);
    EXPECT_EQ(dust.altitude, 0) << "dust lies on the ground";
    EXPECT_EQ(dust.facing, -1);
    probe.land(player, {});
    EXPECT_EQ(probe.pendingChildren().size(), 1U) << "it has landed";

    EngineProbe::apex(player, -1, -0.5F);
    EXPECT_EQ(player.frameIndex(), 2U) << "still rising";
    EngineProbe::apex(player, -0.5F, 0);
    EXPECT_EQ(player.frameIndex(), 3U);
    player.setFrame(4);
    EngineProbe::apex(player, -0.5F, 0);
    EXPECT_EQ(player.frameIndex(), 4U);
    animation.landFrame = 5;
    player.setFrame(0);
    probe.land(player, {});
    EXPECT_EQ(player.frameIndex(), 0U) << "there is no such frame";
}

}  // namespace
}  // namespace port
