#include "Engine.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "EngineProbe.hpp"
#include "TempFolder.hpp"

namespace port {
namespace {

using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;
using tindrel::test::TempFolder;

// A port on disk, an engine on it, and a clock that only counts.
struct EngineTest : testing::Test {
    TempFolder folder;
    std::vector<int> sleeps;
    Engine engine{platform::Clock{[] { return std::uint64_t{0}; },
                                  [this](int milliseconds) { sleeps.push_back(milliseconds); }}};
    EngineProbe probe{engine};
    std::string log;
    std::string warnings;

    EngineTest() {
        folder.write("assets/openbor-data/models.txt", "");
        folder.write("config/graphics.ini", "");
    }

    template <class Call>
    auto captured(Call call) {
        CaptureStdout();
        CaptureStderr();
        const auto result = call();
        log = GetCapturedStdout();
        warnings = GetCapturedStderr();
        return result;
    }

    bool initialize() {
        return captured([&] { return engine.initialize(folder.path()); });
    }
    int run() {
        return captured([&] { return engine.run(); });
    }
};

TEST_F(EngineTest, InitializeReadsThePortAndTellsWhatItFound) {
    folder.write("config/graphics.ini",
                 "[video]\nfps_limit=120\n[gameplay]\nlogical_width=400\nlogical_height=300\n"
                 "[audio]\nmusic_volume=0.25\n[input]\nactive_players=2\n");
    folder.write("config/openbor-video.ini",
                 "logical_width = 480\r\nlogical_height=wide\nlogical_depth=1\nlogical_height\n");
    ASSERT_TRUE(initialize());

    EXPECT_EQ(probe.config().logicalWidth, 480);
    EXPECT_EQ(probe.config().logicalHeight, 300);
    EXPECT_STREQ(probe.playerModel()->name, "Hero") << "an enemy stands first in the table";
    EXPECT_EQ(probe.playerHealth(), 120);
    EXPECT_STREQ(probe.player().animation()->name, "Idle");
    EXPECT_EQ(probe.stage(), &generated::kStages[0]);
    EXPECT_EQ(probe.state(), FrontendState::Playing) << "nobody can use a menu";
    EXPECT_EQ(probe.joinedPlayers(), (std::array<bool, 4>{true, true, false, false}));
    EXPECT_EQ(probe.scripts().root(), folder.path() / "assets" / "openbor-data");
    EXPECT_EQ(probe.scripts().host(), &engine);
    EXPECT_TRUE(probe.playerContext().player);
    EXPECT_EQ(probe.playerContext().local.at("self"), ScriptValue(std::uintptr_t{1}));

    EXPECT_EQ(log,
              "Renderer: headless-preview\n"
              "Characters: 2 Stages: 4\n"
              "Graphics: preset=original upscale=original filter=nearest vsync=1 fps=120\n"
              "Audio volumes master=1 music=0.25 effects=0.9\n"
              "Combat ready: player=Hero hp=120 enemyAI=on cameraLock=on\n");
    EXPECT_EQ(warnings, "Audio warning: no sound output in this build\n");
}

TEST_F(EngineTest, TheLogicalSizeHasAFloor) {
    folder.write("config/openbor-video.ini", "logical_width=1\nlogical_height=-5\n");
    ASSERT_TRUE(initialize());
    EXPECT_EQ(probe.config().logicalWidth, 160);
    EXPECT_EQ(probe.config().logicalHeight, 120);
}

TEST_F(EngineTest, LifeBarSizeTakesTheLastUsableLine) {
    struct Case {
        const char* text;
        int width, height;
    };
    const Case cases[] = {
        {"", 70, 7},
        {"lifebarsize 4 1", 8, 2},
        {"LBARSIZE\t90 9 1\r\nicon 1 2\n", 90, 9},
        {"lifebarsize 100 10 # old\n  lbarsize 50 5\n", 50, 5},
        {"lifebarsize 100\nlbarsize a b\n#lbarsize 1 1\nlifebarsizes 9 9", 70, 7},
    };
    for (const Case& c : cases) {
        Engine other;
        folder.write("assets/openbor-data/lifebar.txt", c.text);
        CaptureStdout();
        CaptureStderr();
        EXPECT_TRUE(other.initialize(folder.path()));
        GetCapturedStdout();
        GetCapturedStderr();
        EngineProbe seen{other};
        EXPECT_EQ(seen.hudBarWidth(), c.width) << c.text;
        EXPECT_EQ(seen.hudBarHeight(), c.height) << c.text;
    }
}

TEST_F(EngineTest, CampaignsAreTheSetsInTableOrder) {
    ASSERT_TRUE(initialize());
    EXPECT_EQ(probe.campaignNames(), (std::vector<std::string>{"Story", "NEW GAME", "Bonus"}));
    EXPECT_EQ(probe.campaignFirstStages(), (std::vector<std::size_t>{0, 1, 3}));
    EXPECT_EQ(probe.campaignRequirements(), (std::vector<int>{0, 0, 2}));
}

TEST_F(EngineTest, AHeadlessRunLeavesAfter900Passes) {
    ASSERT_TRUE(initialize());
    probe.state() = FrontendState::MainMenu;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(probe.tick(), 899U) << "the first pass only leaves the menu";
    EXPECT_EQ(sleeps, std::vector<int>(900, 16)) << "1000/60 in whole milliseconds";
    std::string expected;
    for (int i = 0; i < 7; ++i) expected += "headless camera=0 player=80 max=0\n";
    EXPECT_EQ(log, expected);
}

TEST_F(EngineTest, TheFrameLimitSetsThePace) {
    ASSERT_TRUE(initialize());
    probe.config().fpsLimit = 0;
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(sleeps.empty());
    probe.config().fpsLimit = 5000;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(sleeps, std::vector<int>(900, 1));
}

TEST_F(EngineTest, QuitEndsTheLoopBeforeATick) {
    ASSERT_TRUE(initialize());
    probe.state() = FrontendState::Quit;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(probe.tick(), 0U);
    EXPECT_TRUE(sleeps.empty());
}

TEST_F(EngineTest, TheLoopsEndSavesTheVolumesInForce) {
    ASSERT_TRUE(initialize());
    probe.audio().setMusicVolume(0.5F);
    probe.audio().setMasterVolume(7);
    probe.audio().setEffectsVolume(-7);
    EXPECT_EQ(run(), 0);
    const RuntimeConfig saved = loadRuntimeConfig(folder.path() / "config" / "graphics.ini");
    EXPECT_FLOAT_EQ(saved.musicVolume, 0.5F);
    EXPECT_FLOAT_EQ(saved.masterVolume, 1.0F);
    EXPECT_FLOAT_EQ(saved.effectsVolume, 0.0F);

    std::filesystem::remove_all(folder.path() / "config");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(warnings, "Could not save graphics.ini\n");
}

TEST_F(EngineTest, AScriptCallThatNothingAnswersIsNotedOnce) {
    ScriptContext context;
    std::vector<std::string> unsupported;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(engine.callScriptFunction("summonDragon", {}, context, unsupported),
                  ScriptValue());
    }
    EXPECT_EQ(unsupported, std::vector<std::string>{"summonDragon"});
}

}  // namespace
}  // namespace port
