// Runs that are written down and played again.

#include "Recording.hpp"

#include <map>
#include <sstream>

#include "Autoplay.hpp"
#include "EngineTrial.hpp"
#include "Replay.hpp"

namespace port {
namespace {

Recording readBack(const std::string& text) {
    Recording recording;
    std::string error;
    std::istringstream in(text);
    EXPECT_TRUE(readRecording(in, recording, error)) << error;
    return recording;
}

std::string refusal(const std::string& text) {
    Recording recording;
    std::string error;
    std::istringstream in(text);
    return readRecording(in, recording, error) ? "good" : error;
}

struct Recorded : WindowTrial {
    const std::filesystem::path file = folder.path() / "run.rec";

    // 130 passes of a game on the second stage, with keys and a pad in some of them.
    std::string record(int pauseIn = -1) {
        passesUntilClosed = 130;
        beforePass = [this, pauseIn] {
            const int pass = 130 - passesUntilClosed;
            keysDown = pass % 7 == 3 ? std::set<int>{kKeyF2, 65} : std::set<int>{};
            if (pass == pauseIn) keysDown.insert(kKeyEscape);
            pads[1] = {pass > 40, static_cast<std::uint16_t>(pass % 3), -300, 7, 90};
        };
        Engine first(devices());
        quietly([&] {
            EXPECT_TRUE(first.record(file));
            EXPECT_TRUE(first.initialize(folder.path()));
            first.game().config.gravity = 0.123456789F;
            first.game().world.slots[1].joined = true;
            first.game().world.stage.index = 1;
            beginGame(first.game());
            EXPECT_EQ(first.run(), 0);
        });
        beforePass = nullptr;
        keysDown.clear();
        pads.clear();
        passesUntilClosed = 1000;
        return folder.read("run.rec");
    }
    int replay(const std::string& text, bool withWindow = true) {
        platform::Devices seen = devices();
        seen.presentation.headless = !withWindow;
        Engine other(seen);
        other.setPilot(std::make_unique<Replay>(readBack(text)));
        return captured([&] { return other.initialize(folder.path()) ? other.run() : -1; });
    }
};

TEST_F(Recorded, ARunPlayedAgainComesToTheSameWorld) {
    const std::string text = record();
    const Recording recording = readBack(text);
    EXPECT_EQ(recording.passes, 130U);
    EXPECT_TRUE(recording.ended);
    ASSERT_EQ(recording.hashes.size(), 2U);
    EXPECT_EQ(recording.hashes[1].tick, 120U);
    ASSERT_EQ(recording.starts.size(), 1U);
    EXPECT_EQ(recording.starts[0].stage, 1U);
    EXPECT_EQ(recording.starts[0].model, "Hero");
    EXPECT_TRUE(recording.starts[0].joined[1]);
    EXPECT_NE(text.find("gravity=0.123456791\n"), text.npos) << "every digit of a setting counts";
    EXPECT_LT(text.size(), 16U << 10U);

    folder.write("config/graphics.ini", "[gameplay]\ngravity=2\n[video]\nfps_limit=7\n");
    const std::string settings = folder.read("config/graphics.ini");
    EXPECT_EQ(replay(text), 0) << warnings;
    EXPECT_TRUE(log.find("REPLAY OK passes=130 hash=") != log.npos) << log;
    EXPECT_EQ(folder.read("config/graphics.ini"), settings) << "a replay leaves no trace";
    EXPECT_EQ(passesUntilClosed, 1000 - 130) << "it ends with its recording";
}

TEST_F(Recorded, MenusTakeAsLongWhereNobodySeesThem) {
    const std::string text = record(100);
    EXPECT_EQ(readBack(text).hashes.size(), 1U) << "the pause outlasts the run";
    EXPECT_EQ(replay(text, false), 0) << warnings;
}

TEST_F(Recorded, ABotsRunWithExtraLivesIsPlayedAgain) {
    Engine first(devices());
    first.setPilot(std::make_unique<Autoplay>(AutoplaySwitches{1, 3, {}}));
    passesUntilClosed = 70;
    captured([&] {
        EXPECT_TRUE(first.record(file));
        EXPECT_TRUE(first.initialize(folder.path()));
        return first.run();
    });
    EXPECT_EQ(first.game().world.player1.livesRemaining, 2 + 3);
    passesUntilClosed = 1000;
    EXPECT_EQ(replay(folder.read("run.rec")), 0) << warnings;
}

TEST_F(Recorded, SavedGamesThatAreContinuedComeWithTheRecording) {
    folder.write("saves/slot1.sav",
                 "stage=1\njoined_mask=3\nplayer1=Hero\nhealth1=7\nscore1=300\n");
    folder.write("saves/unlocks.ini", "completion_count=4\n");
    const std::map<int, int> presses = {{1, kKeyDown},  {3, kKeyEnter}, {80, kKeyEscape},
                                        {82, kKeyUp},   {84, kKeyUp},   {86, kKeyEnter},
                                        {88, kKeyDown}, {90, kKeyEnter}};
    passesUntilClosed = 200;
    beforePass = [&] {
        const int pass = 200 - passesUntilClosed;
        keysDown.clear();
        if (const auto press = presses.find(pass); press != presses.end()) {
            keysDown.insert(press->second);
        }
        if (pass == 70) folder.write("saves/slot1.sav", "lives=9\nweapon_uses1=3\n");
    };
    Engine first(devices());
    quietly([&] {
        EXPECT_TRUE(first.record(file));
        EXPECT_TRUE(first.initialize(folder.path()));
        EXPECT_EQ(first.run(), 0);
    });
    EXPECT_EQ(first.game().world.player1.livesRemaining, 9);
    beforePass = nullptr;
    passesUntilClosed = 1000;
    const std::string text = folder.read("run.rec");
    const Recording recording = readBack(text);
    ASSERT_EQ(recording.starts.size(), 1U);
    EXPECT_EQ(recording.starts[0].completions, 4);
    EXPECT_EQ(recording.starts[0].menuRow, 1);
    EXPECT_EQ(recording.saves.size(), 1U);
    std::filesystem::remove_all(folder.path() / "saves");
    EXPECT_EQ(replay(text), 0) << warnings;
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "saves"));
    const std::size_t health = text.find("health1=7");
    EXPECT_EQ(replay(std::string(text).replace(health, 9, "health1=6")), 77);
}

