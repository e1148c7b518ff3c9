#pragma once

// Reading of the small text files beside a game: white space, ASCII case, numbers.

#include <charconv>
#include <cmath>
#include <cstdlib>
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

// ASCII letters in lower case; every other byte as it stands, whatever the locale.
[[nodiscard]] inline std::string foldAscii(std::string_view text) {
    std::string folded(text);
    for (char& c : folded) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return folded;
}

[[nodiscard]] inline bool equalsFolded(std::string_view a, std::string_view b) {
    return a.size() == b.size() && foldAscii(a) == foldAscii(b);
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

}  // namespace port
