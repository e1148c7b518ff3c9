#include "reader/Tokens.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tindrel {
namespace {

TEST(Tokens, FoldsAsciiLettersOnly) {
    EXPECT_EQ(toLower("AbZ[\xC3\x89"), "abz[\xC3\x89");
    EXPECT_TRUE(equalsFolded("@End_Script", "@end_script"));
    EXPECT_FALSE(equalsFolded("@end_scripts", "@end_script"));
}

TEST(Tokens, IntegersIgnoreWhatFollowsTheDigits) {
    struct Case {
        std::string token;
        std::int32_t expected;
    };
    const std::vector<Case> cases = {
        {"12abc", 12},
        {"3.9", 3},
        {" \t-7", -7},
        {"+5", 5},
        {"007", 7},
        {"0x10", 0},
        {"2147483647", 2147483647},
        {"-2147483648", -2147483647 - 1},
        {std::string("4\0"
                     "2",
                     3),
         4},
        // No number, or one that no 32 bits hold.
        {"", 99},
        {"-", 99},
        {"+-5", 99},
        {"- 5", 99},
        {"abc", 99},
        {"2147483648", 99},
        {"99999999999", 99},
        {std::string(400, '9'), 99},
    };
    for (const auto& [token, expected] : cases) {
        EXPECT_EQ(parseIntOr(token, 99), expected) << '"' << token << '"';
    }
}

TEST(Tokens, AutoBaseReadsHexadecimalAndOctal) {
    EXPECT_EQ(parseAutoBase("0x1Fz"), 0x1F);
    EXPECT_EQ(parseAutoBase("-010"), -8);
    EXPECT_EQ(parseAutoBase("08"), 0);
    EXPECT_EQ(parseAutoBase("0x"), 0);
    EXPECT_EQ(parseAutoBase("-0x80000000"), -2147483647 - 1);
    EXPECT_EQ(parseAutoBase("0x80000000"), std::nullopt);
    EXPECT_EQ(parseAutoBase("x"), std::nullopt);
    EXPECT_EQ(parseAutoBase("12z", true), std::nullopt);
    EXPECT_EQ(parseAutoBase("0x", true), std::nullopt);
    EXPECT_EQ(parseAutoBase("12", true), 12);
}

TEST(Tokens, FloatsTakeTheFallbackWhenTheyAreOutOfRange) {
    EXPECT_FLOAT_EQ(parseFloatOr("1.5x", 9), 1.5F);
    EXPECT_FLOAT_EQ(parseFloatOr("-.5e1", 9), -5);
    EXPECT_FLOAT_EQ(parseFloatOr(std::string(63, '0') + "1", 9), 1) << "longer than the buffer";
    for (const std::string& token :
         {std::string(), std::string("e5"), std::string("1e999"), std::string("1e-999"),
          std::string("inf"), std::string("nan"), std::string(400, '9')}) {
        EXPECT_FLOAT_EQ(parseFloatOr(token, 9), 9) << '"' << token << '"';
    }
    EXPECT_FLOAT_EQ(parseFloatOr({}, 9), 9);
}

TEST(Tokens, TenthsDivideWholeNumbersButNeverTheFallback) {
    EXPECT_FLOAT_EQ(parseTenthsOr("12", 1), 1.2F);
    EXPECT_FLOAT_EQ(parseTenthsOr("1.5", 1), 1.5F);
    EXPECT_FLOAT_EQ(parseTenthsOr("15E0", 1), 15);
    EXPECT_FLOAT_EQ(parseTenthsOr("abc", 1), 1);
    EXPECT_FLOAT_EQ(parseTenthsOr("x.e", 1), 1);
}

TEST(Tokens, ListsOfTokens) {
    const std::vector<std::string_view> tokens = {"0", "-0.0", "zero"};
    EXPECT_TRUE(allZero(tokens));
    EXPECT_TRUE(allZero({}));
    EXPECT_FALSE(allZero(std::vector<std::string_view>{"0", "0.5"}));

    EXPECT_EQ(joinTokens(tokens, 1, 3), "-0.0 zero");
    EXPECT_EQ(joinTokens(tokens, 2, 99), "zero");
    EXPECT_EQ(joinTokens(tokens, 3, 99), "");
    EXPECT_EQ(joinTokens(tokens, 2, 1), "");
}

}  // namespace
}  // namespace tindrel
