// XAudio2: a source voice for each voice.

#include <windows.h>

#include <mmdeviceapi.h>
#include <xaudio2.h>

#include <wrl/client.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <unordered_map>
#include <utility>

#include "AudioDevice.hpp"
#include "ComApartment.hpp"

namespace port::platform {
namespace {

using Clock = std::chrono::steady_clock;
using Microsoft::WRL::ComPtr;

// Opening a device takes the time of a frame or more.
constexpr auto kBetweenTries = std::chrono::seconds(2);
constexpr int kSampleBytes = sizeof(std::int16_t);

struct VoiceDestroyer {
    // Returns when the device has left the voice's buffers alone.
    void operator()(IXAudio2Voice* voice) const { voice->DestroyVoice(); }
};
using SourceVoice = std::unique_ptr<IXAudio2SourceVoice, VoiceDestroyer>;

// Asked for first, since not every XAudio2 survives a machine without one.
bool hasSoundDevice() {
    ComPtr<IMMDeviceEnumerator> devices;
    ComPtr<IMMDevice> device;
    return SUCCEEDED(CoCreateInstance(__uuidof(MMDeviceEnumerator), nullptr, CLSCTX_ALL,
                                      IID_PPV_ARGS(&devices))) &&
           SUCCEEDED(devices->GetDefaultAudioEndpoint(eRender, eConsole, &device));
}

// Told on a thread of the engine when its device is gone. The engine is of no more use then.
class LossWatch final : public IXAudio2EngineCallback {
  public:
    [[nodiscard]] bool isLost() const { return lost_; }
    void forget() { lost_ = false; }

    void STDMETHODCALLTYPE OnProcessingPassStart() override {}
    void STDMETHODCALLTYPE OnProcessingPassEnd() override {}
    void STDMETHODCALLTYPE OnCriticalError(HRESULT) override { lost_ = true; }

  private:
    std::atomic<bool> lost_ = false;
};

struct Voice {
    WAVEFORMATEX format{};
    AudioBuffer submitted;
    bool started = false;
    float volume = 1.0F, ratio = 1.0F;
    SourceVoice source;  // null while the device is gone
};

// A device that is lost is opened again as soon as one is there. Meanwhile voices are silent. What
// loops begins anew then; what does not is over.
class XAudio2Output {
  public:
    std::string open();
    void close();
    AudioVoice createVoice(int channels, int sampleRate);
    void destroyVoice(AudioVoice id) { voices_.erase(id); }
    bool submit(AudioVoice id, const AudioBuffer& buffer);
    bool start(AudioVoice id);
    void stop(AudioVoice id);
    void setVolume(AudioVoice id, float volume);
    void setFrequencyRatio(AudioVoice id, float ratio);
    bool hasQueuedBuffers(AudioVoice id);
    void update();

  private:
    [[nodiscard]] bool hasEngine() const { return engine_ && !watch_.isLost(); }
    bool makeSource(Voice& voice);
    static bool fill(Voice& voice);
    void letEngineGo();

