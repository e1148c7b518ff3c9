#include "AudioSystem.hpp"

#include <algorithm>
#include <cmath>
#include <system_error>
#include <utility>

#include "Log.hpp"
#include "PathEncoding.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

// Scripts can bring in values that are no numbers; those are the lowest.
float bounded(float value, float lowest, float highest) {
    return value > lowest ? std::min(value, highest) : lowest;
}

// More than anybody can tell apart. Scripts can start effects that never end.
constexpr std::size_t kMostVoices = 256;

std::uint32_t frameCount(const DecodedAudio& audio) {
    return static_cast<std::uint32_t>(audio.pcm.size() / static_cast<std::size_t>(audio.channels));
}

LoopRegion regionFromOffset(std::uint32_t frames, std::int64_t offset, std::uintmax_t fileSize) {
    const double ratio =
        std::min(static_cast<double>(offset) / static_cast<double>(fileSize), 0.999999);
    const auto rounded = static_cast<std::uint32_t>(std::llround(ratio * frames));
    const std::uint32_t begin = std::min(frames - 1, rounded);
    return {begin, frames - begin};
}

// Files may state loops beyond their samples, which devices refuse to play.
LoopRegion ownRegion(const DecodedAudio& audio, std::uint32_t frames) {
    if (!audio.hasLoop || audio.loopStartFrames >= frames) return {};
    return {audio.loopStartFrames,
            std::min(audio.loopLengthFrames, frames - audio.loopStartFrames)};
}

std::optional<std::uintmax_t> sizeOf(const std::filesystem::path& path) {
    std::error_code failed;
    const std::uintmax_t size = std::filesystem::file_size(path, failed);
    return failed ? std::nullopt : std::optional(size);
}

}  // namespace

LoopRegion musicLoopRegion(const DecodedAudio& audio, std::int64_t loopOffsetBytes,
                           std::optional<std::uintmax_t> fileSize) {
    const std::uint32_t frames = frameCount(audio);
    if (loopOffsetBytes <= 0 || frames <= 1) return ownRegion(audio, frames);
    if (fileSize.value_or(0) == 0) return {};
    return regionFromOffset(frames, loopOffsetBytes, *fileSize);
}

AudioSystem::AudioSystem(platform::AudioOutput output) : output_(std::move(output)) {}

AudioSystem::~AudioSystem() {
    shutDown();
}

void AudioSystem::shutDown() {
    if (!open_) return;
    for (const ActiveEffect& effect : effectVoices_) output_.destroyVoice(effect.voice);
    effectVoices_.clear();
    destroyMusic();
    output_.close();
    open_ = false;
}

bool AudioSystem::fail(std::string error) {
    error_ = std::move(error);
    return false;
}

bool AudioSystem::initialize(const RuntimeConfig& config) {
    shutDown();
    config_ = config;
    error_.clear();
    if (!hasDevice()) return true;
    if (std::string failure = output_.open(); !failure.empty()) return fail(std::move(failure));
    open_ = true;
    return true;
}

void AudioSystem::update() {
    if (open_ && output_.update) output_.update();
}

bool AudioSystem::playMusic(const std::filesystem::path& path, bool loop,
                            std::int64_t loopOffsetBytes) {
    error_.clear();
    decoded_ = false;
    const bool isBor = equalsFolded(PathEncoding::utf8(path.extension()), ".bor");
    if (isBor && !config_.openborBorAdpcm) return fail("OpenBOR .bor ADPCM decoder disabled");
    auto decoded = tracks_.decode(path, error_);
    decoded_ = decoded != nullptr;
    if (!decoded_) return false;
    if (!hasDevice()) {
        logLine("Decoded music: ", decoded->format, " ", decoded->channels, "ch ",
                decoded->sampleRate, "Hz frames=", frameCount(*decoded));
        return true;
    }
    if (!open_) return fail("audio system not initialized");
    destroyMusic();
    musicBuffer_ = std::move(decoded);
    const LoopRegion region =
        loop ? musicLoopRegion(*musicBuffer_, loopOffsetBytes, sizeOf(path)) : LoopRegion();
    return startMusic(region, loop);
}

