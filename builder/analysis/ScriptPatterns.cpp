#include "analysis/ScriptPatterns.hpp"

#include <algorithm>
#include <array>

#include "reader/Tokens.hpp"

namespace tindrel {
namespace {

constexpr std::array<std::string_view, 8> kTypeWords = {"void",   "int",   "float",   "char",
                                                        "string", "mixed", "decimal", "pointer"};

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool isWordByte(char c) {
    return isLetter(c) || isDigit(c);
}

// A place in a text, with the steps that the expressions are made of. Each step that fails leaves
// the place anywhere: the caller starts again from its own.
class Cursor {
  public:
    Cursor(std::string_view text, std::size_t at) : text_(text), at_(at) {}

    bool literal(std::string_view word) {
        if (text_.substr(at_, word.size()) != word) return false;
        at_ += word.size();
        return true;
    }
    // \s*, or \s+ with `least` 1.
    bool spaces(std::size_t least = 0) {
        const std::size_t start = at_;
        while (at_ < text_.size() && isSpace(text_[at_])) ++at_;
        return at_ - start >= least;
    }
    bool identifier(std::string_view& name) {
        const std::size_t start = at_;
        if (at_ == text_.size() || !isLetter(text_[at_])) return false;
        while (at_ < text_.size() && isWordByte(text_[at_])) ++at_;
        name = text_.substr(start, at_ - start);
        return true;
    }
    bool defineHead(std::string_view& name) {
        return literal("#") && spaces() && literal("define") && spaces(1) && identifier(name);
    }
    [[nodiscard]] std::size_t at() const { return at_; }
    [[nodiscard]] std::string_view rest() const { return text_.substr(at_); }

