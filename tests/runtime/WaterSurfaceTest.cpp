#include "WaterSurface.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "SpriteBlit.hpp"

namespace port {
namespace {

constexpr double kPi = 3.14159265358979323846;

SpriteImage picture(int width, int height) {
    SpriteImage image{width, height, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (const int byte : {x, y, 0, 255}) {
                image.bgra.push_back(static_cast<std::uint8_t>(byte));
            }
        }
    }
    return image;
}

// The whole surface, pixel by pixel.
SpriteImage surfaceOf(const SpriteImage& source, int warp, int rock, int tick) {
    const int w = source.width;
    const double time = tick / 60.0;
    SpriteImage image = source;
    for (int y = 0; y < source.height; ++y) {
        const double t = source.height > 1 ? static_cast<double>(y) / (source.height - 1) : 1;
        const long shift = std::lround(std::sin(time * warp * 1.65 + y * 2 * kPi / 24) * 5);
        for (int x = 0; x < w; ++x) {
            double column = x;
            if (rock == 0) column = static_cast<double>(x - shift);
            if (rock == 1) {
                const double scale = 0.76 + 0.42 * t;
                column = std::floor((x - w * 0.5) / scale + w * 0.5 + time * warp * 2);
            }
            const int from = static_cast<int>(column - std::floor(column / w) * w);
            for (std::size_t c = 0; c < kPixelBytes; ++c) {
                image.bgra[pixelOffset(image, x, y) + c] =
                    source.bgra[pixelOffset(source, from, y) + c];
            }
        }
    }
    return image;
}

TEST(WaterSurface, IsTheMovedPictureSideBySide) {
    const SpriteImage blank = picture(300, 60);
    for (const auto& [width, height] : {std::pair{37, 30}, {200, 80}, {256, 1}, {1, 9}}) {
        const SpriteImage source = picture(width, height);
        for (const int rock : {0, 1, 2}) {
            for (const int x : {3 - width, -5 * width - 1, 11}) {
                for (const auto& [warp, tick] : {std::pair{0, 99}, {3, 100}, {15, 1234}}) {
                    SpriteImage expected = blank;
                    const SpriteImage moved = surfaceOf(source, warp, rock, tick);
                    for (int at = x; at < expected.width; at += width) {
                        drawImage(expected, moved, at, 20);
                    }
                    SpriteImage drawn = blank;
                    drawWater(drawn, source,
                              legacyWaterSurface(warp, rock, static_cast<std::uint64_t>(tick)), x,
                              20);
                    EXPECT_EQ(drawn.bgra, expected.bgra)
                        << width << " rock " << rock << " x " << x << " warp " << warp;
                }
            }
        }
    }
}

TEST(WaterSurface, HasBoundsWhateverTheNumbers) {
    const WaterSurface fastest = legacyWaterSurface(15, 1, 7);
    EXPECT_EQ(legacyWaterSurface(INT32_MIN, 1, 7), fastest);
    const SpriteImage source = picture(7, 5);
    SpriteImage canvas = picture(40, 10);
    const auto before = canvas.bgra;
    drawWater(canvas, source, fastest, 40, 0);
    drawWater(canvas, source, fastest, INT64_MAX, 0);
    drawWater(canvas, source, fastest, 0, 10);
    drawWater(canvas, source, fastest, 0, -5);
    drawWater(canvas, {}, fastest, 0, 0);
    EXPECT_EQ(canvas.bgra, before) << "nothing of it is visible";
    drawWater(canvas, source, legacyWaterSurface(15, 1, UINT64_MAX), -(std::int64_t{1} << 40), 3);
    EXPECT_NE(canvas.bgra, before);
}

}  // namespace
}  // namespace port