bool AudioSystem::startMusic(const LoopRegion& region, bool loop) {
    musicVoice_ = output_.createVoice(musicBuffer_->channels, musicBuffer_->sampleRate);
    if (musicVoice_ == platform::kNoVoice) return fail("CreateSourceVoice(music) failed");
    if (!output_.submit(musicVoice_, {musicBuffer_->pcm, loop, region.begin, region.length})) {
        destroyMusic();
        return fail("SubmitSourceBuffer(music) failed");
    }
    musicPaused_ = false;
    applyVolumes();
    if (!output_.start(musicVoice_)) {
        destroyMusic();
        return fail(output_.name + " music start failed");
    }
    return true;
}

void AudioSystem::destroyMusic() {
    if (musicVoice_ != platform::kNoVoice) output_.destroyVoice(musicVoice_);
    musicVoice_ = platform::kNoVoice;
    musicBuffer_.reset();
}

bool AudioSystem::playEffect(const std::filesystem::path& path, float gain, bool loop,
                             float speed) {
    error_.clear();
    const auto decoded = effects_.decode(path, error_);
    decoded_ = decoded != nullptr;
    if (!decoded_) return false;
    if (!hasDevice()) {
        logLine("Decoded effect: ", decoded->format, " ", decoded->channels, "ch ",
                decoded->sampleRate, "Hz");
        return true;
    }
    if (!open_) return fail("audio system not initialized");
    cleanupEffects();
    if (effectVoices_.size() >= kMostVoices) return fail("too many effects at once");
    const platform::AudioVoice voice = output_.createVoice(decoded->channels, decoded->sampleRate);
    if (voice == platform::kNoVoice) return fail("CreateSourceVoice(effect) failed");
    if (!output_.submit(voice, {decoded->pcm, loop})) {
        output_.destroyVoice(voice);
        return fail("SubmitSourceBuffer(effect) failed");
    }
    output_.setVolume(voice, effectVolume(gain));
    output_.setFrequencyRatio(
        voice, bounded(speed, platform::kMinFrequencyRatio, platform::kMaxFrequencyRatio));
    if (!output_.start(voice)) {
        output_.destroyVoice(voice);
        return fail(output_.name + " effect start failed");
    }
    effectVoices_.push_back({voice, decoded, gain});
    return true;
}

void AudioSystem::stopMusic() {
    if (musicVoice_ != platform::kNoVoice) output_.stop(musicVoice_);
    musicPaused_ = false;
}

void AudioSystem::pauseMusic(bool paused) {
    if (musicVoice_ == platform::kNoVoice) return;
    musicPaused_ = paused;
    if (paused) {
        output_.stop(musicVoice_);
    } else if (!output_.start(musicVoice_)) {
        fail(output_.name + " music start failed");
    }
}

void AudioSystem::cleanupEffects() {
    std::erase_if(effectVoices_, [this](const ActiveEffect& effect) {
        if (output_.hasQueuedBuffers(effect.voice)) return false;
        output_.destroyVoice(effect.voice);
        return true;
    });
}

float AudioSystem::effectVolume(float gain) const {
    return bounded(config_.masterVolume * config_.effectsVolume * gain, 0.0F, 2.0F);
}

void AudioSystem::applyVolumes() {
    if (musicVoice_ != platform::kNoVoice) {
        output_.setVolume(musicVoice_,
                          bounded(config_.masterVolume * config_.musicVolume, 0.0F, 1.0F));
    }
    cleanupEffects();
    for (const ActiveEffect& effect : effectVoices_) {
        output_.setVolume(effect.voice, effectVolume(effect.gain));
    }
}

void AudioSystem::setMasterVolume(float volume) {
    config_.masterVolume = bounded(volume, 0.0F, 1.0F);
    applyVolumes();
}

void AudioSystem::setMusicVolume(float volume) {
    config_.musicVolume = bounded(volume, 0.0F, 1.0F);
    applyVolumes();
}

void AudioSystem::setEffectsVolume(float volume) {
    config_.effectsVolume = bounded(volume, 0.0F, 1.0F);
    applyVolumes();
}

}  // namespace port