    // From the last to the first: voices, mastering voice, engine, its watch, COM.
    ComApartment com_;
    LossWatch watch_;
    ComPtr<IXAudio2> engine_;
    std::unique_ptr<IXAudio2MasteringVoice, VoiceDestroyer> mastering_;
    std::unordered_map<AudioVoice, Voice> voices_;
    AudioVoice last_ = kNoVoice;
    Clock::time_point nextTry_;
};

std::string XAudio2Output::open() {
    watch_.forget();
    // One worker is enough; by some headers it would be one for each processor.
    if (FAILED(XAudio2Create(&engine_, 0, Processor1))) return "XAudio2Create failed";
    IXAudio2MasteringVoice* mastering = nullptr;
    if (!hasSoundDevice() || FAILED(engine_->RegisterForCallbacks(&watch_)) ||
        FAILED(engine_->CreateMasteringVoice(&mastering))) {
        engine_.Reset();
        return "CreateMasteringVoice failed";
    }
    mastering_.reset(mastering);
    return {};
}

void XAudio2Output::letEngineGo() {
    mastering_.reset();
    engine_.Reset();
}

void XAudio2Output::close() {
    voices_.clear();
    letEngineGo();
}

void XAudio2Output::update() {
    const Clock::time_point now = Clock::now();
    if (now < nextTry_ || hasEngine()) return;
    nextTry_ = now + kBetweenTries;
    for (auto& [id, voice] : voices_) voice.source.reset();
    letEngineGo();
    if (!open().empty()) return;
    for (auto& [id, voice] : voices_) {
        const bool again = voice.submitted.loop && makeSource(voice) && fill(voice);
        if (again && voice.started) voice.source->Start();
    }
}

bool XAudio2Output::makeSource(Voice& voice) {
    IXAudio2SourceVoice* source = nullptr;
    if (FAILED(engine_->CreateSourceVoice(&source, &voice.format, 0, kMaxFrequencyRatio))) {
        return false;
    }
    voice.source.reset(source);
    source->SetVolume(voice.volume);
    source->SetFrequencyRatio(voice.ratio);
    return true;
}

bool XAudio2Output::fill(Voice& voice) {
    const AudioBuffer& given = voice.submitted;
    if (given.samples.size_bytes() > XAUDIO2_MAX_BUFFER_BYTES) return false;
    XAUDIO2_BUFFER buffer{};
    buffer.Flags = XAUDIO2_END_OF_STREAM;
    buffer.AudioBytes = static_cast<UINT32>(given.samples.size_bytes());
    buffer.pAudioData = reinterpret_cast<const BYTE*>(given.samples.data());
    if (given.loop) {
        buffer.LoopCount = XAUDIO2_LOOP_INFINITE;
        buffer.LoopBegin = given.loopLength > 0 ? given.loopBegin : 0;
        buffer.LoopLength = given.loopLength;
    }
    return SUCCEEDED(voice.source->SubmitSourceBuffer(&buffer));
}

AudioVoice XAudio2Output::createVoice(int channels, int sampleRate) {
    Voice voice;
    voice.format.wFormatTag = WAVE_FORMAT_PCM;
    voice.format.nChannels = static_cast<WORD>(channels);
    voice.format.nSamplesPerSec = static_cast<DWORD>(sampleRate);
    voice.format.wBitsPerSample = 8 * kSampleBytes;
    voice.format.nBlockAlign = static_cast<WORD>(channels * kSampleBytes);
    voice.format.nAvgBytesPerSec = voice.format.nSamplesPerSec * voice.format.nBlockAlign;
    if (hasEngine() && !makeSource(voice)) return kNoVoice;
    voices_.emplace(++last_, std::move(voice));
    return last_;
}

bool XAudio2Output::submit(AudioVoice id, const AudioBuffer& buffer) {
    Voice& voice = voices_.at(id);
    voice.submitted = buffer;
    return !voice.source || fill(voice);
}

bool XAudio2Output::start(AudioVoice id) {
    Voice& voice = voices_.at(id);
    voice.started = true;
    return !voice.source || SUCCEEDED(voice.source->Start());
}

void XAudio2Output::stop(AudioVoice id) {
    Voice& voice = voices_.at(id);
    voice.started = false;
    if (voice.source) voice.source->Stop();
}

void XAudio2Output::setVolume(AudioVoice id, float volume) {
    Voice& voice = voices_.at(id);
    voice.volume = volume;
    if (voice.source) voice.source->SetVolume(volume);
}

void XAudio2Output::setFrequencyRatio(AudioVoice id, float ratio) {
    Voice& voice = voices_.at(id);
    voice.ratio = ratio;
    if (voice.source) voice.source->SetFrequencyRatio(ratio);
}

// What loops lasts, also while its device is gone.
bool XAudio2Output::hasQueuedBuffers(AudioVoice id) {
    const Voice& voice = voices_.at(id);
    if (!voice.source) return voice.submitted.loop;
    XAUDIO2_VOICE_STATE state{};
    voice.source->GetState(&state, XAUDIO2_VOICE_NOSAMPLESPLAYED);
    return state.BuffersQueued > 0;
}

}  // namespace

AudioOutput systemAudioOutput() {
    return audioOutputOf("XAudio2", std::make_shared<XAudio2Output>());
}

}  // namespace port::platform
