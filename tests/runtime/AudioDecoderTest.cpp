#include "AudioDecoder.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <string>
#include <vector>

#include "TempFolder.hpp"

namespace port {
namespace {

using tindrel::test::TempFolder;
using Samples = std::vector<std::int16_t>;

std::string number(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i, value >>= 8U) text += static_cast<char>(value & 0xFFU);
    return text;
}

std::string chunk(const std::string& id, const std::string& body) {
    return id + number(static_cast<std::uint32_t>(body.size()), 4) + body +
           std::string(body.size() % 2, '\0');
}

std::string format(std::uint32_t codec, std::uint32_t channels, std::uint32_t bits,
                   std::uint32_t rate = 8000) {
    return chunk("fmt ", number(codec, 2) + number(channels, 2) + number(rate, 4) +
                             number(rate, 4) + number(channels, 2) + number(bits, 2));
}

std::string loop(std::uint32_t count, std::uint32_t start, std::uint32_t end) {
    return chunk("smpl", std::string(28, '\0') + number(count, 4) + std::string(12, '\0') +
                             number(start, 4) + number(end, 4) + std::string(8, '\0'));
}

std::string wave(const std::string& chunks) {
    return "RIFF" + number(static_cast<std::uint32_t>(chunks.size() + 4), 4) + "WAVE" + chunks;
}

struct AudioDecoderTest : testing::Test {
    TempFolder folder;
    DecodedAudio audio;
    std::string error;

