#include "SpriteCache.hpp"

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

// One pixel of red, green and blue.
std::string pixelFile(const char (&rgb)[4]) {
    return png(1, 1, 2, std::string(1, '\0') + rgb);
}

struct SpriteCacheTest : testing::Test {
    TempFolder folder;
    Renderer renderer;
    SpriteCache cache;

    void SetUp() override {
        if (!canDecodeImages()) GTEST_SKIP() << "nothing here decodes pictures";
    }
    SpritePtr load(std::string_view name, const generated::Character* model = nullptr,
                   int mapIndex = 0) {
        return cache.load(renderer, folder.path(), name, model, mapIndex);
    }
};

TEST_F(SpriteCacheTest, AsksTheDiskOnceForGoodAndBad) {
    folder.write("a.png", pixelFile("\1\2\3"));
    folder.write("bad.png", "no picture");
    const SpritePtr first = load("data/a");
    ASSERT_TRUE(first);
    EXPECT_EQ(pixelOf(*first, 0, 0), 0xFF010203);
    EXPECT_FALSE(load("bad.png"));
    EXPECT_FALSE(load("late.png"));

    std::filesystem::remove(folder.path() / "a.png");
    folder.write("bad.png", pixelFile("\1\1\1"));
    folder.write("late.png", pixelFile("\1\1\1"));
    EXPECT_EQ(load("data/a"), first);
    EXPECT_FALSE(load("bad.png"));
    EXPECT_FALSE(load("late.png"));

    cache.clear();
    EXPECT_FALSE(load("data/a"));
    EXPECT_TRUE(load("bad.png"));
    EXPECT_EQ(pixelOf(*first, 0, 0), 0xFF010203) << "what is held outlives the cache's memory";
}

TEST_F(SpriteCacheTest, NoneIsNoPicture) {
    folder.write("none.png", pixelFile("\1\2\3"));
    EXPECT_FALSE(load(""));
    EXPECT_FALSE(load("NoNe"));
    EXPECT_FALSE(load("../none.png"));
    EXPECT_TRUE(load("none.png"));
}

TEST_F(SpriteCacheTest, PalettesMakeSpritesOfTheirOwn) {
    folder.write("a.png", pixelFile("\1\2\3"));
    folder.write("own.act", "\1\2\3");
    folder.write("Pal/Map.ACT", "\4\5\6");
    const char* const palettes[] = {"data\\pal/map.act"};
    generated::Character model{};
    model.palettePath = "own.act";
    model.alternatePalettes = palettes;
    model.alternatePaletteCount = 1;
    const SpritePtr own = load("a.png");
    const SpritePtr mapped = load("a.png", &model, 1);
    ASSERT_TRUE(own && mapped);
    EXPECT_EQ(pixelOf(*mapped, 0, 0), 0xFF040506) << "palette files are found in any case";
    EXPECT_EQ(pixelOf(*own, 0, 0), 0xFF010203);
    EXPECT_EQ(load("a.png", &model, 1), mapped);
    EXPECT_EQ(load("a.png", nullptr, 1), own);
    EXPECT_EQ(load("a.png", &model, 0), own);
    EXPECT_EQ(load("a.png", &model, 2), own) << "the model has no second palette";
}

TEST_F(SpriteCacheTest, ForgetsWhatNobodyHolds) {
    SpriteCache small(2048);
    const auto from = [&](const std::string& name) {
        return small.load(renderer, folder.path(), name, nullptr, 0);
    };
    folder.write("held.png", pixelFile("\1\2\3"));
    folder.write("free.png", pixelFile("\1\2\3"));
    const SpritePtr held = from("held.png");
    ASSERT_TRUE(held);
    const std::weak_ptr<const SpriteImage> free = from("free.png");
    EXPECT_FALSE(free.expired());
    for (int i = 0; i < 100; ++i) EXPECT_FALSE(from("missing" + std::to_string(i)));
    EXPECT_TRUE(free.expired()) << "failures count too";
    std::filesystem::remove(folder.path() / "held.png");
    EXPECT_EQ(from("held.png"), held);
}

}  // namespace
}  // namespace port
