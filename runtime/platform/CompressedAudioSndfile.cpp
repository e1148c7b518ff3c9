#include <sndfile.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <string>
#include <type_traits>
#include <utility>

#include "CompressedAudio.hpp"

namespace port {
namespace {

struct FileCloser {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using File = std::unique_ptr<SNDFILE, FileCloser>;

bool fail(DecodedAudio& out, std::string& error, std::string text) {
    out = {};
    error = std::move(text);
    return false;
}

// The library keeps one reason of a failure to open for all threads.
File openFile(const std::filesystem::path& path, SF_INFO& info, std::string& error) {
    static std::mutex opening;
    const std::scoped_lock lock(opening);
    File file(sf_open(path.c_str(), SFM_READ, &info));
    if (!file) {
        error = std::string(
                    "libsndfile could not open compressed audio (codec may be "
                    "unavailable): ") +
                sf_strerror(nullptr);
    }
    return file;
}

std::string frames(sf_count_t count, int channels) {
    return std::to_string(count) + " frames of " + std::to_string(channels) + " channels";
}

// What the file claims, as far as that is believed before anything is decoded.
std::size_t reservedSamples(const SF_INFO& info) {
    constexpr sf_count_t kTrustedFrames = 1 << 23;
    return static_cast<std::size_t>(std::clamp<sf_count_t>(info.frames, 0, kTrustedFrames)) *
           static_cast<std::size_t>(info.channels);
}

}  // namespace

bool decodeCompressedAudio(const std::filesystem::path& path, std::string_view extension,
                           DecodedAudio& out, std::string& error, const std::stop_token& stop) {
    if (extension == ".m4a" || extension == ".aac") return fail(out, error, kNoCompressedAudio);
    SF_INFO info{};
    const File file = openFile(path, info, error);
    if (!file) return fail(out, error, std::move(error));
    if (info.channels < 1 || info.channels > 2 || info.samplerate < 1) {
        return fail(out, error,
                    "libsndfile PCM output is not supported (expected mono/stereo 16-bit): " +
                        std::to_string(info.channels) + " channels at " +
                        std::to_string(info.samplerate) + " Hz");
    }
    const auto channels = static_cast<std::size_t>(info.channels);
    // A length that is not known stands as the greatest number of frames.
    const bool lengthKnown = info.frames < SF_COUNT_MAX;
    if (lengthKnown && info.frames > static_cast<sf_count_t>(kMaxDecodedSamples / channels)) {
        return fail(out, error,
                    std::string(kAudioTooLarge) + ": " + frames(info.frames, info.channels));
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
            return fail(out, error,
                        std::string(kAudioTooLarge) + ": more than " +
                            frames(static_cast<sf_count_t>(before / channels), info.channels));
        }
        out.pcm.resize(before + kBlockFrames * channels);
        const sf_count_t read =
            sf_readf_short(file.get(), out.pcm.data() + before, sf_count_t{kBlockFrames});
        out.pcm.resize(before + static_cast<std::size_t>(std::max<sf_count_t>(0, read)) * channels);
        if (stop.stop_requested()) return fail(out, error, "decoding was given up");
        if (read <= 0) break;
    }
    if (out.pcm.empty()) {
        return fail(out, error, "decoded compressed audio contained no PCM samples");
    }
    return true;
}

}  // namespace port
