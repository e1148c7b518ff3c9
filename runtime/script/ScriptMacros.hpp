#pragma once

// Macros of the preprocessor, in one line.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace port::script {

// Lets the maps be asked by a view into a line.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
        return std::hash<std::string_view>()(text);
    }
};
template <typename Value>
using TextMap = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;

struct FunctionMacro {
    std::vector<std::string> params;
    std::string body;
    bool operator==(const FunctionMacro&) const = default;
};

using Macros = TextMap<std::string>;
using FunctionMacros = TextMap<FunctionMacro>;

// Whether there is anything to expand: few lines have it.
[[nodiscard]] bool namesMacro(std::string_view line, const Macros& macros,
                              const FunctionMacros& funcMacros);

// `line` after at most 16 passes of function macros and object macros; cut short once it has
// grown beyond `limit` bytes. `work` grows by the bytes that changing passes wrote.
[[nodiscard]] std::string expandMacros(std::string line, const Macros& macros,
                                       const FunctionMacros& funcMacros, std::size_t limit,
                                       std::size_t& work);

// The letters, digits and '_' that `text` begins with.
[[nodiscard]] std::string_view leadingName(std::string_view text);

// The place behind the string or character constant that begins at `from`.
[[nodiscard]] std::size_t behindConstant(std::string_view line, std::size_t from);

constexpr bool opensConstant(char c) {
    return c == '"' || c == '\'';
}

}  // namespace port::script
