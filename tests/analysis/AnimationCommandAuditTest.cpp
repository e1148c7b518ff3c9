#include "analysis/AnimationCommandAudit.hpp"

#include <gtest/gtest.h>

#include <string>

#include "TempFolder.hpp"

namespace tindrel {
namespace {

TEST(AnimationCommandAudit, KnowsVerifiedArguments) {
    for (const char* text : {"\"a b\"", "'it\\'s'", "1", "-2.5e+3", ".5", "7.", "0x1F", "true",
                             "null", "null( )", "getlocalvar( \"self\" )", "getglobalvar('x')"}) {
        EXPECT_TRUE(isVerifiedArgument(text)) << text;
    }
    for (const char* text : {"", "x", "1x", ".", "1e", "0x", "\"a", "\"a\" \"b\"", "TRUE", "-0x1",
                             "getlocalvar(self)", "rand()", "getlocalvar(\"a\"", "null()x"}) {
        EXPECT_FALSE(isVerifiedArgument(text)) << text;
    }
}

// The verdict on the first "@cmd" of a model file.
class AnimationCommandAuditTest : public testing::Test {
  protected:
    std::string verdict(const std::string& model, CompatStatus expected, bool asWritten = false) {
        const test::TempFolder folder;
        folder.write("data/models.txt", "");
        folder.write("data/good.c", "void dash(int a, int b){ setlocalvar(\"x\", a); }");
        folder.write("data/odd.c", "void dash(int a){ odd(); more(); }");
        folder.write("data/a/two.c", "");
        folder.write("data/b/two.c", "");
        const ProjectScan project = scanProject(folder.path());
        GameReader game(project.dataDir, project.root);
        ScriptScanner scanner(game, project);
        AnimationCommandAuditor auditor(scanner);
        const SourceFile source{"data/m.txt", "data/m.txt"};
        const TextFile file(model, asWritten);
        for (std::size_t i = 0; i < file.lines().size(); ++i) {
            if (file.lines()[i].key != "@cmd") continue;
            const AnimationCommandAudit record =
                auditor.audit(file, i, project.dataDir / "m.txt", source);
            EXPECT_EQ(record.status, expected) << model;
            return record.message;
        }
        return "no @cmd";
    }
    std::string partial(const std::string& model) { return verdict(model, CompatStatus::kPartial); }
    std::string supported(const std::string& model) {
        return verdict(model, CompatStatus::kSupported);
    }
};

constexpr const char* kVerified = "verified ScriptVM call, bound to the following frame";
constexpr const char* kOutside =
    "helper/API or arguments outside the verified subset; runtime executes and logs any failure";

TEST_F(AnimationCommandAuditTest, JudgesAWholeCallByItsPartsUnlessTakenToTheLetter) {
    const std::string model = "anim a\n@cmd setglobalvar(\"x, y\", 1);\nframe a";
    EXPECT_EQ(supported(model), std::string("setglobalvar \"x, y\" 1; ") + kVerified);
    EXPECT_EQ(verdict(model, CompatStatus::kPartial, true),
              "setglobalvar(\"x, y\", 1);; invalid function name");
}

TEST_F(AnimationCommandAuditTest, JudgesCallsWithoutAHelper) {
    EXPECT_EQ(supported("anim a\n@cmd setglobalvar \"x\" 1\nframe a"),
              std::string("setglobalvar \"x\" 1; ") + kVerified);
    EXPECT_EQ(supported("anim a\n@cmd KillEntity getlocalvar(\"self\")\ndelay 1\nframe a"),
              std::string("KillEntity getlocalvar(\"self\"); ") + kVerified);
    EXPECT_EQ(partial("anim a\n@cmd setglobalvar \"x\" 1\nanim b\nframe a"),
              "setglobalvar \"x\" 1; no following animation frame; command cannot execute");
    EXPECT_EQ(partial("anim a\n@cmd\nframe a"), "; empty command");
    EXPECT_EQ(partial("anim a\n@cmd 2x\nframe a"), "2x; invalid function name");
    for (const char* call :
         {"setglobalvar \"x\"", "killentity rand()", "killentity self", "unknown 1", "null 1"}) {
        EXPECT_EQ(partial(std::string("anim a\n@cmd ") + call + "\nframe a"),
                  std::string(call) + "; " + kOutside);
    }
}

TEST_F(AnimationCommandAuditTest, JudgesTheHelperThatGovernsTheLine) {
    const auto with = [](const std::string& helper, const std::string& call) {
        return "animationscript " + helper + "\nanim a\n@cmd " + call +
               "\nframe a\nanimationscript later.c";
    };
    EXPECT_EQ(supported(with("data/GOOD.c", "dash 1 'x'")),
              std::string("dash 1 'x'; helper=data/GOOD.c; ") + kVerified);
    const std::string custom =
        "custom helper function/arity or arguments still need behavioral validation; runtime "
        "executes and logs any failure";
    EXPECT_EQ(partial(with("good.c", "dash 1")), "dash 1; helper=good.c; " + custom);
    EXPECT_EQ(partial(with("good.c", "nodash 1")), "nodash 1; helper=good.c; " + custom);
    EXPECT_EQ(partial(with("odd.c", "dash 1")),
              "dash 1; helper=odd.c; helper compilation unit requires: odd, more");
    EXPECT_EQ(partial(with("../x.c", "null")), "null; helper=../x.c; unsafe helper path");
    EXPECT_EQ(partial(with("two.c", "null")),
              "null; helper=two.c; helper file missing or basename is ambiguous");
}

}  // namespace
}  // namespace tindrel
