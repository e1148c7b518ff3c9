#include "AudioSystem.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "EffectCache.hpp"
#include "TempFolder.hpp"

namespace port {
namespace {

using platform::AudioBuffer;
using platform::AudioOutput;
using platform::AudioVoice;
using tindrel::test::TempFolder;
using Calls = std::vector<std::string>;

constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();

// A device that keeps what it is told, and fails where a test wants it to.
struct ScriptedDevice {
    struct Voice {
        int channels = 0, sampleRate = 0;
        AudioBuffer buffer;
        std::vector<std::int16_t> heard;  // the samples as they were when submitted
        float volume = -1, ratio = -1;
    };
    Calls calls;  // volumes and ratios aside
    std::string failing;
    std::map<AudioVoice, Voice> voices;  // those that are not destroyed
    std::set<AudioVoice> ended;
    AudioVoice last = platform::kNoVoice;

    bool call(const std::string& name, AudioVoice voice) {
        calls.push_back(name + " " + std::to_string(voice));
        return failing != name;
    }
    Calls takeCalls() { return std::exchange(calls, {}); }

    void destroy(AudioVoice id) {
        call("destroy", id);
        const Voice& voice = voices.at(id);
        EXPECT_TRUE(std::ranges::equal(voice.buffer.samples, voice.heard))
            << "the samples of voice " << id << " changed or went while it lived";
        voices.erase(id);
    }

    AudioOutput output() {
        AudioOutput out;
        out.name = "Scripted";
        out.open = [this] {
            return call("open", 0) ? std::string() : std::string("ScriptedCreate failed");
        };
        out.close = [this] { call("close", voices.size()); };
        out.createVoice = [this](int channels, int sampleRate) {
            if (!call("create", last + 1)) return platform::kNoVoice;
            voices[++last] = {channels, sampleRate, {}, {}};
            return last;
        };
        out.destroyVoice = [this](AudioVoice voice) { destroy(voice); };
        out.submit = [this](AudioVoice id, const AudioBuffer& buffer) {
            Voice& voice = voices.at(id);
            voice.buffer = buffer;
            voice.heard.assign(buffer.samples.begin(), buffer.samples.end());
            return call("submit", id);
        };
        out.start = [this](AudioVoice voice) { return call("start", voice); };
        out.stop = [this](AudioVoice voice) { call("stop", voice); };
        out.setVolume = [this](AudioVoice id, float volume) { voices.at(id).volume = volume; };
        out.setFrequencyRatio = [this](AudioVoice id, float ratio) { voices.at(id).ratio = ratio; };
        out.hasQueuedBuffers = [this](AudioVoice voice) { return !ended.contains(voice); };
        out.update = [this] { call("update", 0); };
        return out;
    }
};

// A .bor of two frames for each byte behind its header.
std::string bor(std::size_t bytes, char byte = '\x17') {
    return std::string(160, '\0') + std::string(bytes, byte);
}

struct AudioSystemTest : testing::Test {
    TempFolder folder;
    ScriptedDevice device;
    AudioSystem audio{device.output()};
    RuntimeConfig config;

