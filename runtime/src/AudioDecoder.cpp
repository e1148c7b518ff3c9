#include "AudioDecoder.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>
#include <system_error>

#include "FileBytes.hpp"
#include "PathEncoding.hpp"
#include "TextFields.hpp"
#include "platform/CompressedAudio.hpp"

namespace port {
namespace {

using Bytes = std::span<const std::uint8_t>;
using Samples = std::vector<std::int16_t>;

bool fail(std::string& error, std::string_view text) {
    error = text;
    return false;
}

constexpr std::size_t kBorHeader = 160;
// The longest files that can decode to the limit: two samples a byte behind the header of a .bor,
// and a WAV of four bytes a sample with room for its other chunks.
constexpr std::uintmax_t kMaxBorFile = kBorHeader + kMaxDecodedSamples / 2;
constexpr std::uintmax_t kMaxWavFile = kMaxDecodedSamples * std::uintmax_t{4} + (1U << 20U);

// Asked before anything of the file is read.
bool isLarger(const std::filesystem::path& path, std::uintmax_t limit) {
    std::error_code failed;
    const std::uintmax_t size = std::filesystem::file_size(path, failed);
    return !failed && size > limit;
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

std::uint32_t littleEndian(Bytes bytes, std::size_t offset, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = size; i > 0; --i) value = (value << 8U) | bytes[offset + i - 1];
    return value;
}

bool hasTag(Bytes bytes, std::size_t offset, std::string_view tag) {
    return std::equal(tag.begin(), tag.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

struct WavChunks {
    std::uint32_t codec = 0, channels = 0, rate = 0, bits = 0;
    Bytes data;
    bool hasLoop = false;
    std::uint32_t loopStart = 0, loopEnd = 0;
};

// Reads chunks up to the first that the file cuts short.
WavChunks readChunks(Bytes file) {
    WavChunks chunks;
    std::size_t at = 12;
    while (at <= file.size() && file.size() - at >= 8) {
        const std::size_t size = littleEndian(file, at + 4, 4);
        const std::size_t start = at + 8;
        if (size > file.size() - start) break;
        const Bytes body = file.subspan(start, size);
        if (hasTag(file, at, "fmt ") && size >= 16) {
            chunks.codec = littleEndian(body, 0, 2);
            chunks.channels = littleEndian(body, 2, 2);
            chunks.rate = littleEndian(body, 4, 4);
            chunks.bits = littleEndian(body, 14, 2);
        } else if (hasTag(file, at, "data")) {
            chunks.data = body;
        } else if (hasTag(file, at, "smpl") && size >= 60 && littleEndian(body, 28, 4) > 0) {
            chunks.loopStart = littleEndian(body, 44, 4);
            chunks.loopEnd = littleEndian(body, 48, 4);
            chunks.hasLoop = chunks.loopEnd >= chunks.loopStart;
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
    if (wav.data.empty() || wav.channels == 0 || wav.rate == 0) {
        return "WAV missing fmt/data chunk";
    }
    if (!pcm && wav.codec != kCodecFloat) return "WAV codec is not PCM/IEEE-float";
    if (pcm && !knownDepth) return "WAV PCM bit depth must be 8/16/24/32";
    if (!pcm && wav.bits != 32) return "WAV IEEE-float must be 32-bit";
    if (wav.channels > 2) return "WAV channel count >2 is not supported by preview runtime";
    return {};
}

std::int16_t floatSample(std::uint32_t bits) {
    const auto value = std::bit_cast<float>(bits);
    // A NaN would have no defined integer.
    if (std::isnan(value)) return 0;
    const double scaled = std::clamp(static_cast<double>(value), -1.0, 1.0) * 32767.0;
    // To the nearest, halves away from zero.
    return static_cast<std::int16_t>(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
}

Samples floatSamples(Bytes data) {
    Samples pcm(data.size() / 4);
    for (std::size_t i = 0; i < pcm.size(); ++i) pcm[i] = floatSample(littleEndian(data, i * 4, 4));
    return pcm;
}

// Whole samples only. The upper two bytes of a deeper sample are its arithmetic shift down.
Samples pcmSamples(Bytes data, std::uint32_t bits) {
    const std::size_t size = bits / 8;
    Samples pcm(data.size() / size);
    if (bits == 8) {
        std::transform(data.begin(), data.end(), pcm.begin(), [](std::uint8_t byte) {
            return static_cast<std::int16_t>((byte - 128) * 256);
        });
    } else if (bits == 16 && std::endian::native == std::endian::little) {
        if (!pcm.empty()) std::memcpy(pcm.data(), data.data(), pcm.size() * 2);
    } else {
        for (std::size_t i = 0; i < pcm.size(); ++i) {
            pcm[i] = static_cast<std::int16_t>(littleEndian(data, (i + 1) * size - 2, 2));
        }
    }
    return pcm;
}

}  // namespace

bool AudioDecoder::decodeFile(const std::filesystem::path& path, DecodedAudio& out,
                              std::string& error) {
    const std::string extension = foldAscii(PathEncoding::utf8(path.extension()));
    if (extension == ".bor") return decodeOpenBorBor(path, out, error);
    if (extension == ".wav" || extension == ".wave") return decodeWav(path, out, error);
    for (const std::string_view compressed : {".mp3", ".flac", ".ogg", ".oga", ".m4a", ".aac"}) {
        if (extension == compressed) {
            return decodeCompressedAudio(path, extension, out, error);
        }
    }
    return fail(error, "unsupported audio extension: " + extension);
}

bool AudioDecoder::decodeOpenBorBor(const std::filesystem::path& path, DecodedAudio& out,
                                    std::string& error) {
    if (isLarger(path, kMaxBorFile)) return fail(error, kAudioTooLarge);
    const auto file = readFileBytes(path, kMaxBorFile);
    return file ? decodeOpenBorBor(*file, out, error) : fail(error, "cannot open .bor music");
}

bool AudioDecoder::decodeOpenBorBor(std::span<const std::uint8_t> file, DecodedAudio& out,
                                    std::string& error) {
    if (file.size() <= kBorHeader) {
        return fail(error, "invalid OpenBOR .bor: file is smaller than 160-byte header");
    }
    if (file.size() > kMaxBorFile) return fail(error, kAudioTooLarge);
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
                             std::string& error) {
    if (isLarger(path, kMaxWavFile)) return fail(error, kAudioTooLarge);
    const auto file = readFileBytes(path, kMaxWavFile);
    return file ? decodeWav(*file, out, error) : fail(error, "cannot open WAV");
}

bool AudioDecoder::decodeWav(std::span<const std::uint8_t> file, DecodedAudio& out,
                             std::string& error) {
    if (file.size() < 44 || !hasTag(file, 0, "RIFF") || !hasTag(file, 8, "WAVE")) {
        return fail(error, "invalid RIFF/WAVE file");
    }
    if (file.size() > kMaxWavFile) return fail(error, kAudioTooLarge);
    const WavChunks wav = readChunks(file);
    if (const std::string_view refusal = wavRefusal(wav); !refusal.empty()) {
        return fail(error, refusal);
    }
    if (wav.data.size() / (wav.bits / 8) > kMaxDecodedSamples) return fail(error, kAudioTooLarge);

    out = {};
    // A rate beyond the range of int is as good as none.
    out.sampleRate = static_cast<int>(std::min<std::uint32_t>(wav.rate, 0x7FFFFFFFU));
    out.channels = static_cast<int>(wav.channels);
    const bool isFloat = wav.codec == kCodecFloat;
    out.format = isFloat ? "wav-float32" : "wav-pcm" + std::to_string(wav.bits);
    out.pcm = isFloat ? floatSamples(wav.data) : pcmSamples(wav.data, wav.bits);
    if (wav.hasLoop) {
        out.hasLoop = true;
        out.loopStartFrames = wav.loopStart;
        out.loopLengthFrames = wav.loopEnd - wav.loopStart + 1;
    }
    if (out.pcm.empty()) return fail(error, "WAV contains no PCM samples");
    return true;
}

}  // namespace port
