#include "reader/Tokens.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace tindrel {
namespace {

constexpr char foldByte(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string_view skipSpace(std::string_view token) {
    while (!token.empty() && isSpace(token.front())) token.remove_prefix(1);
    return token;
}

}  // namespace

std::string toLower(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), foldByte);
    return out;
}

bool equalsFolded(std::string_view text, std::string_view lower) {
    return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                      [](char a, char b) { return foldByte(a) == b; });
}

std::int32_t parseIntOr(std::string_view token, std::int32_t fallback) {
    token = skipSpace(token);
    const bool negative = token.starts_with('-');
    if (negative || token.starts_with('+')) token.remove_prefix(1);
    if (token.empty() || !isDigit(token.front())) return fallback;
    const std::int64_t limit = negative ? 0x80000000LL : 0x7FFFFFFFLL;
    std::int64_t magnitude = 0;
    for (const char c : token) {
        if (!isDigit(c)) break;
        magnitude = magnitude * 10 + (c - '0');
        if (magnitude > limit) return fallback;
    }
    return static_cast<std::int32_t>(negative ? -magnitude : magnitude);
}

std::int32_t parseNonNegative(std::string_view token) {
    return std::max(parseIntOr(token, 0), 0);
}

std::optional<std::int32_t> parseAutoBase(std::string_view token, bool whole) {
    token = skipSpace(token);
    bool negative = false;
    if (!token.empty() && (token.front() == '+' || token.front() == '-')) {
        negative = token.front() == '-';
        token.remove_prefix(1);
    }
    int base = 10;
    if (token.size() > 2 && token[0] == '0' && (token[1] == 'x' || token[1] == 'X') &&
        std::isxdigit(static_cast<unsigned char>(token[2])) != 0) {
        base = 16;
        token.remove_prefix(2);
    } else if (!token.empty() && token[0] == '0') {
        base = 8;
    }
    std::uint64_t magnitude = 0;
    const char* const last = token.data() + token.size();
    const auto [end, error] = std::from_chars(token.data(), last, magnitude, base);
    if (error != std::errc{} || (whole && end != last)) return std::nullopt;
    const std::uint64_t limit = negative ? 0x80000000ULL : 0x7FFFFFFFULL;
    if (magnitude > limit) return std::nullopt;
    const auto value = static_cast<std::int64_t>(magnitude);
    return static_cast<std::int32_t>(negative ? -value : value);
}

float parseFloatOr(std::string_view token, float fallback) {
    // Nearly all numbers are small whole ones, which a float holds exactly.
    constexpr std::int32_t kExact = 1 << 24;
    std::int32_t whole = 0;
    const char* const last = token.data() + token.size();
    const auto [stop, failure] = std::from_chars(token.data(), last, whole);
    if (failure == std::errc{} && stop == last && whole >= -kExact && whole <= kExact &&
        (whole != 0 || token.front() != '-')) {
        return static_cast<float>(whole);
    }
    // strtof needs a terminator; numbers are short, and a longer token is copied to the heap.
    std::array<char, 64> shortToken{};
    std::string longToken;
    const char* text = shortToken.data();
    if (token.size() < shortToken.size()) {
        token.copy(shortToken.data(), token.size());
    } else {
        longToken.assign(token);
        text = longToken.c_str();
    }
    char* end = nullptr;
    errno = 0;
    const float value = std::strtof(text, &end);
    if (end == text || errno == ERANGE || !std::isfinite(value)) return fallback;
    return value;
}

float parseTenthsOr(std::string_view token, float fallback) {
    if (token.find_first_of(".eE") != std::string_view::npos) return parseFloatOr(token, fallback);
    // NaN marks a failed parse: the fallback itself must not be divided.
    const float value = parseFloatOr(token, std::numeric_limits<float>::quiet_NaN());
    return std::isnan(value) ? fallback : value / 10.0F;
}

bool allZero(std::span<const std::string_view> tokens) {
    return std::all_of(tokens.begin(), tokens.end(),
                       [](std::string_view token) { return parseFloatOr(token, 0.0F) == 0.0F; });
}

std::string joinTokens(std::span<const std::string_view> tokens, std::size_t first,
                       std::size_t last) {
    std::string out;
    for (std::size_t i = first; i < std::min(last, tokens.size()); ++i) {
        if (i > first) out += ' ';
        out += tokens[i];
    }
    return out;
}

}  // namespace tindrel
