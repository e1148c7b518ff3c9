#include "Palette.hpp"

#include <gtest/gtest.h>

#include "ImageBytes.hpp"
#include "ImageDecoder.hpp"
#include "Renderer.hpp"
#include "SpritePixels.hpp"
#include "TempFolder.hpp"

namespace port {
namespace {

using namespace test;
using tindrel::test::TempFolder;
using Colors = std::vector<ColorKey>;
using Pixels = std::vector<Argb>;

TEST(Palette, RemapKeepsAlphaAndMapsOverTheShorterList) {
    // (100*255 + 64) / 128 = 199 and 100*128/255 = 50; 199 is 0xC7.
    SpriteImage sprite = picture(4, {0xFF112233, 0x80640000, 0x00112233, 0xFF445566});
    remapColors({0x112233, 0xC70000, 0x445566}, {0xABCDEF, 0x64C8FF}, sprite);
    // 100*128/255 = 50, 200*128/255 = 100, 255*128/255 = 128
    EXPECT_EQ(pixelsOf(sprite), (Pixels{0xFFABCDEF, 0x80326480, 0x00112233, 0xFF445566}));

    sprite = picture(1, {0xFF000001});
    remapColors({1, 2, 1}, {10, 20, 30}, sprite);
    EXPECT_EQ(pixelsOf(sprite), Pixels{0xFF00001E}) << "the later of two equal colours wins";
}

TEST(Palette, Unpremultiplies) {
    const std::uint8_t clear[] = {9, 9, 9, 0};
    const std::uint8_t half[] = {1, 64, 200, 128};  // 2, (64*255+64)/128 = 128, 255 at most
    EXPECT_EQ(unpremultipliedColor(clear), 0U);
    EXPECT_EQ(unpremultipliedColor(half), 0xFF8002U);
}

struct PaletteFileTest : testing::Test {
    TempFolder folder;
    Renderer renderer;
    Colors colors;

    bool load(const std::string& name, const std::string& content) {
        return loadPaletteColors(renderer, folder.write(name, content), colors);
    }
};

TEST_F(PaletteFileTest, ActFilesHoldTriplesOfRedGreenBlue) {
    EXPECT_TRUE(load("a.ACT", std::string("\1\2\3\4\5\6\7", 7)));
    EXPECT_EQ(colors, (Colors{0x010203, 0x040506}));
    EXPECT_TRUE(load("long.act", std::string(772, '\7')));
    EXPECT_EQ(colors, Colors(256, 0x070707)) << "what follows the 256 triples is no colour";
    EXPECT_FALSE(load("short.act", "ab"));
    EXPECT_FALSE(loadPaletteColors(renderer, folder.path() / "none.act", colors));
}

TEST_F(PaletteFileTest, PicturesGiveTheirPaletteOrElseTheirPixels) {
    if (!canDecodeImages()) GTEST_SKIP() << "nothing here decodes pictures";
    EXPECT_TRUE(load("a.gif", gif(1, 1, {5, 6, 7, 8}, {{0, 0, 1, 1, {1}, {}}})));
    EXPECT_EQ(colors, (Colors{5, 6, 7, 8}));
    // Red 100 at alpha 128 is stored as 50: (50*255 + 64) / 128 = 100. Alpha 0 counts as 0.
    EXPECT_TRUE(load("a.png", png(2, 1, 6, std::string("\0\x64\0\0\x80\1\2\3\0", 9))));
    EXPECT_EQ(colors, (Colors{0x640000, 0}));
    EXPECT_FALSE(load("a.txt", "text"));
}

TEST_F(PaletteFileTest, CharacterPalettesComeFromRemapsThenAlternatives) {
    folder.write("own.act", std::string("\0\0\1", 3));
    folder.write("chars/map.act", std::string("\0\0\2", 3));
    folder.write("other.act", std::string("\0\0\3", 3));
    const generated::PaletteRemap remaps[] = {{"own.act", "chars/map.act"}};
    const char* const alternatives[] = {"chars/map.act", "other.act", "missing.act"};
    generated::Character model{};
    const auto applied = [&](int index) {
        SpriteImage sprite = picture(1, {0xFF000001});
        applyCharacterPalette(renderer, folder.path(), model, index, sprite);
        return pixelOf(sprite, 0, 0) & 0xFFU;
    };
    EXPECT_EQ(applied(1), 1U) << "a model without palettes";
    model.alternatePalettes = alternatives;
    model.alternatePaletteCount = 3;
    EXPECT_EQ(applied(2), 1U) << "no palette to map from";
    model.palettePath = "own.act";
    model.paletteRemaps = remaps;
    model.paletteRemapCount = 1;
    EXPECT_EQ(applied(-1), 1U);
    EXPECT_EQ(applied(0), 1U);
    EXPECT_EQ(applied(1), 2U);
    EXPECT_EQ(applied(2), 3U);
    EXPECT_EQ(applied(3), 1U) << "the target cannot be loaded";
    EXPECT_EQ(applied(4), 1U);
}

}  // namespace
}  // namespace port
