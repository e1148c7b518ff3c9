// The passes of the loop: their order, their end, and runs that play by themselves.

#include <numeric>

#include "AnimationLookup.hpp"
#include "Engine.hpp"
#include "EngineTrial.hpp"
#include "StageFlow.hpp"
#include "WorldHash.hpp"

namespace port {
namespace {

using EngineLoop = EngineTrial;
using EngineLoopInWindow = WindowTrial;

TEST_F(EngineLoop, AHeadlessRunLeavesAfter900PassesAndSaysWhatItCameTo) {
    ASSERT_TRUE(initialize());
    game.frontend.state = FrontendState::MainMenu;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(world.tick, 899U) << "the first pass only leaves the menu";
    EXPECT_EQ(sleeps, std::vector<int>(900, 16)) << "1000/60 in whole milliseconds";
    std::size_t lines = 0;
    for (std::size_t at = 0; (at = log.find("\nheadless camera=", at)) != log.npos; ++at) {
        ++lines;
    }
    EXPECT_EQ(lines, 7U) << "at the ticks 120, 240 ... 840";
    const RunState seen{world, game.scripts.machine(), static_cast<int>(game.frontend.state)};
    EXPECT_TRUE(log.ends_with("SMOKE GAME HASH " + hashDigits(worldHash(seen)) + "\n")) << log;
}

TEST_F(EngineLoop, TheFrameLimitSetsThePace) {
    ASSERT_TRUE(initialize());
    game.config.fpsLimit = 0;
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(sleeps.empty());
    game.config.fpsLimit = 5000;
    passesUntilClosed = 10;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(sleeps, std::vector<int>(10, 1));
}

TEST_F(EngineLoop, QuitEndsTheLoopBeforeATick) {
    ASSERT_TRUE(initialize());
    game.frontend.state = FrontendState::Quit;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(world.tick, 0U);
    EXPECT_TRUE(sleeps.empty());
}

TEST_F(EngineLoopInWindow, EscapeAndStartPauseBeforeAnythingOfThePassHappens) {
    for (const bool byPad : {false, true}) {
        Engine other(devices());
        passesUntilClosed = 3;
        beforePass = [&] {
            if (passesUntilClosed > 2) return;
            if (byPad) {
                pads[0] = {true, kPadStart, 0, 0, 0};
            } else {
                keysDown = {kKeyEscape};
            }
        };
        quietly([&] {
            EXPECT_TRUE(other.initialize(folder.path()));
            beginGame(other.game());
            other.run();
        });
        EXPECT_EQ(other.game().frontend.state, FrontendState::Paused) << byPad;
        EXPECT_EQ(other.game().world.tick, 1U) << byPad;
        keysDown.clear();
        pads.clear();
    }
}

TEST_F(EngineLoopInWindow, AMenuIsShownWithTheStageBelowIt) {
    ASSERT_TRUE(initialize());
    begin(0);
    game.frontend.state = FrontendState::Paused;
    for (const bool asWritten : {false, true}) {
        game.config.asWritten = asWritten;
        framesShown = 0;
        passesUntilClosed = 4;
        run();
        EXPECT_EQ(framesShown, asWritten ? 8 : 4);
    }
}

TEST_F(EngineLoop, ATickRunsItsStepsInOrder) {
    ASSERT_TRUE(initialize());
    standStill();
    EXPECT_EQ(global("order"), "LS0") << "the level's script, then the player's";
    game.scripts.machine().globals().erase("order");
    ticks(1);
    EXPECT_EQ(global("order"), "UEdF0") << "update, updated, then the draw pass with its frames";
    game.scripts.machine().globals().erase("order");
    ticks(2);
    EXPECT_EQ(global("order"), "UEdF1UEd") << "each frame of two ticks is entered once";
    EXPECT_EQ(framesShown, 3);
}

TEST_F(EngineLoop, TheScriptsOfATickShareTheirSteps) {
    folder.write("assets/openbor-data/scripts/update.c",
                 "void main(){ int i; for(i = 0; i < 5000; i = i + 1){} }");
    folder.write("assets/openbor-data/scripts/updated.c",
                 "void main(){ setglobalvar(\"reached\", getglobalvar(\"reached\") + 1); }");
    ASSERT_TRUE(initialize());
    ticks(1);
    EXPECT_EQ(global("reached"), "1");
    game.scripts.setPassSteps(4000);
    ticks(2);
    EXPECT_EQ(global("reached"), "1") << "the first script has taken them all";
    EXPECT_TRUE(warnings.starts_with(
        "Script VM global-update error [scripts/update.c]: script step limit exceeded\n"
        "Script VM global-updated error [scripts/updated.c]: script step limit exceeded\n"))
        << warnings;
    game.scripts.setPassSteps(1000000);
    ticks(1);
    EXPECT_EQ(global("reached"), "2") << "each tick begins anew";
}

TEST_F(EngineLoop, GuardComesBackOnceASecondUpToTheModels) {
    folder.write("config/graphics.ini", "[input]\nactive_players=2\n");
    ASSERT_TRUE(initialize());
    EXPECT_EQ(world.player1.guardPoints, 12);
    world.player1.guardPoints = 1;
    world.coop[0].model = &generated::kCharacters[2];
    world.coop[0].guardPoints = -4;
    ticks(59);
    EXPECT_EQ(world.player1.guardPoints, 1);
    ticks(1);
    EXPECT_EQ(world.player1.guardPoints, 6) << "by the model's guardrate";
    ticks(120);
    EXPECT_EQ(world.player1.guardPoints, 12);
    EXPECT_EQ(world.coop[0].guardPoints, -4) << "a model without guard gets none";
}

TEST_F(EngineLoop, TheDeadStandUpInTheSameTickWhileThereAreLives) {
    ASSERT_TRUE(initialize());
    EXPECT_EQ(world.player1.livesRemaining, 2);
    EXPECT_EQ(world.player1.creditsRemaining, 1);
    game.scripts.machine().globals().erase("order");
    for (const char* line : {"Respawn P1 lives=1 credits=1", "Respawn P1 lives=2 credits=0",
                             "Respawn P1 lives=1 credits=0"}) {
        world.player1.alive = false;
        world.player1.health = 0;
        ticks(1);
        EXPECT_TRUE(logged(line)) << log;
        EXPECT_TRUE(world.player1.alive);
        EXPECT_EQ(world.player1.health, 120);
        EXPECT_EQ(game.frontend.state, FrontendState::Playing);
    }
    EXPECT_TRUE(global("order").ends_with("S0")) << "the spawn script ran again";
    world.player1.alive = false;
    ticks(1);
    EXPECT_EQ(game.frontend.state, FrontendState::GameOver);
    EXPECT_FALSE(world.player1.alive);
}

TEST_F(EngineLoop, CoopPlayersShareCreditsUnlessTheStageSaysNot) {
    folder.write("config/graphics.ini", "[input]\nactive_players=2\n");
    ASSERT_TRUE(initialize());
    const auto die = [&] {
        world.coop[0].alive = false;
        world.coop[0].health = 0;
        ticks(1);
    };
    die();
    EXPECT_TRUE(logged("Respawn P2 lives=1 credits=1")) << log;
    EXPECT_EQ(world.player1.livesRemaining, 1);

    world.stage.index = 4;  // noshare
    quietly([&] { beginGame(game); });
    die();
    EXPECT_TRUE(logged("Respawn P2 lives=1 credits=1")) << log;
    EXPECT_EQ(world.player1.livesRemaining, 2) << "player 1 keeps what is theirs";
    world.player1.alive = false;
    world.player1.livesRemaining = 1;
    world.player1.creditsRemaining = 0;
    ticks(1);
    EXPECT_EQ(game.frontend.state, FrontendState::Playing) << "one player is enough";
}

TEST_F(EngineLoop, AnImmediateBranchKeepsEverybodysState) {
    folder.write("config/graphics.ini", "[input]\nactive_players=2\n");
    ASSERT_TRUE(initialize());
    world.player1.health = 33;
    world.coop[0].health = 44;
    world.coop[0].worldX = 77;
    standStill();
    world.branch.target = 1;
    world.branch.immediate = true;
    world.stage.complete = true;
    ticks(1);
    EXPECT_EQ(world.stage.index, 1U);
    EXPECT_EQ(world.player1.health, 33);
    EXPECT_EQ(world.coop[0].health, 44);
    EXPECT_EQ(world.coop[0].worldX, 77) << "only player 1 is placed";
    EXPECT_EQ(world.player1.place().x, 60);
    EXPECT_FALSE(world.branch.immediate);
    EXPECT_FALSE(world.stage.complete);
}

TEST_F(EngineLoopInWindow, ACompleteStageGivesWayToTheNextAndTheLastToTheMenu) {
    ASSERT_TRUE(initialize());
    quietly([&] { beginGame(game); });
    world.player1.health = 30;
    world.stage.complete = true;
    folder.write("saves/slot1.sav", "save_version=3");
    quietly([&] { playPass(game); });
    EXPECT_EQ(world.stage.index, 1U);
    EXPECT_EQ(game.frontend.state, FrontendState::Playing);
    EXPECT_EQ(world.player1.health, 120) << "another chapter begins rested";
    EXPECT_EQ(std::accumulate(sleeps.begin(), sleeps.end(), 0), 250) << "the loading screen";
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "saves/slot1.sav"));
    world.stage.complete = true;
    quietly([&] { playPass(game); });
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "saves/slot1.sav"))
        << "a campaign that is finished cannot be continued";
    EXPECT_EQ(game.frontend.state, FrontendState::MainMenu) << "the next row is of another set";
    EXPECT_EQ(game.frontend.completionCount, 1);
}

