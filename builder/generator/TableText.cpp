#include "generator/TableText.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace tindrel {
namespace {

// Holds FLT_MAX in fixed notation with three decimals.
using Digits = std::array<char, 64>;

std::string_view print(Digits& buffer, float value, std::chars_format format, int precision) {
    char* const begin = buffer.data();
    const auto end = std::to_chars(begin, begin + buffer.size(), value, format, precision).ptr;
    return {begin, static_cast<std::size_t>(end - begin)};
}

// Most values of a game are whole numbers, which need no rounding: up to six digits, beyond which
// JSON has an exponent, every notation writes them alike. Minus zero keeps its sign.
bool isShortWhole(float value) {
    constexpr float kMostSixDigits = 999'999;
    return std::abs(value) <= kMostSixDigits && value == std::trunc(value) &&
           (value != 0 || !std::signbit(value));
}

char escapeLetter(char c) {
    switch (c) {
        case '\t':
            return 't';
        case '\n':
            return 'n';
        case '\r':
            return 'r';
        default:
            return c;
    }
}

}  // namespace

void appendEscaped(std::string& out, std::string_view text, const Escapes& escapes) {
    constexpr std::string_view kHex = "0123456789abcdef";
    const auto isPlain = [&](char c) {
        return escapes[static_cast<unsigned char>(c)] == Escape::kNone;
    };
    while (true) {
        const auto plainEnd = std::find_if_not(text.begin(), text.end(), isPlain);
        out.append(text.begin(), plainEnd);
        if (plainEnd == text.end()) return;
        const char c = *plainEnd;
        const auto byte = static_cast<unsigned char>(c);
        text.remove_prefix(static_cast<std::size_t>(plainEnd - text.begin()) + 1);
        switch (escapes[byte]) {
            case Escape::kNone:
                break;
            case Escape::kBackslash:
                out += {'\\', escapeLetter(c)};
                break;
            case Escape::kOctal:
                // Three digits, so that no digit behind them is taken for a fourth.
                out += {'\\', '0', kHex[byte >> 3U], kHex[byte & 7U]};
                break;
            case Escape::kUnicode:
                out += "\\u00";
                out += {kHex[byte >> 4U], kHex[byte & 15U]};
                break;
        }
    }
}

void appendFixedFloat(std::string& out, float value) {
    if (isShortWhole(value)) {
        appendInteger(out, static_cast<std::int32_t>(value));
        out += ".0f";
        return;
    }
    Digits buffer;
    std::string_view digits = print(buffer, value, std::chars_format::fixed, 3);
    while (digits.size() > 2 && digits.back() == '0') digits.remove_suffix(1);
    out += digits;
    out += digits.back() == '.' ? "0f" : "f";
}

void appendShortFloat(std::string& out, float value) {
    Digits buffer;
    const std::string_view digits = print(buffer, value, std::chars_format::general, 8);
    out += digits;
    out += digits.find_first_of(".e") == std::string_view::npos ? ".0f" : "f";
}

void appendShapeFloat(std::string& out, float value) {
    // The scientific form tells the exponent after rounding, which decides the notation.
    Digits buffer;
    std::string_view digits = print(buffer, value, std::chars_format::scientific, 8);
    const std::size_t sign = digits.find('e') + 1;
    int exponent = 0;
    std::from_chars(&digits[sign + 1], digits.data() + digits.size(), exponent);
    if (digits[sign] == '-') exponent = -exponent;
    if (exponent >= -4 && exponent < 9) {
        digits = print(buffer, value, std::chars_format::fixed, 8 - exponent);
    }
    out += digits;
    out += exponent == 8 ? ".f" : "f";
}

void appendJsonFloat(std::string& out, float value) {
    if (isShortWhole(value)) return appendInteger(out, static_cast<std::int32_t>(value));
    Digits buffer;
    out += print(buffer, value, std::chars_format::general, 6);
}

}  // namespace tindrel
