#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "AudioDecoder.hpp"
#include "CompressedAudio.hpp"
#include "TempFolder.hpp"

namespace port {
namespace {

using tindrel::test::TempFolder;

// 64 stereo frames at 8,000 Hz, left 300 * i and right -300 * i, packed by a FLAC encoder.
constexpr unsigned char kFlac[] = {
#include "CompressedAudioFlac.inc"
};

#ifdef _WIN32
constexpr const char* kFormat = "media-foundation-pcm16";
constexpr const char* kNoCodec =
    "Media Foundation could not open compressed audio (codec may be unavailable)";
#else
constexpr const char* kFormat = "libsndfile-pcm16";
constexpr const char* kNoCodec =
    "libsndfile could not open compressed audio (codec may be unavailable): ";
#endif

struct CompressedAudioTest : testing::Test {
    TempFolder folder;
    DecodedAudio audio;
    std::string error;

    std::string decode(const std::string& name, const std::string& content) {
        error.clear();
        return AudioDecoder::decodeFile(folder.write(name, content), audio, error) ? "" : error;
    }
    void SetUp() override {
        if (decode("probe.ogg", "") == kNoCompressedAudio)
            GTEST_SKIP() << "nothing decodes it here";
#ifdef _WIN32
        // Which formats the system knows is up to what is installed.
        if (decode("probe.flac", {std::begin(kFlac), std::end(kFlac)}).find("codec may be") !=
            std::string::npos) {
            GTEST_SKIP() << error;
        }
#endif
    }
};

TEST_F(CompressedAudioTest, GivesTheSamplesThatWerePacked) {
    const std::string flac(std::begin(kFlac), std::end(kFlac));
    for (const char* name : {"a.flac", "A.OGG"}) {
        ASSERT_EQ(decode(name, flac), "") << "the content decides within the family";
        EXPECT_EQ(audio.sampleRate, 8000);
        EXPECT_EQ(audio.channels, 2);
        EXPECT_EQ(audio.format, kFormat);
        EXPECT_FALSE(audio.hasLoop);
        ASSERT_EQ(audio.pcm.size(), 128U);
        for (int i = 0; i < 64; ++i) {
            const auto at = static_cast<std::size_t>(i) * 2;
            ASSERT_EQ(audio.pcm[at], 300 * i);
            ASSERT_EQ(audio.pcm[at + 1], -300 * i);
        }
    }
}

TEST_F(CompressedAudioTest, DamageIsAMessageAndNoSamples) {
    const std::string flac(std::begin(kFlac), std::end(kFlac));
    for (std::size_t size = 0; size < flac.size(); ++size) {
        const std::string answer = decode("a.flac", flac.substr(0, size));
        ASSERT_NE(answer, "") << size;
        ASSERT_TRUE(audio.pcm.empty()) << size;
    }
    for (const char* name : {"a.mp3", "a.FLAC", "a.ogg", "a.oga"}) {
        const std::string answer = decode(name, "x");
        EXPECT_TRUE(answer.starts_with(kNoCodec)) << name << ": " << answer;
    }
}

TEST_F(CompressedAudioTest, ALengthBeyondTheLimitIsRefusedBeforeDecoding) {
    std::string flac(std::begin(kFlac), std::end(kFlac));
    // The 36 bits of the frame count end at byte 26 of the file.
    flac[22] = '\x7F';
    EXPECT_EQ(decode("a.flac", flac),
              "decoded audio would be larger than 1 GiB: 2130706496 frames of 2 channels");
}

}  // namespace
}  // namespace port
