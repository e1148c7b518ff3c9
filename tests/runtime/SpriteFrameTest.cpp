#include <gtest/gtest.h>

#include "Renderer.hpp"
#include "SpritePixels.hpp"

namespace port {
namespace {

using test::Argb;
using test::picture;
using test::pixelOf;

constexpr Argb kBack = 0xFF18181E, kBox = 0xFF00FF50, kAttack = 0xFFFF3C3C;
constexpr Argb kLeft = 0xFF0000AA, kRight = 0xFF0000BB;

struct SpriteFrameTest : testing::Test {
    Renderer renderer;
    RuntimeConfig config;
    generated::Frame frame{};
    SpriteImage sprite = picture(4, {kLeft, kLeft, kRight, kRight});

    void SetUp() override {
        config.logicalWidth = 40;
        config.logicalHeight = 30;
        config.showBBox = config.showAttackBox = false;
        ASSERT_TRUE(renderer.initialize(config));
        frame.offsetX = 1;
    }
    Argb at(int x, int y) const { return pixelOf(renderer.canvas(), x, y); }
    void draw(bool flip, int alphaMode = 0) {
        renderer.beginFrame();
        renderer.drawFrame(sprite, frame, 20, 10, config, flip, alphaMode);
    }
};

TEST_F(SpriteFrameTest, TheOffsetLiesOnTheOrigin) {
    draw(false);
    EXPECT_EQ(at(18, 10), kBack);
    EXPECT_EQ(at(19, 10), kLeft);
    EXPECT_EQ(at(22, 10), kRight);
    // Mirrored, the anchor is 4 - 1 = 3 from the left edge.
    draw(true);
    EXPECT_EQ(at(17, 10), kRight);
    EXPECT_EQ(at(20, 10), kLeft);
    EXPECT_EQ(at(21, 10), kBack);
    frame.offsetX = std::numeric_limits<int>::min();
    draw(false);
    EXPECT_EQ(at(19, 10), kBack) << "far away is nowhere";
}

TEST_F(SpriteFrameTest, TheFramesAlphaModeGoesBeforeTheModels) {
    // Average with blue 30: (170 + 30) / 2 = 100, the others 24 / 2 = 12.
    draw(false, 6);
    EXPECT_EQ(at(19, 10), 0xFF0C0C64);
    frame.draw.alphaMode = 5;  // 30*255/85 = 90; 24*255/255 = 24
    draw(false, 6);
    EXPECT_EQ(at(19, 10), 0xFF18185A);
    frame.draw.alphaMode = 7;
    draw(false, 6);
    EXPECT_EQ(at(19, 10), 0xFF0C0C64) << "no mode at all";
}

TEST_F(SpriteFrameTest, BoxesAreOutlinedWhateverTheDrawMethod) {
    config.showBBox = config.showAttackBox = true;
    draw(false);
    EXPECT_EQ(at(20, 12), kBack) << "only boxes that the frame has";
    frame.hasBBox = frame.hasAttack = true;
    frame.bbox = {1, 2, 5, 6};
    frame.attack.x = 2;
    frame.attack.y = 3;
    frame.attack.w = frame.attack.h = 1;
    frame.draw = {true, 3.0F, 1.0F, true, false, 0.0F, 0, 0, 0, 0, 0, 0, false};
    draw(false);  // from (19, 10): box 20..24 by 12..17, attack (21, 13)
    for (const auto& [x, y] : {std::pair(20, 12), {24, 12}, {20, 17}, {24, 17}}) {
        EXPECT_EQ(at(x, y), kBox) << x << ", " << y;
    }
    EXPECT_EQ(at(25, 12), kBack);
    EXPECT_EQ(at(22, 14), kBack) << "an outline alone";
    EXPECT_EQ(at(21, 13), kAttack);
    draw(true);  // from (20 - 3, 10): box at 4 - 1 - 5 = -2, so 15..19; attack at 4 - 2 - 1 = 1
    EXPECT_EQ(at(15, 12), kBox);
    EXPECT_EQ(at(19, 17), kBox);
    EXPECT_EQ(at(14, 12), kBack);
    EXPECT_EQ(at(18, 13), kAttack);
    config.showBBox = config.showAttackBox = false;
    draw(true);
    EXPECT_EQ(at(15, 12), kBack);
}

}  // namespace
}  // namespace port