TEST_F(Recorded, ARunThatPartsFromItsRecordingSaysWhere) {
    std::string text = record();
    const std::size_t hash = text.find(" hash 120 ") + 10;
    std::string other = text;
    other[hash] = other[hash] == '0' ? '1' : '0';
    EXPECT_EQ(replay(other), 77);
    EXPECT_TRUE(warnings.starts_with("REPLAY DIFFERS tick=120 hash=")) << warnings;
    EXPECT_EQ(warnings.find(" field="), warnings.npos) << "all fields are as recorded";
    const std::size_t settings = text.find("gravity=0.123456791");
    EXPECT_EQ(replay(std::string(text).replace(settings, 19, "gravity=0.234567891")), 77);
    EXPECT_TRUE(warnings.find(" field=") != warnings.npos) << warnings;
    other = text;
    const std::size_t end = text.find(" end ") + 5;
    other[end] = other[end] == '0' ? '1' : '0';
    EXPECT_EQ(replay(other), 77);
    EXPECT_TRUE(warnings.starts_with("REPLAY DIFFERS at its end")) << warnings;
    // One that broke off is played as far as it goes.
    EXPECT_EQ(replay(text.substr(0, text.find(" hash 120 ") + 27)), 0) << warnings;
    EXPECT_EQ(replay(text.substr(0, text.find(" hash 120 ") + 20)), 0) << warnings;
    other = text;
    other.replace(other.find("model=Hero"), 10, "model=None");
    EXPECT_EQ(replay(other), -1);
    EXPECT_TRUE(warnings.find("has no player None") != warnings.npos) << warnings;
}

TEST(Recording, ThatDoesNotFitOnTheDiskSaysSo) {
    const std::filesystem::path full = "/dev/full";
    if (!std::filesystem::exists(full)) GTEST_SKIP() << "no device that is always full";
    Recorder recorder;
    ASSERT_TRUE(recorder.open(full));
    recorder.begin({}, {});
    recorder.pass({});
    testing::internal::CaptureStderr();
    recorder.end(1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "RECORD FAIL: the recording could not be written to its end\n");
}

TEST(Recording, WhatIsNoRecordingIsRefusedByItsLine) {
    const std::string head = "[recording]\nversion=1\n[begin]\nstage=0\nplayers=0 -1 -1 -1\n";
    EXPECT_EQ(refusal(head + "[passes]\n3 input k 41 n 41 p 1 1000 -5 5 9 1000\n9 end ff\n"),
              "good");
    EXPECT_EQ(refusal(""), "no recording");
    EXPECT_EQ(refusal("[recording]\nversion=2\n"), "line 2: version=2");
    EXPECT_EQ(refusal("stage=0\n"), "line 1: stage=0");
    EXPECT_EQ(refusal("[recording]\nversion=1\n[passes]\n"), "no recording") << "without a start";
    for (const char* line :
         {"[begin]\nstage=-1", "[begin]\ndrive=3", "[begin]\nplayers=0", "[begin]\nrows=0 0",
          "[begin]\nrows=0 100 0", "[begin]\nlives=9", "[passes]\n0 input k 1",
          "[passes]\n1 input k 100", "[passes]\n1 input 41", "[passes]\n1 input p 4 0 0 0 0 0",
          "[passes]\n1 input p 0 0 40000 0 0 0", "[passes]\n2 hash 60", "[passes]\n2 dance",
          "[passes]\n99999999999 end 1", "[passes]\n5 end 1\n5 end 1",
          "[passes]\n5 hash 60 1\n4 hash 120 1", "[passes]\n5 hash 60 1\n5 hash 120 1",
          "[passes]\n0 hash 0 1", "[begin]\n[begin]"}) {
        EXPECT_TRUE(refusal(head + line + "\n").starts_with("line ")) << line;
    }
}

}  // namespace
}  // namespace port
