#pragma once

// Reading of the small text files beside a game: white space, ASCII case, numbers.

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

namespace port {

inline constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";

[[nodiscard]] inline std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

// Cuts the first word off the front of the text; empty at its end.
inline std::string_view takeWord(std::string_view& text) {
    text = trimmed(text);
    const std::string_view word = text.substr(0, text.find_first_of(kWhiteSpace));
    text.remove_prefix(word.size());
    return word;
}

// ASCII letters in lower case; every other byte as it stands, whatever the locale.
[[nodiscard]] constexpr char foldAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

[[nodiscard]] inline std::string foldAscii(std::string_view text) {
    std::string folded(text);
    for (char& c : folded) c = foldAscii(c);
    return folded;
}

[[nodiscard]] constexpr bool equalsFolded(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (foldAscii(a[i]) != foldAscii(b[i])) return false;
    }
    return true;
}

[[nodiscard]] constexpr bool startsWithFolded(std::string_view text, std::string_view start) {
    return equalsFolded(text.substr(0, start.size()), start);
}

// Whether `text` holds `part`; an empty part is held by every text.
[[nodiscard]] constexpr bool containsFolded(std::string_view text, std::string_view part) {
    for (std::size_t at = 0; at + part.size() <= text.size(); ++at) {
        if (equalsFolded(text.substr(at, part.size()), part)) return true;
    }
    return false;
}

// The decimal number that the text begins with; what follows it is ignored. Nothing without
// digits or beyond the range of int.
[[nodiscard]] inline std::optional<int> leadingInt(std::string_view text) {
    text = trimmed(text);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc()) return std::nullopt;
    return value;
}

// As above for a decimal fraction. "nan", "inf" and hexadecimal forms are no numbers here.
[[nodiscard]] inline std::optional<float> leadingFloat(std::string_view text) {
    text = trimmed(text);
    const std::string decimal(text.substr(0, text.find_first_not_of("+-.0123456789eE")));
    char* end = nullptr;
    const float value = std::strtof(decimal.c_str(), &end);
    if (end == decimal.c_str() || !std::isfinite(value)) return std::nullopt;
    return value;
}

// Calls visit(key, value) for each line "key=value", both trimmed, in their order. Lines without
// a "=" are passed over.
template <class Visit>
void eachKeyValue(std::istream& in, Visit visit) {
    for (std::string line; std::getline(in, line);) {
        const std::string_view text = line;
        const std::size_t equals = text.find('=');
        if (equals == text.npos) continue;
        visit(trimmed(text.substr(0, equals)), trimmed(text.substr(equals + 1)));
    }
}

}  // namespace port
