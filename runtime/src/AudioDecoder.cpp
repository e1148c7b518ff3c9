#include "AudioDecoder.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <functional>
#include <istream>
#include <span>
#include <string_view>
#include <system_error>

#include "CompressedAudio.hpp"
#include "FileBytes.hpp"
#include "PathEncoding.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

using Bytes = std::span<const std::uint8_t>;
using Samples = std::vector<std::int16_t>;

bool fail(std::string& error, std::string_view text) {
    error = text;
    return false;
}

bool failTooLarge(std::string& error, std::string_view what, std::uintmax_t bytes) {
    error = std::string(kAudioTooLarge) + ": " + std::string(what) + " of " +
            std::to_string(bytes) + " bytes";
    return false;
}

constexpr std::size_t kBorHeader = 160;
// The longest files that can decode to the limit: two samples a byte behind the header of a .bor,
// and a WAV of four bytes a sample with room for its other chunks.
constexpr std::uintmax_t kMaxBorFile = kBorHeader + kMaxDecodedSamples / 2;
constexpr std::uintmax_t kMaxWavFile = kMaxDecodedSamples * std::uintmax_t{4} + (1U << 20U);

// Asked before anything of the file is read; 0 when nothing answers.
std::uintmax_t fileSize(const std::filesystem::path& path) {
    std::error_code failed;
    const std::uintmax_t size = std::filesystem::file_size(path, failed);
    return failed ? 0 : size;
}

constexpr std::array<int, 89> kImaSteps = {
    7,     8,     9,     10,    11,    12,    13,    14,    16,    17,    19,   21,    23,
    25,    28,    31,    34,    37,    41,    45,    50,    55,    60,    66,   73,    80,
    88,    97,    107,   118,   130,   143,   157,   173,   190,   209,   230,  253,   279,
    307,   337,   371,   408,   449,   494,   544,   598,   658,   724,   796,  876,   963,
    1060,  1166,  1282,  1411,  1552,  1707,  1878,  2066,  2272,  2499,  2749, 3024,  3327,
    3660,  4026,  4428,  4871,  5358,  5894,  6484,  7132,  7845,  8630,  9493, 10442, 11487,
    12635, 13899, 15289, 16818, 18500, 20350, 22385, 24623, 27086, 29794, 32767};
constexpr std::array<int, 8> kImaIndexSteps = {-1, -1, -1, -1, 2, 4, 6, 8};

struct ImaState {
    int predicted = 0;
    int index = 0;

    std::int16_t decode(unsigned nibble) {
        const int step = kImaSteps[static_cast<std::size_t>(index)];
        int diff = step >> 3;
        if (nibble & 4U) diff += step;
        if (nibble & 2U) diff += step >> 1;
        if (nibble & 1U) diff += step >> 2;
        predicted = std::clamp((nibble & 8U) ? predicted - diff : predicted + diff, -32768, 32767);
        index = std::clamp(index + kImaIndexSteps[nibble & 7U], 0, 88);
        return static_cast<std::int16_t>(predicted);
    }
};

// A whole file to be read in pieces, so that samples need not lie in memory twice.
struct Source {
    std::uintmax_t size = 0;
    // Fills `into`, which lies within the size; false when the file cannot be read.
    std::function<bool(std::uintmax_t offset, std::span<std::uint8_t> into)> read;
};

Source memorySource(Bytes file) {
    return {file.size(), [file](std::uintmax_t offset, std::span<std::uint8_t> into) {
                const Bytes piece = file.subspan(static_cast<std::size_t>(offset), into.size());
                std::copy(piece.begin(), piece.end(), into.begin());
                return true;
            }};
}

Source streamSource(std::istream& in, std::uintmax_t size, const std::stop_token& stop) {
    return {size, [&in, &stop, at = std::uintmax_t{0}](std::uintmax_t offset,
                                                       std::span<std::uint8_t> into) mutable {
                if (offset != at) in.seekg(static_cast<std::streamoff>(offset));
                in.read(reinterpret_cast<char*>(into.data()),
                        static_cast<std::streamsize>(into.size()));
                at = offset + into.size();
                return in.good() && !stop.stop_requested();
            }};
}

// A view that moves over a source. Files of tiny chunks cost no read for each of them.
class Window {
  public:
    explicit Window(const Source& source) : source_(source) {}

