#include "ScriptLexer.hpp"

#include <gtest/gtest.h>

#include <string>

namespace port::script {
namespace {

// Each token as its kind's letter and its text: iName n12 s"text" y+ and one e at the end.
std::string tokens(std::string_view text) {
    const Tokens lexed = lex(std::string(text));
    std::string out;
    for (const Tok& token : lexed.list) {
        if (!out.empty()) out += ' ';
        out += "einsy"[static_cast<int>(token.k)];
        out += token.s;
    }
    return out;
}

TEST(ScriptLexer, CutsTokens) {
    const struct {
        const char* text;
        const char* tokens;
    } rows[] = {
        {"", "e"},
        {"a_1 B2", "ia_1 iB2 e"},
        {"1-2", "n1 y- n2 e"},
        {"1e-2 1E+3 2e", "n1e-2 n1E+3 n2e e"},
        {"1.2.3 .5 5.", "n1.2.3 n.5 n5. e"},  // the shape is not checked
        {"1e5-2", "n1e5 y- n2 e"},
        {".a", "y. ia e"},
        {"0X1f 0x1G", "n0X1f n0x1 iG e"},
        {"'a' \"b\"", "sa sb e"},  // both quotes are equal
        {R"("a\"b" 'c\'d' "\n\t\q\\")", "sa\"b sc'd s\n\tq\\ e"},
        {"\"it's\"", "sit's e"},
        {"\"open ; a", "sopen ; a e"},
        {"\"open\\", "sopen e"},
        {"a<<=b>>=c<<d>>e", "ia y<<= ib y>>= ic y<< id y>> ie e"},
        {"a+++b---c", "ia y++ y+ ib y-- y- ic e"},
        {"&&&||||===!==", "y&& y& y|| y|| y== y= y!= y= e"},
        {"@ $ ->", "y@ y$ y- y> e"},
        {"a // b\nc", "ia ic e"},
        {"a /* b\n */ c /* d", "ia ic e"},
        {"a # b\nc", "ia ic e"},  // a directive that was left standing
        {"a/**/b/ /c", "ia ib y/ y/ ic e"},
    };
    for (const auto& row : rows) EXPECT_EQ(tokens(row.text), row.tokens) << row.text;
}

TEST(ScriptLexer, TellsWhetherTheTextEndsInsideSomething) {
    EXPECT_EQ(lex("a \"b\" /* c */ // d").open, Tokens::Open::Nothing);
    EXPECT_EQ(lex("a /* b").open, Tokens::Open::Comment);
    EXPECT_EQ(lex("a 'b").open, Tokens::Open::Constant);
    EXPECT_EQ(lex("a \"b\\\"").open, Tokens::Open::Constant);
}

TEST(ScriptLexer, KnowsTypesInAnyCase) {
    for (const char* name :
         {"void", "INT", "Float", "char", "string", "mixed", "decimal", "pointer"})
        EXPECT_TRUE(isTypeName(name)) << name;
    for (const char* name : {"", "double", "voids", "if"}) EXPECT_FALSE(isTypeName(name)) << name;
}

}  // namespace
}  // namespace port::script
