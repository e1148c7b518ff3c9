#include "SpriteBlit.hpp"

#include <array>
#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#define PORT_BLIT_SSE2 1
#include <emmintrin.h>
#endif

namespace port {
namespace {

void blendPixel(std::uint8_t* canvas, const std::uint8_t* source) {
    const unsigned rest = 255U - source[3];
    for (std::size_t c = 0; c < kPixelBytes; ++c) {
        canvas[c] = static_cast<std::uint8_t>(std::min(255U, source[c] + canvas[c] * rest / 255U));
    }
}

#ifdef PORT_BLIT_SSE2

// v / 255 for every product v of two bytes.
__m128i dividedBy255(__m128i v) {
    return _mm_mulhi_epu16(_mm_add_epi16(v, _mm_set1_epi16(1)), _mm_set1_epi16(257));
}

// source + canvas * (255 - alpha) / 255 for four pixels. Lanes of 16 bits hold the blue and red
// bytes, then the green and alpha bytes, so that both need the same weights.
__m128i blended(__m128i canvas, __m128i source) {
    const __m128i transparency = _mm_srli_epi32(_mm_andnot_si128(source, _mm_set1_epi32(-1)), 24);
    const __m128i weight = _mm_or_si128(transparency, _mm_slli_epi32(transparency, 16));
    const __m128i even = _mm_and_si128(canvas, _mm_set1_epi16(0xFF));
    const __m128i odd = _mm_srli_epi16(canvas, 8);
    const __m128i rest =
        _mm_or_si128(dividedBy255(_mm_mullo_epi16(even, weight)),
                     _mm_slli_epi16(dividedBy255(_mm_mullo_epi16(odd, weight)), 8));
    return _mm_adds_epu8(source, rest);
}

// The four pixels from `index` of the row on.
template <bool kMirrored>
__m128i loadFour(const std::uint8_t* row, int index, int count) {
    const int from = kMirrored ? count - 4 - index : index;
    const __m128i four = _mm_loadu_si128(
        reinterpret_cast<const __m128i*>(row + static_cast<std::size_t>(from) * kPixelBytes));
    return kMirrored ? _mm_shuffle_epi32(four, _MM_SHUFFLE(0, 1, 2, 3)) : four;
}

// Eight pixels at a time, then four; returns how many were drawn. Sprites are mostly clear and
// opaque runs.
template <bool kMirrored>
int blendWide(std::uint8_t* canvas, const std::uint8_t* source, int count) {
    constexpr int kAllBytes = 0xFFFF;
    constexpr int kAlphaBytes = 0x8888;
    const auto load = [](const std::uint8_t* at) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    };
    const auto store = [](std::uint8_t* at, __m128i pixels) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(at), pixels);
    };
    const __m128i zero = _mm_setzero_si128();
    const __m128i full = _mm_set1_epi32(-1);
    int done = 0;
    for (; count - done >= 8; done += 8, canvas += 32) {
        const __m128i s = loadFour<kMirrored>(source, done, count);
        const __m128i next = loadFour<kMirrored>(source, done + 4, count);
        const int opaque = _mm_movemask_epi8(_mm_cmpeq_epi8(_mm_and_si128(s, next), full));
        if ((opaque & kAlphaBytes) == kAlphaBytes) {
            store(canvas, s);
            store(canvas + 16, next);
        } else if (_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_or_si128(s, next), zero)) != kAllBytes) {
            store(canvas, blended(load(canvas), s));
            store(canvas + 16, blended(load(canvas + 16), next));
        }
    }
    if (count - done >= 4) {
        store(canvas, blended(load(canvas), loadFour<kMirrored>(source, done, count)));
        done += 4;
    }
    return done;
}

#else

template <bool kMirrored>
int blendWide(std::uint8_t*, const std::uint8_t*, int) {
    return 0;
}

#endif

