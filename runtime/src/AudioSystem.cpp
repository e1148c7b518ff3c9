#include "AudioSystem.hpp"

#include <algorithm>

namespace port {

bool AudioSystem::initialize(const RuntimeConfig& config) {
    config_ = config;
    error_ = "no sound output in this build";
    return false;
}

void AudioSystem::setMasterVolume(float volume) {
    config_.masterVolume = std::clamp(volume, 0.0F, 1.0F);
}

void AudioSystem::setMusicVolume(float volume) {
    config_.musicVolume = std::clamp(volume, 0.0F, 1.0F);
}

void AudioSystem::setEffectsVolume(float volume) {
    config_.effectsVolume = std::clamp(volume, 0.0F, 1.0F);
}

}  // namespace port
