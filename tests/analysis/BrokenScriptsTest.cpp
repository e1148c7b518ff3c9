#include "analysis/BrokenScripts.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TempFolder.hpp"
#include "analysis/MendedLines.hpp"
#include "analysis/ProjectAnalysis.hpp"
#include "analysis/ScriptCheckReport.hpp"

namespace tindrel {
namespace {

TEST(BrokenScripts, TellPlaceTokenAndWhoComesThere) {
    const test::TempFolder folder;
    folder.write("data/models.txt", "load A a.txt\nload B b.txt\n");
    folder.write("data/a.txt",
                 "animationscript moves.c\nthinkscript data/think.c\nondeathscript empty.c\n"
                 "onspawnscript open.c\n"
                 "anim idle\n@cmd dash 1\nframe a\n@cmd jump\n@cmd dash (2\nframe a\n"
                 "anim walk\n@script\n  int x = ;\n}\n@end_script\nframe b\n"
                 // Lines of its kind stand in sound blocks, too.
                 "anim run\n@script\nif (1) {\n}\n@end_script\nframe b\n"
                 "anim pain\n@script\n{ ask(\n}\n@end_script\nframe b\n");
    folder.write("data/b.txt",
                 "animationscript moves.c\nanim idle\n@cmd jump\n@cmd DASH 2\nframe a\n");
    folder.write("data/moves.c",
                 "#include \"lib.c\"\nvoid dash(int n){ step(n); }\nvoid jump(){}\n");
    folder.write("data/lib.c", "// steps\nvoid step(int n){\n  if (n { move(n); }\n}\n");
    folder.write("data/think.c", "#import \"moves.c\"\nvoid main(){ jump(); }\n");
    folder.write("data/empty.c", "void other(){}\n");
    folder.write("data/open.c", "void main(){}\n/* void later(){}\n");
    folder.write("data/unused.c", "void main(){ ; ( }\n");
    folder.write("data/scripts/update.c", "#include \"data/lib.c\"\nvoid main(){ step(1); }\n");
    const ProjectScan project = scanProject(folder.path());
    GameReader game(project.dataDir, project.root);
    const ProjectAnalysis analysis = analyzeProject(project, game);

    writeScriptCheck(analysis.scriptCheck, folder.path() / "check.txt");
    EXPECT_EQ(folder.read("check.txt"),
              "SCRIPT CHECK\n"
              "Compiled 5 scripts and 6 animation commands: 6 places break off.\n"
              "\n"
              "data/a.txt:9 breaks off at `;`: expected ) near ';'\n"
              "    1 animation command comes there\n"
              "    data/a.txt:9 @cmd\n"
              "\n"
              "data/a.txt:12 breaks off at `;`: unexpected token ;\n"
              "    1 animation command comes there\n"
              "    data/a.txt:12 @script\n"
              "\n"
              "data/a.txt:24 breaks off at `}`: unexpected token }\n"
              "    1 animation command comes there\n"
              "    data/a.txt:24 @script\n"
              "\n"
              "data/empty.c requested function/main() not found\n"
              "    1 hook comes there\n"
              "    data/a.txt:3 ondeathscript\n"
              "\n"
              "data/lib.c:3 `step` breaks off at `{`: expected ) near '{'\n"
              "    1 hook and 3 animation commands come there\n"
              "    data/a.txt:6 @cmd\n"
              "    data/a.txt:9 @cmd\n"
              "    data/b.txt:4 @cmd\n"
              "    data/scripts/update.c scripts/update.c\n"
              "\n"
              "data/open.c a comment, a text or a bracket is left open\n"
              "    1 hook comes there\n"
              "    data/a.txt:4 onspawnscript\n");
    EXPECT_TRUE(analysis.scriptCheck.files.contains("data/lib.c"));
    EXPECT_FALSE(analysis.scriptCheck.files.contains("data/unused.c"));
}

TEST(BrokenScripts, NameTheLineOfEachCallerAmongOthersOfItsKeyword) {
    const test::TempFolder folder;
    folder.write("data/models.txt", "load A a.txt\n");
    folder.write("data/a.txt", "thinkscript good.c\nthinkscript data/Bad.c\nanim idle\nframe a\n");
    folder.write("data/levels.txt", "set A\nfile s.txt\nset B\nfile s.txt\n");
    folder.write("data/s.txt",
                 "spawn A\nspawnscript good.c\nat 0\nspawn A\nspawnscript bad.c\nat 0\n"
                 "spawn A\nspawnscript bad.c\nat 0\n");
    folder.write("data/good.c", "void main(){}\n");
    folder.write("data/bad.c", "void main(){ ( }\n");
    const ProjectScan project = scanProject(folder.path());
    GameReader game(project.dataDir, project.root);
    std::vector<std::string> callers;
    for (const BrokenScript& broken : checkScripts(game, {}).broken) {
        for (const ScriptCaller& caller : broken.callers) {
            callers.push_back(caller.file + ':' + std::to_string(caller.line));
        }
    }
    EXPECT_EQ(callers, (std::vector<std::string>{"data/s.txt:5", "data/s.txt:8", "data/a.txt:2"}));
}

TEST(ScriptKeys, AreListedThatAPortDoesNotAnswer) {
    const test::TempFolder folder;
    folder.write("data/models.txt", "load A a.txt\n");
    folder.write("data/a.txt", "thinkscript a.c\nupdatescript b.c\nanim idle\nframe a\n");
    folder.write("data/lib.c",
                 "void ask(void who){\n"
                 " getentityproperty(who, \"Mood\"); GetEntityProperty(who, \"MOOD\");\n"
                 " getentityproperty(f(1, \"x\"), \"position\");\n"
                 " changeentityproperty(who, \"position\", \"no key\");\n"
                 " openborvariant(\"slow\" + \"ness\"); openborconstant(\"ANI_WALK\");\n"
                 " getlevelproperty(1, \"zmax\"); changelevelproperty(\"camerax\", \"zmax\");\n"
                 " getentityproperty(who, \"opponent\");\n"
                 " openborconstant(\"ENTITY_PROPERTY_OPPONENT\"); openborvariant(\"slowmotion\");\n"
                 "}\n");
    folder.write("data/a.c", "#include \"lib.c\"\nvoid main(){ ask(1); }\n");
    folder.write("data/b.c",
                 "#include \"lib.c\"\nvoid main(){ ask(2); getplayerproperty(0, \"mood\"); }\n");
    const ProjectScan project = scanProject(folder.path());
    const auto keysOf = [&](bool asWritten) {
        GameReader game(project.dataDir, project.root, {}, asWritten);
        std::string keys;
        for (const UnansweredKey& key : checkScripts(game, {}).unanswered) {
            keys += key.function + ' ' + key.key + ' ' + std::to_string(key.places) + ' ' +
                    key.file + ':' + std::to_string(key.line) + '\n';
        }
        return keys;
    };
    EXPECT_EQ(keysOf(false),
              "getentityproperty mood 1 data/lib.c:2\n"
              "getentityproperty position 1 data/lib.c:3\n"
              "getplayerproperty mood 1 data/b.c:2\n"
              "openborvariant slowmotion 1 data/lib.c:8\n");
    EXPECT_EQ(keysOf(true),
              "getentityproperty mood 1 data/lib.c:2\n"
              "getentityproperty opponent 1 data/lib.c:7\n"
              "getentityproperty position 1 data/lib.c:3\n"
              "getplayerproperty mood 1 data/b.c:2\n"
              "openborconstant entity_property_opponent 1 data/lib.c:8\n"
              "openborvariant slowmotion 1 data/lib.c:8\n");
}

// The lines that scripts need mended, the command's own among them, and the one that stays
// broken.
TEST(BrokenScripts, MendedLinesAreToldAndAPrefixStepStaysAnError) {
    const test::TempFolder folder;
    folder.write("data/models.txt", "load A a.txt\n");
    folder.write("data/a.txt",
                 "animationscript moves.c\nanim idle\nbbox.size.x 1\n@cmd f(1)\n@script\n"
                 "#define X 1 // x\nint a, b;\n@end_script\nframe a\n");
    folder.write("data/moves.c", "#undef X\nint f(int i){\n while (i--) g();\n return (++i);\n}\n");
    const auto check = [&](bool asWritten) {
        const ProjectScan project = scanProject(folder.path());
        GameReader game(project.dataDir, project.root, project.entries, asWritten);
        const ProjectAnalysis analysis = analyzeProject(project, game);
        writeScriptCheck(analysis.scriptCheck, folder.path() / "check.txt");
        writeMendedLines(game, folder.path() / kMendedLinesName);
        return analysis.commandStatus.at("bbox.size.x");
    };
    EXPECT_EQ(check(false), CompatStatus::kSupported);
    const std::string list = folder.read(kMendedLinesName);
    EXPECT_EQ(list.substr(list.find("\n\ndata/a.txt")),
              "\n\ndata/a.txt:3 field of a box\n"
              "data/a.txt:4 whole call\n"
              "data/a.txt:5 comment behind a macro\n"
              "data/a.txt:5 list of declarations\n"
              "\n"
              "data/moves.c:1 macro that goes\n"
              "data/moves.c:3 step inside an expression\n"
              "data/moves.c:4 function of the engine\n");
    EXPECT_NE(
        folder.read("check.txt")
            .find("data/moves.c:4 `f` breaks off at `++`: unexpected token ++; write the step"),
        std::string::npos);
    EXPECT_EQ(check(true), CompatStatus::kUnknown);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / kMendedLinesName));
    EXPECT_EQ(folder.read("check.txt").find("write the step"), std::string::npos);
}

}  // namespace
}  // namespace tindrel
