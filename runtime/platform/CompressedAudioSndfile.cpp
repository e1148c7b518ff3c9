#include <sndfile.h>

#include <algorithm>
#include <memory>
#include <type_traits>

#include "CompressedAudio.hpp"

namespace port {
namespace {

struct FileCloser {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using File = std::unique_ptr<SNDFILE, FileCloser>;

bool fail(DecodedAudio& out, std::string& error, const char* text) {
    out = {};
    error = text;
    return false;
}

// What the file claims, as far as that is believed before anything is decoded.
std::size_t reservedSamples(const SF_INFO& info) {
    constexpr sf_count_t kTrustedFrames = 1 << 23;
    return static_cast<std::size_t>(std::clamp<sf_count_t>(info.frames, 0, kTrustedFrames)) *
           static_cast<std::size_t>(info.channels);
}

}  // namespace

bool decodeCompressedAudio(const std::filesystem::path& path, std::string_view extension,
                           DecodedAudio& out, std::string& error) {
    if (extension == ".m4a" || extension == ".aac") return fail(out, error, kNoCompressedAudio);
    SF_INFO info{};
    const File file(sf_open(path.c_str(), SFM_READ, &info));
    if (!file) {
        return fail(out, error,
                    "libsndfile could not open compressed audio (codec may be unavailable)");
    }
    if (info.channels < 1 || info.channels > 2 || info.samplerate < 1) {
        return fail(out, error,
                    "libsndfile PCM output is not supported (expected mono/stereo 16-bit)");
    }
    const auto channels = static_cast<std::size_t>(info.channels);
    // A length that is not known stands as the greatest number of frames.
    const bool lengthKnown = info.frames < SF_COUNT_MAX;
    if (lengthKnown && info.frames > static_cast<sf_count_t>(kMaxDecodedSamples / channels)) {
        return fail(out, error, kAudioTooLarge);
    }

    out = {};
    out.format = "libsndfile-pcm16";
    out.sampleRate = info.samplerate;
    out.channels = info.channels;
    out.pcm.reserve(reservedSamples(info));
    // Loud music overshoots; without this its peaks would wrap around.
    sf_command(file.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
    constexpr std::size_t kBlockFrames = 1 << 15;
    static_assert(std::is_same_v<short, std::int16_t>);
    for (;;) {
        const std::size_t before = out.pcm.size();
        if (before / channels + kBlockFrames > kMaxDecodedSamples / channels) {
            return fail(out, error, kAudioTooLarge);
        }
        out.pcm.resize(before + kBlockFrames * channels);
        const sf_count_t frames =
            sf_readf_short(file.get(), out.pcm.data() + before, sf_count_t{kBlockFrames});
        out.pcm.resize(before +
                       static_cast<std::size_t>(std::max<sf_count_t>(0, frames)) * channels);
        if (frames <= 0) break;
    }
    if (out.pcm.empty()) {
        return fail(out, error, "decoded compressed audio contained no PCM samples");
    }
    return true;
}

}  // namespace port
