#include "analysis/ScriptScan.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TempFolder.hpp"
#include "analysis/ScriptKnownNames.hpp"

namespace tindrel {
namespace {

using Names = std::vector<std::string>;

// A game of the given files, and the findings on one of them.
class ScriptScanTest : public testing::Test {
  protected:
    void write(const std::string& file, const std::string& text) {
        folder_.write("data/" + file, text);
    }
    void start(std::uint64_t walkSteps = kWalkSteps, bool asWritten = false) {
        project_ = scanProject(folder_.path());
        game_.emplace(project_.dataDir, project_.root, std::span<const TreeEntry>(), asWritten);
        scanner_.emplace(*game_, project_, walkSteps);
    }
    Names scan(const std::string& file) {
        return scanner_->scanScriptSource(project_.dataDir / file).names;
    }

    test::TempFolder folder_;
    ProjectScan project_;
    std::optional<GameReader> game_;
    std::optional<ScriptScanner> scanner_;
};

TEST_F(ScriptScanTest, KnowsWhatAPortAnswersAndPromises) {
    const auto& known = knownScriptNames();
    EXPECT_EQ(known.size(), 154U);
    EXPECT_TRUE(known.contains("bindentity") && known.contains("switch"));
    for (const char* answered : {"get_entity", "aicheckattack", "aicheckmove"}) {
        EXPECT_FALSE(known.contains(answered)) << answered << " is not promised";
    }
}

TEST_F(ScriptScanTest, ReportsCallsThatNothingServes) {
    write("a.c",
          "#include \"lib.h\"\n#define TWICE(x) x\nvoid main(){ if (1) own(); FromLib(); Odd(); "
          "TWICE(1); spawn(); ODD(); other (2); /* gone() */ }\nvoid own(){}");
    write("lib.h", "void fromlib(){ deeper(); }");
    start();
    EXPECT_EQ(scan("a.c"), (Names{"odd", "other", "gone", "deeper"}));
    EXPECT_EQ(scan("lib.h"), (Names{"deeper"}));
    const auto inlined = [&](const char* text) {
        return scanner_->scanScriptSource(project_.dataDir / "x.txt", text).names;
    };
    EXPECT_EQ(inlined("fromlib(); a();"), (Names{"fromlib", "a"}));
    EXPECT_EQ(inlined("#import \"LIB.H\"\nfromlib(); a();"), (Names{"a", "deeper"}));
}

TEST_F(ScriptScanTest, FunctionsOfTheEngineAreFindingsOnlyToTheLetter) {
    write("a.c",
          "#include \"b.c\"\nint f(){\n return (1);\n}\nvoid g(){ round(1); gone(TypeOf(2)); }");
    write("b.c", "void round(int a){ trunc(a); }");
    start();
    const ScriptReport mended = scanner_->scanScriptSource(project_.dataDir / "a.c");
    EXPECT_EQ(mended.names, (Names{"gone"}));
    EXPECT_EQ(mended.mendedLines, (std::vector<std::uint64_t>{3, 5})) << "round is its own";
    start(kWalkSteps, true);
    const ScriptReport asWritten = scanner_->scanScriptSource(project_.dataDir / "a.c");
    EXPECT_EQ(asWritten.names, (Names{"return", "gone", "typeof", "trunc"}));
    EXPECT_TRUE(asWritten.mendedLines.empty());
}

TEST_F(ScriptScanTest, TellsWhatOnlyCommentsAndTextsCall) {
    write("a.c",
          "#include \"b.c\"\n// one() two()\n/* three( */ log(\"four (\\\"five(1)\"); '\"' six();");
    write("b.c", "two(); // own()\nvoid own(){}");
    start();
    const ScriptReport report = scanner_->scanScriptSource(project_.dataDir / "a.c");
    EXPECT_EQ(report.names, (Names{"one", "two", "three", "four", "five", "six"}));
    EXPECT_EQ(report.mentioned, (Names{"one", "three", "four", "five"}));
    EXPECT_EQ(scanner_->scanScriptSource(project_.dataDir / "b.c").mentioned, Names{});
}

TEST_F(ScriptScanTest, FindsIncludesAsThePortDoes) {
    write("scripts/a.c",
          "#include \"data\\Scripts\\b.h\"\n#include \"beside.h\"\n#include \"../up.h\"\n"
          "#include \"C:/x.h\"\n#include \"gone.h\"\n#include \"elsewhere/unique.h\"\n"
          "#include \"two.h\"");
    for (const char* file :
         {"scripts/b.h", "scripts/beside.h", "lib/unique.h", "x/two.h", "y/two.h", "up.h"}) {
        write(file, "");
    }
    start();
    EXPECT_EQ(scan("scripts/a.c"), (Names{"unsafe-include:../up.h", "unsafe-include:C:/x.h",
                                          "include-missing:gone.h", "include-missing:two.h"}));
}

TEST_F(ScriptScanTest, ClassifiesBindings) {
    write("few.c", "bindentity(a);");
    write("good.c", "bindentity(a,b); bindentity(a,b,1,2,3,0,6|64,1);");
    write("far.c", "bindentity(a,b,1,2,3,0, 0x4000 );");
    write("live.c", "bindentity(a,b,1,2,3,0,mode);");
    start();
    EXPECT_EQ(scan("few.c"), (Names{"api/function:bindentity-arguments"}));
    EXPECT_EQ(scan("good.c"), Names{});
    EXPECT_EQ(scan("far.c"), (Names{"api/function:bindentity-config-advanced"}));
    EXPECT_EQ(scan("live.c"), (Names{"api/function:bindentity-config-dynamic"}));
}

TEST_F(ScriptScanTest, StopsAtTheDepthLimit) {
    write("loop.c", "#include \"loop.c\"\nodd();");
    // File 0 includes 1, and so on: 32 includes deep is one too many.
    for (int i = 0; i <= 40; ++i) {
        write("c" + std::to_string(i) + ".h",
              "#include \"c" + std::to_string(i + 1) + ".h\"\nf" + std::to_string(i) + "();");
    }
    start();
    EXPECT_EQ(scan("loop.c"), (Names{"include-depth-limit", "odd"}));
    const Names deep = scan("c0.h");
    ASSERT_EQ(deep.size(), 1U + 32U);
    EXPECT_EQ(deep.front(), "include-depth-limit");
    EXPECT_EQ(deep.back(), "f31");
    const Names shallow = scan("c10.h");
    EXPECT_EQ(shallow.front(), "include-missing:c41.h");
    EXPECT_EQ(shallow.size(), 1U + 31U);
}

TEST_F(ScriptScanTest, CountsParametersOfTheFirstDefinition) {
    write("a.c", "#include \"b.h\"\nvoid none( void ){}\nint Two(int a, float b){}\nvoid no(){}");
    write("b.h", "void far(int x){}\nvoid two(){}");
    start();
    const auto* const counts = scanner_->parameterCounts(project_.dataDir / "a.c");
    ASSERT_NE(counts, nullptr);
    EXPECT_EQ(*counts,
              (ScriptScanner::ParameterCounts{{"none", 0}, {"two", 2}, {"no", 0}, {"far", 1}}));
}

// Seven files share 140 steps, 20 each: five that include one another need more.
TEST_F(ScriptScanTest, AFileBeyondItsShareSaysSoAndTakesNothingFromOthers) {
    const std::string all = [] {
        std::string text;
        for (const char* name : {"a", "b", "c", "d", "e"}) {
            text += std::string("#include \"") + name + ".h\"\n";
        }
        return text;
    }();
    for (const char* name : {"a", "b", "c", "d", "e"}) {
        write(std::string(name) + ".h", all + "odd(); more();");
    }
    write("plain1.c", "two(); one();\nvoid f(int a){}");
    write("plain2.c", "#include \"plain1.c\"\nlast();");
    for (const char* first : {"a.h", "plain2.c"}) {
        start(140);
        static_cast<void>(scan(first));
        EXPECT_EQ(scan("plain2.c"), (Names{"last", "two", "one"})) << "after " << first;
        EXPECT_EQ(scan("a.h"), (Names{"include-depth-limit", "include-walk-limit", "odd", "more"}));
        EXPECT_EQ(scanner_->parameterCounts(project_.dataDir / "a.h"), nullptr);
        EXPECT_NE(scanner_->parameterCounts(project_.dataDir / "plain1.c"), nullptr);
    }
}

// A graph in which a walk without memory would take longer than anybody waits.
TEST(IncludeGraph, ManyWaysToTheSameFilesCostNothing) {
    constexpr FileId kFiles = 3000;
    IncludeGraph graph;
    for (FileId i = 0; i < kFiles; ++i) static_cast<void>(graph.add());
    for (FileId i = 0; i < kFiles; ++i) {
        for (FileId next = i + 1; next < std::min(i + 30, kFiles); ++next) {
            graph.node(i).includes.push_back(next);
        }
        graph.node(i).uses.push_back(i);
        if (i % 2 == 0) graph.node(i).definitions.push_back(i);
    }
    std::vector<bool> wanted(kFiles, true);
    wanted[1] = false;
    const auto undefined = graph.undefinedUses(kFiles, wanted);
    EXPECT_EQ(undefined[0].size(), kFiles / 2);
    EXPECT_TRUE(undefined[1].empty());
    EXPECT_EQ(undefined[kFiles - 2], (std::vector<SymbolId>{kFiles - 1}));
    std::vector<int> heights;
    graph.extendHeights(heights);
    EXPECT_EQ(heights[0], kIncludeDepthLimit);
    EXPECT_EQ(heights[kFiles - 20], 19);
    // Two that come later, one of them in a cycle of its own.
    for (FileId i = 0; i < 2; ++i) graph.node(graph.add()).includes = {kFiles - 20, kFiles + i};
    graph.node(kFiles).includes.pop_back();
    graph.extendHeights(heights);
    EXPECT_EQ(heights[kFiles], 20);
    EXPECT_EQ(heights[kFiles + 1], kIncludeDepthLimit);

    bool complete = true;
    EXPECT_EQ(graph.reach(0, complete).size(), 31U * 29U + 1U);
    EXPECT_FALSE(complete);
    EXPECT_EQ(graph.reach(kFiles - 20, complete).size(), 20U);
    EXPECT_TRUE(complete);
    std::uint64_t budget = 10'000'000;
    EXPECT_EQ(graph.walk(0, budget).size(), 31U * 29U + 1U);
    budget = 10;
    EXPECT_TRUE(graph.walk(0, budget).empty());
}

}  // namespace
}  // namespace tindrel
