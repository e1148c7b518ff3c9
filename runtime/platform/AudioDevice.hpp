#pragma once

// Gives a back end's sound device the form in which the audio system sees one.

#include <memory>
#include <utility>

#include "AudioOutput.hpp"

namespace port::platform {

// `Device` has a method for each function of AudioOutput; update() may be missing.
template <class Device>
AudioOutput audioOutputOf(std::string name, std::shared_ptr<Device> device) {
    AudioOutput output;
    output.name = std::move(name);
    output.open = [device] { return device->open(); };
    output.close = [device] { device->close(); };
    output.createVoice = [device](int channels, int sampleRate) {
        return device->createVoice(channels, sampleRate);
    };
    output.destroyVoice = [device](AudioVoice voice) { device->destroyVoice(voice); };
    output.submit = [device](AudioVoice voice, const AudioBuffer& buffer) {
        return device->submit(voice, buffer);
    };
    output.start = [device](AudioVoice voice) { return device->start(voice); };
    output.stop = [device](AudioVoice voice) { device->stop(voice); };
    output.setVolume = [device](AudioVoice voice, float volume) {
        device->setVolume(voice, volume);
    };
    output.setFrequencyRatio = [device](AudioVoice voice, float ratio) {
        device->setFrequencyRatio(voice, ratio);
    };
    output.hasQueuedBuffers = [device](AudioVoice voice) {
        return device->hasQueuedBuffers(voice);
    };
    if constexpr (requires { device->update(); }) output.update = [device] { device->update(); };
    return output;
}

}  // namespace port::platform