TEST_F(EngineLoop, InOneChapterTheLivingRestALittleAndTheDeadStayDead) {
    folder.write("config/graphics.ini", "[input]\nactive_players=3\n");
    ASSERT_TRUE(initialize());
    world.stage.index = 2;
    quietly([&] {
        beginGame(game);
        world.player1.health = 30;
        world.coop[0].health = 118;
        world.coop[0].worldX = 300;
        world.coop[0].hasScriptDraw = true;
        world.coop[1].alive = false;
        world.coop[1].health = 0;
        advanceStage(game);
    });
    EXPECT_EQ(world.stage.index, 3U);
    EXPECT_TRUE(sleeps.empty()) << "nobody waits for a picture that nobody sees";
    EXPECT_EQ(world.player1.health, 35);
    EXPECT_EQ(world.coop[0].health, 120) << "up to the model's";
    EXPECT_EQ(world.coop[0].worldX, 50) << "at the place of the second player";
    EXPECT_EQ(world.coop[1].health, 0);
    EXPECT_FALSE(world.coop[1].alive);
    world.branch.target = 1;
    quietly([&] { advanceStage(game); });
    EXPECT_EQ(world.stage.index, 1U) << "a branch goes before the next of the set";
    quietly([&] { beginGame(game); });
    EXPECT_TRUE(world.coop[0].hasScriptDraw) << "how scripts draw a player outlasts a game";
    EXPECT_FALSE(world.coop[1].hasScriptDraw);
}

