#include "analysis/ProjectAnalysis.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "TempFolder.hpp"

namespace tindrel {
namespace {

using enum CompatStatus;
using StatusCounts = std::map<CompatStatus, std::uint64_t>;

// A game of a few files, and what the analysis says of it.
class ProjectAnalysisTest : public testing::Test {
  protected:
    void write(const std::string& file, std::string_view text) {
        folder_.write("data/" + file, text);
    }

    [[nodiscard]] ProjectAnalysis analyze() const {
        const ProjectScan project = scanProject(folder_.path());
        GameReader game(project.dataDir, project.root);
        return analyzeProject(project, game);
    }

    // "file:line command status level message" of each issue.
    static std::vector<std::string> issuesOf(const ProjectAnalysis& analysis) {
        std::vector<std::string> texts;
        for (const Issue& issue : analysis.issues) {
            texts.push_back(issue.file->relative.generic_string() + ':' +
                            std::to_string(issue.line) + ' ' + std::string(issue.command) + ' ' +
                            std::string(compatStatusName(issue.status)) + ' ' +
                            std::string(levelName(issue.level)) + ' ' + std::string(issue.message));
        }
        return texts;
    }

    test::TempFolder folder_;
};

TEST_F(ProjectAnalysisTest, FolderWithoutDataIsAFreshRecord) {
    const ProjectAnalysis analysis = analyze();
    EXPECT_EQ(analysis.logicalWidth, 320);
    EXPECT_EQ(analysis.logicalHeight, 240);
    EXPECT_EQ(analysis.openBorHint, "");
    EXPECT_EQ(analysis.textFiles, 0U);
    EXPECT_TRUE(analysis.commandCounts.empty());
}

TEST_F(ProjectAnalysisTest, Resolution) {
    write("a.txt", "");
    EXPECT_EQ(analyze().openBorHint,
              "video.txt absent; logical resolution defaults to 320x240 until a project declares "
              "otherwise");
    write("video.txt", "width 500\nheight 200\n");
    const ProjectAnalysis analysis = analyze();
    EXPECT_EQ(analysis.logicalWidth, 500);
    EXPECT_EQ(analysis.logicalHeight, 200);
    EXPECT_EQ(analysis.openBorHint, "video.txt present (mode 0)");
}

TEST_F(ProjectAnalysisTest, CountsTheWholeProject) {
    write("models.txt", "load Hero data/chars/hero.txt\nknow Bad data/chars/bad.txt\n");
    write("chars/hero.txt", "name Hero\nanim idle\nframe a.gif\nanim walk\nframe b.gif\n");
    write("chars/bad.txt", "name Bad\nanim idle\nframe a.gif\n");
    write("levels.txt", "set A\nfile data/levels/one.txt\n");
    write("levels/one.txt", "panel data/bgs/p.gif\n");
    for (const char* sound : {"a.WAV", "b.bor", "c.ogg", "d.mp3", "e.flac", "f.webm"}) {
        write(std::string("sounds/") + sound, "x");
    }
    write("scripts/a.c", "void main(){}\nframe x\n");
    write("scripts/b.H", "");
    const ProjectAnalysis analysis = analyze();
    EXPECT_EQ(analysis.models, 2U);
    EXPECT_EQ(analysis.animations, 3U);
    EXPECT_EQ(analysis.stages, 1U);
    EXPECT_EQ(analysis.audioFiles, 5U);
    EXPECT_EQ(analysis.scripts, 2U);
    EXPECT_EQ(analysis.textFiles, 7U);
    // The lines of scripts are no commands.
    EXPECT_EQ(analysis.commandCounts.at("frame"), 3U);
    // All lines of the five text files, and the two scripts.
    EXPECT_EQ(analysis.supported, 2U + 5U + 3U + 2U + 1U);
    EXPECT_EQ(analysis.recognized, analysis.supported + 2U);
    EXPECT_TRUE(analysis.issues.empty());
}

TEST_F(ProjectAnalysisTest, PassesOverProse) {
    for (const char* name :
         {"translation.txt", "#Translation#.TXT", "nota1.txt", "README-first.txt", "leame.txt",
          "leiame.txt", "lxxxxxame.txt", "lame.txt.txt"}) {
        write(name, "frame a\n");
    }
    EXPECT_EQ(analyze().textFiles, 0U);
    // Too long, without the l, too short, and no .txt.
    for (const char* name : {"lxxxxxxxame.txt", "game.txt", "lam.txt", "readme.cfg", "note.txt"}) {
        write(name, "frame a\n");
    }
    const ProjectAnalysis analysis = analyze();
    EXPECT_EQ(analysis.textFiles, 5U);
    EXPECT_EQ(analysis.commandCounts.at("frame"), 5U);
}

TEST_F(ProjectAnalysisTest, EachStatusIsCountedAndReportedByItsRule) {
    write("a.cfg", "Frame a\n\nMAXATTACKS 9\nnoreflect 1\nwobble 1\nframe b\n# no line\n#x y\n");
    const ProjectAnalysis analysis = analyze();
    EXPECT_EQ(analysis.supported, 2U);
    EXPECT_EQ(analysis.partial, 1U);
    EXPECT_EQ(analysis.unknown, 1U);
    EXPECT_EQ(analysis.recognized, 4U);
    EXPECT_EQ(analysis.commandCounts.at("frame"), 2U);
    EXPECT_EQ(analysis.commandStatus.at("maxattacks"), kIgnoredSafely);
    EXPECT_EQ(analysis.commandStatus.at("wobble"), kUnknown);
    EXPECT_EQ(issuesOf(analysis),
              (std::vector<std::string>{
                  "data/a.cfg:4 noreflect PARTIAL YELLOW Projectile reflection opt-out is "
                  "recognized; the current native runtime has no full reflection subsystem yet.",
                  "data/a.cfg:5 wobble UNKNOWN YELLOW Command is not in the central registry. It "
                  "is logged and does not abort conversion."}));
    EXPECT_TRUE(analysis.issues[0].parserSupported);
    EXPECT_FALSE(analysis.issues[0].runtimeSupported);
    EXPECT_FALSE(analysis.issues[1].parserSupported);
}

TEST_F(ProjectAnalysisTest, BareModelNameIsHarmlessInALevelOnly) {
    write("models.txt", "LOAD Enemy1 data/chars/e.txt\nload\n");
    write("Levels/x.txt", "enemy1\nENEMY1\nenemy1 5\nenemy2\n");
    write("chars/x.txt", "enemy1\n");
    const ProjectAnalysis analysis = analyze();
    EXPECT_EQ(analysis.commandCounts.at("enemy1"), 4U);
    EXPECT_EQ(analysis.commandStatusCounts.at("enemy1"),
              (StatusCounts{{kIgnoredSafely, 2}, {kUnknown, 2}}));
    // Two verdicts on one command stand as PARTIAL, whatever they were.
    EXPECT_EQ(analysis.commandStatus.at("enemy1"), kPartial);
    EXPECT_EQ(analysis.unknown, 3U);
    EXPECT_EQ(analysis.recognized, 4U);
}

TEST_F(ProjectAnalysisTest, PanelOrderThatNamesNoPanel) {
    write("levels.txt", "set A\nfile data/levels/bad.txt\nfile data/levels/good.txt\n");
    write("levels/bad.txt", "panel data/bgs/p.gif\norder aab\n");
    write("levels/good.txt", "panel data/bgs/p.gif\norder aa\n");
    const ProjectAnalysis analysis = analyze();
    EXPECT_EQ(analysis.commandStatusCounts.at("order"),
              (StatusCounts{{kSupported, 1}, {kPartial, 1}}));
    EXPECT_EQ(issuesOf(analysis),
              (std::vector<std::string>{
                  "data/levels/bad.txt:2 order PARTIAL YELLOW Panel order contains a non-letter "
                  "or references an undefined panel; original panel definitions are retained as "
                  "fallback."}));
    EXPECT_TRUE(analysis.issues[0].parserSupported);
    EXPECT_FALSE(analysis.issues[0].runtimeSupported);
}

TEST_F(ProjectAnalysisTest, ScriptsThatUseWhatThePortLacks) {
    write("scripts/a.c", "void main(){ odd(); strange(); }");
    ProjectAnalysis analysis = analyze();
    EXPECT_EQ(issuesOf(analysis),
              (std::vector<std::string>{
                  "data/scripts/a.c:1 script-file PARTIAL YELLOW ScriptVM v0.34.32 covers the "
                  "extended C-like core, preprocessing, native subscreens and legacy direct-draw "
                  "queue/drawmethod APIs, but this file uses: odd, strange. Logged, not silently "
                  "dropped."}));
    EXPECT_EQ(analysis.partial, 1U);
    EXPECT_EQ(analysis.recognized, 1U);
    EXPECT_TRUE(analysis.commandCounts.empty());

    write("scripts/a.c", "");
    write("chars/a.txt", "anim idle\n@script\n  odd(); strange();\n@end_script\nframe a\n");
    analysis = analyze();
    // The finding on the body stands ahead of the verdict on the line.
    const std::vector<std::string> issues = issuesOf(analysis);
    ASSERT_EQ(issues.size(), 2U);
    EXPECT_EQ(issues[0],
              "data/chars/a.txt:2 inline-script-api PARTIAL YELLOW Inline body is preserved and "
              "executed, but requires: odd strange ");
    EXPECT_TRUE(issues[1].starts_with("data/chars/a.txt:2 @script PARTIAL YELLOW Inline source"));
    EXPECT_EQ(analysis.partial, 2U);
    EXPECT_EQ(analysis.recognized, 1U + 5U);
    EXPECT_EQ(analysis.commandCounts.count("inline-script-api"), 0U);
}

TEST_F(ProjectAnalysisTest, EachAnimationCommandIsJudgedByItself) {
    write("chars/a.txt",
          "anim idle\n@cmd setglobalvar \"x\" 1\nframe a\n@cmd\n@cmd killentity odd(1)\nframe b\n");
    const ProjectAnalysis analysis = analyze();
    ASSERT_EQ(analysis.animationAudit.size(), 3U);
    EXPECT_EQ(analysis.commandStatusCounts.at("@cmd"),
              (StatusCounts{{kSupported, 1}, {kPartial, 2}}));
    ASSERT_EQ(analysis.issues.size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(analysis.issues[i].message, analysis.animationAudit[i + 1].message);
        EXPECT_EQ(analysis.issues[i].line, i + 4);
        EXPECT_TRUE(analysis.issues[i].parserSupported);
        EXPECT_FALSE(analysis.issues[i].runtimeSupported);
    }
}

TEST_F(ProjectAnalysisTest, IssuesSurviveAMoveOfTheRecord) {
    write("a.txt", "@cmd\nwobble\n");
    ProjectAnalysis moved = analyze();
    ProjectAnalysis analysis;
    analysis = std::move(moved);
    EXPECT_EQ(issuesOf(analysis)[1],
              "data/a.txt:2 wobble UNKNOWN YELLOW Command is not in the central registry. It is "
              "logged and does not abort conversion.");
    EXPECT_EQ(analysis.issues[0].message, analysis.animationAudit[0].message);
}

TEST(LevelName, Words) {
    EXPECT_EQ(levelName(0), "GREEN");
    EXPECT_EQ(levelName(1), "YELLOW");
    EXPECT_EQ(levelName(2), "RED");
    EXPECT_EQ(levelName(3), "UNKNOWN");
}

}  // namespace
}  // namespace tindrel
