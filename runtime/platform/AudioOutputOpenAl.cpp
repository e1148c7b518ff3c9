// OpenAL Soft: a source and a buffer for each voice.

#include <al.h>
#include <alc.h>
#include <alext.h>

#include <chrono>
#include <limits>
#include <memory>
#include <unordered_map>
#include <vector>

#include "AudioOutput.hpp"

namespace port::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kStereo = 2;
constexpr float kMaxVolume = 2.0F;
// More effects than anybody can tell apart; the library reserves little for each.
constexpr ALCint kMostSources = 1024;
// Opening a device takes the time of a frame or more.
constexpr auto kBetweenTries = std::chrono::seconds(2);

struct Voice {
    int channels = 1, sampleRate = 0;
    AudioBuffer submitted;
    bool started = false;
    float volume = 1.0F, ratio = 1.0F;
    ALuint source = 0, buffer = 0;  // 0 where the device has none left, or is gone
};

// A device that is lost is opened again as soon as one is there. What loops begins anew then; what
// does not is over.
class OpenAlOutput {
  public:
    OpenAlOutput() = default;
    OpenAlOutput(const OpenAlOutput&) = delete;
    OpenAlOutput& operator=(const OpenAlOutput&) = delete;
    ~OpenAlOutput() { close(); }

    std::string open();
    void close();
    AudioVoice createVoice(int channels, int sampleRate);
    void destroyVoice(AudioVoice id);
    bool submit(AudioVoice id, const AudioBuffer& buffer);
    bool start(AudioVoice id);
    void stop(AudioVoice id);
    void setVolume(AudioVoice id, float volume);
    void setFrequencyRatio(AudioVoice id, float ratio);
    bool hasQueuedBuffers(AudioVoice id);

  private:
    [[nodiscard]] bool deviceIsLost() const;
    void reopenWhenLost();
    static bool makeSource(Voice& voice);
    static void dropSource(Voice& voice);
    static bool fill(Voice& voice);

    ALCdevice* device_ = nullptr;
    ALCcontext* context_ = nullptr;
    std::unordered_map<AudioVoice, Voice> voices_;
    AudioVoice last_ = kNoVoice;
    Clock::time_point nextTry_;
};

std::string OpenAlOutput::open() {
    device_ = alcOpenDevice(nullptr);
    if (!device_) return "alcOpenDevice failed";
    const ALCint attributes[] = {ALC_STEREO_SOURCES, kMostSources, 0};
    context_ = alcCreateContext(device_, attributes);
    if (!context_ || alcMakeContextCurrent(context_) == ALC_FALSE) {
        close();
        return "alcCreateContext failed";
    }
    return {};
}

void OpenAlOutput::close() {
    if (context_) {
        alcMakeContextCurrent(nullptr);
        alcDestroyContext(context_);
    }
    if (device_) alcCloseDevice(device_);
    context_ = nullptr;
    device_ = nullptr;
}

bool OpenAlOutput::deviceIsLost() const {
    if (!device_) return true;
    ALCint connected = ALC_TRUE;
    alcGetIntegerv(device_, ALC_CONNECTED, 1, &connected);
    return connected == ALC_FALSE;
}

void OpenAlOutput::reopenWhenLost() {
    const Clock::time_point now = Clock::now();
    if (now < nextTry_ || !deviceIsLost()) return;
    nextTry_ = now + kBetweenTries;
    for (auto& [id, voice] : voices_) dropSource(voice);
    close();
    if (!open().empty()) return;
    for (auto& [id, voice] : voices_) {
        if (!voice.submitted.loop || !makeSource(voice) || !fill(voice)) continue;
        if (voice.started) alSourcePlay(voice.source);
    }
}

bool OpenAlOutput::makeSource(Voice& voice) {
    alGetError();
    alGenSources(1, &voice.source);
    if (alGetError() != AL_NO_ERROR) {
        voice.source = 0;
        return false;
    }
    alSourcef(voice.source, AL_MAX_GAIN, kMaxVolume);
    alSourcef(voice.source, AL_GAIN, voice.volume);
    alSourcef(voice.source, AL_PITCH, voice.ratio);
    // Left stays left and right stays right, without a room around them.
    alSourcei(voice.source, AL_DIRECT_CHANNELS_SOFT, AL_TRUE);
    return true;
}

