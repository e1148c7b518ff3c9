// What a bot's run has met, as its report tells it.

#include "AnimationLookup.hpp"
#include "Autoplay.hpp"
#include "EngineTrial.hpp"
#include "ExitCodes.hpp"
#include "PlaytestReport.hpp"

namespace port {
namespace {

struct Reported : WindowTrial {
    const std::filesystem::path report = folder.path() / "out" / "report.json";

    // A bot on the trial game for so many passes.
    int play(int passes) {
        passesUntilClosed = passes;
        engine.setPilot(std::make_unique<Autoplay>(AutoplaySwitches{2, 0, report}));
        return captured([&] { return engine.initialize(folder.path()) ? engine.run() : -1; });
    }
    [[nodiscard]] static bool holds(const std::string& text, const std::string& part) {
        return text.find(part) != text.npos;
    }
};

TEST_F(Reported, AStageIsToldWithAllThatItMet) {
    folder.write("out/keep", "");
    beforePass = [this] {
        // Another stage, without an end of the first.
        if (passesUntilClosed == 30) world.branch = {.target = 1, .immediate = true};
        if (passesUntilClosed == 20) {
            world.player1.animation.setAnimation(findAnimation(world.player1.model, "follow1"));
        }
        if (passesUntilClosed == 10) world.stage.complete = true;
    };
    EXPECT_EQ(play(60), 0) << warnings;
    const std::string text = folder.read("out/report.json.txt");
    EXPECT_TRUE(holds(text, "Playtest: 2 of 5 stages cleared, 2 played, 0 deaths\n")) << text;
    EXPECT_TRUE(holds(text, "       1  nosuchfunction\n")) << "of the level script: " << text;
    EXPECT_TRUE(holds(text, "       1  levelscript [scripts/level.c]\n")) << text;
    EXPECT_TRUE(holds(text, "data/levels/street.txt: cleared after 0:00")) << text;
    EXPECT_TRUE(holds(text, "Robot, 1 time, 1 of 1 animations: idle 1\n")) << text;
    EXPECT_TRUE(holds(text, "Puff, 1 time")) << "a child: " << text;
    EXPECT_TRUE(holds(text, "follow1 1")) << text;
    EXPECT_TRUE(holds(text, "       1  data/sounds/absent.wav\n")) << text;
    const std::string json = folder.read("out/report.json");
    EXPECT_TRUE(holds(json, "\"stagesCleared\": 2,")) << json;
    EXPECT_TRUE(holds(json, "\"data/sounds/absent.wav\": 1")) << json;
    EXPECT_FALSE(exists(folder.path() / "out" / "report.json.tmp"));
}

TEST_F(Reported, AReportThatCannotBeWrittenIsSaid) {
    EXPECT_EQ(play(60), -1) << "there is no such folder";
    EXPECT_TRUE(holds(warnings, "AUTOPLAY FAIL: cannot write ")) << warnings;
    folder.write("out/keep", "");
    beforePass = [this] {
        if (passesUntilClosed == 20) std::filesystem::remove_all(report.parent_path());
        if (passesUntilClosed <= 20) world.stage.complete = true;
    };
    EXPECT_EQ(play(60), kReportNotWritten);
    EXPECT_TRUE(holds(warnings, "AUTOPLAY FAIL: cannot write ")) << warnings;
}

TEST(PlaytestReport, NamesOfAnyBytesGiveValidFiles) {
    PlaytestStage stage;
    stage.row = &generated::kStages[2];
    stage.ticks = 3725;
    stage.deaths = 1;
    stage.models["Q\"uo\\te"].animations = {{"", 1}, {"\x01\x1f", 2}};
    stage.faults.unsupported.add("caf\xE9\n");
    stage.faults.unsupported.add("caf\xC3\xA9\n");
    const std::string json = playtestJson({stage});
    const std::size_t models = json.find("\"models\"");
    EXPECT_EQ(json.substr(models, json.find("\"missing", models) - models), R"("models": {
        "Q\"uo\\te": {
          "spawned": 0,
          "animationCount": 0,
          "animations": {
            "\u0001\u001f": 2,
            "": 1
          }
        }
      },
      "hooks": {},
      "scriptErrors": {},
      "unsupported": {
        "café\u000a": 2
      },
      )");
    const std::string text = playtestText({stage});
    EXPECT_NE(text.find("data/levels/roof.txt: left after 1:02, 1 death, 0 of 0 spawns came\n"),
              text.npos)
        << text;
    EXPECT_NE(text.find("       2  café \n"), text.npos) << "a line each: " << text;
    EXPECT_EQ(playtestJson({}).substr(0, 30), "{\n  \"summary\": {\n    \"stagesCl");
}

TEST(PlaytestReport, TextsWithoutEndOnlyCount) {
    Tally tally;
    for (std::size_t i = 0; i < Tally::kMostTexts + 5; ++i) tally.add(std::to_string(i));
    tally.add("7");
    EXPECT_EQ(tally.counts().size(), Tally::kMostTexts);
    EXPECT_EQ(tally.counts().at("7"), 2U);
    EXPECT_EQ(tally.others(), 5U);
}

}  // namespace
}  // namespace port
