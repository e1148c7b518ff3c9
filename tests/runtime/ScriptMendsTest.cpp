// What scripts mean where their letter loses it, in both readings.

#include <gtest/gtest.h>

#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "ScriptCheck.hpp"
#include "ScriptTrial.hpp"

namespace port::script {
namespace {

struct Told {
    std::string said, error;
    bool operator==(const Told&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Told& told) {
    return out << '"' << told.said << "\" \"" << told.error << '"';
}

Told told(const char* text, bool asWritten) {
    Trial trial;
    trial.folder.write("lib.h", "void lib() { say(7); }\n");
    trial.vm.setRoot(trial.folder.path(), asWritten);
    const ScriptRunResult result = trial.script(text);
    std::string said = trial.host.said;
    for (const std::string& name : result.unsupported.all()) said += " ?" + name;
    return {said, result.error};
}

TEST(ScriptMends, HoldUnlessAScriptIsTakenToTheLetter) {
    const struct {
        const char* text;
        Told asWritten, mended;
    } rows[] = {
        {"#define A 1 // one\n#define B(x) x /* \"it\" */ + 1\nvoid main() { say(A); say(B(A)); }",
         {"", "expected ) near ''"},
         {"1 2", ""}},
        {"#define A '//' /* kept */\n#define C // nothing\nvoid main() { say(A, C); }",
         {"", "unexpected token "},
         {"'//' 1", ""}},
        {"#import \"lib.h\" // here\n#include <LIB.H> /* too */\nvoid main() { lib(); }",
         {" ?lib", ""},
         {"7", ""}},
        {"#define A 1\n#define F() 2\n#undef A // away\n#undef F\n#undef G\n"
         "void main() { int A = 5; say(A); F(); }",
         {" ?preprocessor:undef ?preprocessor:undef ?preprocessor:undef", "unexpected token ="},
         {"5 ?F", ""}},
        {"void main() { int a, b = 2 + 1, c; float d = b; say(a, b, c, d); }",
         {"", "unexpected token ,"},
         {"0 3 0 3", ""}},
        {"void main() { for (int i = 0, n = 2; i < n; i++) say(i); }",
         {"", "expected ; near ','"},
         {"0 1", ""}},
        {"void main() { int c = 2; while (c-- > 0) say(c); say(c); }",
         {"", "expected ) near '--'"},
         {"1 0 -1", ""}},
        {"void main() { n = 1; say(n++, n--, n); int i = 5; i = i++ + i; say(i); }",
         {"", "expected ) near '++'"},
         {"1 2 1 11", ""}},
        // The left side is what it was before the right side stepped it.
        {"void main() { int i = 5; say(i + i++ * 2, i); switch (i) { case i++: say(9); } say(i); }",
         {"", "expected ) near '++'"},
         {"15 6 9 7", ""}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(told(row.text, true), row.asWritten) << row.text;
        EXPECT_EQ(told(row.text, false), row.mended) << row.text;
    }
}

TEST(ScriptMends, LeaveFaultsAlone) {
    for (const char* text : {
             "void main() { ++i; }",
             "void main() { say(++i); }",
             "void main() { x = a--b; }",
             "void main() { x = a++ (2); }",
             "void main() { a = 1, b = 2; }",
             "#define A 1 /* open\nvoid main() { say(A); }\n*/",
             "#import \"lib.h\" here\nvoid main() { lib(); }",
         }) {
        EXPECT_EQ(told(text, false), told(text, true)) << text;
    }
}

TEST(ScriptMends, AreFoundWithTheirPlaces) {
    const tindrel::test::TempFolder folder;
    folder.write("lib.h", "\n#undef X\nvoid lib() { int a,\n b; while (a--) f(); }\n");
    folder.write("main.c", "#import \"lib.h\" // l\n#define Y 1 // y\nvoid main() { }\n");
    for (const bool asWritten : {false, true}) {
        ScriptCheck check(folder.path(), asWritten);
        std::vector<std::string> places;
        const auto add = [&](const std::vector<MendedPlace>& mended) {
            for (const MendedPlace& place : mended) {
                places.push_back(std::to_string(static_cast<int>(place.mend)) +
                                 place.file.filename().string() + std::to_string(place.line));
            }
        };
        const CheckedScript& script = check.file("main.c");
        add(script.mended);
        for (const CheckedFunction* const function : script.functions) add(function->mended);
        add(check.command("lib();\nint a, b;").mended);
        if (asWritten) {
            EXPECT_EQ(places, std::vector<std::string>{});
            continue;
        }
        const std::set<std::string> distinct(places.begin(), places.end());
        EXPECT_EQ(distinct, (std::set<std::string>{"1main.c1", "2lib.h2", "0main.c2", "3lib.h3",
                                                   "4lib.h4", "32"}));
    }
}

}  // namespace
}  // namespace port::script
