#pragma once

// What the script screen looks for in a source text, each pattern with the ECMAScript expression
// that it means. Written as scanners: a regular-expression engine that recurses would run out of
// stack on the long lines of a hostile file. All are linear in the text.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tindrel {

using MatchName = std::function<void(std::string_view name)>;

// #\s*define\s+([A-Za-z_][A-Za-z0-9_]*)\s*\(  and
// #\s*define\s+([A-Za-z_][A-Za-z0-9_]*)\s+(?!\()[^\r\n]+
void forEachFunctionMacro(std::string_view text, const MatchName& found);
void forEachObjectMacro(std::string_view text, const MatchName& found);

// (?:void|int|float|char|string|mixed|decimal|pointer)\s+([A-Za-z_][A-Za-z0-9_]*)\s*\( ; `rest` is
// the text behind the parenthesis.
void forEachFunctionDefinition(
    std::string_view text,
    const std::function<void(std::string_view name, std::string_view rest)>& found);

// #\s*(?:include|import)\s*["<]([^">]+)[">]
void forEachInclude(std::string_view text, const MatchName& found);

// ([A-Za-z_][A-Za-z0-9_]*)\s*\(
void forEachCall(std::string_view text, const MatchName& found);

// \bbindentity\s*\( ; `rest` is the text behind the parenthesis.
void forEachBindentityCall(std::string_view text, const MatchName& found);

// The arguments up to the parenthesis that closes the call, split at its own commas and trimmed;
// quotes are kept whole. False when it does not close within kMaxCallBytes.
inline constexpr std::size_t kMaxCallBytes = 4096;
[[nodiscard]] bool splitCallArguments(std::string_view rest,
                                      std::vector<std::string_view>& arguments);

// The text with comments and what stands between quotes as blanks, every other byte in its place.
[[nodiscard]] std::string codeOf(std::string_view text);

// [A-Za-z_][A-Za-z0-9_]* as a whole.
[[nodiscard]] bool isIdentifier(std::string_view text);

}  // namespace tindrel