  private:
    std::string_view text_;
    std::size_t at_;
};

std::string_view trimEnd(std::string_view text) {
    while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
    return text;
}

// The identifier that stands, with white space behind it, in front of `at`; empty for none.
std::string_view identifierBefore(std::string_view text, std::size_t at) {
    const std::string_view ahead = trimEnd(text.substr(0, at));
    std::size_t first = ahead.size();
    while (first > 0 && isWordByte(ahead[first - 1])) --first;
    while (first < ahead.size() && !isLetter(ahead[first])) ++first;
    return ahead.substr(first);
}

}  // namespace

void forEachFunctionMacro(std::string_view text, const MatchName& found) {
    for (std::size_t at = text.find('#'); at != std::string_view::npos; at = text.find('#', at)) {
        Cursor cursor(text, at);
        std::string_view name;
        if (cursor.defineHead(name) && cursor.spaces() && cursor.literal("(")) {
            found(name);
            at = cursor.at();
        } else {
            ++at;
        }
    }
}

void forEachObjectMacro(std::string_view text, const MatchName& found) {
    for (std::size_t at = text.find('#'); at != std::string_view::npos; at = text.find('#', at)) {
        Cursor cursor(text, at++);
        std::string_view name;
        if (!cursor.defineHead(name)) continue;
        const std::size_t first = cursor.at();
        if (!cursor.spaces(1)) continue;
        // The white space gives back what it must so that a byte of the same line follows it that
        // is no parenthesis. It may run over line ends, so an empty define takes the next line.
        std::size_t body = cursor.at();
        const auto fits = [&] {
            return body < text.size() && text[body] != '(' && text[body] != '\r' &&
                   text[body] != '\n';
        };
        while (body > first + 1 && !fits()) --body;
        if (!fits()) continue;
        found(name);
        at = std::min(text.find_first_of("\r\n", body), text.size());
    }
}

// Calls and definitions are looked for from their parenthesis backwards: there are few of those,
// and what stands in front of one cannot reach over another.
void forEachFunctionDefinition(
    std::string_view text,
    const std::function<void(std::string_view name, std::string_view rest)>& found) {
    for (std::size_t at = text.find('('); at != std::string_view::npos;
         at = text.find('(', at + 1)) {
        const std::string_view name = identifierBefore(text, at);
        if (name.empty()) continue;
        const std::string_view ahead =
            text.substr(0, static_cast<std::size_t>(name.data() - text.data()));
        const std::string_view word = trimEnd(ahead);
        const bool isTyped =
            word.size() < ahead.size() &&
            std::any_of(kTypeWords.begin(), kTypeWords.end(),
                        [&](std::string_view type) { return word.ends_with(type); });
        if (isTyped) found(name, text.substr(at + 1));
    }
}

void forEachInclude(std::string_view text, const MatchName& found) {
    for (std::size_t at = text.find('#'); at != std::string_view::npos; at = text.find('#', at)) {
        Cursor cursor(text, at++);
        if (!cursor.literal("#") || !cursor.spaces()) continue;
        if (!cursor.literal("include") && !cursor.literal("import")) continue;
        cursor.spaces();
        if (!cursor.literal("\"") && !cursor.literal("<")) continue;
        const std::size_t end = text.find_first_of("\">", cursor.at());
        if (end == std::string_view::npos) return;  // nothing behind can close either
        if (end == cursor.at()) continue;
        found(text.substr(cursor.at(), end - cursor.at()));
        at = end + 1;
    }
}

void forEachCall(std::string_view text, const MatchName& found) {
    for (std::size_t at = text.find('('); at != std::string_view::npos;
         at = text.find('(', at + 1)) {
        const std::string_view name = identifierBefore(text, at);
        if (!name.empty()) found(name);
    }
}

void forEachBindentityCall(std::string_view text, const MatchName& found) {
    constexpr std::string_view kName = "bindentity";
    for (std::size_t at = text.find(kName); at != std::string_view::npos;
         at = text.find(kName, at + 1)) {
        if (at > 0 && isWordByte(text[at - 1])) continue;
        Cursor cursor(text, at + kName.size());
        if (cursor.spaces() && cursor.literal("(")) found(cursor.rest());
    }
}

bool splitCallArguments(std::string_view rest, std::vector<std::string_view>& arguments) {
    arguments.clear();
    const auto append = [&](std::size_t first, std::size_t last) {
        while (first < last && isSpace(rest[first])) ++first;
        while (last > first && isSpace(rest[last - 1])) --last;
        arguments.push_back(rest.substr(first, last - first));
    };
    std::size_t start = 0;
    int depth = 0;
    char quote = 0;
    for (std::size_t i = 0; i < std::min(rest.size(), kMaxCallBytes); ++i) {
        const char c = rest[i];
        if (quote != 0) {
            if (c == '\\') ++i;
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '(') {
            ++depth;
        } else if (c == ')' && depth-- == 0) {
            append(start, i);
            if (arguments.size() == 1 && arguments.front().empty()) arguments.clear();
            return true;
        } else if (c == ',' && depth == 0) {
            append(start, i);
            start = i + 1;
        }
    }
    return false;
}

std::string codeOf(std::string_view text) {
    std::string code(text);
    const auto blank = [&](std::size_t first, std::size_t last) {
        for (std::size_t i = first; i < std::min(last, code.size()); ++i) {
            if (code[i] != '\n') code[i] = ' ';
        }
    };
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t first = i;
        const std::string_view rest = text.substr(i, 2);
        if (rest == "//") {
            i = std::min(text.find('\n', i), text.size());
            blank(first, i);
        } else if (rest == "/*") {
            const std::size_t end = text.find("*/", i + 2);
            i = end == std::string_view::npos ? text.size() : end + 2;
            blank(first, i);
        } else if (text[i] == '"' || text[i] == '\'') {
            for (++i; i < text.size() && text[i] != text[first]; ++i) {
                if (text[i] == '\\') ++i;
            }
            blank(first + 1, i);
            i = std::min(i + 1, text.size());
        } else {
            ++i;
        }
    }
    return code;
}

bool isIdentifier(std::string_view text) {
    return !text.empty() && isLetter(text.front()) &&
           std::all_of(text.begin(), text.end(), isWordByte);
}

}  // namespace tindrel
