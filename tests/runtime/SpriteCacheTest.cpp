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

TEST_F(SpriteCacheTest, ForgetsWhatWasNotAskedForLongest) {
    SpriteCache small(8192);
    const auto from = [&](const std::string& name) {
        return small.load(renderer, folder.path(), name, nullptr, 0);
    };
    for (const char* name : {"held.png", "old.png", "asked.png"}) {
        folder.write(name, pixelFile("\1\2\3"));
    }
    const SpritePtr held = from("held.png");
    ASSERT_TRUE(held);
    const std::weak_ptr<const SpriteImage> asked = from("asked.png");
    const std::weak_ptr<const SpriteImage> old = from("old.png");
    EXPECT_FALSE(old.expired());
    for (int i = 0; i < 1000; ++i) {
        EXPECT_FALSE(from("missing" + std::to_string(i)));
        EXPECT_TRUE(from("asked.png"));
    }
    EXPECT_TRUE(old.expired()) << "failures count too";
    EXPECT_FALSE(asked.expired());
    folder.write("missing0.png", pixelFile("\1\2\3"));
    folder.write("missing999.png", pixelFile("\1\2\3"));
    EXPECT_FALSE(from("missing999")) << "still remembered";
    EXPECT_TRUE(from("missing0")) << "forgotten";
    std::filesystem::remove(folder.path() / "held.png");
    EXPECT_EQ(from("held.png"), held);
}

TEST_F(SpriteCacheTest, WhatOthersHoldStaysHoweverMuchItIs) {
    SpriteCache none(1);
    std::vector<SpritePtr> held;
    for (int i = 0; i < 50; ++i) {
        const std::string name = std::to_string(i) + ".png";
        folder.write(name, pixelFile("\1\2\3"));
        held.push_back(none.load(renderer, folder.path(), name, nullptr, 0));
        ASSERT_TRUE(held.back());
    }
    for (int i = 0; i < 50; ++i) {
        const std::string name = std::to_string(i) + ".png";
        EXPECT_EQ(none.load(renderer, folder.path(), name, nullptr, 0), held[i]) << i;
    }
    const std::weak_ptr<const SpriteImage> first = held[0];
    held.clear();
    EXPECT_FALSE(none.load(renderer, folder.path(), "missing", nullptr, 0));
    EXPECT_TRUE(first.expired());
}

}  // namespace
}  // namespace port
