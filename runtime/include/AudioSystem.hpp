#pragma once

// Music and sound effects of a game, and the three volumes that hold for them.

#include <string>

#include "RuntimeConfig.hpp"

namespace port {

class AudioSystem {
  public:
    // Takes over the volumes. False without a sound output, see lastError(); the game goes on.
    [[nodiscard]] bool initialize(const RuntimeConfig& config);

    // Clamped to 0.0 to 1.0.
    void setMasterVolume(float volume);
    void setMusicVolume(float volume);
    void setEffectsVolume(float volume);
    [[nodiscard]] float masterVolume() const { return config_.masterVolume; }
    [[nodiscard]] float musicVolume() const { return config_.musicVolume; }
    [[nodiscard]] float effectsVolume() const { return config_.effectsVolume; }

    // What the last failing call failed of.
    [[nodiscard]] const std::string& lastError() const { return error_; }

  private:
    RuntimeConfig config_;
    std::string error_;
};

}  // namespace port