    // As much of `size` bytes, at most 64, as there is; empty on failure too.
    Bytes view(std::uintmax_t offset, std::size_t size) {
        if (offset >= source_.size) return {};
        const auto left = source_.size - offset;
        size = static_cast<std::size_t>(std::min<std::uintmax_t>(size, left));
        if (offset < start_ || offset + size > start_ + held_) {
            start_ = offset;
            held_ = static_cast<std::size_t>(std::min<std::uintmax_t>(bytes_.size(), left));
            if (!source_.read(start_, {bytes_.data(), held_})) held_ = 0;
            if (held_ == 0) return {};
        }
        return {bytes_.data() + static_cast<std::size_t>(offset - start_), size};
    }

  private:
    const Source& source_;
    std::array<std::uint8_t, 4096> bytes_{};
    std::uintmax_t start_ = 0;
    std::size_t held_ = 0;
};

// By copies where they do, since loops over these then become vectors.
std::uint32_t littleEndian16(const std::uint8_t* bytes) {
    std::uint16_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    if constexpr (std::endian::native == std::endian::little) return value;
    return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8U;
}

std::uint32_t littleEndian32(const std::uint8_t* bytes) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    if constexpr (std::endian::native == std::endian::little) return value;
    return littleEndian16(bytes) | littleEndian16(bytes + 2) << 16U;
}

