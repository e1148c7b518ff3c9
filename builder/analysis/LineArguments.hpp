#pragma once

// The arguments of one line, as rules on single lines look at them.

#include <algorithm>
#include <charconv>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>

#include "reader/Tokens.hpp"

namespace tindrel {

using Args = std::span<const std::string_view>;

// Numbers are whole arguments: one with trailing text is none.
[[nodiscard]] inline std::optional<int> integer(std::string_view token) {
    if (!token.empty() && token.front() == '+') token.remove_prefix(1);
    int value = 0;
    const char* const last = token.data() + token.size();
    const auto [end, error] = std::from_chars(token.data(), last, value);
    if (error != std::errc{} || end != last) return std::nullopt;
    return value;
}

// Without regard to case.
[[nodiscard]] inline bool isOneOf(std::string_view token, std::span<const std::string_view> words) {
    return std::ranges::any_of(words,
                               [&](std::string_view word) { return equalsFolded(token, word); });
}

}  // namespace tindrel
