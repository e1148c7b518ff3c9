#include "ScriptLexer.hpp"

#include <array>
#include <unordered_map>
#include <utility>

#include "TextFields.hpp"

namespace port::script {
namespace {

// What a character means alone, before '=', twice, and twice before '='.
struct Symbol {
    char first;
    Word alone;
    Word assigned = Word::None;
    Word doubled = Word::None;
    Word doubledAssigned = Word::None;
};

constexpr Symbol kSymbols[] = {
    {'{', Word::LeftBrace},
    {'}', Word::RightBrace},
    {'(', Word::LeftParen},
    {')', Word::RightParen},
    {';', Word::Semicolon},
    {',', Word::Comma},
    {':', Word::Colon},
    {'?', Word::Question},
    {'~', Word::Tilde},
    {'=', Word::Assign, Word::Equal},
    {'!', Word::Not, Word::NotEqual},
    {'<', Word::Less, Word::LessEqual, Word::ShiftLeft, Word::ShiftLeftAssign},
    {'>', Word::Greater, Word::GreaterEqual, Word::ShiftRight, Word::ShiftRightAssign},
    {'&', Word::And, Word::AndAssign, Word::AndAnd},
    {'|', Word::Or, Word::OrAssign, Word::OrOr},
    {'^', Word::Xor, Word::XorAssign},
    {'+', Word::Add, Word::AddAssign, Word::Increment},
    {'-', Word::Sub, Word::SubAssign, Word::Decrement},
    {'*', Word::Mul, Word::MulAssign},
    {'/', Word::Div, Word::DivAssign},
    {'%', Word::Mod, Word::ModAssign},
};

// By the first character; any other is a symbol without meaning.
constexpr auto kSymbolOf = [] {
    std::array<Symbol, 256> table{};
    for (const Symbol& symbol : kSymbols) table[static_cast<unsigned char>(symbol.first)] = symbol;
    return table;
}();

constexpr std::size_t kLongestKeyword = 8;

Word keyword(std::string_view text) {
    static const std::unordered_map<std::string_view, Word> kWords = {
        {"switch", Word::Switch},
        {"do", Word::Do},
        {"if", Word::If},
        {"else", Word::Else},
        {"while", Word::While},
        {"for", Word::For},
        {"break", Word::Break},
        {"continue", Word::Continue},
        {"return", Word::Return},
        {"case", Word::Case},
        {"default", Word::Default},
        {"true", Word::True},
        {"false", Word::False},
        {"void", Word::TypeName},
        {"int", Word::TypeName},
        {"float", Word::TypeName},
        {"char", Word::TypeName},
        {"string", Word::TypeName},
        {"mixed", Word::TypeName},
        {"decimal", Word::TypeName},
        {"pointer", Word::TypeName},
    };
    if (text.size() > kLongestKeyword) return Word::None;
    const auto found = kWords.find(foldAscii(text));
    return found == kWords.end() ? Word::None : found->second;
}

constexpr bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

class Lexer {
  public:
    explicit Lexer(std::string text) {
        tokens_.source = std::make_unique<const std::string>(std::move(text));
        text_ = *tokens_.source;
    }

    Tokens run() {
        while (skipBlanks(), at_ < text_.size()) next();
        tokens_.list.emplace_back();
        return std::move(tokens_);
    }

  private:
    [[nodiscard]] char peek(std::size_t ahead = 0) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
    }

    template <typename Part>
    void skipWhile(Part part) {
        while (at_ < text_.size() && part(text_[at_])) ++at_;
    }

    void add(TK kind, std::size_t from, Word word) {
        tokens_.list.push_back({kind, word, text_.substr(from, at_ - from)});
    }

    void skipBlanks() {
        for (;;) {
            skipWhile(isBlank);
            // The preprocessor has consumed the directives; a '#' that still stands is dropped.
            if (peek() == '#' || (peek() == '/' && peek(1) == '/')) {
                skipWhile([](char c) { return c != '\n'; });
            } else if (peek() == '/' && peek(1) == '*') {
                const std::size_t end = text_.find("*/", at_ + 2);
                if (end == text_.npos) tokens_.open = Tokens::Open::Comment;
                at_ = end == text_.npos ? text_.size() : end + 2;
            } else {
                return;
            }
        }
    }

    void next() {
        const std::size_t from = at_;
        if (isNameStart(peek())) {
            skipWhile(isNamePart);
            add(TK::Id, from, keyword(text_.substr(from, at_ - from)));
        } else if (isDigit(peek()) || (peek() == '.' && isDigit(peek(1)))) {
            number();
            add(TK::Num, from, Word::None);
        } else if (peek() == '"' || peek() == '\'') {
            constant();
        } else {
            symbol();
        }
    }

    // The shape is not checked: "1.2.3" is one number.
    void number() {
        if (peek() == '0' && (peek(1) == 'x' || peek(1) == 'X')) {
            at_ += 2;
            skipWhile(isHexDigit);
            return;
        }
        for (char before = '\0'; at_ < text_.size(); ++at_) {
            const char c = text_[at_];
            const bool exponent = before == 'e' || before == 'E';
            const bool sign = (c == '+' || c == '-') && exponent;
            if (!isDigit(c) && c != '.' && c != 'e' && c != 'E' && !sign) return;
            before = c;
        }
    }

    // Both quotes are equal: a character constant is a text.
    void constant() {
        const char quote = text_[at_++];
        const std::size_t from = at_;
        bool plain = true;
        while (at_ < text_.size() && text_[at_] != quote) {
            if (text_[at_] == '\\') {
                plain = false;
                ++at_;
            }
            ++at_;
        }
        const bool closed = at_ < text_.size();
        if (!closed) {
            tokens_.open = Tokens::Open::Constant;
            tokens_.cut = from - 1;
            at_ = text_.size();
        }
        std::string_view value = text_.substr(from, at_ - from);
        if (closed) ++at_;
        if (!plain) value = tokens_.decoded.emplace_back(decoded(value));
        // Some scans compare texts without regard to kind, and so find a brace in a constant.
        const Word word = value == "{"   ? Word::LeftBrace
                          : value == "}" ? Word::RightBrace
                                         : Word::None;
        tokens_.list.push_back({TK::Str, word, value});
    }

    static std::string decoded(std::string_view raw) {
        std::string out;
        for (std::size_t i = 0; i < raw.size(); ++i) {
            if (raw[i] != '\\') {
                out += raw[i];
            } else if (++i < raw.size()) {
                out += raw[i] == 'n' ? '\n' : raw[i] == 't' ? '\t' : raw[i];
            }
        }
        return out;
    }

    void symbol() {
        const std::size_t from = at_;
        const Symbol& symbol = kSymbolOf[static_cast<unsigned char>(text_[at_])];
        const bool twice = symbol.doubled != Word::None && peek(1) == symbol.first;
        const std::size_t size = twice ? 2 : 1;
        const Word assigned = twice ? symbol.doubledAssigned : symbol.assigned;
        const bool assigns = assigned != Word::None && peek(size) == '=';
        at_ += size + (assigns ? 1 : 0);
        add(TK::Sym, from, assigns ? assigned : twice ? symbol.doubled : symbol.alone);
    }

    Tokens tokens_;
    std::string_view text_;
    std::size_t at_ = 0;
};

}  // namespace

Tokens lex(std::string text) {
    return Lexer(std::move(text)).run();
}

bool isTypeName(std::string_view text) {
    return keyword(text) == Word::TypeName;
}

}  // namespace port::script
