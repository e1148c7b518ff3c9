#include "SpriteBlit.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <random>

#include "SpritePixels.hpp"

namespace port {
namespace {

using test::Argb;
using test::picture;
using test::pixelOf;
using test::pixelsOf;
using test::plain;
using Pixels = std::vector<Argb>;

constexpr Argb kBack = 0xFF181820;
constexpr Argb kRed = 0xFFFF0000;

// The formula as it is written, channel by channel.
Pixels naivelyOver(const SpriteImage& canvas, const SpriteImage& sprite) {
    SpriteImage result = canvas;
    for (std::size_t i = 0; i < result.bgra.size(); ++i) {
        const unsigned alpha = sprite.bgra[i / 4 * 4 + 3];
        const unsigned over = sprite.bgra[i] + canvas.bgra[i] * (255 - alpha) / 255;
        result.bgra[i] = static_cast<std::uint8_t>(std::min(255U, over));
    }
    return pixelsOf(result);
}

// Fifteen pixels make steps of eight, of four and of one.
constexpr int kEverySteps = 15;

TEST(SpriteBlit, EveryAlphaOverEveryCanvasValueIsExact) {
    for (unsigned alpha = 0; alpha < 256; ++alpha) {
        const Argb over = (alpha << 24U) | (alpha / 2 << 16U) | (alpha << 8U);
        const SpriteImage sprite = plain(kEverySteps, 1, over);
        for (unsigned d = 0; d < 256; ++d) {
            SpriteImage canvas = plain(kEverySteps, 1, 0xFF000000U | (d << 16U) | (d << 8U) | d);
            const Pixels expected = naivelyOver(canvas, sprite);
            drawImage(canvas, sprite, 0, 0);
            ASSERT_EQ(pixelsOf(canvas), expected) << alpha << " over " << d;
        }
    }
}

TEST(SpriteBlit, EveryPixelHasItsOwnAlpha) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        SpriteImage sprite = plain(kEverySteps, 1, 0);
        SpriteImage canvas = sprite;
        for (std::uint8_t& byte : canvas.bgra) byte = static_cast<std::uint8_t>(random());
        for (std::uint8_t& byte : sprite.bgra) byte = static_cast<std::uint8_t>(random());
        // Clear and opaque runs, most with one pixel that is otherwise.
        const std::size_t other = random() % 20;
        for (std::size_t i = 0; i < kEverySteps; ++i) {
            const unsigned kind = i == other ? random() % 4 : static_cast<unsigned>(round) % 4;
            std::uint8_t* const pixel = sprite.bgra.data() + i * kPixelBytes;
            if (kind == 0) std::fill_n(pixel, kPixelBytes, std::uint8_t{0});
            if (kind == 1) pixel[3] = 0;
            if (kind == 2) pixel[3] = 255;
        }
        const Pixels expected = naivelyOver(canvas, sprite);
        drawImage(canvas, sprite, 0, 0);
        ASSERT_EQ(pixelsOf(canvas), expected) << "round " << round;
    }
}

TEST(SpriteBlit, ATintedChannelAboveItsAlphaStopsAt255) {
    // 250 + 200 * (255 - 16) / 255 = 437
    SpriteImage canvas = plain(5, 1, 0xFFC8C8C8);
    drawImage(canvas, plain(5, 1, 0x10FA0000), 0, 0);
    EXPECT_EQ(pixelsOf(canvas), Pixels(5, 0xFFFFBBBB));
}

TEST(SpriteBlit, CutsAtEveryEdge) {
    const SpriteImage sprite = picture(2, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
    struct Case {
        std::int64_t x, y;
        Pixels canvas;
    };
    const Case cases[] = {
        {-1, -1, {0xFF000004, kBack, kBack, kBack}},
        {1, -1, {kBack, 0xFF000003, kBack, kBack}},
        {-1, 1, {kBack, kBack, 0xFF000002, kBack}},
        {1, 1, {kBack, kBack, kBack, 0xFF000001}},
        {2, 0, Pixels(4, kBack)},
        {0, -2, Pixels(4, kBack)},
        {std::numeric_limits<std::int32_t>::max(), 0, Pixels(4, kBack)},
        {-1'000'000'000'000'000, 0, Pixels(4, kBack)},
    };
    for (const Case& c : cases) {
        SpriteImage canvas = plain(2, 2, kBack);
        drawImage(canvas, sprite, c.x, c.y);
        EXPECT_EQ(pixelsOf(canvas), c.canvas) << c.x << ", " << c.y;
    }
}

TEST(SpriteBlit, RectanglesAreOpaqueAndLimited) {
    SpriteImage canvas = plain(4, 3, kBack);
    drawSolidRect(canvas, 0, 0, 0, 3, 255, 0, 0);
    drawSolidRect(canvas, 0, 0, 3, -1, 255, 0, 0);
    EXPECT_EQ(pixelsOf(canvas), Pixels(12, kBack));
    drawSolidRect(canvas, -2, 1, 3, 100, 300, -5, 1);
    EXPECT_EQ(pixelsOf(canvas), (Pixels{kBack, kBack, kBack, kBack, 0xFFFF0001, kBack, kBack, kBack,
                                        0xFFFF0001, kBack, kBack, kBack}));

    canvas = plain(4, 3, kBack);
    drawOutline(canvas, 1, 0, 3, 3, 255, 0, 0);
    EXPECT_EQ(pixelsOf(canvas),
              (Pixels{kBack, kRed, kRed, kRed, kBack, kRed, kBack, kRed, kBack, kRed, kRed, kRed}));
}

// The textbook's loop, dot by dot.
void plainLine(SpriteImage& canvas, int x, int y, int x2, int y2, ColorKey color) {
    const int dx = std::abs(x2 - x);
    const int dy = -std::abs(y2 - y);
    for (int error = dx + dy;;) {
        drawDot(canvas, x, y, color);
        if (x == x2 && y == y2) return;
        const int twice = 2 * error;
        if (twice >= dy) error += dy, x += x < x2 ? 1 : -1;
        if (twice <= dx) error += dx, y += y < y2 ? 1 : -1;
    }
}

TEST(SpriteBlit, LinesAreBresenhamsHoweverFarTheyReach) {
    for (int x2 = -9; x2 < 25; ++x2) {
        for (int y2 = -9; y2 < 20; ++y2) {
            SpriteImage canvas = plain(16, 10, kBack);
            SpriteImage expected = canvas;
            drawLine(canvas, 7, 4, x2, y2, 0x00FF0000);
            plainLine(expected, 7, 4, x2, y2, 0x00FF0000);
            ASSERT_EQ(canvas.bgra, expected.bgra) << x2 << ", " << y2;
            drawLine(canvas, x2, y2, 7, 4, 0x0000FF00);
            plainLine(expected, x2, y2, 7, 4, 0x0000FF00);
            ASSERT_EQ(canvas.bgra, expected.bgra) << "back from " << x2 << ", " << y2;
        }
    }
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr int kMost = std::numeric_limits<int>::max();
    SpriteImage canvas = plain(4, 4, kBack);
    drawLine(canvas, kLeast, 2, kMost, 2, 0x00FF0000);
    for (int x = 0; x < 4; ++x) EXPECT_EQ(pixelOf(canvas, x, 2), kRed);
    EXPECT_EQ(pixelOf(canvas, 0, 1), kBack);
}

}  // namespace
}  // namespace port
