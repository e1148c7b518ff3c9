#include "ScriptPreprocessor.hpp"

#include <gtest/gtest.h>

#include "ScriptLimits.hpp"
#include "TempFolder.hpp"

namespace port::script {
namespace {

struct PreprocessorTest : testing::Test {
    // The expanded text, taken as it is written, without its empty lines, a line break as '|'.
    std::string expand(std::string_view source, PreprocessorState state = {}) {
        ScriptSources sources(folder.path(), true);
        const auto file = folder.path() / "scripts" / "main.c";
        state.imported.insert(&sources.source(file));
        const std::string text = preprocessScript(sources, file, source, state);
        reports.clear();
        for (const std::string& report : state.unsupported) {
            reports += reports.empty() ? report : " " + report;
        }
        std::string out;
        for (const char c : text) {
            if (c != '\n') {
                out += c;
            } else if (!out.empty() && out.back() != '|') {
                out += '|';
            }
        }
        return out;
    }

    tindrel::test::TempFolder folder;
    std::string reports;
};

TEST_F(PreprocessorTest, ExpandsMacros) {
    const struct {
        const char* source;
        const char* text;
        const char* reports = "";
    } rows[] = {
        {"#define A\nA", "1|"},
        {" #  DEFINE A 2\r\nA;\r", "2;\r|"},
        {"#define F (x)\nF F(1)", "(x) (x)(1)|"},  // a blank makes it an object macro
        {"#define F(x) x+x\nF(1) F (2) F", "1+1 2+2 F|"},
        {"#define F(a , b) b a\nF(1,2) F((1,2),\",\") F( 3 , g(4,5) )",
         "2 1 \",\" (1,2) g(4,5) 3|"},
        {"#define F(a) [a]\nF(1,2) F() F(", "F(1,2) [] F(|"},  // a wrong count stays as it is
        {"#define F() 1\nF() F( ) F(2)", "1 1 F(2)|"},
        {"#define F(a) a\nF(F(1)) F(F(", "1 F(F(|"},
        {"#define A 1\n\"A\" 'A' \"\\\"A\" A1 1A _A A", "\"A\" 'A' \"\\\"A\" A1 1A _A 1|"},
        {"#define a 1\na A", "1 A|"},
        {"#define A B\n#define B C\n#define C 3\nA", "3|"},
        {"#define A (A)\nA", "((((((((((((((((A))))))))))))))))|"},  // 16 passes
        {"#define A 1 \\\n2\nA", "2|1 \\|"},  // a backslash at the end of a line means nothing
        {"#define A 1\n#define A 2\nA", "2|"},
        {"#define F(a b\nF", "F|", "preprocessor-function-macro-malformed:F"},
        {"#define\n#define +\nx", "x|"},
        {"#define F(a) a\n#define F 2\nF(1) F", "1 2|"},
        {"#undef A\n#pragma once\n#if 1\nx\n#", "x|",
         "preprocessor:undef preprocessor:pragma preprocessor:if preprocessor:"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(expand(row.source), row.text) << row.source;
        EXPECT_EQ(reports, row.reports) << row.source;
    }
}

TEST_F(PreprocessorTest, FollowsConditions) {
    const struct {
        const char* source;
        const char* text;
    } rows[] = {
        {"#define A\n#ifdef A\nx\n#else\ny\n#endif\nz", "x|z|"},
        {"#define A(x) 1\n#ifndef A\nx\n#else\ny\n#endif\nz", "y|z|"},
        {"#ifdef a\nx\n#ifndef a\ny\n#else\nw\n#endif\n#else\nz\n#endif", "z|"},
        {"#ifndef A\nx\n#else\ny\n#else\nz\n#endif", "x|z|"},  // else turns round again
        {"#else\nx\n#endif\n#endif\ny", "x|y|"},               // unbalanced ones are ignored
        {"#ifdef A\n#define B 1\n#undef C\n#include \"../x\"\n#endif\nB", "B|"},
        {"#ifdef A\nx", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(expand(row.source), row.text) << row.source;
        EXPECT_EQ(reports, "") << row.source;
    }
}

TEST_F(PreprocessorTest, BringsFilesIn) {
    folder.write("scripts/A.h", "a X\n#define X 2\n#undef Y\n");
    folder.write("Other/deep/Only.H", "only");
    folder.write("one/twice.h", "1");
    folder.write("two/twice.h", "2");
    const struct {
        const char* source;
        const char* text;
        const char* reports = "";
    } rows[] = {
        {"#include \"scripts/a.h\"\nX", "a X|2|", "preprocessor:undef"},
        {"#include <DATA/data\\Scripts\\a.H>\nX", "a X|2|", "preprocessor:undef"},
        {"#include \"a.h\"\n#include \"a.h\"\n#include \"a.h\"\nX", "a X|a 2|a 2|2|",
         "preprocessor:undef preprocessor:undef preprocessor:undef"},
        {"#import \"a.h\"\n#import \"scripts/A.h\"\nX", "a X|2|", "preprocessor:undef"},
        {"#import \"main.c\"\nx", "x|"},  // the main file counts as imported
        {"#import \"some/only.h\"", "only|"},
        {"#import \"twice.h\"\nx", "x|"},  // an ambiguous name is no file
        {"#import \"spawn.h\"\n#include \"none.h\"\nx", "x|"},
        {"#include \"../a.h\"\n#import \"/a.h\"\n#import \"\"\nx", "x|",
         "unsafe-include:../a.h unsafe-import:/a.h unsafe-import:"},
        {"#include \"scripts\"\nx", "x|"},  // a folder
    };
    for (const auto& row : rows) {
        EXPECT_EQ(expand(row.source), row.text) << row.source;
        EXPECT_EQ(reports, row.reports) << row.source;
    }
}

TEST_F(PreprocessorTest, StopsAtDepth) {
    folder.write("a.h", "#define A 1\nx A\n#include \"a.h\"\n");
    const std::string text = expand("#include \"a.h\"");
    EXPECT_EQ(reports, "preprocessor-depth");
    const std::string unexpanded = "x 1|#define A 1|x A|#include \"a.h\"|";
    ASSERT_GT(text.size(), unexpanded.size());
    EXPECT_EQ(text.substr(text.size() - unexpanded.size()), unexpanded);
    EXPECT_EQ(text.size(), 24 * 4 + unexpanded.size() - 4);
}

// Each would grow beyond all memory, or take longer than anyone waits.
TEST_F(PreprocessorTest, StopsAtSize) {
    folder.write("twice.h", "#include \"twice.h\"\n#include \"twice.h\"\n");
    folder.write("empty.h", "");
    std::string lines;
    std::string repeated;  // most of it without being read again
    for (int i = 0; i < 100; ++i) {
        lines += "#include \"empty.h\"\n";
        repeated += "#include \"lines.h\"\n";
    }
    folder.write("lines.h", lines);
    // A run that is close to its end, so that it comes soon.
    constexpr std::size_t kLeft = std::size_t{64} << 10U;
    PreprocessorState late;
    late.produced = kMaxExpandedText - kLeft;
    late.consumed = kMaxConsumedText - kLeft;
    for (const std::string& source : {
             std::string("#define A A A A A A A A A A\nA\nA"),
             std::string("#define F(x) F(x x x x) F(x x x x)\nF(1 1 1 1 1 1)\n"),
             std::string("#include \"twice.h\""),
             repeated,
         }) {
        const std::string text = expand(source, late);
        EXPECT_LE(text.size(), kLeft) << source;
        const std::string last = reports.substr(reports.rfind(' ') + 1);
        EXPECT_EQ(last, "preprocessor-size") << source;
        EXPECT_EQ(reports.find("preprocessor-size"), reports.rfind("preprocessor-size"));
    }
}

// Twenty files, each of which includes all that follow: a million visits, the text of few.
TEST_F(PreprocessorTest, WalksDenseIncludesQuickly) {
    for (int i = 0; i < 20; ++i) {
        std::string text = "#define M" + std::to_string(i) + " 1\n";
        for (int j = i + 1; j < 20; ++j) text += "#include \"f" + std::to_string(j) + ".h\"\n";
        folder.write("f" + std::to_string(i) + ".h", text);
    }
    folder.write("f20.h", "x");
    EXPECT_EQ(expand("#include \"f0.h\"\nM0 M19"), "1 1|");
    EXPECT_EQ(reports, "");
}

TEST(ScriptPaths, FoldsCaseAndFindsUniqueNames) {
    const tindrel::test::TempFolder folder;
    folder.write("Scripts/Deep/File.C", "");
    folder.write("Scripts/Other.c", "");
    const auto foreign = folder.write("Scripts/\u65E5.c", "");
    folder.write("a/Same.c", "");
    folder.write("b/same.C", "");
    ScriptPaths paths(folder.path());
    const auto path = [&](const char* relative) { return folder.path() / relative; };
    EXPECT_EQ(paths.scriptCasePath(path("scripts/DEEP/file.c")), path("Scripts/Deep/File.C"));
    EXPECT_EQ(paths.scriptCasePath(path("scripts/none/file.c")), path("Scripts/none/file.c"));
    EXPECT_EQ(paths.scriptUniqueBasename("x\\y/FILE.c"), path("Scripts/Deep/File.C"));
    EXPECT_TRUE(paths.scriptUniqueBasename("same.c").empty());
    EXPECT_TRUE(paths.scriptUniqueBasename("none.c").empty());

    std::filesystem::path out;
    EXPECT_TRUE(paths.safeScriptPath(path("Scripts/Deep/File.C"), "../none.c", out) == false);
    EXPECT_TRUE(paths.safeScriptPath(path("Scripts/main.c"), "deep/x/../FILE.c", out));
    EXPECT_EQ(out, path("Scripts/Deep/File.C"));  // beside the current script
    EXPECT_TRUE(paths.safeScriptPath(path("Scripts/main.c"), "dAtA\\DATA/scripts/other.C", out));
    EXPECT_EQ(out, path("Scripts/Other.c"));
    EXPECT_TRUE(paths.safeScriptPath(path("Scripts/main.c"), "scripts/\u65E5.C", out));
    EXPECT_EQ(out, foreign);
    EXPECT_TRUE(paths.safeScriptPath(path("Scripts/main.c"), "none.c", out));
    EXPECT_EQ(out, path("none.c"));
    for (const char* raw : {"", "data/", "/etc/passwd", "data//x", "a/../../x", "..\\x"}) {
        EXPECT_FALSE(paths.safeScriptPath(path("main.c"), raw, out)) << raw;
    }
}

}  // namespace
}  // namespace port::script
