#include <gtest/gtest.h>

#include "ImageBytes.hpp"
#include "ImageDecoder.hpp"
#include "SpriteLoading.hpp"
#include "SpritePixels.hpp"
#include "TempFolder.hpp"

namespace port {
namespace {

using namespace test;
using tindrel::test::TempFolder;
using Pixels = std::vector<Argb>;

constexpr std::uint32_t kMagenta = 0xFF00FF, kGreen = 0x00C000, kBlue = 0x0000FF;
const std::vector<std::uint32_t> kColors = {kMagenta, kGreen, kMagenta, kBlue};
constexpr Argb kOpaque = 0xFF000000;

struct ImageLoadingTest : testing::Test {
    TempFolder folder;
    SpriteImage image;
    std::string error;

    void SetUp() override {
        if (!canDecodeImages()) GTEST_SKIP() << "nothing here decodes pictures";
    }
    bool load(const std::string& file, bool index0 = true) {
        return loadSprite(folder.write("picture", file), index0, image, error);
    }
    // The pixels, or none when the file is refused.
    Pixels pixels(const std::string& file, bool index0 = true) {
        return load(file, index0) ? pixelsOf(image) : Pixels{};
    }
    std::vector<ColorKey> palette(const std::string& file) {
        std::vector<ColorKey> colors;
        return loadPalette(folder.write("picture", file), colors, error) ? colors
                                                                         : std::vector<ColorKey>{};
    }
};

TEST_F(ImageLoadingTest, EntryZeroIsTransparentByColourAndNotByIndex) {
    const std::string file = gif(2, 2, kColors, {{0, 0, 2, 2, {0, 1, 2, 3}, {}}});
    EXPECT_EQ(pixels(file), (Pixels{0, kOpaque | kGreen, 0, kOpaque | kBlue}));
    EXPECT_EQ(pixels(file, false),
              (Pixels{kOpaque | kMagenta, kOpaque | kGreen, kOpaque | kMagenta, kOpaque | kBlue}));
    EXPECT_EQ(palette(file), kColors);
}

TEST_F(ImageLoadingTest, GifsOfEveryMake) {
    const std::vector<std::uint32_t> local = {1, 2, 3, 4};
    EXPECT_EQ(palette(gif(1, 1, {}, {{0, 0, 1, 1, {1}, local}})), local) << "no global palette";
    EXPECT_EQ(pixels(gif(1, 1, kColors, {{0, 0, 1, 1, {1}, local}})), Pixels{kOpaque | 2U})
        << "the local palette goes before";
    EXPECT_EQ(pixels(gif(1, 1, {}, {{0, 0, 1, 1, {1}, {}}})), Pixels{});
    EXPECT_EQ(error, "GIF frame 1 at byte 13 has no palette");

    GifFrame seen{0, 0, 2, 1, {1, 3}, {}};
    seen.transparent = 3;
    EXPECT_EQ(pixels(gif(2, 1, kColors, {seen}), false), (Pixels{kOpaque | kGreen, 0}));
    EXPECT_EQ(palette(gif(2, 1, kColors, {seen})), kColors) << "with its transparent entry";

    // Rows are stored as 0, 8 / 4 / 2, 6 / 1, 3, 5, 7.
    GifFrame woven{0, 0, 1, 9, {0, 1, 2, 3, 0, 1, 2, 3, 0}, local};
    woven.interlaced = true;
    EXPECT_EQ(pixels(gif(1, 9, {}, {woven}), false),
              (Pixels{kOpaque | 1U, kOpaque | 2U, kOpaque | 4U, kOpaque | 3U, kOpaque | 3U,
                      kOpaque | 4U, kOpaque | 1U, kOpaque | 1U, kOpaque | 2U}));
}

TEST_F(ImageLoadingTest, PngsKeepTheirAlphaAndTheirPalette) {
    // Alpha 128: 200*128/255 = 100, 100*128/255 = 50, 50*128/255 = 25.
    const std::string rgba = std::string("\0\xC8\x64\x32\x80\x01\x02\x03\0", 9);
    EXPECT_EQ(pixels(png(2, 1, 6, rgba)), (Pixels{0x80643219, 0}));
    EXPECT_EQ(palette(png(2, 1, 6, rgba)), std::vector<ColorKey>{});
    EXPECT_EQ(error, "") << "a picture without a palette is no fault";

    const std::string indexed =
        png(3, 1, 3, std::string("\0\0\1\2", 4), colorTable({kBlue, kGreen, 0xC86432}),
            std::string("\xFF\xFF\x80", 3));
    EXPECT_EQ(pixels(indexed), (Pixels{0, kOpaque | kGreen, 0x80643219}));
    EXPECT_EQ(palette(indexed), (std::vector<ColorKey>{kBlue, kGreen, 0xC86432}));
    EXPECT_EQ(pixels(png(1, 1, 0, std::string("\0\x40", 2))), Pixels{0xFF404040});
}

TEST_F(ImageLoadingTest, BmpsOfEveryDepth) {
    const std::string blueGreenRed("\xFF\0\0\0\0\xFF\0\0\0\0\xFF\0", 12);
    const std::vector<ColorKey> stored = {0x0000FF, 0x00FF00, 0xFF0000};
    const Argb blue = kOpaque | 0x0000FFU, green = kOpaque | 0x00FF00U, red = kOpaque | 0xFF0000U;
    // Rows are stored from the bottom and padded to four bytes.
    const std::string eight = bmp(2, 2, 8, std::string("\2\1\0\0\1\0\0\0", 8), blueGreenRed);
    EXPECT_EQ(pixels(eight, false), (Pixels{green, blue, red, green}));
    EXPECT_EQ(pixels(eight), (Pixels{green, 0, red, green}));
    EXPECT_EQ(palette(eight), stored);
    EXPECT_EQ(pixels(bmp(3, 1, 4, std::string("\x12\0\0\0", 4), blueGreenRed), false),
              (Pixels{green, red, blue}));
    EXPECT_EQ(pixels(bmp(2, 1, 1, std::string("\x40\0\0\0", 4), blueGreenRed.substr(0, 8)), false),
              (Pixels{blue, green}));
    EXPECT_EQ(pixels(bmp(1, -2, 24, std::string("\1\2\3\0\4\5\6\0", 8))),
              (Pixels{0xFF030201, 0xFF060504}));
    EXPECT_EQ(pixels(bmp(1, 1, 32, std::string("\1\2\3\0", 4))), Pixels{0xFF030201});
    // 0x7C1F: red 31, green 0, blue 31
    EXPECT_EQ(pixels(bmp(1, 1, 16, std::string("\x1F\x7C\0\0", 4))), Pixels{0xFFFF00FF});
    // A run of two, the row's end, two single ones padded to a word are three: 0, then 3 codes.
    const std::string runs("\2\1\0\0\0\3\2\1\2\0\0\1", 12);
    EXPECT_EQ(pixels(bmp(3, 2, 8, runs, blueGreenRed, 1), false),
              (Pixels{red, green, red, green, green, blue}));
}

TEST_F(ImageLoadingTest, PcxsOfOneAndThreePlanes) {
    // A run of two, then 0xC1 0xFF for a pixel that looks like a run; a byte of padding.
    const std::string indexed =
        pcx(3, 1, 1, 4, std::string("\xC2\1\xC1\xFF\0", 5), colorTable({kBlue, kGreen}));
    EXPECT_EQ(pixels(indexed), (Pixels{kOpaque | kGreen, kOpaque | kGreen, kOpaque}));
    EXPECT_EQ(palette(indexed).size(), 256U);
    EXPECT_EQ(pixels(pcx(2, 1, 3, 2, std::string("\1\2\3\4\5\6", 6))),
              (Pixels{0xFF010305, 0xFF020406}));
}

TEST_F(ImageLoadingTest, EveryCutOfEveryFileIsRefusedWithAMessage) {
    const std::string files[] = {
        gif(2, 2, kColors, {{0, 0, 2, 2, {0, 1, 2, 3}, {}}}),
        png(1, 1, 6, std::string("\0\xC8\x64\x32\x80", 5)),
        bmp(2, 2, 8, std::string("\2\1\0\0\1\0", 6), std::string(12, '\1')),
        bmp(3, 2, 8, std::string("\2\1\0\0\0\3\2\1\2\0", 10), std::string(12, '\1'), 1),
        pcx(3, 1, 1, 4, std::string("\xC2\1\xC1\xFF\0", 5), colorTable({kBlue, kGreen})),
    };
    for (const std::string& file : files) {
        // A GIF or PNG may lack its last marks: the picture is there by then.
        const std::size_t marks = file[0] == 'G' ? 4 : file[0] == '\x89' ? 20 : 0;
        const std::size_t last = file.size() - marks;
        ASSERT_TRUE(load(file)) << error;
        for (std::size_t size = 0; size < last; ++size) {
            ASSERT_FALSE(load(file.substr(0, size))) << file[0] << " cut to " << size;
            ASSERT_NE(error, "") << file[0] << " cut to " << size;
        }
    }
    EXPECT_FALSE(loadSprite(folder.path() / "missing.gif", true, image, error));
    EXPECT_EQ(error, "");
    EXPECT_FALSE(loadSprite(folder.path(), true, image, error));
    EXPECT_FALSE(load("no picture"));
    EXPECT_EQ(error, "picture format 0x70206f6e at byte 0 is not supported");
}

TEST_F(ImageLoadingTest, SizesBeyondTheLimitsAreRefused) {
    const std::string large = "picture of 16384 by 16384 pixels is too large";
    const auto bare = [](int width, int height) {
        return gif(1, 1, kColors, {{0, 0, width, height, {1}, {}}});
    };
    EXPECT_FALSE(load(bare(16384, 16384)));
    EXPECT_EQ(error, large);
    EXPECT_FALSE(load(bare(16385, 1)));
    EXPECT_FALSE(load(bare(0, 1)));
    EXPECT_FALSE(load(png(16384, 16384, 6, "")));
    EXPECT_EQ(error, large);
    EXPECT_FALSE(load(png(0, 1, 6, "")));
    EXPECT_FALSE(load(bmp(16384, -16384, 24, "")));
    EXPECT_EQ(error, large);
    EXPECT_FALSE(load(bmp(-5, 1, 24, "")));
    EXPECT_FALSE(load(bmp(0, 0, 24, "x")));
    EXPECT_EQ(error, "picture has no pixels");
    EXPECT_FALSE(load(pcx(16384, 16384, 3, 16384, "x")));
    EXPECT_EQ(error, large);
    EXPECT_FALSE(load(pcx(5000, 5000, 3, 5000, "x")));
    EXPECT_EQ(error, "PCX pixels of 5000 by 5000 cannot lie in the 1 bytes from byte 128 on");
}

struct ImageAnimationTest : ImageLoadingTest {
    std::vector<SpriteImage> frames;
    std::vector<int> delays;

