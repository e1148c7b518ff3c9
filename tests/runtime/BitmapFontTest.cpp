#include "BitmapFont.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>

#include "PathEncoding.hpp"
#include "SpritePixels.hpp"

namespace port {
namespace {

using test::pixelsOf;
using test::plain;

std::vector<test::Argb> shown(std::string_view text, int size, bool selected = false, int x = 1,
                              int y = 1) {
    SpriteImage canvas = plain(60, 30, 0xFF000000);
    drawBitmapText(canvas, text, x, y, size, selected);
    return pixelsOf(canvas);
}

// Rows of the canvas, '#' for ink.
std::string art(std::string_view text, int size, int width, int top, int rows) {
    SpriteImage canvas = plain(width, 30, 0xFF000000);
    drawBitmapText(canvas, text, 0, 0, size, false);
    std::string result;
    for (int y = top; y < top + rows; ++y) {
        for (int x = 0; x < width; ++x) {
            result += test::pixelOf(canvas, x, y) == 0xFF000000 ? '.' : '#';
        }
        result += '\n';
    }
    return result;
}

TEST(BitmapFont, LettersStandOnALineWithTheirAccents) {
    EXPECT_EQ(art("i\u00E9j", 8, 11, 2, 10),
              "....#......\n"
              "#..#......#\n"
              "...........\n"
              "#..###...##\n"
              "#.#...#...#\n"
              "#.#####...#\n"
              "#.#.......#\n"
              "#..###....#\n"
              "........#.#\n"
              ".........#.\n");
}

TEST(BitmapFont, LettersOfOneKindHaveOneHeight) {
    const auto rows = [](const char* letter) {
        const std::string picture = art(letter, 16, 20, 0, 30);
        return std::pair(picture.find('#') / 21, picture.rfind('#') / 21);
    };
    for (const char* capital : {"\u00C6", "\u00D0", "\u00D8", "\u00DE", "\u00DF", "\u00F0"}) {
        EXPECT_EQ(rows(capital), rows("E")) << capital;
    }
    for (const char* small : {"\u00E6", "\u00F8"}) EXPECT_EQ(rows(small), rows("o")) << small;
    EXPECT_EQ(rows("\u00FE").second, rows("p").second);
}

TEST(BitmapFont, EveryCharacterOfLatin1HasAShapeOfItsOwn) {
    for (const int size : {8, 16}) {
        std::map<std::vector<test::Argb>, int> shapes;
        for (int code = 0x21; code <= 0xFF; ++code) {
            if (code >= 0x7F && code <= 0xA0) continue;
            if (code == 0xAD) continue;  // a soft hyphen is one
            std::string text;
            PathEncoding::appendUtf8(text, static_cast<char32_t>(code));
            const auto pixels = shown(text, size);
            ASSERT_TRUE(std::ranges::any_of(pixels, [](auto p) { return p != 0xFF000000; }))
                << code;
            const auto [other, isNew] = shapes.emplace(pixels, code);
            EXPECT_TRUE(isNew) << code << " looks like " << other->second << " in size " << size;
        }
    }
}

TEST(BitmapFont, ReadsWhatGamesWrite) {
    EXPECT_EQ(shown("caf\xE9", 8), shown("caf\u00E9", 8)) << "Windows-1252";
    EXPECT_EQ(shown("\u201Cx\u201D\u2014", 8), shown("\"x\"-", 8));
    EXPECT_EQ(shown("\u4E2D\U0001F600", 8), shown("??", 8));
    EXPECT_NE(shown("A", 8, true), shown("A", 8));
    EXPECT_EQ(shown("A", -1000000000), shown("A", 6));
}

TEST(BitmapFont, IsCutOffAtTheCanvasAndBelowItsLine) {
    const std::string endless(100'000, 'W');
    EXPECT_EQ(shown(endless, 8), shown(endless.substr(0, 40), 8));
    const auto blank = pixelsOf(plain(60, 30, 0xFF000000));
    for (const int far : {-2'000'000'000, 2'000'000'000}) {
        EXPECT_EQ(shown("W", 16, true, far, 1), blank);
        EXPECT_EQ(shown("W", 16, true, 1, far), blank);
    }
    EXPECT_NE(shown("W", 8, false, -3, -5), blank);
}

}  // namespace
}  // namespace port
