#include "ScriptLexer.hpp"

#include <array>
#include <unordered_map>
#include <utility>

#include "TextFields.hpp"

namespace port::script {
namespace {

struct Spelling {
    std::string_view text;
    Word word;
};

// Longer spellings first: the first that fits is taken.
constexpr Spelling kSymbols[] = {
    {"<<=", Word::ShiftLeftAssign},
    {">>=", Word::ShiftRightAssign},
    {"==", Word::Equal},
    {"!=", Word::NotEqual},
    {"<=", Word::LessEqual},
    {">=", Word::GreaterEqual},
    {"&&", Word::AndAnd},
    {"||", Word::OrOr},
    {"+=", Word::AddAssign},
    {"-=", Word::SubAssign},
    {"*=", Word::MulAssign},
    {"/=", Word::DivAssign},
    {"%=", Word::ModAssign},
    {"&=", Word::AndAssign},
    {"|=", Word::OrAssign},
    {"^=", Word::XorAssign},
    {"++", Word::Increment},
    {"--", Word::Decrement},
    {"<<", Word::ShiftLeft},
    {">>", Word::ShiftRight},
    {"{", Word::LeftBrace},
    {"}", Word::RightBrace},
    {"(", Word::LeftParen},
    {")", Word::RightParen},
    {";", Word::Semicolon},
    {",", Word::Comma},
    {":", Word::Colon},
    {"?", Word::Question},
    {"!", Word::Not},
    {"~", Word::Tilde},
    {"|", Word::Or},
    {"^", Word::Xor},
    {"&", Word::And},
    {"<", Word::Less},
    {">", Word::Greater},
    {"+", Word::Add},
    {"-", Word::Sub},
    {"*", Word::Mul},
    {"/", Word::Div},
    {"%", Word::Mod},
    {"=", Word::Assign},
};

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
                tokens_.closed = end != text_.npos;
                at_ = tokens_.closed ? end + 2 : text_.size();
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
        tokens_.closed = at_ < text_.size();
        if (!tokens_.closed) at_ = text_.size();
        std::string_view value = text_.substr(from, at_ - from);
        if (tokens_.closed) ++at_;
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
        const std::string_view rest = text_.substr(at_);
        for (const Spelling& symbol : kSymbols) {
            if (rest.substr(0, symbol.text.size()) != symbol.text) continue;
            at_ += symbol.text.size();
            return add(TK::Sym, from, symbol.word);
        }
        ++at_;
        add(TK::Sym, from, Word::None);
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
