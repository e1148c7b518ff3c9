#include <gtest/gtest.h>

#include "ScriptTrial.hpp"

namespace port::script {
namespace {

TEST(ScriptStatements, RunInOrderAndBranch) {
    const ScriptCase rows[] = {
        {"say(1); say(2) say(3)", "1 2 3"},  // the ';' is optional
        {"if (1) say(1); else say(2);", "1"},
        {"if (0) say(1); else say(2);", "2"},
        {"IF (0) say(1); Else If (1) { say(2); } ELSE say(3);", "2"},
        {"if (1) if (0) say(1); else say(2);", "2"},  // else belongs to the inner if
        {"{ { say(1); } say(2); }", "1 2"},
        {"else say(1);", "1"},  // a stray else is a variable that nobody set
        {"return; say(1);", ""},
        {"say(1); return 5 say(2);", "1"},
        {"if (1) { return; } say(2);", ""},
    };
    expectScripts(rows);
}

TEST(ScriptStatements, AssignAndDeclare) {
    const ScriptCase rows[] = {
        {"int x = 3; say(x); x = x + 1; say(x);", "3 4"},
        {"int x; say(x); string s; say(s);", "0 0"},  // whatever the type, it begins as 0
        {"float x = 7; x += 1; say(x); x -= 3; say(x); x *= 4; say(x); x /= 8; say(x);",
         "8 5 20 2.5"},
        {"int x = 17; x %= 5; say(x); x <<= 4; say(x); x >>= 1; say(x); x |= 3; say(x);"
         "x &= 18; say(x); x ^= 1; say(x);",
         "2 32 16 19 18 19"},
        {"int x = 5; x /= 0; say(x); x = 7; x %= 0; say(x);", "0 0"},
        {"int x = 5; x++; say(x); x--; x-- say(x);", "6 4"},
        {"mixed s = \"a\"; s += \"b\"; say(s);", "0"},  // += never joins
        {"mixed s = \"4\"; s += \"3\"; say(s); s = s + \"x\"; say(s);", "7 '7x'"},
        {"mixed s = \"2\"; s++; say(s);", "3"},
        {"int x += 2; say(x); int y++; say(y);", "2 1"},  // a declaration starts from what was read
        {"x = 5; x += say(1) + x; say(x);", "1 11"},
        {"MIXED x = 1; say(x); say(X);", "1 0"},  // keywords ignore case, names do not
        {"null = 5; say(null);", "5"},
        {"say(null); say(NuLL);", "@0 @0"},
        {"true = 0; say(true, False);", "true false"},
        {"int if2 = 4; say(if2);", "4"},
        {"string = 4;", "", "unexpected token ="},  // a type is no name
    };
    expectScripts(rows);
}

TEST(ScriptStatements, DoNotKnowWhatIsNoSyntax) {
    const ScriptCase rows[] = {
        {"int x = 1; say(x); ++x; say(x);", "1", "unexpected token ++"},
        {"say(1); ; say(2);", "1", "unexpected token ;"},
        {"float x, z; say(1);", "", "unexpected token ,"},
        {"int a = array(3); say(1); say(a[0]);", "1", "expected ) near '['"},
        {"int a = 1; a[0] = 2; say(1);", "", "unexpected token ["},
        {"case 1: say(1);", "", "unexpected token :"},
        {"if say(1);", "", "expected ( near 'say'"},
        {"if (1 say(1);", "", "expected ) near 'say'"},
        {"int x = ; say(1);", "", "unexpected token ;"},
        {"say(1", "", "expected ) near '}'"},
        {"say(1,);", "", "unexpected token )"},
        {"void main() { say(1);", "1", "expected } near ''"},
        {"int *p = 1;", "", "unexpected token *"},
        {"\"if\" (0) say(1);", "1"},  // a constant is no keyword
    };
    expectScripts(rows);
}

// What stands before the fault has run; a part that is skipped is parsed all the same.
TEST(ScriptStatements, FailWhereAWalkMeetsTheFault) {
    const ScriptCase rows[] = {
        {"say(1); say(2) + ; say(3);", "1 2", "unexpected token ;"},
        {"say(say(1), );", "1", "unexpected token )"},
        {"if (say(0)) { say(1); ) } say(2);", "0", "unexpected token )"},
        {"if (say(1)) { say(2); } else { ) } say(3);", "1 2", "unexpected token )"},
        {"if (1) { return; } else { ) }", ""},  // nobody comes to the broken part
        {"say(1); return; )", "1"},
        {"while (say(0)) { say(1); ) }", "0", "unexpected token )"},
        {"while (say(1)) { say(2); ) }", "1", "unexpected token )"},
        {"do { say(1); ) } while (0);", "", "unexpected token )"},
        {"do { say(1); } until (0);", "", "expected while after do"},
        {"do { say(1); } while (say(0) ;", "", "expected ) near ';'"},
        {"for (say(1); say(0); ) ) say(2);", "1 0", "unexpected token )"},
        {"for (say(1); say(1); say(2) { say(3); }", "1 1", "expected ) near '{'"},
        {"for (say(1); ; ) { ) }", "1", "unexpected token )"},
        {"for (say(1) say(2);;) ;", "1", "expected ; near 'say'"},
        {"for (int i = 0, j = 0; i < 3; i++) say(i);", "", "expected ; near ','"},
        {"say(0 && ));", "", "unexpected token )"},
        {"say(1) || ];", "1", "unexpected token ]"},
        {"say(1) ? say(2) : ];", "1 2", "unexpected token ]"},
        {"say(0) ? ] : say(2);", "0", "unexpected token ]"},
        {"say(1) ? say(2) ; say(3);", "1 2", "expected : near ';'"},
        {"while (say(1)) { while (say(0)) { ) } }", "1", "unexpected token )"},
    };
    expectScripts(rows);
}

TEST(ScriptStatements, SwitchRunsFromTheLabelThatMatches) {
    const ScriptCase rows[] = {
        {"switch (2) { case 1: say(1); break; case 2: say(2); break; case 3: say(3); }", "2"},
        {"switch (1) { case 1: say(1); case 2: say(2); default: say(3); }", "1 2 3"},
        {"switch (9) { case 1: say(1); default: say(2); case 3: say(3); }", "2 3"},
        {"switch (9) { case 1: say(1); } say(2);", "2"},
        {"switch (\"b\") { case \"a\": say(1); break; case \"b\": say(2); break; }", "2"},
        {"switch (1) { case \"1\": say(1); break; case 1: say(2); }",
         "1"},  // the first that is equal
        // Every label is evaluated, also behind the match.
        {"switch (1) { case say(1): say(7); break; case say(2): say(8); }", "1 2 7"},
        {"SWITCH (3) { Case 1 + 2: say(1); BREAK; Default: say(2); }", "1"},
        {"switch (1) { case 1: case 2: say(1); break; case 3: say(2); }", "1"},
        {"switch (5) { say(1); default: say(2); break; default: say(3); }", "3"},
        {"switch (1) { case 1: switch (2) { case 2: say(1); break; } say(2); break; case 3: "
         "say(3); }",
         "1 2"},
        // Labels that are numbers, met by keys of every kind.
        {"int i; for (i = -2; i < 4; i++) switch (i) { case 3: say(33); break; case -1: say(11);"
         "break; case 0: say(0); break; default: say(9); }",
         "9 11 0 9 9 33"},
        {"switch (1) { case 1: say(1); break; case 1.0000001: say(2); }", "1"},
        {"switch (2.0000001) { case 1: say(1); case 2: say(2); case 3: say(3); }", "2 3"},
        {"switch (\"2\") { case 1: say(1); break; case 2: say(2); }", "2"},
        {"switch (\"2.0\") { case 2: say(2); break; default: say(3); }", "3"},
        {"switch (true) { case 0: say(0); break; case 1: say(1); }", "1"},
        {"switch (getlocalvar(\"x\")) { case 0: say(0); break; case 1: say(1); }", "0"},
        {"switch (array()) { case 0: say(0); break; default: say(2); }", "2"},
        {"switch (1) {} say(1);", "1"},
        {"switch (1) { case 1: } say(1);", "1"},
        {"switch (1) { case 1: if (1) break; say(1); } say(2);", "2"},
        {"void main() { switch (1) { case 1: return; } say(1); }", ""},
    };
    expectScripts(rows);
}

// Only what is run is parsed: the body before the label that is met may be anything.
TEST(ScriptStatements, SwitchBodiesAreParsedWhenTheyAreRun) {
    const ScriptCase rows[] = {
        {"switch (2) { ) case 1: say(1); ) case 2: say(2); break; ) } say(3);", "2 3"},
        {"switch (1) { case 1: say(1); ) case 2: say(2); }", "1", "unexpected token )"},
        {"if (0) { switch (1) { case 1: ) } } say(1);", "1"},
        {"if (0) { switch (1) { case ): } } say(1);", "", "unexpected token )"},
        {"switch (say(1)) { case say(2) say(3); }", "1 2", "expected : near 'say'"},
        {"switch (1) { default say(1); }", "", "expected : near 'say'"},
        {"switch (1) { case 1: say(1);", "1", "expected } near ''"},
        {"void main() { switch (1) { case 1: say(1);", "", "expected } near ''"},
        {"int i = 0; while (i < 2) { i++; switch (i) { case 1: if (1) continue; ) case 2: say(i); }"
         " say(9); }",
         "2 9"},
        // A label may stand inside a statement that begins before it.
        {"switch (7) { case 1: say(1 ? case + 7 : 3); say(4); }", "", "unexpected token )"},
        {"int case = 5; switch (3) { case 1: 1 ? case + 3 : say(1); say(4); }", "1 4"},
        {"switch (1) { case 1: 1 ? case + 3 : say(1); say(4); }", "4"},
        // A constant that is nothing but a brace ends the search for the end.
        {"switch (1) { case 1: x = \"}\"; say(1); }", "", "unexpected token ;"},
        {"switch (1) { case 1: x = \"{\"; say(1); } }", "1", "unexpected token }"},
    };
    expectScripts(rows);
}

}  // namespace
}  // namespace port::script
