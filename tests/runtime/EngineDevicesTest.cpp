// Keys, pads and sound files as the engine asks for them.

#include "Engine.hpp"
#include "EngineTrial.hpp"
#include "Input.hpp"

namespace port {
namespace {

struct EngineDevices : EngineTrial {
    EngineDevices() { EXPECT_TRUE(initialize()); }
};

TEST_F(EngineDevices, AKeyIsPressedOnceUntilItIsReleased) {
    keysDown = {65};
    EXPECT_TRUE(probe.keyPressed(65));
    EXPECT_FALSE(probe.keyPressed(65)) << "whoever asks first has it";
    keysDown.clear();
    EXPECT_FALSE(probe.keyPressed(65));
    keysDown = {65, 256, -1};
    EXPECT_TRUE(probe.keyPressed(65));
    EXPECT_FALSE(probe.keyPressed(256));
    EXPECT_FALSE(probe.keyPressed(-1));
}

TEST_F(EngineDevices, AllQuestionsOfAMomentSeeOnePad) {
    now = 5;
    padPolls = 0;
    pads[3] = {true, platform::kPadA, 0, 0, 0};
    EXPECT_TRUE(probe.padPressed(3, platform::kPadA));
    EXPECT_TRUE(probe.padPressed(9, platform::kPadA)) << "beyond the last pad is the last";
    EXPECT_FALSE(probe.padPressed(3, platform::kPadB));
    EXPECT_EQ(padPolls, 1);
    ++now;
    EXPECT_FALSE(probe.padPressed(3, platform::kPadA)) << "still held";
    pads[3].connected = false;
    ++now;
    EXPECT_FALSE(probe.padPressed(3, platform::kPadA));
    pads[3].connected = true;
    ++now;
    EXPECT_TRUE(probe.padPressed(3, platform::kPadA)) << "plugged in again";
    probe.config().gamepad = false;
    ++now;
    EXPECT_FALSE(probe.padPressed(3, platform::kPadA));
}

TEST_F(EngineDevices, TheVolumeKeysStepAndTell) {
    probe.audio().setMusicVolume(0.5F);
    const auto press = [&](std::set<int> keys) {
        keysDown = std::move(keys);
        captured([&] {
            probe.pollAudioHotkeys();
            return 0;
        });
    };
    press({platform::kKeyF2, platform::kKeyF5});
    EXPECT_EQ(log, "Audio settings: master=1 music=0.45 effects=0.95\n");
    press({platform::kKeyF2, platform::kKeyF5});
    EXPECT_EQ(log, "") << "held keys do nothing more";
    press({});
    press({platform::kKeyF3, platform::kKeyF4, platform::kKeyF6});
    EXPECT_EQ(log, "Audio settings: master=0.95 music=0.5 effects=0.9\n");
}

TEST_F(EngineDevices, ThePreviewTakesTheFileThatLooksMostLikeMusic) {
    const std::string data = "assets/openbor-data/";
    const auto preview = [&] {
        captured([&] {
            probe.previewMusic();
            return 0;
        });
        const std::size_t at = log.find(data);
        return at == log.npos
                   ? log
                   : log.substr(at + data.size(), log.find_first_of("\n ", at) - at - data.size());
    };
    EXPECT_EQ(preview(), "music/song.wav") << "before sounds/hit.wav";
    folder.write(data + "sounds/theme.bor", std::string(200, '\1'));
    EXPECT_EQ(preview(), "music/song.wav") << "40 points against 30";
    folder.write(data + "Music/theme.bor", "cut");
    EXPECT_EQ(preview(), "Music/theme.bor");
    EXPECT_TRUE(log.starts_with("Music diagnostic: ")) << log;
    EXPECT_NE(log.find(" -> invalid OpenBOR .bor"), log.npos) << log;
    probe.config().preferredMusicFormat = "wav";
    EXPECT_EQ(preview(), "music/song.wav");
}

}  // namespace
}  // namespace port
