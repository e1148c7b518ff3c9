// Media Foundation, which also brings the codecs that a player has installed.

#include <windows.h>
// The next ones want it to stand first.
#include <mfidl.h>

#include <mfapi.h>
#include <mfreadwrite.h>
#include <wrl/client.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "ComApartment.hpp"
#include "CompressedAudio.hpp"

namespace port {
namespace {

using Microsoft::WRL::ComPtr;

constexpr auto kStream = static_cast<DWORD>(MF_SOURCE_READER_FIRST_AUDIO_STREAM);

// Null where the library or the function is missing.
template <typename Function>
Function find(HMODULE library, const char* name) {
    if (!library) return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

// The system's libraries, looked for when music first wants them: editions of Windows without
// media have none, and would not start a program that was linked with them.
struct MediaLibraries {
    HMODULE platform = LoadLibraryExW(L"mfplat.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    HMODULE reader = LoadLibraryExW(L"mfreadwrite.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    decltype(&MFStartup) startUp = find<decltype(&MFStartup)>(platform, "MFStartup");
    decltype(&MFShutdown) shutDown = find<decltype(&MFShutdown)>(platform, "MFShutdown");
    decltype(&MFCreateMediaType) createType =
        find<decltype(&MFCreateMediaType)>(platform, "MFCreateMediaType");
    decltype(&MFCreateSourceReaderFromURL) openFile =
        find<decltype(&MFCreateSourceReaderFromURL)>(reader, "MFCreateSourceReaderFromURL");

    [[nodiscard]] bool complete() const { return startUp && shutDown && createType && openFile; }
};

const MediaLibraries& media() {
    static const MediaLibraries libraries;
    return libraries;
}

class MediaFoundation {
  public:
    MediaFoundation()
        : started_(media().complete() && SUCCEEDED(media().startUp(MF_VERSION, MFSTARTUP_LITE))) {}
    MediaFoundation(const MediaFoundation&) = delete;
    MediaFoundation& operator=(const MediaFoundation&) = delete;
    ~MediaFoundation() {
        if (started_) media().shutDown();
    }
    [[nodiscard]] bool started() const { return started_; }

  private:
    platform::ComApartment com_;
    bool started_;
};

bool askForPcm(IMFSourceReader& reader) {
    ComPtr<IMFMediaType> pcm;
    return SUCCEEDED(media().createType(&pcm)) &&
           SUCCEEDED(pcm->SetGUID(MF_MT_MAJOR_TYPE, MFMediaType_Audio)) &&
           SUCCEEDED(pcm->SetGUID(MF_MT_SUBTYPE, MFAudioFormat_PCM)) &&
           SUCCEEDED(pcm->SetUINT32(MF_MT_AUDIO_BITS_PER_SAMPLE, 16)) &&
           SUCCEEDED(reader.SetCurrentMediaType(kStream, nullptr, pcm.Get()));
}

UINT32 attribute(IMFMediaType& type, const GUID& key, UINT32 fallback) {
    UINT32 value = fallback;
    return SUCCEEDED(type.GetUINT32(key, &value)) ? value : fallback;
}

// Takes over channels and rate. False for what the samples below are not.
bool takeFormat(IMFMediaType& type, DecodedAudio& out) {
    const UINT32 channels = attribute(type, MF_MT_AUDIO_NUM_CHANNELS, 1);
    const UINT32 rate = attribute(type, MF_MT_AUDIO_SAMPLES_PER_SECOND, 22050);
    constexpr UINT32 kHighestRate = 1'000'000;
    if (channels < 1 || channels > 2 || rate == 0 || rate > kHighestRate ||
        attribute(type, MF_MT_AUDIO_BITS_PER_SAMPLE, 16) != 16) {
        return false;
    }
    out.channels = static_cast<int>(channels);
    out.sampleRate = static_cast<int>(rate);
    return true;
}

// An odd last byte is dropped.
bool append(IMFSample& sample, std::vector<std::int16_t>& pcm) {
    ComPtr<IMFMediaBuffer> buffer;
    BYTE* bytes = nullptr;
    DWORD size = 0;
    if (FAILED(sample.ConvertToContiguousBuffer(&buffer)) ||
        FAILED(buffer->Lock(&bytes, nullptr, &size))) {
        return false;
    }
    const std::size_t before = pcm.size();
    pcm.resize(before + size / sizeof(std::int16_t));
    std::memcpy(pcm.data() + before, bytes, (pcm.size() - before) * sizeof(std::int16_t));
    buffer->Unlock();
    return true;
}

// Empty, or what failed.
std::string readSamples(IMFSourceReader& reader, DecodedAudio& out, const std::stop_token& stop) {
    for (;;) {
        if (stop.stop_requested()) return "decoding was given up";
        DWORD flags = 0;
        ComPtr<IMFSample> sample;
        if (FAILED(reader.ReadSample(kStream, 0, nullptr, &flags, nullptr, &sample)) ||
            (flags & MF_SOURCE_READERF_ERROR) != 0) {
            return "Media Foundation ReadSample failed";
        }
        if ((flags & MF_SOURCE_READERF_ENDOFSTREAM) != 0) return {};
        if ((flags & MF_SOURCE_READERF_CURRENTMEDIATYPECHANGED) != 0) {
            ComPtr<IMFMediaType> type;
            if (FAILED(reader.GetCurrentMediaType(kStream, &type)) ||
                !takeFormat(*type.Get(), out)) {
                return "Media Foundation changed to unsupported PCM format";
            }
        }
        if (sample && !append(*sample.Get(), out.pcm)) {
            return "Media Foundation sample buffer conversion failed";
        }
        if (out.pcm.size() > kMaxDecodedSamples) {
            return std::string(kAudioTooLarge) + ": more than " +
                   std::to_string(kMaxDecodedSamples) + " samples";
        }
    }
}

std::string decode(const std::filesystem::path& path, DecodedAudio& out,
                   const std::stop_token& stop) {
    const MediaFoundation services;
    if (!services.started()) return "MFStartup failed for compressed audio";
    ComPtr<IMFSourceReader> reader;
    if (FAILED(media().openFile(path.c_str(), nullptr, &reader))) {
        return "Media Foundation could not open compressed audio (codec may be unavailable)";
    }
    if (!askForPcm(*reader.Get())) return "Media Foundation could not negotiate PCM output";
    ComPtr<IMFMediaType> type;
    if (FAILED(reader->GetCurrentMediaType(kStream, &type))) {
        return "Media Foundation did not expose decoded audio format";
    }
    if (!takeFormat(*type.Get(), out)) {
        return "Media Foundation PCM output is not supported (expected mono/stereo 16-bit)";
    }
    std::string failure = readSamples(*reader.Get(), out, stop);
    if (failure.empty() && out.pcm.empty()) {
        failure = "decoded compressed audio contained no PCM samples";
    }
    return failure;
}

}  // namespace

bool decodeCompressedAudio(const std::filesystem::path& path, std::string_view, DecodedAudio& out,
                           std::string& error, const std::stop_token& stop) {
    out = {};
    error = decode(path, out, stop);
    if (!error.empty()) {
        out = {};
        return false;
    }
    // Formats may change from mono to stereo on the way; no half frame is left over.
    out.pcm.resize(out.pcm.size() - out.pcm.size() % static_cast<std::size_t>(out.channels));
    out.format = "media-foundation-pcm16";
    return true;
}

}  // namespace port
