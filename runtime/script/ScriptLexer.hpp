#pragma once

// Cuts preprocessed script text into tokens and classifies every word once.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace port::script {

enum class TK : std::uint8_t { End, Id, Num, Str, Sym };

// What a token means to the grammar. Keywords and type names are Ids, the rest are Syms.
enum class Word : std::uint8_t {
    None,
    LeftBrace,
    RightBrace,
    LeftParen,
    RightParen,
    Semicolon,
    Comma,
    Colon,
    Question,
    Not,
    Tilde,
    // Binary operators.
    OrOr,
    AndAnd,
    Or,
    Xor,
    And,
    Equal,
    NotEqual,
    Less,
    Greater,
    LessEqual,
    GreaterEqual,
    ShiftLeft,
    ShiftRight,
    Add,
    Sub,
    Mul,
    Div,
    Mod,
    // Assignments.
    Assign,
    AddAssign,
    SubAssign,
    MulAssign,
    DivAssign,
    ModAssign,
    AndAssign,
    OrAssign,
    XorAssign,
    ShiftLeftAssign,
    ShiftRightAssign,
    Increment,
    Decrement,
    // Keywords, in any case.
    Switch,
    Do,
    If,
    Else,
    While,
    For,
    Break,
    Continue,
    Return,
    Case,
    Default,
    True,
    False,
    TypeName,
};

struct Tok {
    TK k = TK::End;
    Word word = Word::None;
    std::string_view s;  // the text; of a Str the decoded value

    // Whether this is the keyword or symbol itself, and not a constant spelled like it.
    [[nodiscard]] bool is(Word wanted) const { return word == wanted && k != TK::Str; }
};

// The tokens of a text, always ended by an End, and the storage that their texts point into.
struct Tokens {
    enum class Open : std::uint8_t { Nothing, Comment, Constant };

    std::unique_ptr<const std::string> source;
    std::deque<std::string> decoded;
    std::vector<Tok> list;
    Open open = Open::Nothing;  // what the end of the text cut off
    std::size_t cut = 0;        // where a constant that it cut off begins: at its quote
};

[[nodiscard]] Tokens lex(std::string text);

// "void", "int", "float", "char", "string", "mixed", "decimal", "pointer", in any case.
[[nodiscard]] bool isTypeName(std::string_view text);

// C-locale classes, whatever the locale of the process.
[[nodiscard]] constexpr bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
[[nodiscard]] constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
[[nodiscard]] constexpr bool isNameStart(char c) {
    return c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
[[nodiscard]] constexpr bool isNamePart(char c) {
    return isNameStart(c) || isDigit(c);
}

}  // namespace port::script
