#include "Dice.hpp"

#include <algorithm>
#include <limits>

namespace tindrel::fuzz {
namespace {

constexpr int kOddNumbers[] = {std::numeric_limits<int>::min(),
                               std::numeric_limits<int>::max(),
                               std::numeric_limits<int>::min() + 1,
                               std::numeric_limits<int>::max() - 1,
                               -1,
                               0,
                               1,
                               -1'000'000'000,
                               1'500'000'000,
                               1 << 16,
                               -32'768,
                               1 << 24,
                               999,
                               -200};
constexpr float kMostFraction = std::numeric_limits<float>::max();
constexpr float kOddFractions[] = {
    kMostFraction, -kMostFraction, 1e30F,  -1e30F,  2147483648.0F, -2147483648.0F, 3e9F,  1e9F,
    -1e9F,         16777216.0F,    0.001F, -0.001F, -0.0F,         0.0F,           -1.0F, 9999.5F};
constexpr const char* kOddWords[] = {
    "",     "none",     "Hero",       "brute", "club",         "nobody", "idle",    "attack1",
    "data", "../../..", "normal1",    "all",   "\xC3\xA4\xFF", "0",      "-1",      "left",
    "both", "f,f,a1",   "a1+u",       "1",     "99999999999",  "walk",   "follow1", "scripts/ok.c",
    " ",    "\n\"%s%n", "freespecial"};

}  // namespace

int Dice::number(int low, int high) {
    if (odd()) return pick(kOddNumbers);
    return low + static_cast<int>(roll(static_cast<std::uint32_t>(high - low) + 1));
}

float Dice::fraction(float low, float high) {
    if (odd()) return pick(kOddFractions);
    return low + (high - low) * static_cast<float>(roll(1025)) / 1024;
}

const char* Dice::word() {
    return pick(kOddWords);
}

}  // namespace tindrel::fuzz