    // "" when the file decodes, else the error.
    std::string decode(const std::string& name, const std::string& content) {
        error.clear();
        return AudioDecoder::decodeFile(folder.write(name, content), audio, error) ? "" : error;
    }
    std::string decodeWave(const std::string& chunks) { return decode("a.wav", wave(chunks)); }
};

TEST_F(AudioDecoderTest, GoesByTheExtension) {
    EXPECT_EQ(AudioDecoder::decodeFile("none.bor", audio, error), false);
    EXPECT_EQ(error, "cannot open .bor music");
    EXPECT_EQ(AudioDecoder::decodeFile("none.WAVE", audio, error), false);
    EXPECT_EQ(error, "cannot open WAV");
    std::filesystem::create_directories(folder.path() / "folder.wav");
    EXPECT_EQ(AudioDecoder::decodeFile(folder.path() / "folder.wav", audio, error), false);
    EXPECT_EQ(error, "cannot open WAV");
    for (const char* name : {"a.m4a", "a.AAC"}) {
        EXPECT_EQ(decode(name, "x"),
                  "compressed audio requires the Windows Media Foundation backend in this "
                  "generated runtime")
            << name;
    }
    EXPECT_EQ(decode("a.XM", "x"), "unsupported audio extension: .xm");
    EXPECT_EQ(decode("bor", "x"), "unsupported audio extension: ");
}

TEST_F(AudioDecoderTest, BorIsMonoAdpcmBehindAHeaderOf160Bytes) {
    const std::string header(160, '\x55');
    EXPECT_EQ(decode("a.bor", header),
              "invalid OpenBOR .bor: file is smaller than 160-byte header");

    EXPECT_EQ(decode("a.BOR", header + '\0'), "");
    EXPECT_EQ(audio.pcm, (Samples{0, 0}));
    EXPECT_EQ(audio.sampleRate, 22050);
    EXPECT_EQ(audio.channels, 1);
    EXPECT_FALSE(audio.hasLoop);
    EXPECT_EQ(audio.format, "openbor-bor-ima-adpcm-mono");

    // 7: 0+7+3+1 = 11, index 8, step 16. F: -(2+16+8+4) = -30, index 16, step 34.
    // 1: 4+8 = 12, index 15, step 31. C: -(3+31) = -34, index 17.
    EXPECT_EQ(decode("a.bor", header + "\x7F\x1C"), "");
    EXPECT_EQ(audio.pcm, (Samples{11, -19, -7, -41}));

    EXPECT_EQ(decode("a.bor", header + std::string(64, '\x77')), "");
    EXPECT_EQ(audio.pcm.back(), 32767) << "saturates and does not wrap";
    EXPECT_EQ(decode("a.bor", header + std::string(64, '\xFF')), "");
    EXPECT_EQ(audio.pcm.back(), -32768);
}

TEST_F(AudioDecoderTest, WavOfEveryDepthBecomes16Bits) {
    struct Case {
        std::uint32_t codec, bits;
        std::string data;
        Samples pcm;
        const char* format;
    };
    const auto real = [](float value) { return number(std::bit_cast<std::uint32_t>(value), 4); };
    const Case cases[] = {
        {1, 8, std::string("\x80\x00\xFF\x81", 4), {0, -32768, 32512, 256}, "wav-pcm8"},
        {1, 16, std::string("\x01\x00\xFF\xFF\x00\x80\x7F", 7), {1, -1, -32768}, "wav-pcm16"},
        {1, 24, std::string("\xFF\x00\x01\x00\x00\x80\x12", 7), {256, -32768}, "wav-pcm24"},
        {1, 32, number(0x7FFF8000, 4) + number(0xFFFFFFFF, 4), {32767, -1}, "wav-pcm32"},
        {3,
         32,
         real(2.0F) + real(-1.0F) + real(0.5F) + real(-0.5F) + real(-7e-5F) +
             real(-std::numeric_limits<float>::infinity()) +
             real(std::numeric_limits<float>::quiet_NaN()),
         {32767, -32767, 16384, -16384, -2, -32767, 0},
         "wav-float32"},
    };
    for (const Case& c : cases) {
        ASSERT_EQ(decodeWave(format(c.codec, 1, c.bits) + chunk("data", c.data)), "") << c.format;
        EXPECT_EQ(audio.pcm, c.pcm) << c.format;
        EXPECT_EQ(audio.format, c.format);
        EXPECT_EQ(audio.sampleRate, 8000);
    }
}

TEST_F(AudioDecoderTest, WavChunksComeInAnyOrderAndMayBeCutShort) {
    const std::string data = chunk("data", std::string("\x01\x00\x02\x00\x03\x00\x04\x00", 8));
    EXPECT_EQ(decodeWave(data + chunk("LIST", "odd") + loop(1, 100, 199) + format(1, 2, 16)), "");
    EXPECT_EQ(audio.pcm, (Samples{1, 2, 3, 4}));
    EXPECT_EQ(audio.channels, 2);
    EXPECT_TRUE(audio.hasLoop);
    EXPECT_EQ(audio.loopStartFrames, 100U);
    EXPECT_EQ(audio.loopLengthFrames, 100U);

    const std::string padding = chunk("LIST", "more than forty-four bytes of file in all");
    for (const std::string& noLoop :
         {loop(0, 100, 199), loop(1, 100, 99), chunk("smpl", "short")}) {
        EXPECT_EQ(decodeWave(format(1, 1, 16) + data + noLoop), "");
        EXPECT_FALSE(audio.hasLoop);
    }
    const std::string cut = padding + format(1, 1, 16) + data;
    EXPECT_EQ(decodeWave(cut.substr(0, cut.size() - 1)), "WAV missing fmt/data chunk");
    EXPECT_EQ(decodeWave(padding + format(1, 1, 16) + data + "smpl" + number(0xFFFFFFFF, 4)), "");
}

TEST_F(AudioDecoderTest, LongWavIsReadInPiecesWithNoneLostOrDoubled) {
    constexpr int kCount = 300'001;
    std::string narrow, wide;
    for (int i = 0; i < kCount; ++i) {
        narrow += number(static_cast<std::uint32_t>(i * 7), 2);
        wide += '\x55' + number(static_cast<std::uint32_t>(i * 7), 2);
    }
    const std::string far = chunk("LIST", std::string(10'001, 'x'));
    for (const std::string& chunks :
         {far + format(1, 1, 16) + far + chunk("data", narrow) + far + loop(1, 5, 9),
          far + chunk("data", wide) + far + loop(1, 5, 9) + far + format(1, 1, 24)}) {
        ASSERT_EQ(decodeWave(chunks), "");
        ASSERT_EQ(audio.pcm.size(), std::size_t{kCount});
        for (int i = 0; i < kCount; ++i) {
            ASSERT_EQ(audio.pcm[static_cast<std::size_t>(i)], static_cast<std::int16_t>(i * 7))
                << audio.format << " sample " << i;
        }
        EXPECT_EQ(audio.loopStartFrames, 5U) << audio.format;
        EXPECT_EQ(audio.loopLengthFrames, 5U) << audio.format;
    }
}

TEST_F(AudioDecoderTest, WavThatCannotBePlayedSaysWhy) {
    const std::string data = chunk("data", std::string(8, '\x01'));
    EXPECT_EQ(decode("a.wav", "RIFF"), "invalid RIFF/WAVE file");
    EXPECT_EQ(decode("a.wav", std::string(100, 'x')), "invalid RIFF/WAVE file");
    EXPECT_EQ(decodeWave(format(1, 1, 16) + chunk("data", "")), "WAV missing fmt/data chunk");
    EXPECT_EQ(decodeWave(format(1, 0, 16) + data), "WAV missing fmt/data chunk");
    EXPECT_EQ(decodeWave(format(1, 1, 16, 0) + data), "WAV missing fmt/data chunk");
    EXPECT_EQ(decodeWave(format(2, 1, 4) + data), "WAV codec is not PCM/IEEE-float");
    EXPECT_EQ(decodeWave(format(1, 1, 12) + data), "WAV PCM bit depth must be 8/16/24/32");
    EXPECT_EQ(decodeWave(format(3, 1, 64) + data), "WAV IEEE-float must be 32-bit");
    EXPECT_EQ(decodeWave(format(1, 6, 16) + data),
              "WAV channel count >2 is not supported by preview runtime");
    EXPECT_EQ(decodeWave(format(1, 1, 16) + chunk("data", "x") + chunk("LIST", "")),
              "WAV contains no PCM samples");
    EXPECT_EQ(decodeWave(format(1, 2, 16) + chunk("data", "xx") + chunk("LIST", "")),
              "WAV contains no PCM samples")
        << "half a frame would loop without an end";
}

TEST_F(AudioDecoderTest, MoreThanOneGibibyteIsRefusedUnread) {
    // Files with a hole: 256 MiB of .bor are 1 GiB of samples, and so are 2 GiB of 32-bit WAV.
    for (const auto& [name, size] :
         {std::pair("a.bor", 161 + (std::uintmax_t{1} << 28U)),
          {"a.wav", (std::uintmax_t{1} << 31U) + (std::uintmax_t{1} << 21U)}}) {
        const auto path = folder.write(name, "RIFF");
        std::filesystem::resize_file(path, size);
        EXPECT_FALSE(AudioDecoder::decodeFile(path, audio, error)) << name;
        EXPECT_TRUE(error.starts_with("decoded audio would be larger than 1 GiB: ")) << error;
        EXPECT_TRUE(error.ends_with(" of " + std::to_string(size) + " bytes")) << error;
    }
}

}  // namespace
}  // namespace port
