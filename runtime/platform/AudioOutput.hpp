#pragma once

// The sound device as the audio system sees it: voices that play whole buffers. A value, so that a
// test can script a device and look at what its voices were told.

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace port::platform {

using AudioVoice = std::uint64_t;
constexpr AudioVoice kNoVoice = 0;

// The least and the greatest speed that a voice must be able to play at.
constexpr float kMinFrequencyRatio = 0.5F;
constexpr float kMaxFrequencyRatio = 2.0F;

// One buffer of signed 16-bit samples that ends its voice's stream. The device reads the samples
// in place, on any thread, until the voice is destroyed.
struct AudioBuffer {
    std::span<const std::int16_t> samples;  // interleaved, whole frames
    bool loop = false;                      // without end
    // What repeats after the first pass, in frames, within the samples; length 0 is all of them.
    std::uint32_t loopBegin = 0;
    std::uint32_t loopLength = 0;
};

// Without `open` there is no device in the build, and nothing else is called.
struct AudioOutput {
    std::string name;  // begins the text of a failing start, as in "XAudio2 music start failed"
    // Empty when the device is ready, else what failed; then nothing is left to be closed.
    std::function<std::string()> open;
    // After all voices are destroyed.
    std::function<void()> close;

    // kNoVoice on failure. `channels` is 1 or 2, `sampleRate` is above 0.
    std::function<AudioVoice(int channels, int sampleRate)> createVoice;
    std::function<void(AudioVoice)> destroyVoice;
    std::function<bool(AudioVoice, const AudioBuffer&)> submit;
    // Starting a voice that was stopped goes on where it was.
    std::function<bool(AudioVoice)> start;
    std::function<void(AudioVoice)> stop;
    std::function<void(AudioVoice, float)> setVolume;          // 0.0 to 2.0
    std::function<void(AudioVoice, float)> setFrequencyRatio;  // the range above
    // False when the voice has played all that was submitted.
    std::function<bool(AudioVoice)> hasQueuedBuffers;
    // Once a picture while the device is open: what it has to do beside playing. May be null.
    std::function<void()> update;
};

[[nodiscard]] AudioOutput systemAudioOutput();

}  // namespace port::platform
