#pragma once

// One music track and any number of overlapping effects, and the three volumes that hold for them.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AudioDecoder.hpp"
#include "AudioOutput.hpp"
#include "EffectCache.hpp"
#include "RuntimeConfig.hpp"
#include "TrackDecoder.hpp"

namespace port {

// The part of a track that repeats, in frames, always within the track. Length 0 is all of it.
struct LoopRegion {
    std::uint32_t begin = 0;
    std::uint32_t length = 0;
    bool operator==(const LoopRegion&) const = default;
};

// An offset above 0 points into the bytes of the source file and is brought to frames in
// proportion; a file size that is 0 or not known then repeats everything. Otherwise the file's own
// loop holds.
[[nodiscard]] LoopRegion musicLoopRegion(const DecodedAudio& audio, std::int64_t loopOffsetBytes,
                                         std::optional<std::uintmax_t> fileSize);

// Every call returns at once after decoding; one that fails says why in lastError() and leaves
// silence. In a build without a device the play calls print what they decoded and succeed.
class AudioSystem {
  public:
    explicit AudioSystem(platform::AudioOutput output = {});
    AudioSystem(const AudioSystem&) = delete;
    AudioSystem& operator=(const AudioSystem&) = delete;
    ~AudioSystem();

    // Takes over the volumes and opens the device. False when there is one that does not open.
    [[nodiscard]] bool initialize(const RuntimeConfig& config);

    // Once a picture: lets the device look after itself.
    void update();

    // The music to come, the track needed first in front, each once: it is decoded meanwhile. What
    // is then played, and what is said of it, is the same as without.
    void expectMusic(const std::vector<std::filesystem::path>& files) { tracks_.expect(files); }

    // Replaces the current track, which plays on when the new one does not decode.
    bool playMusic(const std::filesystem::path& path, bool loop = true,
                   std::int64_t loopOffsetBytes = 0);
    // `gain` may be above 1; gain and volumes together reach 2.0. `speed` is kept to 0.5 to 2.0.
    bool playEffect(const std::filesystem::path& path, float gain = 1.0F, bool loop = false,
                    float speed = 1.0F);
    // The track stays; pauseMusic(false) goes on with it.
    void stopMusic();
    void pauseMusic(bool paused);
    [[nodiscard]] bool musicPaused() const { return musicPaused_; }

    // Clamped to 0.0 to 1.0; heard at once.
    void setMasterVolume(float volume);
    void setMusicVolume(float volume);
    void setEffectsVolume(float volume);
    [[nodiscard]] float masterVolume() const { return config_.masterVolume; }
    [[nodiscard]] float musicVolume() const { return config_.musicVolume; }
    [[nodiscard]] float effectsVolume() const { return config_.effectsVolume; }

    // Whether the file of the last play call was there and decoded, heard or not.
    [[nodiscard]] bool lastDecoded() const { return decoded_; }
    // What the last failing call failed of; empty after a play call that succeeded.
    [[nodiscard]] const std::string& lastError() const { return error_; }

  private:
    struct ActiveEffect {
        platform::AudioVoice voice = platform::kNoVoice;
        std::shared_ptr<const DecodedAudio> audio;  // read by the voice
        float gain = 1.0F;
    };

    bool fail(std::string error);
    [[nodiscard]] bool hasDevice() const { return static_cast<bool>(output_.open); }
    bool startMusic(const LoopRegion& region, bool loop);
    void destroyMusic();
    void cleanupEffects();
    void applyVolumes();
    [[nodiscard]] float effectVolume(float gain) const;
    void shutDown();

    platform::AudioOutput output_;
    bool open_ = false;
    RuntimeConfig config_;
    std::string error_;
    bool decoded_ = false;
    bool musicPaused_ = false;
    std::shared_ptr<const DecodedAudio> musicBuffer_;  // read by the music voice
    platform::AudioVoice musicVoice_ = platform::kNoVoice;
    std::vector<ActiveEffect> effectVoices_;
    EffectCache effects_;
    TrackDecoder tracks_;
};

}  // namespace port
