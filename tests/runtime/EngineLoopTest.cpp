// The passes of the loop: their order, their end, and runs that play by themselves.

#include "Engine.hpp"
#include "EngineTrial.hpp"
#include "Input.hpp"

namespace port {
namespace {

using EngineLoop = EngineTrial;
using EngineLoopInWindow = WindowTrial;

TEST_F(EngineLoop, AHeadlessRunLeavesAfter900PassesAndSaysWhatItCameTo) {
    ASSERT_TRUE(initialize());
    probe.state() = FrontendState::MainMenu;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(probe.tick(), 899U) << "the first pass only leaves the menu";
    EXPECT_EQ(sleeps, std::vector<int>(900, 16)) << "1000/60 in whole milliseconds";
    std::size_t lines = 0;
    for (std::size_t at = 0; (at = log.find("headless camera=0 player=20 max=0\n", at)) != log.npos;
         ++at) {
        ++lines;
    }
    EXPECT_EQ(lines, 7U) << "at the ticks 120, 240 ... 840";
    char hash[40];
    std::snprintf(hash, sizeof hash, "SMOKE GAME HASH %016llx\n",
                  static_cast<unsigned long long>(probe.worldHash()));
    EXPECT_TRUE(log.ends_with(hash)) << log;
}

TEST_F(EngineLoop, TheFrameLimitSetsThePace) {
    ASSERT_TRUE(initialize());
    probe.config().fpsLimit = 0;
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(sleeps.empty());
    probe.config().fpsLimit = 5000;
    passesUntilClosed = 10;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(sleeps, std::vector<int>(10, 1));
}

TEST_F(EngineLoop, QuitEndsTheLoopBeforeATick) {
    ASSERT_TRUE(initialize());
    probe.state() = FrontendState::Quit;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(probe.tick(), 0U);
    EXPECT_TRUE(sleeps.empty());
}

TEST_F(EngineLoopInWindow, EscapeAndStartPauseBeforeAnythingOfThePassHappens) {
    ASSERT_TRUE(initialize());
    for (const bool byPad : {false, true}) {
        captured([&] {
            probe.beginGame();
            probe.runPass();
            ++now;
            if (byPad) {
                pads[0] = {true, platform::kPadStart, 0, 0, 0};
            } else {
                keysDown = {platform::kKeyEscape};
            }
            probe.runPass();
            return 0;
        });
        EXPECT_EQ(probe.state(), FrontendState::Paused) << byPad;
        EXPECT_EQ(probe.tick(), 1U) << byPad;
        keysDown.clear();
        pads.clear();
    }
}

TEST_F(EngineLoop, ATickRunsItsStepsInOrder) {
    ASSERT_TRUE(initialize());
    EXPECT_EQ(global("order"), "LS0") << "the level's script, then the player's";
    probe.scripts().globals().erase("order");
    ticks(1);
    EXPECT_EQ(global("order"), "UEdF0") << "update, updated, then the draw pass with its frames";
    probe.scripts().globals().erase("order");
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
    probe.tickScriptSteps() = 4000;
    ticks(2);
    EXPECT_EQ(global("reached"), "1") << "the first script has taken them all";
    EXPECT_TRUE(warnings.starts_with(
        "Script VM global-update error [scripts/update.c]: script step limit exceeded\n"
        "Script VM global-updated error [scripts/updated.c]: script step limit exceeded\n"))
        << warnings;
    probe.tickScriptSteps() = 1000000;
    ticks(1);
    EXPECT_EQ(global("reached"), "2") << "each tick begins anew";
}

TEST_F(EngineLoop, GuardComesBackOnceASecondUpToTheModels) {
    folder.write("config/graphics.ini", "[input]\nactive_players=2\n");
    ASSERT_TRUE(initialize());
    EXPECT_EQ(probe.playerGuard(), 12);
    probe.playerGuard() = 1;
    probe.coop()[0].model = &generated::kCharacters[2];
    probe.coop()[0].guardPoints = -4;
    ticks(59);
    EXPECT_EQ(probe.playerGuard(), 1);
    ticks(1);
    EXPECT_EQ(probe.playerGuard(), 6) << "by the model's guardrate";
    ticks(120);
    EXPECT_EQ(probe.playerGuard(), 12);
    EXPECT_EQ(probe.coop()[0].guardPoints, -4) << "a model without guard gets none";
}

TEST_F(EngineLoop, TheDeadStandUpInTheSameTickWhileThereAreLives) {
    ASSERT_TRUE(initialize());
    EXPECT_EQ(probe.lives(), 2);
    EXPECT_EQ(probe.credits(), 1);
    probe.scripts().globals().erase("order");
    for (const char* line : {"Respawn P1 lives=1 credits=1", "Respawn P1 lives=2 credits=0",
                             "Respawn P1 lives=1 credits=0"}) {
        probe.playerAlive() = false;
        probe.playerHealth() = 0;
        ticks(1);
        EXPECT_TRUE(logged(line)) << log;
        EXPECT_TRUE(probe.playerAlive());
        EXPECT_EQ(probe.playerHealth(), 120);
        EXPECT_EQ(probe.state(), FrontendState::Playing);
    }
    EXPECT_TRUE(global("order").ends_with("S0")) << "the spawn script ran again";
    probe.playerAlive() = false;
    ticks(1);
    EXPECT_EQ(probe.state(), FrontendState::GameOver);
    EXPECT_FALSE(probe.playerAlive());
}

TEST_F(EngineLoop, CoopPlayersShareCreditsUnlessTheStageSaysNot) {
    folder.write("config/graphics.ini", "[input]\nactive_players=2\n");
    ASSERT_TRUE(initialize());
    const auto die = [&] {
        probe.coop()[0].alive = false;
        probe.coop()[0].health = 0;
        ticks(1);
    };
    die();
    EXPECT_TRUE(logged("Respawn P2 lives=1 credits=1")) << log;
    EXPECT_EQ(probe.lives(), 1);

    probe.stageIndex() = 4;  // noshare
    captured([&] {
        probe.beginGame();
        return 0;
    });
    die();
    EXPECT_TRUE(logged("Respawn P2 lives=1 credits=1")) << log;
    EXPECT_EQ(probe.lives(), 2) << "player 1 keeps what is theirs";
    probe.playerAlive() = false;
    probe.lives() = 1;
    probe.credits() = 0;
    ticks(1);
    EXPECT_EQ(probe.state(), FrontendState::Playing) << "one player is enough";
}

TEST_F(EngineLoop, AnImmediateBranchKeepsEverybodysState) {
    folder.write("config/graphics.ini", "[input]\nactive_players=2\n");
    ASSERT_TRUE(initialize());
    probe.playerHealth() = 33;
    probe.coop()[0].health = 44;
    probe.coop()[0].worldX = 77;
    probe.branchTarget() = 1;
    probe.branchImmediate() = true;
    probe.stageComplete() = true;
    ticks(1);
    EXPECT_EQ(probe.stageIndex(), 1U);
    EXPECT_EQ(probe.playerHealth(), 33);
    EXPECT_EQ(probe.coop()[0].health, 44);
    EXPECT_EQ(probe.coop()[0].worldX, 77) << "only player 1 is placed";
    EXPECT_EQ(probe.playerPlace().x, 60);
    EXPECT_FALSE(probe.branchImmediate());
    EXPECT_FALSE(probe.stageComplete());
}

TEST_F(EngineLoopInWindow, ACompleteStageGivesWayToTheNextAndTheLastToTheMenu) {
    ASSERT_TRUE(initialize());
    captured([&] {
        probe.beginGame();
        return 0;
    });
    probe.playerHealth() = 30;
    probe.stageComplete() = true;
    passesUntilClosed = 1;
    run();
    EXPECT_EQ(probe.stageIndex(), 1U);
    EXPECT_EQ(probe.state(), FrontendState::Playing);
    EXPECT_EQ(probe.playerHealth(), 120) << "another chapter begins rested";
    EXPECT_EQ(sleeps, std::vector<int>{250}) << "the loading screen, and no pacing";
    probe.stageComplete() = true;
    captured([&] {
        probe.runPass();
        return 0;
    });
    EXPECT_EQ(probe.state(), FrontendState::MainMenu) << "the next row is of another set";
    EXPECT_EQ(probe.completionCount(), 1);
}

TEST_F(EngineLoop, InOneChapterTheLivingRestALittleAndTheDeadStayDead) {
    folder.write("config/graphics.ini", "[input]\nactive_players=3\n");
    ASSERT_TRUE(initialize());
    probe.stageIndex() = 2;
    captured([&] {
        probe.beginGame();
        probe.playerHealth() = 30;
        probe.coop()[0].health = 118;
        probe.coop()[0].worldX = 300;
        probe.coop()[1].alive = false;
        probe.coop()[1].health = 0;
        probe.advanceStage();
        return 0;
    });
    EXPECT_EQ(probe.stageIndex(), 3U);
    EXPECT_EQ(probe.playerHealth(), 35);
    EXPECT_EQ(probe.coop()[0].health, 120) << "up to the model's";
    EXPECT_EQ(probe.coop()[0].worldX, 50) << "at the place of the second player";
    EXPECT_EQ(probe.coop()[1].health, 0);
    EXPECT_FALSE(probe.coop()[1].alive);
    probe.branchTarget() = 1;
    captured([&] {
        probe.advanceStage();
        return 0;
    });
    EXPECT_EQ(probe.stageIndex(), 1U) << "a branch goes before the next of the set";
}

TEST_F(EngineLoopInWindow, TheNaturalEndWantsAnEmptyStageAndAPlayerNearItsEnd) {
    ASSERT_TRUE(initialize());
    captured([&] {
        probe.beginGame();
        return 0;
    });
    EXPECT_FALSE(probe.stageEnds()) << "a spawn is pending";
    probe.skipInstructions();
    EXPECT_FALSE(probe.stageEnds());
    probe.playerX() = 2564 - 256;
    EXPECT_TRUE(probe.stageEnds());
    probe.playerX() -= 1;
    EXPECT_FALSE(probe.stageEnds());
    probe.playerX() = 2563;
    RuntimeEntity& robot = probe.entities().emplace_back();
    robot.model = &generated::kCharacters[0];
    EXPECT_FALSE(probe.stageEnds()) << "an enemy is left";
    robot.alive = false;
    EXPECT_TRUE(probe.stageEnds());
    probe.playerAlive() = false;
    EXPECT_FALSE(probe.stageEnds()) << "the dead are nowhere";
}

TEST_F(EngineLoop, TheLoopsEndSavesTheVolumesInForce) {
    ASSERT_TRUE(initialize());
    probe.audio().setMusicVolume(0.5F);
    probe.audio().setMasterVolume(7);
    probe.audio().setEffectsVolume(-7);
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
    EXPECT_EQ(probe.tick(), 60U);
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
    keysDown = {platform::kKeyEscape};
    passesUntilClosed = 1000;
    EXPECT_EQ(captured([&] { return other.runSmokeGame(100); }), 74);
    EXPECT_TRUE(warnings.ends_with("SMOKE GAME FAIL: gameplay stopped before target frames\n"))
        << warnings;
    EXPECT_EQ(1000 - passesUntilClosed, 300) << "three passes for each frame";

    EngineProbe{other}.playerModel() = nullptr;
    EXPECT_EQ(captured([&] { return other.runSmokeGame(100); }), 72);
    EXPECT_EQ(warnings, "SMOKE GAME FAIL: could not start gameplay\n");
}

TEST_F(EngineLoop, TheSameInputsGiveTheSameWorld) {
    const auto hashOf = [&](int frames, bool coop) {
        Engine other(devices());
        folder.write("config/graphics.ini", coop ? "[input]\nactive_players=2\n" : "");
        captured([&] {
            EXPECT_TRUE(other.initialize(folder.path()));
            EngineProbe seen{other};
            seen.play("follow1");
            for (int i = 0; i < frames; ++i) seen.gameplayTick();
            return 0;
        });
        return EngineProbe{other}.worldHash();
    };
    const std::uint64_t hash = hashOf(30, false);
    EXPECT_EQ(hashOf(30, false), hash) << "with entities at other addresses";
    EXPECT_NE(hashOf(31, false), hash);
    EXPECT_NE(hashOf(30, true), hash);
}

TEST_F(EngineLoop, TheHashSeesEveryPartOfTheWorld) {
    folder.write("config/graphics.ini", "[input]\nactive_players=2\n");
    ASSERT_TRUE(initialize());
    probe.entities().emplace_back();
    std::set<std::uint64_t> seen = {probe.worldHash()};
    const auto change = [&](const char* what, auto&& edit) {
        edit();
        EXPECT_TRUE(seen.insert(probe.worldHash()).second) << what;
    };
    change("tick", [&] {
        captured([&] {
            probe.gameplayTick();
            return 0;
        });
    });
    change("frame's tick", [&] { probe.player().update(1); });
    change("place", [&] { probe.playerX() += 1; });
    change("health", [&] { probe.playerHealth() -= 1; });
    change("co-op player", [&] { probe.coop()[0].comboWindow = 3; });
    change("entity", [&] { probe.entities()[0].altitude = -1; });
    change("entity's variable", [&] { probe.entities()[0].scriptCtx.local["v"] = 1.0; });
    change("global", [&] { probe.scripts().globals()["g"] = true; });
    change("pending child", [&] { probe.pendingChildren().push_back({}); });
    change("camera", [&] { probe.cameraX() = 5; });
    change("parent", [&] {
        probe.entities()[0].parentHandle = reinterpret_cast<ActorHandle>(&probe.entities()[0]);
    });
    change("parent that is gone", [&] { probe.entities()[0].parentHandle = 0x1234567; });
    const std::uint64_t gone = probe.worldHash();
    probe.entities()[0].parentHandle = 0x7654321;
    EXPECT_EQ(probe.worldHash(), gone) << "an address of an earlier stage says nothing";
}

}  // namespace
}  // namespace port
