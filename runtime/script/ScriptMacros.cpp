#include "ScriptMacros.hpp"

#include <algorithm>
#include <optional>
#include <utility>

#include "ScriptLexer.hpp"
#include "ScriptLimits.hpp"
#include "TextFields.hpp"

namespace port::script {
namespace {

// Copies `line` to `out`, offering every whole identifier outside constants: replace(name, end)
// appends a substitute and gives the place to go on from, or npos to have the name copied.
template <typename Replace>
void copyReplacing(std::string_view line, std::size_t limit, std::string& out, Replace replace) {
    for (std::size_t i = 0; i < line.size() && out.size() <= limit;) {
        std::size_t end = i + 1;
        if (opensConstant(line[i])) {
            end = behindConstant(line, i);
        } else if (isNamePart(line[i])) {
            const std::string_view name = leadingName(line.substr(i));
            end = i + name.size();
            // What follows a digit belongs to the number.
            const std::size_t behind = isDigit(line[i]) ? line.npos : replace(name, end);
            if (behind != line.npos) {
                i = behind;
                continue;
            }
        }
        out += line.substr(i, end - i);
        i = end;
    }
}

std::string replaceObjectMacros(std::string_view line, const Macros& macros, std::size_t limit) {
    std::string out;
    copyReplacing(line, limit, out, [&](std::string_view name, std::size_t end) {
        const auto macro = macros.find(name);
        if (macro == macros.end()) return line.npos;
        out += macro->second;
        return end;
    });
    return out;
}

// For each '(' outside constants the place of its ')', found in one walk so that a line of
// unclosed calls costs no more than its length.
std::vector<std::size_t> matchingParens(std::string_view line) {
    std::vector<std::size_t> match(line.size(), line.npos);
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < line.size();) {
        if (opensConstant(line[i])) {
            i = behindConstant(line, i);
            continue;
        }
        if (line[i] == '(') open.push_back(i);
        if (line[i] == ')' && !open.empty()) {
            match[open.back()] = i;
            open.pop_back();
        }
        ++i;
    }
    return match;
}

// The arguments between two parentheses, cut at the commas outside inner ones, each trimmed.
std::vector<std::string_view> splitArguments(std::string_view inside) {
    std::vector<std::string_view> arguments;
    std::size_t from = 0;
    int depth = 0;
    for (std::size_t i = 0; i < inside.size();) {
        if (opensConstant(inside[i])) {
            i = behindConstant(inside, i);
            continue;
        }
        if (inside[i] == '(') ++depth;
        if (inside[i] == ')') --depth;
        if (inside[i] == ',' && depth == 0) {
            arguments.push_back(trimmed(inside.substr(from, i - from)));
            from = i + 1;
        }
        ++i;
    }
    arguments.push_back(trimmed(inside.substr(from)));
    return arguments;
}

// The body of a call, or nothing if the number of arguments is wrong.
std::optional<std::string> expandCall(const FunctionMacro& macro, std::string_view inside,
                                      std::size_t limit) {
    std::vector<std::string_view> arguments = splitArguments(inside);
    const bool none = arguments.size() == 1 && arguments[0].empty();
    if (none && macro.params.empty()) arguments.clear();
    if (arguments.size() != macro.params.size()) return std::nullopt;
    Macros bound;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        bound[macro.params[i]] = std::string(arguments[i]);
    }
    return replaceObjectMacros(macro.body, bound, limit);
}

std::string expandFunctionMacros(std::string_view line, const FunctionMacros& macros,
                                 std::size_t limit) {
    std::string out;
    std::vector<std::size_t> match;
    copyReplacing(line, limit, out, [&](std::string_view name, std::size_t end) {
        const auto macro = macros.find(name);
        if (macro == macros.end()) return line.npos;
        const std::size_t open = line.find_first_not_of(kWhiteSpace, end);
        if (open == line.npos || line[open] != '(') return line.npos;
        if (match.empty()) match = matchingParens(line);
        const std::size_t close = match[open];
        if (close == line.npos) return line.npos;
        const std::optional<std::string> body =
            expandCall(macro->second, line.substr(open + 1, close - open - 1), limit);
        // A call with a wrong number of arguments is copied whole.
        const std::size_t from = end - name.size();
        out += body ? std::string_view(*body) : line.substr(from, close + 1 - from);
        return close + 1;
    });
    return out;
}

}  // namespace

std::string_view leadingName(std::string_view text) {
    std::size_t size = 0;
    while (size < text.size() && isNamePart(text[size])) ++size;
    return text.substr(0, size);
}

std::size_t behindConstant(std::string_view line, std::size_t from) {
    const char quote = line[from];
    std::size_t i = from + 1;
    while (i < line.size() && line[i] != quote) i += line[i] == '\\' ? 2 : 1;
    return std::min(line.size(), i + 1);
}

bool namesMacro(std::string_view line, const Macros& macros, const FunctionMacros& funcMacros) {
    if (macros.empty() && funcMacros.empty()) return false;
    for (std::size_t i = 0; i < line.size();) {
        if (opensConstant(line[i])) {
            i = behindConstant(line, i);
        } else if (isNamePart(line[i])) {
            const std::string_view name = leadingName(line.substr(i));
            if (!isDigit(line[i]) && (macros.contains(name) || funcMacros.contains(name))) {
                return true;
            }
            i += name.size();
        } else {
            ++i;
        }
    }
    return false;
}

std::string expandMacros(std::string line, const Macros& macros, const FunctionMacros& funcMacros,
                         std::size_t limit, std::size_t& work) {
    for (int pass = 0; pass < kMaxPasses && line.size() <= limit; ++pass) {
        std::string next = expandFunctionMacros(line, funcMacros, limit);
        next = replaceObjectMacros(next, macros, limit);
        if (next == line) break;
        work += next.size();
        line = std::move(next);
    }
    return line;
}

}  // namespace port::script
