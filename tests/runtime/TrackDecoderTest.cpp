#include "TrackDecoder.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "TempFolder.hpp"

namespace port {
namespace {

using Paths = std::vector<std::filesystem::path>;

// A .bor of two samples for each byte behind its header.
std::string bor(std::size_t bytes, char byte = '\x17') {
    return std::string(160, '\0') + std::string(bytes, byte);
}

struct TrackDecoderTest : testing::Test {
    tindrel::test::TempFolder folder;

    std::filesystem::path track(const std::string& name, std::size_t bytes, char byte = '\x17') {
        return folder.write(name, bor(bytes, byte));
    }
    static void waitForBytes(const TrackDecoder& decoder, std::size_t bytes) {
        for (int tries = 0; decoder.bytes() != bytes && tries < 5000; ++tries) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        ASSERT_EQ(decoder.bytes(), bytes);
    }
};

// What a file gives, or why it gives nothing.
std::string outcome(const std::shared_ptr<const DecodedAudio>& audio, const std::string& error) {
    if (!audio) return error;
    std::string bytes(audio->pcm.size() * sizeof(std::int16_t), '\0');
    std::memcpy(bytes.data(), audio->pcm.data(), bytes.size());
    return audio->format + " " + std::to_string(bytes.size()) + " " +
           std::to_string(std::hash<std::string>()(bytes));
}
std::string aheadOutcome(TrackDecoder& decoder, const std::filesystem::path& path) {
    std::string error;
    const auto audio = decoder.decode(path, error);
    return outcome(audio, error);
}
std::string plainOutcome(const std::filesystem::path& path) {
    auto audio = std::make_shared<DecodedAudio>();
    std::string error;
    if (!AudioDecoder::decodeFile(path, *audio, error)) audio = nullptr;
    return outcome(audio, error);
}

TEST_F(TrackDecoderTest, WhatIsNoFileAnswersAtOnce) {
    TrackDecoder decoder;
    decoder.expect({{}, folder.path() / "absent.ogg"});
    for (const auto& path : Paths{{}, folder.path() / "absent.ogg"}) {
        EXPECT_EQ(aheadOutcome(decoder, path), plainOutcome(path));
    }
}

// Rewritten with its old size and time, a file shows whether it is read again.
TEST_F(TrackDecoderTest, WhatWasExpectedIsNotDecodedAgain) {
    TrackDecoder decoder;
    const auto expected = track("a.bor", 500), other = track("b.bor", 500);
    decoder.expect({expected});
    waitForBytes(decoder, 2000);
    const std::string before = plainOutcome(expected);
    for (const auto& file : {expected, other}) {
        const auto time = std::filesystem::last_write_time(file);
        folder.write(file.filename().string(), bor(500, '\x71'));
        std::filesystem::last_write_time(file, time);
    }
    ASSERT_NE(plainOutcome(expected), before);
    EXPECT_EQ(aheadOutcome(decoder, expected), before);
    EXPECT_EQ(aheadOutcome(decoder, expected), before) << "a second time";
    decoder.expect({other, expected});
    EXPECT_EQ(aheadOutcome(decoder, expected), before) << "expected once more";
    EXPECT_EQ(aheadOutcome(decoder, other), plainOutcome(other));
    decoder.expect({other});
    EXPECT_EQ(aheadOutcome(decoder, expected), plainOutcome(expected)) << "and then no more";
}

TEST_F(TrackDecoderTest, AFileIsAsItIsWhenItPlays) {
    TrackDecoder decoder;
    const auto longer = track("longer.bor", 500), gone = track("gone.bor", 500);
    const auto late = folder.path() / "late.bor", bad = folder.write("bad.wav", "RIFF");
    decoder.expect({late, bad, longer, gone});
    waitForBytes(decoder, 4000);
    track("longer.bor", 700);
    std::filesystem::remove(gone);
    track("late.bor", 300);
    for (const auto& file : {longer, gone, late, bad, folder.path() / "none.xm"}) {
        EXPECT_EQ(aheadOutcome(decoder, file), plainOutcome(file)) << file;
    }
    EXPECT_EQ(decoder.bytes(), 4000U) << "700 and 300 bytes of payload, instead of 500 and 500";
}

TEST_F(TrackDecoderTest, KeepsWhatFitsInTheOrderOfNeed) {
    TrackDecoder decoder(5000);
    const Paths files = {track("a.bor", 1000), track("b.bor", 1000), track("c.bor", 200)};
    decoder.expect(files);
    waitForBytes(decoder, 4800);
    for (const auto& file : files) EXPECT_EQ(aheadOutcome(decoder, file), plainOutcome(file));
    EXPECT_EQ(decoder.bytes(), 4800U);
    decoder.expect({files[1]});
    waitForBytes(decoder, 4000);
}

TEST_F(TrackDecoderTest, AsksAndEndsWhileTheWorkerIsBusy) {
    Paths files;
    for (const char* name : {"a.bor", "b.bor", "c.bor", "d.bor"}) {
        files.push_back(track(name, 40'000 + files.size()));
    }
    std::vector<std::string> plain;
    for (const auto& file : files) plain.push_back(plainOutcome(file));
    for (std::size_t round = 0; round < 40; ++round) {
        TrackDecoder decoder(400'000);
        decoder.expect(files);
        if (round % 2 == 1) decoder.expect({files[3], files[round % 3]});
        for (std::size_t i = 0; i < round % 8; ++i) {
            const std::size_t asked = (round + i) % files.size();
            EXPECT_EQ(aheadOutcome(decoder, files[asked]), plain[asked]);
        }
    }
}

TEST_F(TrackDecoderTest, DecodersStopWhenTheyAreTold) {
    std::string wav("RIFF....WAVEfmt \x10\0\0\0\x01\0\x01\0\x22\x56\0\0\x44\xAC\0\0\x02\0\x10\0",
                    36);
    wav += std::string("data\x10\0\0\0", 8) + std::string(16, '\x11');
    const auto file = folder.write("a.wav", wav);
    DecodedAudio audio;
    std::string error;
    ASSERT_TRUE(AudioDecoder::decodeFile(file, audio, error)) << error;
    std::stop_source stop;
    stop.request_stop();
    EXPECT_FALSE(AudioDecoder::decodeFile(file, audio, error, stop.get_token()));
}

}  // namespace
}  // namespace port
