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

void forEachFunctionDefinition(
    std::string_view text,
    const std::function<void(std::string_view name, std::string_view rest)>& found) {
    // Every match has a parenthesis behind an identifier behind white space behind a type word.
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (c < 'c' || c > 'v') continue;  // no type word begins with it
        for (const std::string_view word : kTypeWords) {
            Cursor cursor(text, at);
            std::string_view name;
            if (c == word.front() && cursor.literal(word) && cursor.spaces(1) &&
                cursor.identifier(name) && cursor.spaces() && cursor.literal("(")) {
                found(name, cursor.rest());
                at = cursor.at() - 1;
                break;
            }
        }
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
    for (std::size_t at = 0; at < text.size();) {
        Cursor cursor(text, at);
        std::string_view name;
        if (!cursor.identifier(name)) {
            ++at;
            continue;
        }
        at = cursor.at();
        if (cursor.spaces() && cursor.literal("(")) {
            found(name);
            at = cursor.at();
        }
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

bool isIdentifier(std::string_view text) {
    return !text.empty() && isLetter(text.front()) &&
           std::all_of(text.begin(), text.end(), isWordByte);
}

}  // namespace tindrel
