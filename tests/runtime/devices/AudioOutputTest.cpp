#include "AudioOutput.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iterator>
#include <thread>
#include <utility>
#include <vector>

#include "Environment.hpp"
#include "TempFolder.hpp"

namespace port {
namespace {

using platform::AudioBuffer;
using platform::AudioOutput;
using platform::AudioVoice;
using platform::kNoVoice;

constexpr int kRate = 22050;
using Samples = std::vector<std::int16_t>;
using Frame = std::pair<int, int>;  // left, right

// What is played goes into a file. The library reads where to only once in a program.
struct SoundFile : testing::Environment {
    tindrel::test::TempFolder folder;
    std::filesystem::path file = folder.path() / "played.wav";
    tindrel::test::Environment drivers{"ALSOFT_DRIVERS", "wave"};
    tindrel::test::Environment settings{
        "ALSOFT_CONF",
        folder
            .write("alsoft.conf",
                   "[general]\nchannels=stereo\nsample-type=int16\nfrequency=22050\n"
                   "dither=false\noutput-limiter=false\nresampler=linear\n[wave]\nfile=" +
                       file.string() + "\n")
            .string()};
};
SoundFile& soundFile() {
    static SoundFile file;
    return file;
}

void wait(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

// 0, 7, 14 and so on: every sample tells its place.
Samples ramp(int frames) {
    Samples samples;
    for (int i = 0; i < frames; ++i) samples.push_back(static_cast<std::int16_t>(7 * i));
    return samples;
}

struct AudioOutputTrial : testing::Test {
    const std::filesystem::path file = soundFile().file;
    AudioOutput output = platform::systemAudioOutput();

    AudioOutputTrial() { EXPECT_EQ(output.open(), ""); }

    AudioVoice play(const AudioBuffer& buffer, int channels = 1, float volume = 1.0F,
                    float ratio = 1.0F) {
        const AudioVoice voice = output.createVoice(channels, kRate);
        EXPECT_NE(voice, kNoVoice);
        EXPECT_TRUE(output.submit(voice, buffer));
        output.setVolume(voice, volume);
        output.setFrequencyRatio(voice, ratio);
        EXPECT_TRUE(output.start(voice));
        return voice;
    }

    // Ends the output; everything that was heard from the first sound on.
    std::vector<Frame> heard() {
        output.close();
        std::ifstream in(file, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(in), {});
        const std::size_t data = bytes.find("data");
        std::vector<Frame> frames;
        if (data == std::string::npos) return frames;
        for (std::size_t at = data + 8; at + 4 <= bytes.size(); at += 4) {
            std::int16_t sides[2];
            std::memcpy(sides, &bytes[at], sizeof sides);
            if (frames.empty() && sides[0] == 0 && sides[1] == 0) continue;
            frames.emplace_back(sides[0], sides[1]);
        }
        return frames;
    }
};

bool near(Frame frame, int left, int right) {
    return std::abs(frame.first - left) <= 2 && std::abs(frame.second - right) <= 2;
}

// At twice the speed, which takes every other sample, for so long that the device is fed meanwhile.
TEST_F(AudioOutputTrial, ALoopRegionRepeatsBehindItsBeginning) {
    const Samples track = ramp(2000);
    play({track, true, 1500, 200}, 1, 1.0F, 2.0F);
    for (int i = 0; i < 340; ++i) {
        wait(10);
        output.update();
    }
    const auto frames = heard();
    constexpr std::size_t kFrames = 70'000;
    ASSERT_GT(frames.size(), kFrames);
    for (std::size_t i = 0; i < kFrames; ++i) {
        // The ramp's first sample is silence, which is not heard.
        const int played = 2 * (static_cast<int>(i) + 1);
        const int place = played < 1700 ? played : 1500 + (played - 1700) % 200;
        ASSERT_TRUE(near(frames[i], 7 * place, 7 * place))
            << "frame " << i << " has " << frames[i].first;
    }
}

TEST_F(AudioOutputTrial, StereoIsLeftAsItIsAndVolumesHoldAtOnce) {
    Samples sides;
    for (int i = 0; i < 12000; ++i) sides.insert(sides.end(), {3000, -5000});
    const AudioVoice voice = play({sides, true}, 2, 0.5F);
    wait(200);
    output.setVolume(voice, 2.0F);
    wait(300);
    output.setVolume(voice, 0.0F);
    wait(200);
    EXPECT_TRUE(output.hasQueuedBuffers(voice)) << "silent, but playing";
    output.destroyVoice(voice);
    const auto frames = heard();
    const auto count = [&](int left, int right) {
        return std::ranges::count_if(frames, [&](Frame frame) { return near(frame, left, right); });
    };
    EXPECT_TRUE(near(frames.front(), 1500, -2500));
    EXPECT_GT(count(1500, -2500), 2000);
    EXPECT_GT(count(6000, -10000), 4000);
    EXPECT_GT(count(0, 0), 2000);
}

TEST_F(AudioOutputTrial, AnEffectMayBeLouderAndSlower) {
    const Samples sound = ramp(2000);
    const AudioVoice voice = play({sound}, 1, 2.0F, 0.5F);
    wait(600);
    EXPECT_FALSE(output.hasQueuedBuffers(voice));
    EXPECT_TRUE(output.start(voice)) << "and stays silent";
    wait(100);
    output.destroyVoice(voice);
    const auto frames = heard();
    const auto last = std::ranges::find_if(frames.rbegin(), frames.rend(),
                                           [](Frame frame) { return frame.first > 0; });
    const auto length = std::distance(last, frames.rend());
    EXPECT_NEAR(static_cast<double>(length), 4000.0, 8.0);
    for (const int i : {500, 1501, 3003}) {
        EXPECT_NEAR(frames[static_cast<std::size_t>(i)].first, 7 * i, 16) << i;
    }
}

TEST_F(AudioOutputTrial, AStoppedVoiceGoesOnWhereItWas) {
    const Samples track = ramp(4600);
    const AudioVoice voice = play({track});
    wait(80);
    output.stop(voice);
    wait(150);
    EXPECT_TRUE(output.hasQueuedBuffers(voice));
    EXPECT_TRUE(output.start(voice));
    wait(400);
    auto frames = heard();
    const auto silent = std::ranges::count(frames, Frame(0, 0));
    EXPECT_GT(silent, 1500) << "it paused";
    std::erase(frames, Frame(0, 0));
    // Sample by sample, but for the few over which the library fades.
    int wrong = 0;
    for (std::size_t i = 1; i < frames.size(); ++i) {
        if (std::abs(frames[i].first - frames[i - 1].first - 7) > 2) ++wrong;
    }
    EXPECT_NEAR(static_cast<double>(frames.size()), 4600.0, 150.0);
    EXPECT_LT(wrong, 150);
    EXPECT_NEAR(frames.back().first, 7 * 4599, 16);
}

TEST_F(AudioOutputTrial, ManyPlayAtOnceAndTheLastOneIsRefused) {
    const Samples click(600, 40);
    std::vector<AudioVoice> voices;
    for (int i = 0; i < 200; ++i) voices.push_back(play({click}));
    wait(150);
    for (const AudioVoice voice : voices) {
        EXPECT_FALSE(output.hasQueuedBuffers(voice));
        output.destroyVoice(voice);
    }
    AudioVoice more = output.createVoice(1, kRate);
    int made = 0;
    for (; more != kNoVoice && made < 5000; ++made) more = output.createVoice(2, kRate);
    EXPECT_EQ(more, kNoVoice);
    EXPECT_GE(made, 250);
    const auto frames = heard();
    const auto loudest = std::ranges::max_element(frames);
    // Where the mixer's periods cut between two of them, not all sound in the same period.
    EXPECT_GT(loudest->first, 40 * 50);
    EXPECT_LE(loudest->first, 40 * 200 + 2);
}

TEST_F(AudioOutputTrial, WhatCannotBePlayedIsRefused) {
    const AudioVoice voice = output.createVoice(1, kRate);
    EXPECT_FALSE(output.submit(voice, {}));
    const Samples track = ramp(100);
    EXPECT_FALSE(output.submit(voice, {track, true, 90, 20})) << "a loop beyond the end";
    output.destroyVoice(voice);
    output.destroyVoice(voice);
}

TEST(AudioOutputLoss, ALostDeviceComesBackWithItsMusic) {
    const std::filesystem::path file = soundFile().file;
    std::filesystem::remove(file);
    std::filesystem::create_symlink("/dev/full", file);
    AudioOutput output = platform::systemAudioOutput();
    ASSERT_EQ(output.open(), "");
    const Samples track = ramp(2000);
    const AudioVoice music = output.createVoice(1, kRate);
    ASSERT_TRUE(output.submit(music, {track, true}));
    ASSERT_TRUE(output.start(music));
    const AudioVoice effect = output.createVoice(1, kRate);
    ASSERT_TRUE(output.submit(effect, {track}));
    ASSERT_TRUE(output.start(effect));
    wait(1500);  // until the disk is found to be full
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    output.update();  // and there is no other
    const AudioVoice later = output.createVoice(1, kRate);
    ASSERT_NE(later, kNoVoice);
    EXPECT_TRUE(output.submit(later, {track}));
    output.setVolume(later, 0.5F);
    EXPECT_TRUE(output.start(later)) << "unheard, and no failure of the game";
    EXPECT_FALSE(output.hasQueuedBuffers(later));
    EXPECT_TRUE(output.hasQueuedBuffers(music));
    EXPECT_FALSE(output.hasQueuedBuffers(effect));
    output.destroyVoice(music);
    const AudioVoice next = output.createVoice(1, kRate);
    EXPECT_TRUE(output.submit(next, {track, true}));
    EXPECT_TRUE(output.start(next));

    std::filesystem::remove(file);
    wait(2100);  // until it is looked for again
    output.update();
    wait(300);
    for (const AudioVoice voice : {effect, later, next}) output.destroyVoice(voice);
    output.close();
    EXPECT_GT(std::filesystem::file_size(file), 10'000U) << "the new device plays the music";
}

}  // namespace
}  // namespace port
