#include "analysis/SpritePreview.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace tindrel {
namespace {

using namespace std::string_literals;

// A picture of one pixel with a palette of two colours.
const std::string kGifHead = "GIF87a\1\0\1\0\x80\0\0"s + "\xFF\0\xFF\0\0\0"s;
const std::string kGifTail = ",\0\0\0\0\1\0\1\0\0\2\2D\1\0;"s;

TEST(SpritePreview, GifWithoutAControlBlockGetsOne) {
    const auto result = withTransparentBackground(kGifHead + kGifTail);
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, "GIF89a" + kGifHead.substr(6) + "!\xF9\4\1\0\0\0\0"s + kGifTail);
}

TEST(SpritePreview, GifControlBlockKeepsItsTiming) {
    const std::string comment = "!\xFE\3abc\2de\0"s;
    const auto result =
        withTransparentBackground(kGifHead + comment + "!\xF9\4\4\x0A\0\7\0"s + kGifTail);
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, kGifHead + comment + "!\xF9\4\5\x0A\0\0\0"s + kGifTail);
}

TEST(SpritePreview, IndexedPngGetsATransparencyChunkBehindItsPalette) {
    const std::string head = "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x08\3\0\0\0cccc"s;
    const std::string palette =
        "\0\0\0\3PLTE\xFF\0\xFF"
        "cccc"s;
    const std::string data = "\0\0\0\1IDATxcccc"s;
    const auto result = withTransparentBackground(head + palette + data);
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, head + palette + "\0\0\0\1tRNS\0\x40\xE6\xD8\x66"s + data);
    EXPECT_FALSE(withTransparentBackground(*result));

    std::string trueColour = head + palette + data;
    trueColour[25] = 2;
    EXPECT_FALSE(withTransparentBackground(trueColour));
}

TEST(SpritePreview, OtherAndBrokenPicturesAreLeftAlone) {
    EXPECT_FALSE(withTransparentBackground(kGifHead + "!\xF9\4\1\0\0\1\0"s + kGifTail));
    EXPECT_FALSE(withTransparentBackground(""));
    EXPECT_FALSE(withTransparentBackground("BM"));
    // Every cut of a picture must end, whatever it yields.
    const std::string gif = kGifHead + "!\xFE\3abc\0"s + "!\xF9\4\4\x0A\0\7\0"s + kGifTail;
    for (std::size_t length = 0; length < 35; ++length) {
        EXPECT_FALSE(withTransparentBackground(gif.substr(0, std::min<std::size_t>(length, 32))))
            << length;
    }
    const std::string png = "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x08\3\0\0\0cccc"s;
    EXPECT_FALSE(withTransparentBackground(png + "\xFF\xFF\xFF\xFFPLTEcccc"s));
}

TEST(SpritePreview, DataUrlPadsItsLastGroup) {
    EXPECT_EQ(dataUrl("GIF89a"), "data:image/gif;base64,R0lGODlh");
    EXPECT_EQ(dataUrl("GIF89a\xFF"), "data:image/gif;base64,R0lGODlh/w==");
    EXPECT_EQ(dataUrl("\x89PNG\r\n\x1A\n"), "data:image/png;base64,iVBORw0KGgo=");
}

TEST(SpritePreview, CropStandsAroundTheFigure) {
    FrameDef frame;
    EXPECT_FALSE(cropOf(frame));
    frame.hasBBox = true;
    frame.bbox = {80, 100, 30, 64};
    frame.offsetX = 95;
    frame.offsetY = 165;
    auto crop = cropOf(frame);
    ASSERT_TRUE(crop);
    EXPECT_EQ(crop->side, 80);
    EXPECT_EQ(crop->x, 55);
    EXPECT_EQ(crop->y, 92);

    // A box that is far from the feet says nothing of the figure.
    frame.bbox = {0, 0, 17, 13};
    crop = cropOf(frame);
    ASSERT_TRUE(crop);
    EXPECT_EQ(crop->side, 144);
    EXPECT_EQ(crop->x, 95 - 72);

    frame.bbox = {INT32_MAX, INT32_MIN, INT32_MAX, INT32_MAX};
    frame.offsetX = INT32_MAX;
    frame.offsetY = INT32_MAX;
    EXPECT_TRUE(cropOf(frame));
}

}  // namespace
}  // namespace tindrel
