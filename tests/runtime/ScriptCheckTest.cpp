#include "ScriptCheck.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ScriptLimits.hpp"
#include "TempFolder.hpp"

namespace port::script {
namespace {

// "<function> <file>:<line> <token>: <error>" of each break.
std::vector<std::string> shown(const std::vector<const CheckedFunction*>& functions) {
    std::vector<std::string> out;
    for (const CheckedFunction* const function : functions) {
        for (const ScriptBreak& found : function->breaks) {
            out.push_back(function->name + " " + found.file.filename().string() + ":" +
                          std::to_string(found.line) + " " + found.token + ": " + found.error);
        }
    }
    return out;
}

std::vector<std::string> shown(const CheckedFunction& function) {
    return shown(std::vector{&function});
}

TEST(ScriptCheck, NamesThePlaceInTheFileThatHoldsIt) {
    const tindrel::test::TempFolder folder;
    folder.write("main.c",
                 "#include \"lib.h\"\n#define PAIR(a) a,\\\n\n#include \"lib.h\"\n"
                 "void main(){\n  int x = 1;\n  Good(x);\n}\nvoid twice(){ f(PAIR(1)); }\n");
    folder.write("lib.h",
                 "// one\nvoid Bad()\n{\n#ifdef NEVER\n  x y z\n#endif\n  if (1 { }\n}\n"
                 "void good(int a){ bad(); log(\"a\\tb\" }; }\n");
    ScriptCheck check(folder.path());
    const CheckedScript& script = check.file("data/MAIN.c");
    EXPECT_EQ(script.error, "");
    EXPECT_TRUE(script.files.size() >= 3 && script.files.back()->path.filename() == "lib.h");
    EXPECT_EQ(shown(script.functions),
              (std::vector<std::string>{"bad lib.h:7 {: expected ) near '{'",
                                        "good lib.h:9 }: expected ) near '}'",
                                        "twice main.c:9 \\: unexpected token \\"}));
    ASSERT_NE(script.find("main"), nullptr);
    EXPECT_EQ(script.find("main")->calls, (std::vector<std::string>{"good"}));
    EXPECT_EQ(script.find("good")->calls, (std::vector<std::string>{"bad"}));

    // A command sees the script's macros and functions; its lines count from its own first one.
    EXPECT_EQ(shown(check.command("good(1);\ngood(2;")),
              (std::vector<std::string>{"__tindrel_animation_frame :2 ;: expected ) near ';'"}));
    EXPECT_EQ(shown(check.command("good(1);\nx = 2;")), std::vector<std::string>{});
    EXPECT_EQ(check.command("good(1);").calls, (std::vector<std::string>{"good"}));
}

TEST(ScriptCheck, ScriptsThatCannotBeHadOrAreLeftOpen) {
    const tindrel::test::TempFolder folder;
    folder.write("open.c", "void main(){ }\n/* for ever");
    ScriptCheck check(folder.path());
    EXPECT_EQ(check.file("../open.c").error, "unsafe script path");
    EXPECT_EQ(check.file("gone.c").error, "script not found");
    EXPECT_FALSE(check.file("open.c").closed);
    EXPECT_EQ(check.file("").error, "");
    EXPECT_EQ(shown(check.command("f(;")).size(), 1U);
    EXPECT_EQ(shown(check.command("f();")).size(), 0U);
}

TEST(ScriptCheck, NamesTheLineOfAFileBeyondTheDepthOfIncludes) {
    const tindrel::test::TempFolder folder;
    const int last = kMaxIncludeDepth + 1;
    for (int i = 0; i < last; ++i) {
        folder.write(std::to_string(i) + ".c", "#include \"" + std::to_string(i + 1) + ".c\"\n");
    }
    folder.write(std::to_string(last) + ".c", "#define A\n\nvoid deep(){ deep(; }\n");
    ScriptCheck check(folder.path());
    EXPECT_EQ(
        shown(check.file("0.c").functions),
        std::vector<std::string>{"deep " + std::to_string(last) + ".c:3 ;: unexpected token ;"});
}

// What scripts share is read once, unless its meaning lies with what stands around it.
TEST(ScriptCheck, SharedIncludesMeanWhatTheyMeanInEachScript) {
    const tindrel::test::TempFolder folder;
    folder.write("lib.h", "void one(){ A }\n#ifdef B\nvoid two(){ two(; }\n#endif\n");
    folder.write("tail.h", "int x = \"{\";\nvoid three(){ three(; }\n");
    folder.write("open.h", "void four(){\n");
    folder.write("plain.c", "#define A a();\n#include \"lib.h\"\n#include \"tail.h\"\n");
    folder.write("other.c", "#define A a();\n#define B\n#include \"lib.h\"\n#include \"lib.h\"\n");
    folder.write("first.c", "void one(){ }\n#define A (\n#include \"lib.h\"\n");
    folder.write("inside.c", "#include \"open.h\"\n#define A b(;\n#include \"lib.h\"\n");
    std::size_t texts = 0;
    folder.write("texts.c", "void one(){ log(\"a\"); }\n");
    folder.write("twice.c", "#include \"texts.c\"\n");
    ScriptCheck check(folder.path(), false, [&](const TextArgument& told) {
        texts += told.text == "a" && told.line == 1 && told.file.filename() == "texts.c";
    });
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(shown(check.file("plain.c").functions), std::vector<std::string>{});
        EXPECT_EQ(shown(check.file("other.c").functions),
                  std::vector<std::string>{"two lib.h:3 ;: unexpected token ;"});
        EXPECT_EQ(shown(check.file("first.c").functions), std::vector<std::string>{});
        EXPECT_EQ(shown(check.file("inside.c").functions),
                  std::vector<std::string>{"four lib.h:1 ;: unexpected token ;"});
        EXPECT_FALSE(check.file("inside.c").closed);
        EXPECT_EQ(check.file("twice.c").functions.size(), 1U);
        EXPECT_EQ(shown(check.command("one(;")).size(), 1U);
    }
    EXPECT_GE(texts, 1U);
}

}  // namespace
}  // namespace port::script
