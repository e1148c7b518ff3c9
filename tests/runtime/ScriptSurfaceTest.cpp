// What scripts draw into pictures of their own, against a referee that mixes pixel by pixel.

#include "ScriptSurface.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "ScriptPictures.hpp"
#include "SpritePixels.hpp"

namespace port {
namespace {

using test::pixelsOf;
using test::plain;

std::mt19937 dice{941};

int roll(int least, int most) {
    return std::uniform_int_distribution(least, most)(dice);
}

int channelMix(int mode, int s, int d) {
    const int dark = 2 * s * d / 255;
    const int light = 255 - 2 * (255 - s) * (255 - d) / 255;
    switch (mode) {
        case 3:
            return d < 128 ? dark : light;
        case 4:
            return s < 128 ? dark : light;
        case 5:
            return s >= 255 ? 255 : std::min(255, 255 * d / std::max(1, 255 - s));
        case 6:
            return (s + d) / 2;
        default:
            return s;
    }
}

// One premultiplied pixel on another.
void mix(std::uint8_t* d, const std::uint8_t* source, int mode) {
    const int alpha = source[3];
    if (alpha == 0) return;
    if (mode < 1 || mode > 6) {
        for (int c = 0; c < 4; ++c) {
            d[c] = static_cast<std::uint8_t>(std::min(255, source[c] + d[c] * (255 - alpha) / 255));
        }
        return;
    }
    int s[3];
    for (int c = 0; c < 3; ++c) s[c] = std::min(255, source[c] * 255 / alpha);
    const int light = (s[0] + s[1] + s[2]) / 3;
    const int weight = alpha * (mode == 1 ? light : mode == 2 ? 255 - light : 255) / 255;
    for (int c = 0; c < 3; ++c) {
        d[c] = static_cast<std::uint8_t>(
            (channelMix(mode, s[c], d[c]) * weight + d[c] * (255 - weight)) / 255);
    }
    d[3] = 255;
}

void mixAt(SpriteImage& surface, int x, int y, const std::uint8_t* source, int mode) {
    if (x < 0 || y < 0 || x >= surface.width || y >= surface.height) return;
    mix(surface.bgra.data() + pixelOffset(surface, x, y), source, mode);
}

SpriteImage randomImage(int width, int height) {
    SpriteImage image = plain(width, height, 0);
    for (std::size_t i = 0; i < image.bgra.size(); i += kPixelBytes) {
        const int alpha = roll(0, 2) * 255 / 2;
        image.bgra[i + 3] = static_cast<std::uint8_t>(alpha);
        for (std::size_t c = 0; c < 3; ++c) {
            image.bgra[i + c] = static_cast<std::uint8_t>(roll(0, alpha));
        }
    }
    return image;
}

TEST(ScriptSurface, MixesAsPixelsDoOneByOne) {
    for (int round = 0; round < 400; ++round) {
        SpriteImage surface = randomImage(roll(1, 300), roll(1, 9));
        SpriteImage expected = surface;
        const int mode = roll(-1, 7);
        const ColorKey color = static_cast<ColorKey>(roll(0, 0xFFFFFF));
        const std::uint8_t opaque[] = {static_cast<std::uint8_t>(color),
                                       static_cast<std::uint8_t>(color >> 8U),
                                       static_cast<std::uint8_t>(color >> 16U), 255};
        const int x = roll(-10, 310);
        const int y = roll(-4, 12);
        switch (round % 3) {
            case 0: {
                const int width = roll(-2, 320);
                const int height = roll(-2, 12);
                scriptSurfaceBox(surface, x, y, width, height, color, mode);
                for (int v = y; v < y + height; ++v) {
                    for (int u = x; u < x + width; ++u) mixAt(expected, u, v, opaque, mode);
                }
                break;
            }
            case 1: {
                const int length = roll(0, 20);
                scriptSurfaceLine(surface, x, y, x + length, y + length, color, mode);
                for (int i = 0; i <= length; ++i) mixAt(expected, x + i, y + i, opaque, mode);
                break;
            }
            default: {
                const SpriteImage source = randomImage(roll(1, 12), roll(1, 12));
                generated::DrawMethod draw{};
                draw.enabled = roll(0, 1) == 1;
                draw.scaleX = static_cast<float>(roll(-8, 8)) / 4;
                draw.scaleY = static_cast<float>(roll(-8, 8)) / 4;
                draw.flipX = roll(0, 1) == 1;
                draw.rotate = roll(0, 3) * 30;
                draw.tintMode = roll(0, 7);
                draw.tintColor = roll(0, 0xFFFFFF);
                scriptSurfaceBlit(surface, source, draw, x, y, mode);
                const SpriteImage shown =
                    draw.enabled ? transformOpenBORSprite(source, draw, false) : source;
                for (int v = 0; v < shown.height; ++v) {
                    for (int u = 0; u < shown.width; ++u) {
                        mixAt(expected, x + u, y + v, shown.bgra.data() + pixelOffset(shown, u, v),
                              mode);
                    }
                }
            }
        }
        ASSERT_EQ(pixelsOf(surface), pixelsOf(expected)) << "round " << round << ", mode " << mode;
    }
}

// Whatever numbers reach it, at once.
TEST(ScriptSurface, NothingIsTooFarOrTooLarge) {
    SpriteImage surface = plain(4, 3, 0xFF000000);
    generated::DrawMethod draw{};
    draw.enabled = true;
    draw.scaleX = 1e9F;
    draw.scaleY = -1e9F;
    draw.rotate = 77;
    scriptSurfaceBlit(surface, plain(40, 40, 0xFFFF0000), draw, -1 << 24, INT_MAX, 3);
    scriptSurfaceBlit(surface, plain(40, 40, 0xFF00FF00), draw, -1 << 20, -1 << 20, 0);
    scriptSurfaceLine(surface, INT_MIN, INT_MAX, INT_MAX, INT_MIN, 1, 6);
    scriptSurfaceBox(surface, INT_MIN, INT_MIN, INT_MAX, INT_MAX, 1, 1);
    scriptSurfaceBox(surface, -1, -1, INT_MAX, INT_MAX, 0x123456, 0);
    EXPECT_EQ(pixelsOf(surface), pixelsOf(plain(4, 3, 0xFF123456)));
}

TEST(ScriptPictures, CountWhatTheyHoldAndGiveItBack) {
    constexpr std::size_t kEntry = 256;
    ScriptPictures pictures(3 * kEntry + 400);
    const auto sprite = std::make_shared<const SpriteImage>(plain(5, 10, 0));  // 200 bytes
    const std::uintptr_t first = pictures.addSprite(sprite);
    EXPECT_EQ(first, 0x10000000U);
    EXPECT_EQ(pictures.addSprite(sprite), first + 1) << "pixels of one picture count once";
    const std::uintptr_t screen = pictures.addScreen(5, 10);
    EXPECT_EQ(screen, 0x18000000U);
    EXPECT_EQ(pictures.addScreen(1, 1), 0U) << "full";
    EXPECT_TRUE(pictures.free(first));
    EXPECT_FALSE(pictures.free(first));
    EXPECT_EQ(pictures.sprite(first), nullptr);
    EXPECT_EQ(pictures.sprite(first + 1), sprite);
    EXPECT_TRUE(pictures.free(screen));
    EXPECT_EQ(pictures.addScreen(5, 10), screen + 1) << "a handle never comes again";
    EXPECT_TRUE(pictures.free(first + 1));
    EXPECT_NE(pictures.addScreen(10, 10), 0U) << "what the sprites had is free";
}

TEST(ScriptPictures, AScreenShowsWhatWasWrittenLast) {
    ScriptScreen screen;
    for (int i = 0; i < 300; ++i) screen.write({i, 0, 0, "line"});
    EXPECT_EQ(screen.text.size(), ScriptScreen::kMostTexts);
    EXPECT_EQ(screen.text.back().x, 299);
}

}  // namespace
}  // namespace port
