#include "analysis/ScriptPatterns.hpp"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <regex>
#include <string>
#include <vector>

namespace tindrel {
namespace {

using Names = std::vector<std::string>;

Names byExpression(const std::string& text, const char* expression) {
    static std::map<std::string, std::regex> compiled;
    const std::regex& pattern = compiled.try_emplace(expression, expression).first->second;
    Names names;
    for (std::sregex_iterator it(text.begin(), text.end(), pattern), end; it != end; ++it) {
        names.push_back((*it)[1].str());
    }
    return names;
}

template <typename Scan>
Names byScanner(const std::string& text, Scan scan) {
    Names names;
    scan(text, [&](std::string_view name, auto&&...) { names.emplace_back(name); });
    return names;
}

void expectSameAsExpressions(const std::string& text) {
    SCOPED_TRACE(text);
    EXPECT_EQ(byScanner(text, forEachFunctionMacro),
              byExpression(text, R"(#\s*define\s+([A-Za-z_][A-Za-z0-9_]*)\s*\()"));
    EXPECT_EQ(byScanner(text, forEachObjectMacro),
              byExpression(text, R"(#\s*define\s+([A-Za-z_][A-Za-z0-9_]*)\s+(?!\()[^\r\n]+)"));
    EXPECT_EQ(byScanner(text, forEachFunctionDefinition),
              byExpression(text,
                           "(?:void|int|float|char|string|mixed|decimal|pointer)\\s+"
                           "([A-Za-z_][A-Za-z0-9_]*)\\s*\\("));
    EXPECT_EQ(byScanner(text, forEachInclude),
              byExpression(text, R"re(#\s*(?:include|import)\s*["<]([^">]+)[">])re"));
    EXPECT_EQ(byScanner(text, forEachCall), byExpression(text, R"(([A-Za-z_][A-Za-z0-9_]*)\s*\()"));
    std::size_t calls = 0;
    forEachBindentityCall(text, [&](std::string_view) { ++calls; });
    EXPECT_EQ(calls, byExpression(text, R"((\bbindentity\s*\())").size());
}

TEST(ScriptPatterns, MatchWhatTheirExpressionsMatch) {
    for (const char* text :
         {"#define GUARD\n#define X 1\n#define F(x) (x)\n#define G (y)", "#define H  (two blanks)",
          "#define E \n\n(next", "# \t define\n A \r\n B",
          "int main(){foo (1);2bar(3);unint x (4)}",
          "#include <a.h>\n#import\"b.h\"\n#include \"\"\n#include \"c", "#include #import 'x'",
          "bindentity(a,b) xbindentity(c) bindentity (d) 2bindentity(e) bindentity bindentity("}) {
        expectSameAsExpressions(text);
    }
    // Every order of the pieces that matter is a text worth trying.
    const std::vector<std::string> pieces = {
        "#", "define", "include", "import", " ", "\n", "\r", "(",    ")",   "\"",        "<",
        ">", "void",   "int",     "x1",     "_", "7",  "\t", "char", "int", "bindentity"};
    std::mt19937 random(7);
    for (int i = 0; i < 3000; ++i) {
        std::string text;
        for (int n = 0; n < 14; ++n) text += pieces[random() % pieces.size()];
        expectSameAsExpressions(text);
        if (HasFailure()) break;
    }
}

TEST(ScriptPatterns, SplitsTheArgumentsOfACall) {
    std::vector<std::string_view> arguments;
    ASSERT_TRUE(splitCallArguments(" self , f(1,2), \"a,)\" ) tail", arguments));
    EXPECT_EQ(arguments, (std::vector<std::string_view>{"self", "f(1,2)", "\"a,)\""}));
    ASSERT_TRUE(splitCallArguments("  )", arguments));
    EXPECT_TRUE(arguments.empty());
    EXPECT_FALSE(splitCallArguments("a, (b", arguments));
    EXPECT_FALSE(splitCallArguments(std::string(kMaxCallBytes, 'a') + ")", arguments));
}

}  // namespace
}  // namespace tindrel