    void SetUp() override {
        config.masterVolume = config.musicVolume = config.effectsVolume = 1.0F;
    }
    void initialize() {
        ASSERT_TRUE(audio.initialize(config));
        device.calls.clear();
    }
    std::filesystem::path sound(const std::string& name, std::size_t bytes = 50) {
        return folder.write(name, bor(bytes));
    }
    // "" when the call succeeded, else the error.
    std::string outcome(bool succeeded) {
        EXPECT_EQ(succeeded, audio.lastError().empty());
        return audio.lastError();
    }
};

TEST(MusicLoopTest, AnOffsetInTheFileGoesBeforeTheFilesOwnLoop) {
    struct Case {
        const char* what;
        std::uint32_t ownBegin, ownLength;
        std::int64_t offset;
        std::optional<std::uintmax_t> fileSize;
        LoopRegion region;
    };
    const Case cases[] = {
        {"no loop at all", 0, 0, 0, 1000, {0, 0}},
        {"half the file", 0, 0, 500, 1000, {50, 50}},
        {"rounded to the nearest frame", 0, 0, 496, 1000, {50, 50}},
        {"beyond the file", 0, 0, 5000, 1000, {99, 1}},
        {"an empty file", 10, 20, 500, 0, {0, 0}},
        {"a file that is gone", 10, 20, 500, std::nullopt, {0, 0}},
        {"the file's own", 10, 20, 0, 1000, {10, 20}},
        {"a negative offset", 10, 20, -500, 1000, {10, 20}},
        {"an own loop past the end", 90, 20, 0, 1000, {90, 10}},
        {"an own loop behind the end", 100, 20, 0, 1000, {0, 0}},
    };
    for (const Case& c : cases) {
        DecodedAudio track;
        track.channels = 2;
        track.pcm.resize(200);
        track.hasLoop = c.ownLength > 0;
        track.loopStartFrames = c.ownBegin;
        track.loopLengthFrames = c.ownLength;
        const LoopRegion region = musicLoopRegion(track, c.offset, c.fileSize);
        EXPECT_EQ(region.begin, c.region.begin) << c.what;
        EXPECT_EQ(region.length, c.region.length) << c.what;
    }
    DecodedAudio click;
    click.pcm = {1};
    EXPECT_EQ(musicLoopRegion(click, 1, 2), LoopRegion()) << "one frame has no part to repeat";
}

TEST_F(AudioSystemTest, MusicReplacesTheTrackThatPlays) {
    initialize();
    EXPECT_EQ(outcome(audio.playMusic(sound("a.bor"), true, 105)), "");
    EXPECT_EQ(device.takeCalls(), (Calls{"create 1", "submit 1", "start 1"}));
    const auto& first = device.voices.at(1);
    EXPECT_EQ(first.channels, 1);
    EXPECT_EQ(first.sampleRate, 22050);
    EXPECT_EQ(first.buffer.samples.size(), 100U);
    EXPECT_TRUE(first.buffer.loop);
    EXPECT_EQ(first.buffer.loopBegin, 50U) << "105 of the file's 210 bytes";
    EXPECT_EQ(first.buffer.loopLength, 50U);

    EXPECT_EQ(outcome(audio.playMusic(folder.path() / "none.wav")), "cannot open WAV");
    EXPECT_EQ(device.takeCalls(), Calls{}) << "the old track plays on";

    EXPECT_EQ(outcome(audio.playMusic(sound("b.bor", 9), false, 105)), "");
    EXPECT_EQ(device.takeCalls(), (Calls{"destroy 1", "create 2", "submit 2", "start 2"}));
    EXPECT_FALSE(device.voices.at(2).buffer.loop);
    EXPECT_EQ(device.voices.at(2).buffer.loopLength, 0U);
}

TEST_F(AudioSystemTest, MusicPausesStopsAndGoesOn) {
    initialize();
    audio.pauseMusic(true);
    audio.pauseMusic(false);
    audio.stopMusic();
    EXPECT_EQ(device.takeCalls(), Calls{}) << "there is no track yet";

    const auto track = sound("a.bor");
    ASSERT_TRUE(audio.playMusic(track));
    device.calls.clear();
    audio.pauseMusic(true);
    EXPECT_TRUE(audio.musicPaused());
    audio.stopMusic();
    EXPECT_FALSE(audio.musicPaused());
    audio.pauseMusic(false);
    EXPECT_EQ(device.takeCalls(), (Calls{"stop 1", "stop 1", "start 1"}));

    audio.pauseMusic(true);
    ASSERT_TRUE(audio.playMusic(track));
    EXPECT_FALSE(audio.musicPaused());
    device.failing = "start";
    audio.pauseMusic(false);
    EXPECT_EQ(audio.lastError(), "Scripted music start failed");
}

TEST_F(AudioSystemTest, EffectsOverlapWithinTheLimitsOfVolumeAndSpeed) {
    initialize();
    const auto hit = sound("hit.bor");
    struct Case {
        float gain, speed, volume, ratio;
        bool loop;
    };
    const Case cases[] = {{1, 1, 1, 1, false},
                          {3, 0.1F, 2, 0.5F, true},
                          {-1, 9, 0, 2, false},
                          {kNoNumber, kNoNumber, 0, 0.5F, false}};
    for (const Case& c : cases) {
        ASSERT_EQ(outcome(audio.playEffect(hit, c.gain, c.loop, c.speed)), "");
        const auto& voice = device.voices.at(device.last);
        EXPECT_EQ(voice.volume, c.volume) << c.gain;
        EXPECT_EQ(voice.ratio, c.ratio) << c.speed;
        EXPECT_EQ(voice.buffer.loop, c.loop);
        EXPECT_EQ(voice.buffer.samples.size(), 100U);
    }
    EXPECT_EQ(device.voices.size(), std::size(cases)) << "all sound at once";

    device.ended = {1, 3};
    device.calls.clear();
    ASSERT_TRUE(audio.playEffect(hit));
    EXPECT_EQ(device.takeCalls(),
              (Calls{"destroy 1", "destroy 3", "create 5", "submit 5", "start 5"}));
    device.ended = {5};
    audio.setEffectsVolume(0.5F);
    EXPECT_EQ(device.takeCalls(), (Calls{"destroy 5"}));
}

TEST_F(AudioSystemTest, VolumesAreClampedAndHeardAtOnce) {
    config.musicVolume = 0.5F;
    initialize();
    const auto file = sound("a.bor");
    ASSERT_TRUE(audio.playMusic(file));
    ASSERT_TRUE(audio.playEffect(file, 3));
    const float& music = device.voices.at(1).volume;
    const float& effect = device.voices.at(2).volume;
    EXPECT_EQ(music, 0.5F);

    audio.setMasterVolume(0.5F);
    EXPECT_EQ(music, 0.25F);
    EXPECT_EQ(effect, 1.5F);
    audio.setMusicVolume(7);
    audio.setEffectsVolume(0.25F);
    EXPECT_EQ(audio.musicVolume(), 1.0F);
    EXPECT_EQ(music, 0.5F);
    EXPECT_EQ(effect, 0.375F);
    audio.setMusicVolume(-7);
    EXPECT_EQ(music, 0.0F);
    audio.setMasterVolume(kNoNumber);
    EXPECT_EQ(audio.masterVolume(), 0.0F);
    EXPECT_EQ(effect, 0.0F);
}

TEST_F(AudioSystemTest, EachStepThatFailsSaysSoAndLeavesNoVoice) {
    const auto file = sound("a.bor");
    device.failing = "open";
    EXPECT_FALSE(audio.initialize(config));
    EXPECT_EQ(audio.lastError(), "ScriptedCreate failed");
    EXPECT_EQ(outcome(audio.playMusic(file)), "audio system not initialized");
    EXPECT_EQ(outcome(audio.playEffect(file)), "audio system not initialized");
    EXPECT_EQ(outcome(audio.playEffect(folder.path() / "a.xm")),
              "unsupported audio extension: .xm");

    device.failing.clear();
    initialize();
    struct Case {
        const char *step, *music, *effect;
    };
    const Case cases[] = {
        {"create", "CreateSourceVoice(music) failed", "CreateSourceVoice(effect) failed"},
        {"submit", "SubmitSourceBuffer(music) failed", "SubmitSourceBuffer(effect) failed"},
        {"start", "Scripted music start failed", "Scripted effect start failed"}};
    for (const Case& c : cases) {
        device.failing = c.step;
        EXPECT_EQ(outcome(audio.playMusic(file)), c.music);
        EXPECT_EQ(outcome(audio.playEffect(file)), c.effect);
        EXPECT_EQ(device.voices.size(), 0U) << c.step;
    }
    device.failing.clear();
    EXPECT_EQ(outcome(audio.playMusic(file)), "");
}

TEST_F(AudioSystemTest, TheSwitchOfBorHoldsForMusicAlone) {
    config.openborBorAdpcm = false;
    initialize();
    const auto file = sound("a.BOR");
    EXPECT_EQ(outcome(audio.playMusic(file)), "OpenBOR .bor ADPCM decoder disabled");
    EXPECT_EQ(outcome(audio.playEffect(file)), "");
}

TEST_F(AudioSystemTest, EndsWithEffectsThenMusicThenTheDevice) {
    const auto file = sound("a.bor");
    {
        AudioSystem own(device.output());
        own.update();
        EXPECT_EQ(device.takeCalls(), Calls{}) << "there is nothing to look after yet";
        ASSERT_TRUE(own.initialize(config));
        own.update();
        EXPECT_EQ(device.takeCalls(), (Calls{"open 0", "update 0"}));
        ASSERT_TRUE(own.playMusic(file));
        ASSERT_TRUE(own.playEffect(file));
        ASSERT_TRUE(own.playEffect(file));
        device.calls.clear();
        ASSERT_TRUE(own.initialize(config));
        EXPECT_EQ(device.takeCalls(),
                  (Calls{"destroy 2", "destroy 3", "destroy 1", "close 0", "open 0"}));
    }
    EXPECT_EQ(device.takeCalls(), (Calls{"close 0"}));
}

TEST_F(AudioSystemTest, ABuildWithoutADeviceTellsWhatItDecoded) {
    AudioSystem silent{AudioOutput{}};
    EXPECT_TRUE(silent.initialize(config));
    const auto file = sound("a.bor");
    testing::internal::CaptureStdout();
    EXPECT_TRUE(silent.playMusic(file, true, 7));
    EXPECT_TRUE(silent.playEffect(file));
    EXPECT_TRUE(silent.playEffect(file)) << "and tells it each time";
    EXPECT_FALSE(silent.playEffect(folder.path() / "none.bor"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Decoded music: openbor-bor-ima-adpcm-mono 1ch 22050Hz frames=100\n"
              "Decoded effect: openbor-bor-ima-adpcm-mono 1ch 22050Hz\n"
              "Decoded effect: openbor-bor-ima-adpcm-mono 1ch 22050Hz\n");
    EXPECT_EQ(silent.lastError(), "cannot open .bor music");
    silent.pauseMusic(true);
    silent.stopMusic();
    silent.update();
    silent.setMasterVolume(0.5F);
    EXPECT_EQ(silent.masterVolume(), 0.5F);
}

struct EffectCacheTest : testing::Test {
    TempFolder folder;
    std::string error;
};

TEST_F(EffectCacheTest, DecodesAFileAgainWhenItChangesOrGoes) {
    EffectCache cache;
    const auto file = folder.write("a.bor", bor(50));
    const auto first = cache.decode(file, error);
    ASSERT_TRUE(first);
    EXPECT_EQ(cache.decode(file, error), first);

    folder.write("a.bor", bor(60));
    const auto longer = cache.decode(file, error);
    ASSERT_TRUE(longer);
    EXPECT_EQ(longer->pcm.size(), 120U);
    EXPECT_EQ(first->pcm.size(), 100U) << "a voice may still play it";

    folder.write("a.bor", bor(60, '\x71'));
    std::filesystem::last_write_time(
        file, std::filesystem::last_write_time(file) + std::chrono::seconds(5));
    EXPECT_NE(cache.decode(file, error)->pcm, longer->pcm);

    std::filesystem::remove(file);
    EXPECT_FALSE(cache.decode(file, error));
    EXPECT_EQ(error, "cannot open .bor music");
    EXPECT_EQ(cache.bytes(), 0U);
}

TEST_F(EffectCacheTest, ForgetsWhatWasPlayedLongestAgo) {
    constexpr std::size_t kCapacity = 250'000;
    EffectCache cache(kCapacity);
    const auto play = [&](const std::string& name, std::size_t bytes) {
        return cache.decode(folder.path() / folder.write(name, bor(bytes)), error);
    };
    // 100,000 bytes of samples each: two fit.
    const auto a = folder.write("a.bor", bor(25'000));
    const auto b = folder.write("b.bor", bor(25'000));
    const auto firstA = cache.decode(a, error);
    const auto firstB = cache.decode(b, error);
    EXPECT_EQ(cache.decode(a, error), firstA);
    ASSERT_TRUE(play("c.bor", 25'000));
    EXPECT_LE(cache.bytes(), kCapacity);
    EXPECT_EQ(cache.decode(a, error), firstA);
    EXPECT_NE(cache.decode(b, error), firstB);

    ASSERT_TRUE(play("large.bor", 70'000)) << "larger than all the room there is";
    EXPECT_LE(cache.bytes(), kCapacity);
    EXPECT_EQ(cache.decode(a, error), firstA) << "and displaces nothing";
}

}  // namespace
}  // namespace port
