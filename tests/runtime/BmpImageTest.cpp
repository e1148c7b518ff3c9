// Every kind of BMP, written byte by byte and compared pixel by pixel.

#include "BmpImage.hpp"

#include <gtest/gtest.h>

#include "ImageBytes.hpp"
#include "SpritePixels.hpp"

namespace port {
namespace {

using namespace test;
using Pixels = std::vector<Argb>;
using Masks = std::vector<std::uint32_t>;

constexpr std::uint32_t kBitFields = 3, kAlphaBitFields = 6, kRle8 = 1, kRle4 = 2;
// Colours of the palettes below, opaque.
constexpr Argb k0 = 0xFF000001, k1 = 0xFF000102, k2 = 0xFF010203, k3 = 0xFF020304;

struct Bmp {
    std::uint32_t infoSize = 40, width = 1, height = 1, bits = 32, compression = 0, colors = 0;
    std::vector<std::uint32_t> masks;    // red, green, blue, alpha, at byte 54
    std::vector<std::uint32_t> palette;  // 0xRRGGBB
    std::string pixels;

    [[nodiscard]] std::string info() const {
        std::string header = little(infoSize, 4);
        if (infoSize == 12) {
            return header + little(width, 2) + little(height, 2) + little(1, 2) + little(bits, 2);
        }
        header += little(width, 4) + little(height, 4) + little(1, 2) + little(bits, 2) +
                  little(compression, 4) + std::string(12, '\0') + little(colors, 4) +
                  std::string(4, '\0');
        header.resize(std::min<std::size_t>(infoSize, 40));
        for (const std::uint32_t mask : masks) header += little(mask, 4);
        if (header.size() < infoSize) header.resize(infoSize);
        return header;
    }
    [[nodiscard]] std::string file() const {
        std::string head = info();
        for (const std::uint32_t color : palette) head += little(color, infoSize == 12 ? 3 : 4);
        const auto offset = static_cast<std::uint32_t>(14 + head.size());
        return "BM" + little(0, 8) + little(offset, 4) + head + pixels;
    }
};

struct Outcome {
    Pixels pixels;
    std::string error;
};

Outcome decode(const std::string& file) {
    const std::vector<std::uint8_t> bytes(file.begin(), file.end());
    DecodedImage image;
    Outcome outcome;
    if (decodeBmp(bytes, image, outcome.error)) {
        outcome.pixels = pixelsOf({image.width, image.height, image.bgra});
    }
    return outcome;
}

Outcome decode(const Bmp& bmp) {
    return decode(bmp.file());
}

// One pixel of 16 or 32 bits.
Outcome masked(std::uint32_t infoSize, std::uint32_t bits, std::uint32_t compression,
               const Masks& masks, std::uint32_t pixel) {
    return decode(Bmp{infoSize, 1, 1, bits, compression, 0, masks, {}, little(pixel, 4)});
}

const std::vector<std::uint32_t> kFour = {0x000001, 0x000102, 0x010203, 0x020304};

TEST(BmpImageTest, MasksSayWhereTheChannelsLie) {
    const Masks k565 = {0xF800, 0x7E0, 0x1F};
    for (const std::uint32_t infoSize : {40U, 52U, 56U, 108U, 124U}) {
        SCOPED_TRACE(infoSize);
        // Of 5 bits 16 is 10000|100, of 6 bits 32 is 100000|10.
        EXPECT_EQ(masked(infoSize, 16, kBitFields, k565, 0x841F).pixels, Pixels{0xFF8482FF});
        EXPECT_EQ(masked(infoSize, 32, kBitFields, {0xFF, 0xFF00, 0xFF0000}, 0x99332211).pixels,
                  Pixels{0xFF112233});
    }
    // Of 10 bits the upper 8 count; 1 bit is all or nothing; no bits are nothing.
    EXPECT_EQ(masked(40, 32, kBitFields, {0x3FF00000, 0xFFC00, 0x3FF}, 0x20080 | 0x20000000).pixels,
              Pixels{0xFF802020});
    EXPECT_EQ(masked(40, 16, kBitFields, {0x8000, 0, 1}, 0x7FFF).pixels, Pixels{0xFF0000FF});
    EXPECT_EQ(masked(40, 32, kBitFields, {0xFFFFFFFF, 0, 0}, 0x81234567).pixels,
              Pixels{0xFF810000});
}

TEST(BmpImageTest, AlphaIsWhatAMaskSays) {
    const Masks bgra = {0xFF0000, 0xFF00, 0xFF, 0xFF000000};
    const Masks bgrx = {0xFF0000, 0xFF00, 0xFF, 0};
    EXPECT_EQ(masked(40, 32, kAlphaBitFields, bgra, 0x40112233).pixels, Pixels{0x40112233});
    for (const std::uint32_t infoSize : {56U, 108U, 124U}) {
        SCOPED_TRACE(infoSize);
        EXPECT_EQ(masked(infoSize, 32, kBitFields, bgra, 0x00112233).pixels, Pixels{0x00112233});
        EXPECT_EQ(masked(infoSize, 32, kBitFields, bgrx, 0x40112233).pixels, Pixels{0xFF112233});
        EXPECT_EQ(masked(infoSize, 32, 0, bgra, 0x40112233).pixels, Pixels{0xFF112233})
            << "masks count where the compression says so";
    }
    EXPECT_EQ(masked(40, 16, kAlphaBitFields, {0x7C00, 0x3E0, 0x1F, 0x8000}, 0xFFFF).pixels,
              Pixels{0xFFFFFFFF});
    EXPECT_EQ(masked(40, 16, kAlphaBitFields, {0x7C00, 0x3E0, 0x1F, 0x8000}, 0x7FFF).pixels,
              Pixels{0x00FFFFFF});
}

TEST(BmpImageTest, MasksThatCannotBeAreRefused) {
    const auto refusal = [](std::uint32_t bits, const Masks& masks) {
        return masked(124, bits, kBitFields, masks, 0).error;
    };
    EXPECT_EQ(refusal(32, {0xFF0000, 0xF0F, 0xF0}), "BMP mask 0xf0f at byte 58 has gaps");
    EXPECT_EQ(refusal(32, {0xFF0000, 0xFF00, 0xFF, 0x1FF0000}),
              "BMP mask 0x1ff0000 at byte 66 overlaps another");
    EXPECT_EQ(refusal(16, {0x1F800, 0x7E0, 0x1F}),
              "BMP mask 0x1f800 at byte 54 reaches beyond its pixels");
    EXPECT_EQ(refusal(32, {0, 0, 0, 0xFF}), "BMP masks at byte 54 hold no colour");
    EXPECT_EQ(refusal(24, {0xFF0000, 0xFF00, 0xFF}),
              "BMP compression 3 at byte 30 is not supported with 24 bits and a header of 124 "
              "bytes");
}

TEST(BmpImageTest, RunsOfFourBits) {
    const auto runs = [](const std::string& bytes) {
        return decode(Bmp{40, 4, 2, 4, kRle4, 4, {}, kFour, bytes});
    };
    // A run of three alternates, a single one follows; above it three as they stand, in two bytes.
    EXPECT_EQ(runs({"\3\x12\1\x30\0\0\0\3\x32\x10\0\1", 12}).pixels,
              (Pixels{k3, k2, k1, k0, k1, k2, k1, k3}));
    // Five as they stand take two words; those beyond the row are lost.
    EXPECT_EQ(runs({"\0\5\x12\x33\x20\0\0\0\4\x21\0\1", 12}).pixels,
              (Pixels{k2, k1, k2, k1, k1, k2, k3, k3}));
    // One to the right and one up; the rest keeps index 0. Then out of the picture.
    EXPECT_EQ(runs({"\0\2\1\1\2\x22\0\2\xFF\xFF\xFF\x33", 12}).pixels,
              (Pixels{k0, k2, k2, k0, k0, k0, k0, k0}));
    EXPECT_EQ(runs({"\xFF\x11\0\2\xFF\0\xFF\x22\0\0\xFF\x33", 12}).pixels,
              (Pixels{k3, k3, k3, k3, k1, k1, k1, k1}));
    EXPECT_EQ(runs({"\4\x11\0\0\0\4\x11", 7}).error,
              "BMP runs are cut short at byte 77 in row 1 of 2");
    const auto up = static_cast<std::uint32_t>(-2);
    EXPECT_EQ(decode(Bmp{40, 4, up, 4, kRle4, 4, {}, kFour, "\4\x11"}).error,
              "BMP compression 2 at byte 30 is not supported from the top row down with 4 bits and "
              "a header of 40 bytes");
}

TEST(BmpImageTest, TheHeadersOfOs2) {
    const std::string four("\x01\x23\0\0", 4);
    EXPECT_EQ(decode(Bmp{12, 4, 1, 4, 0, 0, {}, kFour, four}).pixels, (Pixels{k0, k1, k2, k3}))
        << "a palette shorter than the depth allows";
    EXPECT_EQ(decode(Bmp{12, 2, 1, 1, 0, 0, {}, {kFour[0], kFour[1]}, {"\x40\0\0\0", 4}}).pixels,
              (Pixels{k0, k1}));
    EXPECT_EQ(decode(Bmp{12, 2, 1, 8, 0, 0, {}, kFour, {"\3\4\0\0", 4}}).pixels,
              (Pixels{k3, 0xFF000000}));
    EXPECT_EQ(decode(Bmp{12, 1, 2, 24, 0, 0, {}, {}, {"\1\2\3\0\4\5\6\0", 8}}).pixels,
              (Pixels{0xFF060504, 0xFF030201}));

    // The later header may end behind any of its fields.
    EXPECT_EQ(decode(Bmp{16, 4, 1, 4, 0, 0, {}, kFour, four}).pixels, (Pixels{k0, k1, k2, k3}));
    EXPECT_EQ(decode(Bmp{64, 2, 1, 8, kRle8, 4, {}, kFour, {"\2\3\0\1", 4}}).pixels,
              (Pixels{k3, k3}));
    EXPECT_EQ(decode(Bmp{20, 4, 1, 4, kRle4, 0, {}, kFour, {"\4\x23\0\1", 4}}).pixels,
              (Pixels{k2, k3, k2, k3}));
    EXPECT_EQ(decode(Bmp{64, 8, 1, 1, kBitFields, 2, {}, {0, 1}, "1"}).error,
              "BMP compression 3 at byte 30 is not supported with 1 bits and a header of 64 bytes");
}

TEST(BmpImageTest, EveryCutAndEveryLieIsRefused) {
    const Masks bgra = {0xFF0000, 0xFF00, 0xFF, 0xFF000000};
    const Bmp whole[] = {
        {40, 1, 1, 16, kBitFields, 0, {0xF800, 0x7E0, 0x1F}, {}, "12"},
        {40, 1, 1, 32, kAlphaBitFields, 0, bgra, {}, "1234"},
        {124, 1, 1, 32, kBitFields, 0, bgra, {}, "1234"},
        {40, 4, 2, 4, kRle4, 4, {}, kFour, {"\3\x12\1\x30\0\0\0\3\x32\x10\0\1", 12}},
        {12, 4, 1, 4, 0, 0, {}, kFour, "12"},
        {16, 4, 1, 4, 0, 0, {}, kFour, "12"},
    };
    for (const Bmp& bmp : whole) {
        const std::string file = bmp.file();
        ASSERT_EQ(decode(file).error, "") << bmp.infoSize;
        for (std::size_t size = 0; size < file.size(); ++size) {
            const Outcome cut = decode(file.substr(0, size));
            ASSERT_TRUE(cut.pixels.empty()) << bmp.infoSize << " cut to " << size;
            ASSERT_NE(cut.error, "") << bmp.infoSize << " cut to " << size;
        }
    }
    const auto error = [](const Bmp& bmp) { return decode(bmp).error; };
    EXPECT_EQ(error({40, 2, 1, 8, 0, 256, {}, kFour, "1234"}),
              "BMP palette of 256 colours at byte 54 is cut short at byte 74");
    EXPECT_EQ(error({12, 2, 1, 8, 0, 0, {}, {}, "1234"}), "BMP has no palette at byte 26");
    EXPECT_EQ(error({15, 2, 1, 8, 0, 0, {}, kFour, "1234"}),
              "BMP header of 15 bytes at byte 14 is not known");
    EXPECT_EQ(error({40, 2, 1, 5, 0, 0, {}, kFour, "1234"}),
              "BMP depth 5 at byte 28 is not supported");
    EXPECT_EQ(error({40, 3, 9, 24, 0, 0, {}, {}, "1234"}),
              "BMP pixels of 105 bytes at byte 54 are cut short at byte 58");
    EXPECT_EQ(error({12, 0xFFFF, 1, 24, 0, 0, {}, {}, "1234"}),
              "picture of 65535 by 1 pixels is too large");
    std::string lost = whole[0].file();
    lost.replace(10, 4, little(0xFFFFFFFF, 4));
    EXPECT_EQ(decode(lost).error, "BMP pixels begin at byte 4294967295, stated at byte 10, of 68");
}

}  // namespace
}  // namespace port
