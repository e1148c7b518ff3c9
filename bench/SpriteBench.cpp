// What a sprite of 128 by 128 costs on the canvas, a pixel, beside pixman's blit of the same.

#include <benchmark/benchmark.h>

#include <cstdint>

#include "SpriteBlit.hpp"
#include "SpriteCompositor.hpp"
#include "SpriteTransform.hpp"

#ifdef TINDREL_HAVE_PIXMAN
#include <pixman.h>
#endif

namespace {

constexpr int kSide = 128;

enum Shape {
    kTranslucent,  // all over, which no blit can skip
    kDisc,         // on a transparent ground with a soft rim, as sprites are
    kOpaque,       // as backgrounds are
    kPatches,      // of four pixels, clear, opaque or in between, which no processor foresees
};

unsigned alphaAt(Shape shape, int x, int y) {
    const int away = (x - 64) * (x - 64) + (y - 64) * (y - 64);
    const auto patch = static_cast<unsigned>(y * 32 + x / 4) * 2654435761U >> 16U;
    switch (shape) {
        case kDisc:
            return away < 2500 ? 255 : away < 3000 ? 128 : 0;
        case kOpaque:
            return 255;
        case kPatches:
            return patch % 3 * 255 / 2;
        default:
            return 100U + static_cast<unsigned>((x + y) % 100);
    }
}

port::SpriteImage sprite(Shape shape) {
    port::SpriteImage image{kSide, kSide, {}};
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            const unsigned alpha = alphaAt(shape, x, y);
            for (const unsigned channel : {x * 2U, y * 2U, (x ^ y) * 1U, 255U}) {
                image.bgra.push_back(static_cast<std::uint8_t>(channel * alpha / 255));
            }
        }
    }
    return image;
}

port::SpriteImage canvas() {
    port::SpriteImage image{320, 240, std::vector<std::uint8_t>(320 * 240 * port::kPixelBytes)};
    port::fillCanvas(image, port::colorKey(90, 120, 150));
    return image;
}

void countPixels(benchmark::State& state) {
    state.counters["ns/pixel"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * kSide * kSide * 1e-9,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// The argument is the shape.
void plainBlend(benchmark::State& state) {
    const port::SpriteImage image = sprite(static_cast<Shape>(state.range(0)));
    port::SpriteImage target = canvas();
    for (auto _ : state) {
        port::drawImage(target, image, 61, 43);
        benchmark::ClobberMemory();
    }
    countPixels(state);
}
BENCHMARK(plainBlend)->DenseRange(kTranslucent, kPatches);

#ifdef TINDREL_HAVE_PIXMAN
void pixmanOver(benchmark::State& state) {
    port::SpriteImage image = sprite(static_cast<Shape>(state.range(0)));
    port::SpriteImage target = canvas();
    const auto wrapped = [](port::SpriteImage& pixels) {
        return pixman_image_create_bits(PIXMAN_a8r8g8b8, pixels.width, pixels.height,
                                        reinterpret_cast<std::uint32_t*>(pixels.bgra.data()),
                                        pixels.width * 4);
    };
    pixman_image_t* const from = wrapped(image);
    pixman_image_t* const to = wrapped(target);
    for (auto _ : state) {
        pixman_image_composite32(PIXMAN_OP_OVER, from, nullptr, to, 0, 0, 0, 0, 61, 43, kSide,
                                 kSide);
        benchmark::ClobberMemory();
    }
    countPixels(state);
    pixman_image_unref(from);
    pixman_image_unref(to);
}
BENCHMARK(pixmanOver)->DenseRange(kTranslucent, kPatches);
#endif

void alphaMode(benchmark::State& state) {
    const port::SpriteImage image = sprite(kTranslucent);
    port::SpriteImage target = canvas();
    for (auto _ : state) {
        port::drawImageBlend(target, image, 61, 43, static_cast<int>(state.range(0)));
        benchmark::ClobberMemory();
    }
    countPixels(state);
}
BENCHMARK(alphaMode)->DenseRange(1, 6);

void drawMethod(benchmark::State& state, const generated::DrawMethod& draw, bool flip) {
    const port::SpriteImage image = sprite(kTranslucent);
    port::SpriteImage target = canvas();
    std::int64_t pixels = 0;
    for (auto _ : state) {
        const port::SpriteTransform transform(kSide, kSide, draw, flip);
        pixels += std::int64_t{transform.width()} * transform.height();
        port::drawTransformed(target, image, transform, 20, 10, 0);
        benchmark::ClobberMemory();
    }
    state.counters["ns/pixel"] =
        benchmark::Counter(static_cast<double>(pixels) * 1e-9,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
constexpr generated::DrawMethod kIdentity = {true, 1.0F, 1.0F, false, false, 0.0F, 0,
                                             0,    0,    0,    0,     0,     false};
constexpr generated::DrawMethod kAll = {true, 1.2F, 0.8F, false,    false, 0.25F, 0,
                                        0,    0,    1,    0x204060, 30,    false};
constexpr generated::DrawMethod kScaled = {true, 1.2F, 0.8F, false, false, 0.25F, 0,
                                           0,    0,    0,    0,     0,     false};
BENCHMARK_CAPTURE(drawMethod, identity, kIdentity, false);
BENCHMARK_CAPTURE(drawMethod, mirrored, kIdentity, true);
BENCHMARK_CAPTURE(drawMethod, scaledSheared, kScaled, false);
BENCHMARK_CAPTURE(drawMethod, scaledShearedTintedTurned, kAll, false);

}  // namespace

BENCHMARK_MAIN();
