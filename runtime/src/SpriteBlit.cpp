#include "SpriteBlit.hpp"

#include <array>
#include <cstdlib>
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

// canvas * (255 - alpha) / 255 for two pixels in lanes of 16 bits. (v + 1 + (v >> 8)) >> 8 is
// v / 255 for every product of two bytes.
__m128i weighed(__m128i canvas, __m128i source) {
    const __m128i alpha = _mm_shufflehi_epi16(_mm_shufflelo_epi16(source, 0xFF), 0xFF);
    const __m128i product = _mm_mullo_epi16(canvas, _mm_sub_epi16(_mm_set1_epi16(255), alpha));
    const __m128i rounded = _mm_add_epi16(product, _mm_set1_epi16(1));
    return _mm_srli_epi16(_mm_add_epi16(rounded, _mm_srli_epi16(product, 8)), 8);
}

// Four pixels at a time; returns how many were drawn.
int blendFours(std::uint8_t* canvas, const std::uint8_t* source, int count) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i opaque = _mm_set1_epi32(static_cast<int>(0xFF000000U));
    int done = 0;
    for (; count - done >= 4; done += 4, canvas += 16, source += 16) {
        const __m128i s = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source));
        if (_mm_movemask_epi8(_mm_cmpeq_epi8(s, zero)) == 0xFFFF) continue;
        auto* const target = reinterpret_cast<__m128i*>(canvas);
        if (_mm_movemask_epi8(_mm_cmpeq_epi32(_mm_and_si128(s, opaque), opaque)) == 0xFFFF) {
            _mm_storeu_si128(target, s);
            continue;
        }
        const __m128i d = _mm_loadu_si128(target);
        const __m128i low = weighed(_mm_unpacklo_epi8(d, zero), _mm_unpacklo_epi8(s, zero));
        const __m128i high = weighed(_mm_unpackhi_epi8(d, zero), _mm_unpackhi_epi8(s, zero));
        _mm_storeu_si128(target, _mm_adds_epu8(s, _mm_packus_epi16(low, high)));
    }
    return done;
}

#else

int blendFours(std::uint8_t*, const std::uint8_t*, int) {
    return 0;
}

#endif

std::array<std::uint8_t, kPixelBytes> opaquePixel(ColorKey color) {
    return {static_cast<std::uint8_t>(colorChannel(color, 0)),
            static_cast<std::uint8_t>(colorChannel(color, 1)),
            static_cast<std::uint8_t>(colorChannel(color, 2)), 255};
}

unsigned limited(int channel) {
    return static_cast<unsigned>(std::clamp(channel, 0, 255));
}

}  // namespace

void blendRow(std::uint8_t* canvas, const std::uint8_t* source, int count) {
    for (int i = blendFours(canvas, source, count); i < count; ++i) {
        const auto at = static_cast<std::size_t>(i) * kPixelBytes;
        blendPixel(canvas + at, source + at);
    }
}

void drawImage(SpriteImage& canvas, const SpriteImage& image, std::int64_t x, std::int64_t y) {
    const VisibleArea area = visibleArea(canvas, x, y, image.width, image.height);
    for (int row = 0; row < area.height; ++row) {
        blendRow(canvas.bgra.data() + pixelOffset(canvas, area.canvasX, area.canvasY + row),
                 image.bgra.data() + pixelOffset(image, area.sourceX, area.sourceY + row),
                 area.width);
    }
}

void fillCanvas(SpriteImage& canvas, ColorKey color) {
    const auto pixel = opaquePixel(color);
    for (std::size_t at = 0; at < canvas.bgra.size(); at += kPixelBytes) {
        std::memcpy(canvas.bgra.data() + at, pixel.data(), kPixelBytes);
    }
}

void drawSolidRect(SpriteImage& canvas, std::int64_t x, std::int64_t y, int width, int height,
                   int red, int green, int blue) {
    if (width <= 0 || height <= 0) return;
    const auto pixel = opaquePixel(colorKey(limited(red), limited(green), limited(blue)));
    const VisibleArea area = visibleArea(canvas, x, y, width, height);
    for (int row = 0; row < area.height; ++row) {
        std::uint8_t* at =
            canvas.bgra.data() + pixelOffset(canvas, area.canvasX, area.canvasY + row);
        for (int i = 0; i < area.width; ++i, at += kPixelBytes) {
            std::memcpy(at, pixel.data(), kPixelBytes);
        }
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
    // Far beyond any canvas, and small enough for the products below.
    constexpr int kFar = 1 << 28;
    for (int* coordinate : {&x1, &y1, &x2, &y2}) *coordinate = std::clamp(*coordinate, -kFar, kFar);
    const std::int64_t across = std::abs(x2 - x1);
    const std::int64_t down = std::abs(y2 - y1);
    const bool steep = down > across;
    const std::int64_t steps = steep ? down : across;
    const std::int64_t drift = steep ? across : down;
    const int stepX = x2 < x1 ? -1 : 1;
    const int stepY = y2 < y1 ? -1 : 1;

    // Only the steps whose longer coordinate is on the canvas: what a script asks for may start a
    // thousand million pixels away.
    const std::int64_t from = steep ? y1 : x1;
    const std::int64_t limit = steep ? canvas.height : canvas.width;
    const bool backwards = (steep ? stepY : stepX) < 0;
    const std::int64_t first = std::max<std::int64_t>(0, backwards ? from - (limit - 1) : -from);
    const std::int64_t last = std::min(steps, backwards ? from : limit - 1 - from);
    for (std::int64_t i = first; i <= last; ++i) {
        const std::int64_t drifted = steps == 0 ? 0 : (2 * i * drift + steps) / (2 * steps);
        drawDot(canvas, static_cast<int>(x1 + stepX * (steep ? drifted : i)),
                static_cast<int>(y1 + stepY * (steep ? i : drifted)), color);
    }
}

}  // namespace port
