#include "TextRuns.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace port {
namespace {

using platform::TextCoverage;
using platform::TextRequest;

// A font whose letters are full squares of 2 pixels, and higher than any line.
struct TextRunsTrial : testing::Test {
    std::vector<TextRequest> requests;
    SpriteImage canvas{12, 30, std::vector<std::uint8_t>(12 * 30 * kPixelBytes, 0)};

    platform::TextFace face() {
        return {[this](const TextRequest& request) -> std::unique_ptr<TextCoverage> {
            requests.push_back(request);
            if (request.text == "none") return nullptr;
            const int width = 2 * static_cast<int>(request.text.size());
            const auto pixels = static_cast<std::size_t>(width) * 40;
            return std::make_unique<TextCoverage>(
                TextCoverage{width, 40, std::vector<std::uint8_t>(pixels, 255)});
        }};
    }
    ColorKey at(int x, int y) {
        const std::uint8_t* pixel = &canvas.bgra[pixelOffset(canvas, x, y)];
        return colorKey(pixel[2], pixel[1], pixel[0]);
    }
};

TEST_F(TextRunsTrial, ALineIsDrawnInItsColorAndRectangle) {
    TextRuns runs(face());
    EXPECT_TRUE(runs.draw(canvas, "ab", 1, 3, 10, false));
    EXPECT_EQ(at(0, 3), 0U);
    EXPECT_EQ(at(1, 3), colorKey(237, 237, 242));
    EXPECT_EQ(at(4, 20), colorKey(237, 237, 242));
    EXPECT_EQ(at(5, 3), 0U);
    EXPECT_EQ(at(1, 2), 0U);
    EXPECT_EQ(at(1, 21), 0U) << "below the line";
    EXPECT_TRUE(runs.draw(canvas, "abcdef", 8, -5, 1, true));
    EXPECT_EQ(at(11, 0), colorKey(255, 214, 79));
    EXPECT_EQ(at(11, 8), colorKey(255, 214, 79));
    EXPECT_EQ(at(11, 9), 0U) << "six pixels at least, and eight more";
    EXPECT_EQ(requests.back(), (TextRequest{"abcdef", 6, true, 12}));
}

TEST_F(TextRunsTrial, ThatNoFontCanWriteIsLeftToOthers) {
    TextRuns runs(face());
    EXPECT_FALSE(runs.draw(canvas, "none", 0, 0, 10, false));
    EXPECT_FALSE(runs.draw(canvas, "none", 0, 0, 10, false));
    EXPECT_EQ(requests.size(), 1U) << "asked once";
    EXPECT_FALSE(TextRuns().draw(canvas, "a", 0, 0, 10, false));
    EXPECT_EQ(at(0, 0), 0U);
}

TEST_F(TextRunsTrial, GamesMayWriteAnything) {
    TextRuns runs(face());
    runs.draw(canvas, "a\tb\n\x80", 0, 0, 1 << 30, false);
    EXPECT_EQ(requests.back().text, "a b \xE2\x82\xAC") << "no UTF-8, so Windows-1252";
    EXPECT_EQ(requests.back().size, platform::kLargestText);
    runs.draw(canvas, std::string(4095, 'x') + "\xC3\xA9 and more", 0, 0, 8, false);
    EXPECT_EQ(requests.back().text, std::string(4095, 'x')) << "cut between letters";
}

TEST_F(TextRunsTrial, RunsAreKeptWithinTheirCapacity) {
    TextRuns runs(face(), 20'000);
    const auto draw = [&](const std::string& text) {
        EXPECT_TRUE(runs.draw(canvas, text, 0, 0, 8, false));
        EXPECT_LE(runs.bytes(), 20'000U);
    };
    for (int i = 0; i < 200; ++i) {
        draw("score " + std::to_string(i));
        draw("1UP");
        draw("HIGH");
    }
    EXPECT_EQ(requests.size(), 202U) << "what is drawn again and again stays";
    draw("score 0");
    EXPECT_EQ(requests.size(), 203U);
}

}  // namespace
}  // namespace port