    bool loadFrames(const std::string& file) {
        return loadAnimationFrames(folder.write("picture", file), frames, delays, error);
    }
};

TEST_F(ImageAnimationTest, FramesLieOverWhatTheOnesBeforeLeft) {
    const std::vector<std::uint32_t> colors = {1, 2, 3, 4};
    constexpr Argb k1 = kOpaque | 1U, k2 = kOpaque | 2U, k3 = kOpaque | 3U, k4 = kOpaque | 4U;
    GifFrame whole{0, 0, 2, 2, {0, 0, 0, 0}, {}};
    GifFrame cleared{1, 0, 1, 1, {1}, {}};
    cleared.disposal = 2;
    cleared.delay = 7;
    GifFrame restored{0, 1, 2, 1, {2, 3}, {}};
    restored.disposal = 3;
    restored.transparent = 3;
    restored.delay = 0;
    GifFrame last{1, 1, 2, 2, {3, 3, 3, 3}, {}};  // beyond the screen by a pixel
    last.delay = 300;
    ASSERT_TRUE(loadFrames(gif(2, 2, colors, {whole, cleared, restored, last}))) << error;
    ASSERT_EQ(frames.size(), 4U);
    EXPECT_EQ(pixelsOf(frames[0]), (Pixels{k1, k1, k1, k1})) << "entry 0 stays opaque";
    EXPECT_EQ(pixelsOf(frames[1]), (Pixels{k1, k2, k1, k1}));
    EXPECT_EQ(pixelsOf(frames[2]), (Pixels{k1, 0, k3, k1}));
    EXPECT_EQ(pixelsOf(frames[3]), (Pixels{k1, 0, k1, k4}));
    EXPECT_EQ(delays, (std::vector<int>{100, 70, 10, 3000}));
}

TEST_F(ImageAnimationTest, DamageLeavesTheFramesBeforeIt) {
    const std::string file = gif(1, 1, kColors, {{0, 0, 1, 1, {1}, {}}, {0, 0, 1, 1, {3}, {}}});
    EXPECT_TRUE(loadFrames(file.substr(0, file.size() - 8)));
    EXPECT_EQ(frames.size(), 1U);
    EXPECT_TRUE(error.starts_with("GIF frame 2: descriptor at byte 40: ")) << error;
    EXPECT_FALSE(loadFrames(file.substr(0, 20)));
    EXPECT_TRUE(loadFrames(bmp(1, 1, 32, std::string("\1\2\3\0", 4))));
    EXPECT_EQ(delays, std::vector<int>{100});

    // Frames of 36 million pixels each: the second is one too many.
    const GifFrame dot{0, 0, 1, 1, {1}, {}};
    EXPECT_TRUE(loadFrames(gif(6000, 6000, kColors, {dot, dot})));
    EXPECT_EQ(frames.size(), 1U);
    EXPECT_EQ(error, "GIF frame 2: 72000000 pixels in all frames are too many");
}

}  // namespace
}  // namespace port
