#include <gtest/gtest.h>

#include "SpriteCompositor.hpp"
#include "SpritePixels.hpp"

namespace port {
namespace {

using test::Argb;
using test::pixelsOf;
using test::plain;

Argb blended(int mode, Argb sprite, Argb canvas) {
    SpriteImage target = plain(1, 1, canvas);
    drawImageBlend(target, plain(1, 1, sprite), 0, 0, mode);
    return test::pixelOf(target, 0, 0);
}

TEST(Compositor, EachModeOnAnOpaquePixel) {
    // Red 200, green 100, blue 30 over red 50, green 180, blue 128; the sum is 330, the light 110.
    constexpr Argb kSprite = 0xFFC8641E;
    constexpr Argb kCanvas = 0xFF32B480;
    // Weight 255 * 110 / 255 = 110: (200*110 + 50*145) / 255 = 114, (100*110 + 180*145) / 255 =
    // 145, (30*110 + 128*145) / 255 = 85.
    EXPECT_EQ(blended(1, kSprite, kCanvas), 0xFF729155);
    // Weight 145: (200*145 + 50*110) / 255 = 135, (100*145 + 180*110) / 255 = 134,
    // (30*145 + 128*110) / 255 = 72.
    EXPECT_EQ(blended(2, kSprite, kCanvas), 0xFF878648);
    // d 50: 2*200*50/255 = 78; d 180: 255 - 2*155*75/255 = 164; d 128: 255 - 2*225*127/255 = 31.
    EXPECT_EQ(blended(3, kSprite, kCanvas), 0xFF4EA41F);
    // s 200: 255 - 2*55*205/255 = 167; s 100: 2*100*180/255 = 141; s 30: 2*30*128/255 = 30.
    EXPECT_EQ(blended(4, kSprite, kCanvas), 0xFFA78D1E);
    // 50*255/55 = 231; 180*255/155 = 296, so 255; 128*255/225 = 145.
    EXPECT_EQ(blended(5, kSprite, kCanvas), 0xFFE7FF91);
    EXPECT_EQ(blended(5, 0xFFFF0000, 0xFF000000), 0xFFFF0000) << "a source of 255 gives 255";
    // 250/2, 280/2, 158/2
    EXPECT_EQ(blended(6, kSprite, kCanvas), 0xFF7D8C4F);
}

TEST(Compositor, AlphaWeighsTheUnpremultipliedColour) {
    // Alpha 128, blue 64: 64*255/128 = 127; (127 + 100) / 2 = 113; (113*128 + 100*127) / 255 = 106.
    // The others: (0 + 100) / 2 = 50; (50*128 + 100*127) / 255 = 74.
    EXPECT_EQ(blended(6, 0x80000040, 0xFF646464), 0xFF4A4A6A);
    // Light 127/3 = 42, weight 128*42/255 = 21: (127*21 + 100*234) / 255 = 102, 100*234/255 = 91.
    EXPECT_EQ(blended(1, 0x80000040, 0xFF646464), 0xFF5B5B66);
    // A channel above its alpha counts as 255: (255 + 100) / 2 = 177; (177*16 + 100*239) / 255.
    EXPECT_EQ(blended(6, 0x100000FF, 0xFF646464), 0xFF606068);
    EXPECT_EQ(blended(1, 0x00FFFFFF, 0xFF646464), 0xFF646464) << "alpha 0 draws nothing";
}

TEST(Compositor, OtherModesDrawSourceOver) {
    for (const int mode : {-1, 0, 7, 100}) {
        // 64 + 100*127/255 = 113
        EXPECT_EQ(blended(mode, 0x80404040, 0xFF646464), 0xFF717171) << mode;
    }
}

TEST(Compositor, CutsAtTheEdges) {
    for (int mode = 1; mode <= 6; ++mode) {
        SpriteImage canvas = plain(3, 2, 0xFF646464);
        drawOpenBORBlend(canvas, plain(2, 2, 0xFFFFFFFF), -1, -1, mode);
        drawOpenBORBlend(canvas, plain(2, 2, 0xFFFFFFFF), 2, 1, mode);
        const Argb lit = blended(mode, 0xFFFFFFFF, 0xFF646464);
        const Argb back = 0xFF646464;
        EXPECT_EQ(pixelsOf(canvas), (std::vector<Argb>{lit, back, back, back, back, lit})) << mode;
    }
}

}  // namespace
}  // namespace port
