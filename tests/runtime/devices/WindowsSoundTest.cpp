#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "AudioOutput.hpp"

namespace port {
namespace {

using platform::AudioVoice;

struct SoundTrial : testing::Test {
    const platform::AudioOutput output = platform::systemAudioOutput();
    const std::vector<std::int16_t> samples = std::vector<std::int16_t>(2205, 1000);  // 0.1 s

    void SetUp() override {
        const std::string failure = output.open();
        if (!failure.empty()) GTEST_SKIP() << failure;
    }
    ~SoundTrial() override { output.close(); }

    [[nodiscard]] bool endsWithin(AudioVoice voice, int milliseconds) const {
        for (int waited = 0; waited < milliseconds; waited += 20) {
            if (!output.hasQueuedBuffers(voice)) return true;
            Sleep(20);
        }
        return false;
    }
};

TEST_F(SoundTrial, ASoundEndsAndALoopDoesNot) {
    const AudioVoice once = output.createVoice(1, 22050);
    const AudioVoice loop = output.createVoice(2, 22050);
    ASSERT_NE(once, platform::kNoVoice);
    ASSERT_NE(loop, platform::kNoVoice);
    ASSERT_TRUE(output.submit(once, {samples}));
    ASSERT_TRUE(output.submit(loop, {samples, true, 100, 500}));
    output.setVolume(once, 2.0F);
    output.setFrequencyRatio(once, platform::kMaxFrequencyRatio);
    EXPECT_TRUE(output.start(loop));
    EXPECT_FALSE(endsWithin(once, 300)) << "it has not been started";
    EXPECT_TRUE(output.start(once));
    EXPECT_TRUE(endsWithin(once, 10'000));
    EXPECT_TRUE(output.hasQueuedBuffers(loop));
    output.stop(loop);
    output.destroyVoice(once);
    output.destroyVoice(loop);
}

}  // namespace
}  // namespace port
