// XAudio2: a source voice for each voice.

#include <windows.h>

#include <mmdeviceapi.h>
#include <xaudio2.h>

#include <wrl/client.h>

#include <memory>
#include <unordered_map>

#include "AudioDevice.hpp"
#include "ComApartment.hpp"

namespace port::platform {
namespace {

using Microsoft::WRL::ComPtr;

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

class XAudio2Output {
  public:
    std::string open() {
        if (FAILED(XAudio2Create(&engine_, 0, XAUDIO2_DEFAULT_PROCESSOR))) {
            return "XAudio2Create failed";
        }
        IXAudio2MasteringVoice* mastering = nullptr;
        if (!hasSoundDevice() || FAILED(engine_->CreateMasteringVoice(&mastering))) {
            engine_.Reset();
            return "CreateMasteringVoice failed";
        }
        mastering_.reset(mastering);
        return {};
    }

    void close() {
        voices_.clear();
        mastering_.reset();
        engine_.Reset();
    }

    AudioVoice createVoice(int channels, int sampleRate) {
        WAVEFORMATEX format{};
        format.wFormatTag = WAVE_FORMAT_PCM;
        format.nChannels = static_cast<WORD>(channels);
        format.nSamplesPerSec = static_cast<DWORD>(sampleRate);
        format.wBitsPerSample = 8 * kSampleBytes;
        format.nBlockAlign = static_cast<WORD>(channels * kSampleBytes);
        format.nAvgBytesPerSec = format.nSamplesPerSec * format.nBlockAlign;
        IXAudio2SourceVoice* source = nullptr;
        if (!engine_ ||
            FAILED(engine_->CreateSourceVoice(&source, &format, 0, kMaxFrequencyRatio))) {
            return kNoVoice;
        }
        voices_.emplace(++last_, source);
        return last_;
    }
    void destroyVoice(AudioVoice id) { voices_.erase(id); }

    bool submit(AudioVoice id, const AudioBuffer& given) {
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
        return SUCCEEDED(voices_.at(id)->SubmitSourceBuffer(&buffer));
    }
    bool start(AudioVoice id) { return SUCCEEDED(voices_.at(id)->Start()); }
    void stop(AudioVoice id) { voices_.at(id)->Stop(); }
    void setVolume(AudioVoice id, float volume) { voices_.at(id)->SetVolume(volume); }
    void setFrequencyRatio(AudioVoice id, float ratio) { voices_.at(id)->SetFrequencyRatio(ratio); }
    bool hasQueuedBuffers(AudioVoice id) {
        XAUDIO2_VOICE_STATE state{};
        voices_.at(id)->GetState(&state, XAUDIO2_VOICE_NOSAMPLESPLAYED);
        return state.BuffersQueued > 0;
    }

  private:
    // From the last to the first: voices, mastering voice, engine, COM.
    ComApartment com_;
    ComPtr<IXAudio2> engine_;
    std::unique_ptr<IXAudio2MasteringVoice, VoiceDestroyer> mastering_;
    std::unordered_map<AudioVoice, SourceVoice> voices_;
    AudioVoice last_ = kNoVoice;
};

}  // namespace

AudioOutput systemAudioOutput() {
    return audioOutputOf("XAudio2", std::make_shared<XAudio2Output>());
}

}  // namespace port::platform
