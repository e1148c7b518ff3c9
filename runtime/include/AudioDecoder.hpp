#pragma once

// Sound files decoded whole into signed 16-bit samples.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace port {

struct DecodedAudio {
    int sampleRate = 22050;         // frames per second
    int channels = 1;               // 1 or 2
    std::vector<std::int16_t> pcm;  // interleaved; one frame at least
    std::uint32_t loopStartFrames = 0;
    std::uint32_t loopLengthFrames = 0;
    bool hasLoop = false;  // the file states a loop
    std::string format;    // what was decoded, such as "wav-pcm16"
};

// The most that one file may decode to: 1 GiB, over an hour and a half of stereo at 48,000 Hz.
constexpr std::size_t kMaxDecodedSamples = (std::size_t{1} << 30U) / sizeof(std::int16_t);
// How the message begins that refuses more; what it is of follows.
constexpr const char* kAudioTooLarge = "decoded audio would be larger than 1 GiB";

// Each call fills `out` and returns true, or sets `error` and returns false. No bad file throws.
class AudioDecoder {
  public:
    // By the file name's extension, in any case. Several threads may decode at a time; one that is
    // asked to stop fails soon.
    static bool decodeFile(const std::filesystem::path& path, DecodedAudio& out, std::string& error,
                           const std::stop_token& stop = {});
    // Legacy music: a header of 160 bytes that is not read, then IMA ADPCM, mono, 22050 Hz.
    static bool decodeOpenBorBor(const std::filesystem::path& path, DecodedAudio& out,
                                 std::string& error);
    static bool decodeOpenBorBor(std::span<const std::uint8_t> file, DecodedAudio& out,
                                 std::string& error);
    // RIFF/WAVE: PCM of 8, 16, 24 or 32 bits or 32-bit float, mono or stereo.
    static bool decodeWav(const std::filesystem::path& path, DecodedAudio& out, std::string& error,
                          const std::stop_token& stop = {});
    static bool decodeWav(std::span<const std::uint8_t> file, DecodedAudio& out,
                          std::string& error);
};

}  // namespace port
