#include "analysis/ClosestWord.hpp"

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "reader/Tokens.hpp"

namespace tindrel {
namespace {

// More slips than these are never one word for another.
constexpr std::size_t kMostSlips = 2;

// Letters to insert, drop, replace or swap with a neighbour to turn one word into the other; any
// number above kMostSlips for more of them. So a letter is held beside its near ones only.
std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> previous(b.size() + 1);
    std::vector<std::size_t> beforePrevious(b.size() + 1);
    std::vector<std::size_t> current(b.size() + 1);
    std::iota(previous.begin(), previous.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        const std::size_t first = i > kMostSlips ? i - kMostSlips : 1;
        const std::size_t last = std::min(i + kMostSlips, b.size());
        current[first - 1] = first == 1 ? i : kMostSlips + 1;
        if (last < b.size()) current[last + 1] = kMostSlips + 1;
        for (std::size_t j = first; j <= last; ++j) {
            current[j] = std::min({previous[j] + 1, current[j - 1] + 1,
                                   previous[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                current[j] = std::min(current[j], beforePrevious[j - 2] + 1);
            }
        }
        std::swap(beforePrevious, previous);
        std::swap(previous, current);
    }
    return previous[b.size()];
}

std::string withoutDigits(std::string_view word) {
    std::string letters(word);
    letters.erase(std::remove_if(letters.begin(), letters.end(), isDigit), letters.end());
    return letters;
}

}  // namespace

ClosestWord::ClosestWord(std::string_view written) : written_(written) {
    // Short words are near to everything, and nobody misspells half a word.
    constexpr std::size_t kShortest = 4;
    constexpr std::size_t kLongest = 64;
    constexpr std::size_t kTwoSlipsFrom = 8;
    if (written.size() < kShortest || written.size() > kLongest) return;
    slips_ = written.size() >= kTwoSlipsFrom ? kMostSlips + 1 : kMostSlips;
}

void ClosestWord::offer(std::string_view known) {
    // "p4smenu" is no slip for "p1smenu", nor a longer word one for its beginning.
    const std::size_t longer = std::max(known.size(), written_.size());
    if (slips_ == 0 || longer - std::min(known.size(), written_.size()) > 1) return;
    if (withoutDigits(known) == withoutDigits(written_)) return;
    const std::size_t distance = editDistance(written_, known);
    if (distance >= slips_) return;
    slips_ = distance;
    found_ = known;
}

}  // namespace tindrel