bool hasTag(Bytes bytes, std::size_t offset, std::string_view tag) {
    return std::equal(tag.begin(), tag.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

struct WavChunks {
    std::uint32_t codec = 0, channels = 0, rate = 0, bits = 0;
    std::uintmax_t dataStart = 0;
    std::uint32_t dataSize = 0;
    bool hasLoop = false;
    std::uint32_t loopStart = 0, loopEnd = 0;
};

constexpr std::size_t kChunkHead = 8;
constexpr std::size_t kFormatBody = 16;
constexpr std::size_t kSamplerBody = 60;

void readFormat(Bytes body, WavChunks& chunks) {
    chunks.codec = littleEndian16(body.data());
    chunks.channels = littleEndian16(body.data() + 2);
    chunks.rate = littleEndian32(body.data() + 4);
    chunks.bits = littleEndian16(body.data() + 14);
}

void readFirstLoop(Bytes body, WavChunks& chunks) {
    if (littleEndian32(body.data() + 28) == 0) return;
    chunks.loopStart = littleEndian32(body.data() + 44);
    chunks.loopEnd = littleEndian32(body.data() + 48);
    chunks.hasLoop = chunks.loopEnd >= chunks.loopStart;
}

// Reads chunks up to the first that the file cuts short.
WavChunks readChunks(const Source& file, Window& window) {
    WavChunks chunks;
    std::uintmax_t at = 12;
    for (;;) {
        const Bytes head = window.view(at, kChunkHead);
        if (head.size() < kChunkHead) break;
        const std::uint32_t size = littleEndian32(head.data() + 4);
        const std::uintmax_t start = at + kChunkHead;
        if (size > file.size - start) break;
        if (hasTag(head, 0, "data")) {
            chunks.dataStart = start;
            chunks.dataSize = size;
        } else if (hasTag(head, 0, "fmt ") && size >= kFormatBody) {
            const Bytes body = window.view(start, kFormatBody);
            if (body.size() == kFormatBody) readFormat(body, chunks);
        } else if (hasTag(head, 0, "smpl") && size >= kSamplerBody) {
            const Bytes body = window.view(start, kSamplerBody);
            if (body.size() == kSamplerBody) readFirstLoop(body, chunks);
        }
        at = start + size + (size & 1U);
    }
    return chunks;
}

constexpr std::uint32_t kCodecPcm = 1;
constexpr std::uint32_t kCodecFloat = 3;

std::string_view wavRefusal(const WavChunks& wav) {
    const bool pcm = wav.codec == kCodecPcm;
    const bool knownDepth = wav.bits == 8 || wav.bits == 16 || wav.bits == 24 || wav.bits == 32;
    if (wav.dataSize == 0 || wav.channels == 0 || wav.rate == 0) {
        return "WAV missing fmt/data chunk";
    }
    if (!pcm && wav.codec != kCodecFloat) return "WAV codec is not PCM/IEEE-float";
    if (pcm && !knownDepth) return "WAV PCM bit depth must be 8/16/24/32";
    if (!pcm && wav.bits != 32) return "WAV IEEE-float must be 32-bit";
    if (wav.channels > 2) return "WAV channel count >2 is not supported by preview runtime";
    return {};
}

// One sample of each source. Those of PCM deeper than 16 bits are shifted down, which leaves their
// upper two bytes.
struct FromPcm8 {
    static constexpr std::size_t kBytes = 1;
    static std::int16_t sample(const std::uint8_t* bytes) {
        return static_cast<std::int16_t>((*bytes - 128) * 256);
    }
};

template <std::size_t Size>
struct FromPcm {
    static constexpr std::size_t kBytes = Size;
    static std::int16_t sample(const std::uint8_t* bytes) {
        return static_cast<std::int16_t>(littleEndian16(bytes + Size - 2));
    }
};

// Without branches, so that compilers make vectors of the loop.
struct FromFloat {
    static constexpr std::size_t kBytes = 4;
    // 1.5 * 2^52, beside which a double keeps no fraction and has the integer in its low bits.
    static constexpr double kRounding = 6755399441055744.0;
    static std::int16_t sample(const std::uint8_t* bytes) {
        const auto value = std::bit_cast<float>(littleEndian32(bytes));
        const float magnitude = std::fabs(value);
        const float clamped = std::copysign(magnitude < 1.0F ? magnitude : 1.0F, value);
        // A NaN, which the line above makes loud, is silence.
        const auto isNumber = static_cast<std::uint32_t>(!std::isnan(value));
        const std::uint32_t bits = std::bit_cast<std::uint32_t>(clamped) & (0U - isNumber);
        // In double, where the product is exact. Its only halves are those of 0.5 and -0.5, which
        // round to even and so away from zero.
        const double rounded =
            static_cast<double>(std::bit_cast<float>(bits)) * 32767.0 + kRounding;
        return static_cast<std::int16_t>(std::bit_cast<std::uint64_t>(rounded));
    }
};

// Samples are read in blocks that stay in the cache until they are converted. Those that need no
// conversion come in greater ones, which still find what the vector's growth has just written
// there.
constexpr std::size_t kBlockSamples = 1U << 14U;
constexpr std::size_t kStraightBlockSamples = 1U << 17U;

// Appends whole samples; false when the file cannot be read.
template <class From>
bool readSamples(const Source& file, const WavChunks& wav, Samples& pcm) {
    const std::size_t count = wav.dataSize / From::kBytes;
    pcm.reserve(count);
    std::vector<std::uint8_t> block(kBlockSamples * From::kBytes);
    while (pcm.size() < count) {
        const std::size_t done = pcm.size();
        const std::size_t now = std::min(kBlockSamples, count - done);
        if (!file.read(wav.dataStart + done * From::kBytes, {block.data(), now * From::kBytes})) {
            return false;
        }
        pcm.resize(done + now);
        std::int16_t* const into = pcm.data() + done;
        const std::uint8_t* const from = block.data();
        for (std::size_t i = 0; i < now; ++i) into[i] = From::sample(from + i * From::kBytes);
    }
    return true;
}

// Samples that lie in the file as they lie in memory.
bool readSamplesAsTheyAre(const Source& file, const WavChunks& wav, Samples& pcm) {
    const std::size_t count = wav.dataSize / sizeof(std::int16_t);
    pcm.reserve(count);
    while (pcm.size() < count) {
        const std::size_t done = pcm.size();
        pcm.resize(done + std::min(kStraightBlockSamples, count - done));
        auto* const into = reinterpret_cast<std::uint8_t*>(pcm.data() + done);
        const std::size_t size = (pcm.size() - done) * sizeof(std::int16_t);
        if (!file.read(wav.dataStart + done * sizeof(std::int16_t), {into, size})) return false;
    }
    return true;
}

bool readSamples(const Source& file, const WavChunks& wav, Samples& pcm) {
    if (wav.codec == kCodecFloat) return readSamples<FromFloat>(file, wav, pcm);
    switch (wav.bits) {
        case 8:
            return readSamples<FromPcm8>(file, wav, pcm);
        case 16:
            return std::endian::native == std::endian::little
                       ? readSamplesAsTheyAre(file, wav, pcm)
                       : readSamples<FromPcm<2>>(file, wav, pcm);
        case 24:
            return readSamples<FromPcm<3>>(file, wav, pcm);
        default:
            return readSamples<FromPcm<4>>(file, wav, pcm);
    }
}

constexpr std::string_view kCannotOpenWav = "cannot open WAV";

bool decodeWavSource(const Source& file, DecodedAudio& out, std::string& error) {
    if (file.size > kMaxWavFile) return failTooLarge(error, "WAV file", file.size);
    Window window(file);
    const Bytes head = window.view(0, 12);
    if (file.size < 44 || head.size() < 12 || !hasTag(head, 0, "RIFF") ||
        !hasTag(head, 8, "WAVE")) {
        return fail(error, "invalid RIFF/WAVE file");
    }
    const WavChunks wav = readChunks(file, window);
    if (const std::string_view refusal = wavRefusal(wav); !refusal.empty()) {
        return fail(error, refusal);
    }
    if (wav.dataSize / (wav.bits / 8) > kMaxDecodedSamples) {
        return failTooLarge(error, "WAV data at byte " + std::to_string(wav.dataStart),
                            wav.dataSize);
    }

    out = {};
    // A rate beyond the range of int is as good as none.
    out.sampleRate = static_cast<int>(std::min<std::uint32_t>(wav.rate, 0x7FFFFFFFU));
    out.channels = static_cast<int>(wav.channels);
    out.format = wav.codec == kCodecFloat ? "wav-float32" : "wav-pcm" + std::to_string(wav.bits);
    if (!readSamples(file, wav, out.pcm)) {
        return fail(error, "cannot read the WAV data of " + std::to_string(wav.dataSize) +
                               " bytes at byte " + std::to_string(wav.dataStart));
    }
    if (wav.hasLoop) {
        out.hasLoop = true;
        out.loopStartFrames = wav.loopStart;
        out.loopLengthFrames = wav.loopEnd - wav.loopStart + 1;
    }
    // Whoever plays it counts in whole frames.
    const bool hasFrame = out.pcm.size() >= wav.channels;
    return hasFrame || fail(error, "WAV contains no PCM samples");
}

}  // namespace

bool AudioDecoder::decodeFile(const std::filesystem::path& path, DecodedAudio& out,
                              std::string& error, const std::stop_token& stop) {
    const std::string extension = foldAscii(PathEncoding::utf8(path.extension()));
    if (extension == ".bor") return decodeOpenBorBor(path, out, error);
    if (extension == ".wav" || extension == ".wave") return decodeWav(path, out, error, stop);
    for (const std::string_view compressed : {".mp3", ".flac", ".ogg", ".oga", ".m4a", ".aac"}) {
        if (extension == compressed) {
            return decodeCompressedAudio(path, extension, out, error, stop);
        }
    }
    return fail(error, "unsupported audio extension: " + extension);
}

bool AudioDecoder::decodeOpenBorBor(const std::filesystem::path& path, DecodedAudio& out,
                                    std::string& error) {
    if (const auto size = fileSize(path); size > kMaxBorFile) {
        return failTooLarge(error, ".bor file", size);
    }
    const auto file = readFileBytes(path, kMaxBorFile);
    return file ? decodeOpenBorBor(*file, out, error) : fail(error, "cannot open .bor music");
}

bool AudioDecoder::decodeOpenBorBor(std::span<const std::uint8_t> file, DecodedAudio& out,
                                    std::string& error) {
    if (file.size() <= kBorHeader) {
        return fail(error, "invalid OpenBOR .bor: file is smaller than 160-byte header");
    }
    if (file.size() > kMaxBorFile) return failTooLarge(error, ".bor file", file.size());
    out = {};
    out.format = "openbor-bor-ima-adpcm-mono";
    const Bytes payload = file.subspan(kBorHeader);
    out.pcm.resize(payload.size() * 2);
    ImaState state;
    std::int16_t* sample = out.pcm.data();
    for (const std::uint8_t byte : payload) {
        *sample++ = state.decode(byte >> 4U);
        *sample++ = state.decode(byte & 15U);
    }
    if (out.pcm.empty()) return fail(error, "OpenBOR .bor contains no ADPCM payload");
    return true;
}

bool AudioDecoder::decodeWav(const std::filesystem::path& path, DecodedAudio& out,
                             std::string& error, const std::stop_token& stop) {
    std::error_code failed;
    // A folder opens as a stream on some systems and then fails to read.
    const bool isFolder = std::filesystem::is_directory(path, failed);
    const std::uintmax_t size = std::filesystem::file_size(path, failed);
    if (isFolder || failed) return fail(error, kCannotOpenWav);
    std::ifstream in(path, std::ios::binary);
    if (!in) return fail(error, kCannotOpenWav);
    return decodeWavSource(streamSource(in, size, stop), out, error);
}

bool AudioDecoder::decodeWav(std::span<const std::uint8_t> file, DecodedAudio& out,
                             std::string& error) {
    return decodeWavSource(memorySource(file), out, error);
}

}  // namespace port
