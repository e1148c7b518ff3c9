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
    ALuint source = 0;  // 0 while the device is gone
    // What the source plays. Where the library knows no loop region, the samples ahead of it lie in
    // a buffer of their own until they have been played.
    ALuint intro = 0, buffer = 0;
};

// A device that is lost is opened again as soon as one is there. Meanwhile voices are silent. What
// loops begins anew then; what does not is over.
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
    void update();

  private:
    [[nodiscard]] bool deviceIsLost() const;
    void reopenWhenLost();
    static bool makeSource(Voice& voice);
    static void dropSource(Voice& voice);
    static bool fill(Voice& voice);
    static void endIntro(Voice& voice);

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
    if (voice.intro != 0) alDeleteBuffers(1, &voice.intro);
    if (voice.buffer != 0) alDeleteBuffers(1, &voice.buffer);
    voice.source = voice.intro = voice.buffer = 0;
}

// Mono goes to both sides in full: as a sound in the middle of a room it would lose a part.
std::vector<std::int16_t> onBothSides(std::span<const std::int16_t> mono) {
    std::vector<std::int16_t> stereo;
    stereo.reserve(mono.size() * kStereo);
    for (const std::int16_t sample : mono) stereo.insert(stereo.end(), kStereo, sample);
    return stereo;
}

ALuint makeBuffer(std::span<const std::int16_t> stereo, int sampleRate) {
    ALuint buffer = 0;
    alGenBuffers(1, &buffer);
    alBufferData(buffer, AL_FORMAT_STEREO16, stereo.data(),
                 static_cast<ALsizei>(stereo.size_bytes()), sampleRate);
    return buffer;
}

bool OpenAlOutput::fill(Voice& voice) {
    const AudioBuffer& given = voice.submitted;
    const std::size_t frames = given.samples.size() / static_cast<std::size_t>(voice.channels);
    constexpr std::size_t kFrameBytes = kStereo * sizeof(std::int16_t);
    if (frames == 0 || frames > std::numeric_limits<ALsizei>::max() / kFrameBytes) return false;
    const std::size_t loopEnd = std::size_t{given.loopBegin} + given.loopLength;
    if (loopEnd > frames) return false;

    std::vector<std::int16_t> doubled;
    if (voice.channels == 1) doubled = onBothSides(given.samples);
    const std::span<const std::int16_t> all = voice.channels == 1 ? doubled : given.samples;
    alGetError();
    if (!given.loop || given.loopLength == 0) {
        voice.buffer = makeBuffer(all, voice.sampleRate);
    } else if (alIsExtensionPresent("AL_SOFT_loop_points") != AL_FALSE) {
        voice.buffer = makeBuffer(all, voice.sampleRate);
        const ALint points[] = {static_cast<ALint>(given.loopBegin), static_cast<ALint>(loopEnd)};
        alBufferiv(voice.buffer, AL_LOOP_POINTS_SOFT, points);
    } else {
        const std::size_t introSize = given.loopBegin * kStereo;
        if (introSize > 0) voice.intro = makeBuffer(all.first(introSize), voice.sampleRate);
        voice.buffer = makeBuffer(all.subspan(introSize, given.loopLength * std::size_t{kStereo}),
                                  voice.sampleRate);
    }
    if (voice.intro != 0) {
        const ALuint pieces[] = {voice.intro, voice.buffer};
        alSourceQueueBuffers(voice.source, 2, pieces);
    } else {
        alSourcei(voice.source, AL_LOOPING, given.loop ? AL_TRUE : AL_FALSE);
        alSourcei(voice.source, AL_BUFFER, static_cast<ALint>(voice.buffer));
    }
    return alGetError() == AL_NO_ERROR;
}

// From here on the loop alone is in the queue. Where it has been played by now, it goes on again.
void OpenAlOutput::endIntro(Voice& voice) {
    ALint played = 0;
    alGetSourcei(voice.source, AL_BUFFERS_PROCESSED, &played);
    if (played == 0) return;
    alSourceUnqueueBuffers(voice.source, 1, &voice.intro);
    alDeleteBuffers(1, &voice.intro);
    voice.intro = 0;
    alSourcei(voice.source, AL_LOOPING, AL_TRUE);
    ALint state = AL_PLAYING;
    alGetSourcei(voice.source, AL_SOURCE_STATE, &state);
    if (state == AL_STOPPED && voice.started) alSourcePlay(voice.source);
}

AudioVoice OpenAlOutput::createVoice(int channels, int sampleRate) {
    Voice voice;
    voice.channels = channels;
    voice.sampleRate = sampleRate;
    if (context_ && !makeSource(voice)) return kNoVoice;  // it has none left
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
    return voice.source == 0 || fill(voice);
}

bool OpenAlOutput::start(AudioVoice id) {
    Voice& voice = voices_.at(id);
    voice.started = true;
    // The library would begin anew with what has been played.
    if (voice.source == 0 || !hasQueuedBuffers(id)) return true;
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
    Voice& voice = voices_.at(id);
    voice.volume = volume;
    if (voice.source != 0) alSourcef(voice.source, AL_GAIN, volume);
}

void OpenAlOutput::setFrequencyRatio(AudioVoice id, float ratio) {
    Voice& voice = voices_.at(id);
    voice.ratio = ratio;
    if (voice.source != 0) alSourcef(voice.source, AL_PITCH, ratio);
}

void OpenAlOutput::update() {
    reopenWhenLost();
    for (auto& [id, voice] : voices_) {
        if (voice.intro != 0) endIntro(voice);
    }
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
    output.update = [device] { device->update(); };
    output.hasQueuedBuffers = [device](AudioVoice voice) {
        return device->hasQueuedBuffers(voice);
    };
    return output;
}

}  // namespace port::platform
