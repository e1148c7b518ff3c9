#pragma once

// How a token of an OpenBOR text file becomes a value. Nothing here fails: a token that is no
// number of the asked form takes the fallback that the caller names.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tindrel {

// ASCII fold; bytes of other scripts stay as they are.
[[nodiscard]] std::string toLower(std::string_view text);

// True when `text`, folded, equals `lower`, which is lower case already. Allocates nothing.
[[nodiscard]] bool equalsFolded(std::string_view text, std::string_view lower);

// White space of the C locale: blank, tab, line feed, vertical tab, form feed, carriage return.
[[nodiscard]] constexpr bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
[[nodiscard]] constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Cheap, as every line of a game asks: length, ends and middle tell nearly all keywords apart. Only
// for tables that no game adds to, as words that collide are easily made.
struct KeywordHash {
    [[nodiscard]] std::size_t operator()(std::string_view word) const {
        if (word.empty()) return 0;
        const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(word[i]); };
        return (byteAt(0) * 31U + byteAt(word.size() / 2)) * 31U + byteAt(word.size() - 1) +
               word.size() * 7U;
    }
};

// Decimal, leading white space and one sign allowed, trailing text ignored: "12abc" is 12.
// No digit, or a value outside 32 bits, yields the fallback.
[[nodiscard]] std::int32_t parseIntOr(std::string_view token, std::int32_t fallback);

// The same, with 0 for no number and for one below 0.
[[nodiscard]] std::int32_t parseNonNegative(std::string_view token);

// Decimal, 0x hexadecimal or leading-zero octal, trailing text ignored; empty when there is no
// number or it lies outside 32 bits. With `whole`, trailing text makes it empty too.
[[nodiscard]] std::optional<std::int32_t> parseAutoBase(std::string_view token, bool whole = false);

// strtof's grammar, trailing text ignored. No number, one out of range, and the words for
// infinity and not-a-number, which no generated table could hold, yield the fallback.
[[nodiscard]] float parseFloatOr(std::string_view token, float fallback);

// Legacy speeds: a value without '.', 'e' or 'E' is in tenths, so "15" and "1.5" are both 1.5.
[[nodiscard]] float parseTenthsOr(std::string_view token, float fallback);

// True when every token parses to zero; one without a number counts as zero.
[[nodiscard]] bool allZero(std::span<const std::string_view> tokens);

// The tokens of [first, last) joined by one blank; indexes past the end are ignored.
[[nodiscard]] std::string joinTokens(std::span<const std::string_view> tokens, std::size_t first,
                                     std::size_t last);

}  // namespace tindrel
