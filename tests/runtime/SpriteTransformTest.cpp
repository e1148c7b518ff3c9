#include "SpriteTransform.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "SpriteBlit.hpp"
#include "SpritePixels.hpp"

namespace port {
namespace {

using test::Argb;
using test::picture;
using test::pixelsOf;
using test::plain;
using Pixels = std::vector<Argb>;

constexpr Argb kA = 0xFF0000AA, kB = 0xFF0000BB, kC = 0xFF0000CC, kD = 0xFF0000DD;

generated::DrawMethod method() {
    generated::DrawMethod draw{};
    draw.enabled = true;
    draw.scaleX = draw.scaleY = 1.0F;
    return draw;
}

Pixels transformed(const SpriteImage& source, const generated::DrawMethod& draw,
                   bool flip = false) {
    return pixelsOf(transformOpenBORSprite(source, draw, flip));
}

TEST(SpriteTransform, FlipsCancelEachOther) {
    const SpriteImage source = picture(2, {kA, kB, kC, kD});
    const Pixels same = {kA, kB, kC, kD};
    const Pixels mirrored = {kB, kA, kD, kC};
    for (const bool entity : {false, true}) {
        for (const bool flipX : {false, true}) {
            for (const float scale : {1.0F, -1.0F}) {
                generated::DrawMethod draw = method();
                draw.flipX = flipX;
                draw.scaleX = scale;
                EXPECT_EQ(transformed(source, draw, entity),
                          (entity != flipX) != (scale < 0) ? mirrored : same)
                    << entity << flipX << scale;
            }
        }
    }
    generated::DrawMethod draw = method();
    draw.flipY = true;
    EXPECT_EQ(transformed(source, draw), (Pixels{kC, kD, kA, kB}));
    draw.scaleY = -1.0F;
    EXPECT_EQ(transformed(source, draw), same);
    draw.enabled = false;
    EXPECT_EQ(transformed(source, draw, true), mirrored) << "the entity's own flip remains";
}

TEST(SpriteTransform, ScalesToTheNearestPixelAndNeverToNothing) {
    const SpriteImage source = picture(2, {kA, kB});
    generated::DrawMethod draw = method();
    draw.scaleX = 1.5F;  // 3 wide; columns 0/1.5, 1/1.5, 2/1.5 = 0, 0, 1
    draw.scaleY = 2.0F;
    EXPECT_EQ(transformed(source, draw), (Pixels{kA, kA, kB, kA, kA, kB}));
    draw.scaleX = 0.0F;  // 0.01
    draw.scaleY = 0.4F;
    EXPECT_EQ(transformed(source, draw), Pixels{kA});
    draw.scaleX = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(transformed(source, draw), Pixels{kA});
    draw.scaleX = draw.scaleY = 1e6F;
    EXPECT_TRUE(transformOpenBORSprite(source, draw, false).bgra.empty());
    EXPECT_TRUE(transformOpenBORSprite({}, method(), false).bgra.empty());

    // However large the result, drawing it costs only what is seen of it.
    SpriteImage canvas = plain(2, 1, 0xFF000000);
    const SpriteTransform huge(2, 1, draw, false);
    drawTransformed(canvas, source, huge, 1 - huge.width() / 2, 0, 0);
    EXPECT_EQ(pixelsOf(canvas), (Pixels{kA, kB}));
}

TEST(SpriteTransform, ShearMovesRowsAboutTheMiddle) {
    const SpriteImage source = picture(2, {kA, kB, kC, kD, kA, kB, kC, kD});
    generated::DrawMethod draw = method();
    draw.shiftX = 0.5F;  // offsets 0.5 * (y - 2) = -1, -0.5, 0, 0.5
    // Row 0 reads columns 1, 2; row 1 0.5, 1.5; row 3 -0.5, 0.5.
    EXPECT_EQ(transformed(source, draw), (Pixels{kB, 0, kC, kD, kA, kB, 0, kC}));
}

TEST(SpriteTransform, FillThenTintOnPremultipliedColours) {
    const SpriteImage source = picture(3, {0xFF102030, 0x80402010, 0x00000000});
    generated::DrawMethod draw = method();
    draw.fillColor = 255;
    EXPECT_EQ(transformed(source, draw), pixelsOf(source)) << "255 or less is no fill";
    draw.fillColor = 0xFF8000;  // at alpha 128: 255*128/255 = 128, 128*128/255 = 64
    EXPECT_EQ(transformed(source, draw), (Pixels{0xFFFF8000, 0x80804000, 0}));
    draw.tintMode = 6;
    draw.tintColor = 0x0000FF;  // (255+0)/2, (128+0)/2, (0+255)/2; 64, 32, 127
    EXPECT_EQ(transformed(source, draw), (Pixels{0xFF7F407F, 0x8040207F, 0}));
    draw.tintMode = 7;
    EXPECT_EQ(transformed(source, draw), (Pixels{0xFFFF8000, 0x80804000, 0}));
}

TEST(SpriteTransform, TintChannels) {
    EXPECT_EQ(blendTintChannel(1, 100, 50), 131);   // 255 - 155*205/255 = 255 - 124
    EXPECT_EQ(blendTintChannel(2, 100, 50), 19);    // 5000/255
    EXPECT_EQ(blendTintChannel(3, 200, 100), 156);  // s below 128: 2*100*200/255
    EXPECT_EQ(blendTintChannel(3, 100, 200), 189);  // 255 - 2*55*155/255 = 255 - 66
    EXPECT_EQ(blendTintChannel(4, 200, 100), 189);  // t from 128: the same sum
    EXPECT_EQ(blendTintChannel(4, 100, 200), 156);
    EXPECT_EQ(blendTintChannel(5, 56, 100), 128);   // 100*256/200
    EXPECT_EQ(blendTintChannel(5, 255, 100), 255);  // 25600/1
    EXPECT_EQ(blendTintChannel(6, 300, -5), 127);   // limited to 255 and 0
    EXPECT_EQ(blendTintChannel(0, 9, 77), 77);
}

TEST(SpriteTransform, RightAnglesTurnClockwiseAndExactly) {
    const SpriteImage source = picture(3, {kA, kB, kC});
    generated::DrawMethod draw = method();
    draw.rotate = 90;
    SpriteImage turned = transformOpenBORSprite(source, draw, false);
    EXPECT_EQ(turned.width, 1);
    EXPECT_EQ(pixelsOf(turned), (Pixels{kA, kB, kC}));
    draw.rotate = 180;
    EXPECT_EQ(transformed(source, draw), (Pixels{kC, kB, kA}));
    // Mirrored to C B A, then by 360 - 90 degrees: the right end comes to the top.
    draw.rotate = 90;
    EXPECT_EQ(transformed(source, draw, true), (Pixels{kC, kB, kA}));
    draw.flipRotate = true;
    EXPECT_EQ(transformed(source, draw, true), (Pixels{kA, kB, kC}));
    EXPECT_EQ(transformed(source, draw, false), (Pixels{kA, kB, kC})) << "only of a flipped entity";
}

TEST(SpriteTransform, OtherAnglesFillTheirBoundingBox) {
    generated::DrawMethod draw = method();
    draw.rotate = 45;
    // ceil(4 * 0.7071 + 2 * 0.7071) = ceil(4.243) = 5 either way
    const SpriteImage turned = transformOpenBORSprite(plain(4, 2, kA), draw, false);
    EXPECT_EQ(turned.width, 5);
    EXPECT_EQ(turned.height, 5);
    EXPECT_EQ(test::pixelOf(turned, 2, 2), kA);
    EXPECT_EQ(test::pixelOf(turned, 1, 1), kA) << "down to the right lies the long side";
    EXPECT_EQ(test::pixelOf(turned, 4, 0), 0U);
}

TEST(SpriteTransform, TheAnchorGoesTheSameWay) {
    const SpriteImage source = plain(10, 20, kA);
    generated::Frame frame{};
    frame.draw = method();
    frame.offsetX = 2;
    frame.offsetY = 15;
    const auto at = [&](bool flip) {
        const SpriteAnchor anchor = transformedOpenBORAnchor(source, frame, flip);
        return std::pair(anchor.x, anchor.y);
    };
    EXPECT_EQ(at(false), (std::pair<std::int64_t, std::int64_t>(2, 15)));
    EXPECT_EQ(at(true), (std::pair<std::int64_t, std::int64_t>(8, 15)));  // 10 - 2
    frame.draw.scaleX = -2.0F;
    frame.draw.scaleY = 0.5F;
    EXPECT_EQ(at(false), (std::pair<std::int64_t, std::int64_t>(16, 8)));  // 20 - 4, 7.5 rounded
    frame.draw = method();
    frame.draw.shiftX = 0.5F;
    EXPECT_EQ(at(false), (std::pair<std::int64_t, std::int64_t>(5, 15)));  // 2 + 0.5 * (15 - 10)
    frame.draw = method();
    frame.draw.rotate = 90;  // (2 - 4.5, 15 - 9.5) = (-2.5, 5.5) turns to (-5.5, -2.5)
    EXPECT_EQ(at(false), (std::pair<std::int64_t, std::int64_t>(4, 2)));  // + 9.5, + 4.5
}

TEST(SpriteTransform, DrawingInRunsEqualsDrawingTheWhole) {
    SpriteImage source = plain(300, 40, 0);
    for (std::size_t i = 0; i < source.bgra.size(); ++i) {
        source.bgra[i] = static_cast<std::uint8_t>(i % 4 == 3 ? 255 : i * 7);
    }
    generated::DrawMethod draw = method();
    draw.scaleX = 2.3F;
    draw.scaleY = -1.7F;
    draw.shiftX = 0.4F;
    draw.tintMode = 1;
    draw.tintColor = 0x204060;
    for (const int angle : {0, 30}) {
        draw.rotate = angle;
        SpriteImage whole = plain(700, 60, 0xFF303030);
        SpriteImage runs = whole;
        drawImage(whole, transformOpenBORSprite(source, draw, true), -11, -7);
        drawTransformed(runs, source, SpriteTransform(300, 40, draw, true), -11, -7, 0);
        EXPECT_EQ(whole.bgra, runs.bgra) << angle;
    }
}

TEST(SpriteTransform, WhatIsOnlyMirroredIsDrawnAsItsMirrorImage) {
    SpriteImage source = plain(37, 3, 0);
    for (std::size_t i = 0; i < source.bgra.size(); i += kPixelBytes) {
        const std::size_t alpha = i / 40 % 3 * 127;  // runs of clear, translucent and nearly opaque
        for (std::size_t c = 0; c < kPixelBytes; ++c) {
            source.bgra[i + c] = static_cast<std::uint8_t>(c == 3 ? alpha : i * 7 % (alpha + 1));
        }
    }
    const SpriteImage mirrored = transformOpenBORSprite(source, method(), true);
    for (int x = -40; x < 60; ++x) {
        SpriteImage expected = plain(50, 4, 0xFF303030);
        SpriteImage drawn = expected;
        drawImage(expected, mirrored, x, 2);
        drawTransformed(drawn, source, SpriteTransform(37, 3, method(), true), x, 2, 0);
        EXPECT_EQ(drawn.bgra, expected.bgra) << x;
    }
}

}  // namespace
}  // namespace port
