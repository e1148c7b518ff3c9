#include <cstddef>
#include <cstdint>
#include <string>

#include "AudioDecoder.hpp"
#include "Require.hpp"

using tindrel::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    port::DecodedAudio audio;
    std::string error;
    if (port::AudioDecoder::decodeWav(std::span<const std::uint8_t>(data, size), audio, error)) {
        require(!audio.pcm.empty(), "success means a sample");
        require(audio.channels == 1 || audio.channels == 2, "mono or stereo");
        require(audio.sampleRate > 0, "a rate");
        require(!audio.format.empty(), "a format");
        require(audio.pcm.size() <= size, "no sample comes from less than a byte");
    } else {
        require(!error.empty(), "a refusal has a message");
    }
    return 0;
}
