#pragma once

// The keys that change a volume while a game runs.

#include <array>

#include "AudioSystem.hpp"
#include "Keys.hpp"

namespace port {

struct VolumeKey {
    int key;
    float step;
    float (AudioSystem::*volume)() const;
    void (AudioSystem::*setVolume)(float);
};

inline constexpr float kVolumeStep = 0.05F;
inline constexpr std::array kVolumeKeys = {
    VolumeKey{kKeyF2, -kVolumeStep, &AudioSystem::musicVolume, &AudioSystem::setMusicVolume},
    VolumeKey{kKeyF3, kVolumeStep, &AudioSystem::musicVolume, &AudioSystem::setMusicVolume},
    VolumeKey{kKeyF4, -kVolumeStep, &AudioSystem::effectsVolume, &AudioSystem::setEffectsVolume},
    VolumeKey{kKeyF5, kVolumeStep, &AudioSystem::effectsVolume, &AudioSystem::setEffectsVolume},
    VolumeKey{kKeyF6, -kVolumeStep, &AudioSystem::masterVolume, &AudioSystem::setMasterVolume},
    VolumeKey{kKeyF7, kVolumeStep, &AudioSystem::masterVolume, &AudioSystem::setMasterVolume}};

// Takes the step of a key that was pressed; false for a key that has none.
bool applyVolumeKey(AudioSystem& audio, int virtualKey);

}  // namespace port
