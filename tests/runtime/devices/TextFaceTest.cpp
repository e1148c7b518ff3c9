#include "TextFace.hpp"

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "Environment.hpp"
#include "TempFolder.hpp"

namespace port {
namespace {

using platform::TextCoverage;
using tindrel::test::Environment;

constexpr const char* kFonts = "/usr/share/fonts/truetype/dejavu";

// A machine with few fonts, of which the first choice writes no Arabic.
struct TextFaceTrial : testing::Test {
    tindrel::test::TempFolder folder;
    Environment settings{"FONTCONFIG_FILE", configuration(kFonts)};
    platform::TextFace face = platform::systemTextFace();

    void SetUp() override {
        if (!std::filesystem::exists(kFonts)) GTEST_SKIP() << "no fonts in " << kFonts;
    }
    ~TextFaceTrial() override {
        face = {};
        FcFini();
    }
    std::string configuration(const std::string& fonts) const {
        return folder
            .write("fonts.conf", "<fontconfig><dir>" + fonts + "</dir><cachedir>" +
                                     (folder.path() / "cache").string() +
                                     "</cachedir><alias><family>sans-serif</family><prefer><family>"
                                     "DejaVu Serif</family></prefer></alias></fontconfig>")
            .string();
    }
    TextCoverage write(const std::string& text, int size = 20, bool bold = false,
                       int mostWidth = 1000) {
        const auto coverage = face.rasterize({text, size, bold, mostWidth});
        if (!coverage) {
            ADD_FAILURE() << "no font";
            return {};
        }
        EXPECT_EQ(coverage->alpha.size(), static_cast<std::size_t>(coverage->width) *
                                              static_cast<std::size_t>(coverage->height));
        return *coverage;
    }
    static double ink(const TextCoverage& coverage) {
        double sum = 0;
        for (const std::uint8_t alpha : coverage.alpha) sum += alpha / 255.0;
        return sum;
    }
};

TEST_F(TextFaceTrial, LinesAreAsLargeAsAskedFor) {
    const TextCoverage small = write("Hamburg", 10);
    const TextCoverage large = write("Hamburg", 40);
    EXPECT_NEAR(large.height, 4 * small.height, 5);
    EXPECT_NEAR(large.width, 4 * small.width, 12);
    EXPECT_GE(small.height, 10);
    EXPECT_LE(small.height, 14);
    EXPECT_NEAR(write("HamburgHamburg", 40).width, 2 * large.width, 6);
    EXPECT_GT(ink(write("Hamburg", 40, true)), 1.15 * ink(large));
    EXPECT_EQ(ink(write(" ")), 0);
    EXPECT_EQ(ink(write("")), 0);
}

TEST_F(TextFaceTrial, WhatIsTooWideIsLeftOut) {
    EXPECT_EQ(write(std::string(4000, 'm'), 20, false, 100).width, 100);
    const TextCoverage cut = write("m\xC3\xB6glich", 20, false, 30);
    const TextCoverage whole = write("m\xC3\xB6glich");
    ASSERT_EQ(cut.width, 30);
    for (int y = 0; y < cut.height; ++y) {
        for (int x = 0; x < 25; ++x) {
            ASSERT_EQ(cut.alpha[static_cast<std::size_t>(y * cut.width + x)],
                      whole.alpha[static_cast<std::size_t>(y * whole.width + x)])
                << x << "," << y;
        }
    }
}

TEST_F(TextFaceTrial, ATextGetsAFontThatHasItsLetters) {
    // The first choice would show one and the same box for both letters.
    EXPECT_NE(write("\xD8\xB3").alpha, write("\xD9\x87").alpha);
    const TextCoverage latin = write("a");
    EXPECT_NE(write("\xD0\x96").alpha, write("\xD0\xAF").alpha) << "Cyrillic";
    EXPECT_EQ(write("a").alpha, latin.alpha) << "and others keep theirs";
}

TEST_F(TextFaceTrial, AMachineWithoutFontsIsRecognised) {
    FcFini();
    const std::filesystem::path empty = folder.path() / "empty";
    std::filesystem::create_directories(empty);
    configuration(empty.string());
    EXPECT_FALSE(face.rasterize({"a", 20, false, 100}));
}

}  // namespace
}  // namespace port
