// How an engine starts: what it reads, what it tells, what it refuses.

#include "Engine.hpp"

#include "EngineTrial.hpp"

namespace port {
namespace {

using EngineTest = EngineTrial;
using EngineTestInWindow = WindowTrial;

TEST_F(EngineTest, InitializeReadsThePortAndTellsWhatItFound) {
    folder.write("config/graphics.ini",
                 "[video]\nfps_limit=120\n[gameplay]\nlogical_width=400\nlogical_height=300\n"
                 "[audio]\nmusic_volume=0.25\n[input]\nactive_players=2\n");
    folder.write("config/openbor-video.ini",
                 "logical_width = 480\r\nlogical_height=wide\nlogical_depth=1\nlogical_height\n");
    ASSERT_TRUE(initialize());

    EXPECT_EQ(game.config.logicalWidth, 480);
    EXPECT_EQ(game.config.logicalHeight, 300);
    EXPECT_STREQ(world.player1.model->name, "Hero") << "an enemy stands first in the table";
    EXPECT_STREQ(world.player1.animation.animation()->name, "Idle");
    EXPECT_EQ(world.stage.row, &generated::kStages[0]);
    EXPECT_EQ(game.frontend.state, FrontendState::Playing) << "nobody can use a menu";
    EXPECT_TRUE(world.slots[1].joined);
    EXPECT_FALSE(world.slots[2].joined);
    EXPECT_EQ(game.scripts.machine().root(), folder.path() / "assets" / "openbor-data");
    EXPECT_EQ(game.scripts.machine().host(), &engine.game().host);
    EXPECT_EQ(game.frontend.campaigns, (std::vector<Campaign>{{0, "Story", 0}, {4, "Bonus", 2}}))
        << "STORY is no other set";

    EXPECT_TRUE(log.starts_with(
        "Renderer: headless-preview\n"
        "Characters: 5 Stages: 5\n"
        "Graphics: preset=original upscale=original filter=nearest vsync=1 fps=120\n"
        "Audio volumes master=1 music=0.25 effects=0.9\n"
        "Combat ready: player=Hero hp=120 enemyAI=on cameraLock=on\n"))
        << log;
    EXPECT_TRUE(logged("New game started local_players=2")) << "a game begins at once";
    EXPECT_EQ(warnings, "");
}

TEST_F(EngineTestInWindow, WithAWindowTheMenuWaitsAndNoGameBegins) {
    ASSERT_TRUE(initialize());
    EXPECT_EQ(game.frontend.state, FrontendState::MainMenu);
    EXPECT_FALSE(log.find("New game") != log.npos) << log;
    passesUntilClosed = 1;
    EXPECT_EQ(run(), 70) << "a window that closes at once is a failure";
    EXPECT_EQ(log.find("HASH"), log.npos) << "only a run by itself is compared";
    windowOpens = false;
    Engine other(devices());
    EXPECT_FALSE(captured([&] { return other.initialize(folder.path()); }));
}

TEST_F(EngineTest, TheLogicalSizeHasAFloor) {
    folder.write("config/openbor-video.ini", "logical_width=1\nlogical_height=-5\n");
    ASSERT_TRUE(initialize());
    EXPECT_EQ(game.config.logicalWidth, 160);
    EXPECT_EQ(game.config.logicalHeight, 120);
    folder.write("config/openbor-video.ini", "logical_width=2000000000\n");
    EXPECT_FALSE(initialize()) << "and a ceiling";
    EXPECT_TRUE(warnings.starts_with("Logical size: ")) << warnings;
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
        Engine other(devices());
        folder.write("assets/openbor-data/LifeBar.txt", c.text);
        EXPECT_TRUE(captured([&] { return other.initialize(folder.path()); }));
        EXPECT_EQ(other.game().hud.barWidth, c.width) << c.text;
        EXPECT_EQ(other.game().hud.barHeight, c.height) << c.text;
    }
}

TEST_F(EngineTest, MenuLabelsAndUnlocksAreReadLeniently) {
    folder.write("assets/openbor-data/MENU.TXT",
                 "RenameKey Attack1  Punch it # at once\nrenamekey\ndisablekey special\n");
    folder.write("saves/unlocks.ini", "completion_count=7\nCompletions = 2\ncompletions=x\n");
    ASSERT_TRUE(initialize());
    EXPECT_EQ(game.frontend.legacyKeyLabels.size(), 1U);
    EXPECT_EQ(game.frontend.legacyKeyLabels.at("attack1"), "Punch it");
    EXPECT_EQ(game.frontend.completionCount, 2);
    folder.write("saves/unlocks.ini", "completions=-3\n");
    ASSERT_TRUE(initialize());
    EXPECT_EQ(game.frontend.completionCount, 0);
}

TEST_F(EngineTest, AScriptCallThatNothingAnswersIsNotedOnceARun) {
    ScriptContext context;
    UnansweredNames unsupported;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(engine.game().host.callScriptFunction("summonDragon", {}, context, unsupported),
                  ScriptValue());
    }
    EXPECT_EQ(unsupported.names(), std::vector<std::string>{"summonDragon"});
    ASSERT_TRUE(initialize());
    EXPECT_EQ(folder.read("logs/script-vm.log"),
              "levelscript\tscripts/level.c\tunsupported=nosuchfunction\n");
}

}  // namespace
}  // namespace port