void OpenAlOutput::dropSource(Voice& voice) {
    if (voice.source != 0) alDeleteSources(1, &voice.source);
    if (voice.buffer != 0) alDeleteBuffers(1, &voice.buffer);
    voice.source = voice.buffer = 0;
}

// Mono goes to both sides in full: as a sound in the middle of a room it would lose a part.
std::vector<std::int16_t> onBothSides(std::span<const std::int16_t> mono) {
    std::vector<std::int16_t> stereo;
    stereo.reserve(mono.size() * kStereo);
    for (const std::int16_t sample : mono) stereo.insert(stereo.end(), kStereo, sample);
    return stereo;
}

bool OpenAlOutput::fill(Voice& voice) {
    const AudioBuffer& given = voice.submitted;
    const std::size_t frames = given.samples.size() / static_cast<std::size_t>(voice.channels);
    constexpr std::size_t kFrameBytes = kStereo * sizeof(std::int16_t);
    if (frames == 0 || frames > std::numeric_limits<ALsizei>::max() / kFrameBytes) return false;

    std::vector<std::int16_t> doubled;
    if (voice.channels == 1) doubled = onBothSides(given.samples);
    const std::int16_t* samples = doubled.empty() ? given.samples.data() : doubled.data();
    alGetError();
    alGenBuffers(1, &voice.buffer);
    alBufferData(voice.buffer, AL_FORMAT_STEREO16, samples,
                 static_cast<ALsizei>(frames * kFrameBytes), voice.sampleRate);
    if (given.loop && given.loopLength > 0) {
        const ALint points[] = {static_cast<ALint>(given.loopBegin),
                                static_cast<ALint>(given.loopBegin + given.loopLength)};
        alBufferiv(voice.buffer, AL_LOOP_POINTS_SOFT, points);
    }
    alSourcei(voice.source, AL_LOOPING, given.loop ? AL_TRUE : AL_FALSE);
    alSourcei(voice.source, AL_BUFFER, static_cast<ALint>(voice.buffer));
    return alGetError() == AL_NO_ERROR;
}

AudioVoice OpenAlOutput::createVoice(int channels, int sampleRate) {
    reopenWhenLost();
    Voice voice;
    voice.channels = channels;
    voice.sampleRate = sampleRate;
    if (!context_ || !makeSource(voice)) return kNoVoice;
    voices_.emplace(++last_, voice);
    return last_;
}

void OpenAlOutput::destroyVoice(AudioVoice id) {
    const auto found = voices_.find(id);
    if (found == voices_.end()) return;
    dropSource(found->second);
    voices_.erase(found);
}

bool OpenAlOutput::submit(AudioVoice id, const AudioBuffer& buffer) {
    Voice& voice = voices_.at(id);
    voice.submitted = buffer;
    return fill(voice);
}

bool OpenAlOutput::start(AudioVoice id) {
    Voice& voice = voices_.at(id);
    voice.started = true;
    if (!hasQueuedBuffers(id)) return true;  // the library would begin anew
    alGetError();
    alSourcePlay(voice.source);
    return alGetError() == AL_NO_ERROR;
}

void OpenAlOutput::stop(AudioVoice id) {
    Voice& voice = voices_.at(id);
    voice.started = false;
    if (voice.source != 0) alSourcePause(voice.source);
}

void OpenAlOutput::setVolume(AudioVoice id, float volume) {
    reopenWhenLost();
    Voice& voice = voices_.at(id);
    voice.volume = volume;
    if (voice.source != 0) alSourcef(voice.source, AL_GAIN, volume);
}

void OpenAlOutput::setFrequencyRatio(AudioVoice id, float ratio) {
    Voice& voice = voices_.at(id);
    voice.ratio = ratio;
    if (voice.source != 0) alSourcef(voice.source, AL_PITCH, ratio);
}

// What loops lasts, also while its device is gone.
bool OpenAlOutput::hasQueuedBuffers(AudioVoice id) {
    const Voice& voice = voices_.at(id);
    if (voice.submitted.loop) return true;
    if (voice.source == 0) return false;
    ALint state = AL_STOPPED;
    alGetSourcei(voice.source, AL_SOURCE_STATE, &state);
    return state != AL_STOPPED;
}

}  // namespace

AudioOutput systemAudioOutput() {
    const auto device = std::make_shared<OpenAlOutput>();
    AudioOutput output;
    output.name = "OpenAL";
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
    return output;
}

}  // namespace port::platform