TEST_F(EngineLoopInWindow, TheNaturalEndWantsAnEmptyStageAndAPlayerNearItsEnd) {
    ASSERT_TRUE(initialize());
    quietly([&] { beginGame(game); });
    EXPECT_FALSE(stageEndReached(world, game.config.logicalWidth)) << "a spawn is pending";
    world.stage.nextInstruction = world.stage.row->instructionCount;
    EXPECT_FALSE(stageEndReached(world, game.config.logicalWidth));
    world.player1.worldX = 2564 - 256;
    EXPECT_TRUE(stageEndReached(world, game.config.logicalWidth));
    world.player1.worldX -= 1;
    EXPECT_FALSE(stageEndReached(world, game.config.logicalWidth));
    world.player1.worldX = 2563;
    RuntimeEntity& robot = *world.entities.add({});
    robot.model = &generated::kCharacters[0];
    EXPECT_FALSE(stageEndReached(world, game.config.logicalWidth)) << "an enemy is left";
    robot.alive = false;
    EXPECT_TRUE(stageEndReached(world, game.config.logicalWidth));
    world.player1.alive = false;
    EXPECT_FALSE(stageEndReached(world, game.config.logicalWidth)) << "the dead are nowhere";
    world.stage.verticalScroll = true;
    EXPECT_TRUE(stageEndReached(world, game.config.logicalWidth)) << "it has no right end";
}