// `source` is where the run begins in memory; mirrored, that is its last pixel.
template <bool kMirrored>
void blendPixels(std::uint8_t* canvas, const std::uint8_t* source, int count) {
    for (int i = blendWide<kMirrored>(canvas, source, count); i < count; ++i) {
        const int from = kMirrored ? count - 1 - i : i;
        blendPixel(canvas + static_cast<std::size_t>(i) * kPixelBytes,
                   source + static_cast<std::size_t>(from) * kPixelBytes);
    }
}

template <bool kMirrored>
void blendImage(SpriteImage& canvas, const SpriteImage& image, std::int64_t x, std::int64_t y) {
    const VisibleArea area = visibleArea(canvas, x, y, image.width, image.height);
    const int left = kMirrored ? image.width - area.sourceX - area.width : area.sourceX;
    for (int row = 0; row < area.height; ++row) {
        blendPixels<kMirrored>(
            canvas.bgra.data() + pixelOffset(canvas, area.canvasX, area.canvasY + row),
            image.bgra.data() + pixelOffset(image, left, area.sourceY + row), area.width);
    }
}

using Pixel = std::array<std::uint8_t, kPixelBytes>;

Pixel opaquePixel(ColorKey color) {
    return {static_cast<std::uint8_t>(colorChannel(color, 0)),
            static_cast<std::uint8_t>(colorChannel(color, 1)),
            static_cast<std::uint8_t>(colorChannel(color, 2)), 255};
}

void fillPixels(std::uint8_t* at, std::size_t count, Pixel pixel) {
    for (std::size_t i = 0; i < count; ++i) {
        std::memcpy(at + i * kPixelBytes, pixel.data(), kPixelBytes);
    }
}

unsigned limited(int channel) {
    return static_cast<unsigned>(std::clamp(channel, 0, 255));
}

}  // namespace

void blendRow(std::uint8_t* canvas, const std::uint8_t* source, int count) {
    blendPixels<false>(canvas, source, count);
}

void drawImage(SpriteImage& canvas, const SpriteImage& image, std::int64_t x, std::int64_t y) {
    blendImage<false>(canvas, image, x, y);
}

void drawImageMirrored(SpriteImage& canvas, const SpriteImage& image, std::int64_t x,
                       std::int64_t y) {
    blendImage<true>(canvas, image, x, y);
}

void fillCanvas(SpriteImage& canvas, ColorKey color) {
    fillPixels(canvas.bgra.data(), canvas.bgra.size() / kPixelBytes, opaquePixel(color));
}

void drawSolidRect(SpriteImage& canvas, std::int64_t x, std::int64_t y, int width, int height,
                   int red, int green, int blue) {
    if (width <= 0 || height <= 0) return;
    const auto pixel = opaquePixel(colorKey(limited(red), limited(green), limited(blue)));
    const VisibleArea area = visibleArea(canvas, x, y, width, height);
    for (int row = 0; row < area.height; ++row) {
        fillPixels(canvas.bgra.data() + pixelOffset(canvas, area.canvasX, area.canvasY + row),
                   static_cast<std::size_t>(area.width), pixel);
    }
}

void drawOutline(SpriteImage& canvas, std::int64_t x, std::int64_t y, int width, int height,
                 int red, int green, int blue) {
    if (width <= 0 || height <= 0) return;
    drawSolidRect(canvas, x, y, width, 1, red, green, blue);
    drawSolidRect(canvas, x, y + height - 1, width, 1, red, green, blue);
    drawSolidRect(canvas, x, y, 1, height, red, green, blue);
    drawSolidRect(canvas, x + width - 1, y, 1, height, red, green, blue);
}

void drawDot(SpriteImage& canvas, int x, int y, ColorKey color) {
    if (x < 0 || y < 0 || x >= canvas.width || y >= canvas.height) return;
    const auto pixel = opaquePixel(color);
    std::memcpy(canvas.bgra.data() + pixelOffset(canvas, x, y), pixel.data(), kPixelBytes);
}

void drawLine(SpriteImage& canvas, int x1, int y1, int x2, int y2, ColorKey color) {
    visitLine(canvas, x1, y1, x2, y2, [&](int x, int y) { drawDot(canvas, x, y, color); });
}

}  // namespace port
