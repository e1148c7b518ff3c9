// OpenAL Soft: a source for each voice, fed piece by piece.

#include <al.h>
#include <alc.h>
#include <alext.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <memory>
#include <unordered_map>
#include <vector>

#include "AudioDevice.hpp"

namespace port::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kStereo = 2;
constexpr float kMaxVolume = 2.0F;
// More effects than anybody can tell apart; the library reserves little for each.
constexpr ALCint kMostSources = 1024;
// A second or more of sound, which takes no part of a frame to be handed over, and enough of them
// to outlast the loading of a stage.
constexpr std::size_t kPieceFrames = std::size_t{1} << 16U;
constexpr std::size_t kPiecesAhead = 8;
// Opening a device takes the time of a frame or more.
constexpr auto kBetweenTries = std::chrono::seconds(2);

struct Voice {
    int channels = 1, sampleRate = 0;
    AudioBuffer submitted;
    bool started = false;
    float volume = 1.0F, ratio = 1.0F;
    ALuint source = 0;         // 0 while the device is gone
    std::deque<ALuint> queue;  // of the source, the piece that sounds in front
    std::size_t next = 0;      // the frame behind the last piece
};

ALint stateOf(const Voice& voice) {
    ALint state = AL_STOPPED;
    alGetSourcei(voice.source, AL_SOURCE_STATE, &state);
    return state;
}

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
    static std::vector<std::int16_t> takePiece(Voice& voice);
    static bool queuePiece(Voice& voice);
    static void feed(Voice& voice);

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
        if (voice.submitted.loop && makeSource(voice)) fill(voice);
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
    for (const ALuint& buffer : voice.queue) alDeleteBuffers(1, &buffer);
    voice.source = 0;
    voice.queue.clear();
}

// Mono goes to both sides in full: as a sound in the middle of a room it would lose a part.
void append(std::vector<std::int16_t>& stereo, std::span<const std::int16_t> samples,
            int channels) {
    if (channels == kStereo) {
        stereo.insert(stereo.end(), samples.begin(), samples.end());
    } else {
        for (const std::int16_t sample : samples) stereo.insert(stereo.end(), kStereo, sample);
    }
}

// The next piece of what a voice plays, its loop unrolled; empty at the end.
std::vector<std::int16_t> OpenAlOutput::takePiece(Voice& voice) {
    const AudioBuffer& given = voice.submitted;
    const auto channels = static_cast<std::size_t>(voice.channels);
    const bool inRegion = given.loop && given.loopLength > 0;
    const std::size_t begin = inRegion ? given.loopBegin : 0;
    const std::size_t end = inRegion ? begin + given.loopLength : given.samples.size() / channels;
    std::vector<std::int16_t> piece;
    piece.reserve(kStereo * (given.loop ? kPieceFrames : std::min(kPieceFrames, end - voice.next)));
    for (std::size_t left = kPieceFrames; left > 0;) {
        if (voice.next == end) {
            if (!given.loop) break;
            voice.next = begin;
        }
        const std::size_t frames = std::min(left, end - voice.next);
        append(piece, given.samples.subspan(voice.next * channels, frames * channels),
               voice.channels);
        voice.next += frames;
        left -= frames;
    }
    return piece;
}

bool OpenAlOutput::queuePiece(Voice& voice) {
    const std::vector<std::int16_t> piece = takePiece(voice);
    if (piece.empty()) return true;
    alGetError();
    ALuint buffer = 0;
    alGenBuffers(1, &buffer);
    alBufferData(buffer, AL_FORMAT_STEREO16, piece.data(),
                 static_cast<ALsizei>(piece.size() * sizeof(std::int16_t)), voice.sampleRate);
    alSourceQueueBuffers(voice.source, 1, &buffer);
    voice.queue.push_back(buffer);
    return alGetError() == AL_NO_ERROR;
}

bool OpenAlOutput::fill(Voice& voice) {
    const AudioBuffer& given = voice.submitted;
    const std::size_t frames = given.samples.size() / static_cast<std::size_t>(voice.channels);
    if (frames == 0 || std::size_t{given.loopBegin} + given.loopLength > frames) return false;
    voice.next = 0;
    return queuePiece(voice);
}

// Drops what has been played and brings one piece more, so that no picture waits for a whole track.
void OpenAlOutput::feed(Voice& voice) {
    if (voice.source == 0) return;
    const ALint state = stateOf(voice);  // first, as the source plays on meanwhile
    ALint played = 0;
    alGetSourcei(voice.source, AL_BUFFERS_PROCESSED, &played);
    for (; played > 0; --played) {
        alSourceUnqueueBuffers(voice.source, 1, &voice.queue.front());
        alDeleteBuffers(1, &voice.queue.front());
        voice.queue.pop_front();
    }
    if (voice.queue.size() < kPiecesAhead) queuePiece(voice);
    // Where it has run dry while the game stood still, it goes on.
    if (voice.started && state != AL_PLAYING && !voice.queue.empty()) alSourcePlay(voice.source);
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
    alGetError();
    feed(voice);
    return !context_ || alGetError() == AL_NO_ERROR;
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
    for (auto& [id, voice] : voices_) feed(voice);
}

// What loops lasts, also while its device is gone.
bool OpenAlOutput::hasQueuedBuffers(AudioVoice id) {
    const Voice& voice = voices_.at(id);
    if (voice.submitted.loop) return true;
    if (voice.source == 0) return false;
    const auto frames = voice.submitted.samples.size() / static_cast<std::size_t>(voice.channels);
    return voice.next < frames || stateOf(voice) != AL_STOPPED;
}

}  // namespace

AudioOutput systemAudioOutput() {
    return audioOutputOf("OpenAL", std::make_shared<OpenAlOutput>());
}

}  // namespace port::platform