TEST_F(EngineLoop, TheLoopsEndSavesTheVolumesInForce) {
    ASSERT_TRUE(initialize());
    game.audio.setMusicVolume(0.5F);
    game.audio.setMasterVolume(7);
    game.audio.setEffectsVolume(-7);
    passesUntilClosed = 1;
    EXPECT_EQ(run(), 0);
    const RuntimeConfig saved = loadRuntimeConfig(folder.path() / "config" / "graphics.ini");
    EXPECT_FLOAT_EQ(saved.musicVolume, 0.5F);
    EXPECT_FLOAT_EQ(saved.masterVolume, 1.0F);
    EXPECT_FLOAT_EQ(saved.effectsVolume, 0.0F);

    std::filesystem::remove_all(folder.path() / "config");
    passesUntilClosed = 1;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(warnings, "Could not save graphics.ini\n");
}

TEST_F(EngineLoop, ASmokeGamePlaysItsFramesAndLeavesThePlayersFrameLimit) {
    ASSERT_TRUE(initialize());
    EXPECT_EQ(smoke(1), 0);
    EXPECT_TRUE(logged("SMOKE GAME START frames=60 stage=data/levels/street.txt player=Hero"));
    EXPECT_TRUE(log.ends_with("SMOKE GAME OK frames=60\n")) << log;
    EXPECT_EQ(world.tick, 60U);
    EXPECT_TRUE(sleeps.empty()) << "as fast as it goes";
    EXPECT_EQ(loadRuntimeConfig(folder.path() / "config" / "graphics.ini").fpsLimit, 60);
    EXPECT_NE(folder.read("runtime-startup.log").find("SMOKE TRACE stage: loaded\n"),
              std::string::npos);
}

TEST_F(EngineLoopInWindow, ASmokeGameThatDoesNotPlaySaysWhy) {
    ASSERT_TRUE(initialize());
    passesUntilClosed = 20;
    EXPECT_EQ(smoke(100), 73);
    EXPECT_TRUE(warnings.ends_with("SMOKE GAME FAIL gameplay_frames=20 expected=100\n"))
        << warnings;

    // A menu that nobody leaves.
    Engine other(devices());
    ASSERT_TRUE(captured([&] { return other.initialize(folder.path()); }));
    keysDown = {kKeyEscape};
    passesUntilClosed = 1000;
    EXPECT_EQ(captured([&] { return other.runSmokeGame(100); }), 74);
    EXPECT_TRUE(warnings.ends_with("SMOKE GAME FAIL: gameplay stopped before target frames\n"))
        << warnings;
    EXPECT_EQ(1000 - passesUntilClosed, 300) << "three passes for each frame";

    other.game().world.player1.model = nullptr;
    EXPECT_EQ(captured([&] { return other.runSmokeGame(100); }), 72);
    EXPECT_EQ(warnings, "SMOKE GAME FAIL: could not start gameplay\n");
}

TEST_F(EngineLoop, TheSameInputsGiveTheSameWorld) {
    const auto hashOf = [&](int frames, bool coop) {
        Engine other(devices());
        folder.write("config/graphics.ini", coop ? "[input]\nactive_players=2\n" : "");
        quietly([&] {
            EXPECT_TRUE(other.initialize(folder.path()));
            Player1& player = other.game().world.player1;
            player.animation.setAnimation(exactAnimation(player.model, "follow1"));
            for (int i = 0; i < frames; ++i) playPass(other.game());
        });
        return worldHash({other.game().world, other.game().scripts.machine()});
    };
    const std::uint64_t hash = hashOf(30, false);
    EXPECT_EQ(hashOf(30, false), hash);
    EXPECT_NE(hashOf(31, false), hash);
    EXPECT_NE(hashOf(30, true), hash);
}

}  // namespace
}  // namespace port
