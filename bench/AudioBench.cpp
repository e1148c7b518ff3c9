// Decoding of sound files in MB of samples a second, beside libsndfile's of the same samples.

#include <benchmark/benchmark.h>
#include <sndfile.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "AudioDecoder.hpp"

namespace {

constexpr std::size_t kSamples = 22050 * 60;

std::filesystem::path file(const std::string& name) {
    return std::filesystem::temp_directory_path() /
           ("tindrel-audio-bench-" + std::to_string(getpid()) + name);
}

std::vector<std::int16_t> music() {
    std::vector<std::int16_t> samples(kSamples);
    for (std::size_t i = 0; i < kSamples; ++i) {
        const auto t = static_cast<double>(i);
        samples[i] =
            static_cast<std::int16_t>(9000 * std::sin(t * 0.05) + 7000 * std::sin(t * t * 1e-7));
    }
    return samples;
}

// Both are given a file written by libsndfile; the .bor has as many bytes of ADPCM behind a header
// as the WAV that holds the same samples in blocks.
std::filesystem::path written(const std::string& name, int format) {
    const auto path = file(name);
    SF_INFO info{};
    info.samplerate = 22050;
    info.channels = 1;
    info.format = format;
    SNDFILE* const out = sf_open(path.c_str(), SFM_WRITE, &info);
    // Floats of -1.0 to 1.0, as games have them.
    sf_command(out, SFC_SET_SCALE_INT_FLOAT_WRITE, nullptr, SF_TRUE);
    const std::vector<std::int16_t> samples = music();
    sf_write_short(out, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(out);
    return path;
}

void countBytes(benchmark::State& state, std::size_t samples) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(samples * 2));
}

void byRuntime(benchmark::State& state, const std::filesystem::path& path) {
    std::size_t samples = 0;
    for (auto _ : state) {
        port::DecodedAudio audio;
        std::string error;
        if (!port::AudioDecoder::decodeFile(path, audio, error)) {
            state.SkipWithError(error.c_str());
            break;
        }
        samples = audio.pcm.size();
        benchmark::DoNotOptimize(audio.pcm.data());
    }
    countBytes(state, samples);
    std::filesystem::remove(path);
}

void byLibsndfile(benchmark::State& state, const std::filesystem::path& path) {
    std::size_t samples = 0;
    for (auto _ : state) {
        SF_INFO info{};
        SNDFILE* const in = sf_open(path.c_str(), SFM_READ, &info);
        // Both sides keep loud floats from wrapping around. Scaling them up, which the runtime does
        // too, would cost libsndfile a pass more over the file and is left out.
        sf_command(in, SFC_SET_CLIPPING, nullptr, SF_TRUE);
        std::vector<std::int16_t> pcm(static_cast<std::size_t>(info.frames * info.channels));
        samples = static_cast<std::size_t>(sf_readf_short(in, pcm.data(), info.frames));
        sf_close(in);
        benchmark::DoNotOptimize(pcm.data());
    }
    countBytes(state, samples);
    std::filesystem::remove(path);
}

void borAdpcm(benchmark::State& state) {
    const auto wav = written("-source.wav", SF_FORMAT_WAV | SF_FORMAT_IMA_ADPCM);
    std::ifstream in(wav, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(in), {}};
    const auto bor = file(".bor");
    std::ofstream(bor, std::ios::binary) << content;
    std::filesystem::remove(wav);
    byRuntime(state, bor);
}
void libsndfileAdpcm(benchmark::State& state) {
    byLibsndfile(state, written("-adpcm.wav", SF_FORMAT_WAV | SF_FORMAT_IMA_ADPCM));
}
BENCHMARK(borAdpcm);
BENCHMARK(libsndfileAdpcm);

void wav(benchmark::State& state, int format) {
    byRuntime(state, written(".wav", SF_FORMAT_WAV | format));
}
void libsndfileWav(benchmark::State& state, int format) {
    byLibsndfile(state, written("-sf.wav", SF_FORMAT_WAV | format));
}
BENCHMARK_CAPTURE(wav, pcm16, SF_FORMAT_PCM_16);
BENCHMARK_CAPTURE(libsndfileWav, pcm16, SF_FORMAT_PCM_16);
BENCHMARK_CAPTURE(wav, pcm8, SF_FORMAT_PCM_U8);
BENCHMARK_CAPTURE(libsndfileWav, pcm8, SF_FORMAT_PCM_U8);
BENCHMARK_CAPTURE(wav, float32, SF_FORMAT_FLOAT);
BENCHMARK_CAPTURE(libsndfileWav, float32, SF_FORMAT_FLOAT);

}  // namespace

BENCHMARK_MAIN();
