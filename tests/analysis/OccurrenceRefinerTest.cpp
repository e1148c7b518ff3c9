#include "analysis/OccurrenceRefiner.hpp"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "TempFolder.hpp"

namespace tindrel {
namespace {

// For every rule, in the order of the table, a line that it raises and one that stays at the
// registry's verdict. "stage|" and the like in front name the file; hero.txt otherwise.
struct Example {
    const char* raised;
    const char* kept;
};
constexpr Example kExamples[] = {
    {"drawmethod 256 256 0 0 0 0 -1 0 90 1", "drawmethod 1 1 0 0 0 7"},
    {"drawmethod tintmode 6", "drawmethod tintmode 7"},
    {"drawmethod TintColor 12_0_255", "drawmethod tintcolor 12_0"},
    {"drawmethod remap -1", "drawmethod remap -2"},
    {"drawmethod scale 2 1.5", "drawmethod channel 1"},
    {"gfxshadow 0", "gfxshadow 2"},
    {"gfxshadow 1 3", "gfxshadow 1 4"},
    {"palette none", "palette"},
    {"palette data/pal.gif", "palette data/gone.gif"},
    {"alternatepal PAL", "alternatepal true.png"},
    {"remap pal.gif 8bit.png", "remap pal.gif true.png"},
    {"@script\nvoid main(){ setlocalvar(1, 2); }\n@end_script", "@script\nodd();\n@end_script"},
    {"animationscript data/ok.c", "animationscript data/bad.c"},
    {"defense normal7 0.5 1 1 0 0", "defense unknown 0.5"},
    {"defense ALL", "defense burn"},
    {"combostyle 2", "combostyle 3"},
    {"combodelay 40", "combodelay long"},
    {"atchain 1 2 0 3 4", "plain|atchain 1 2 0 3 4"},
    {"atchain 1 2 3", "atchain 1 x"},
    {"atchain 1 2 0 0", "atchain 0 1"},
    {"blast 0 0 0 0", "blast 0 0 0 1"},
    {"burn 0", "burn 1"},
    {"burn 1 2 3 4 5", "burn 1 2 3"},
    {"shock 1 2 3 4 5 1 0 0 0 0", "shock 1 2 3 4 x"},
    {"attackone 1", "attackone 0"},
    {"damageonlanding 10 1 blast", "damageonlanding 10 2"},
    {"falldie 1", "falldie 3"},
    {"death 0", "death 5"},
    {"falldie 2", "falldie two"},
    {"death 1", "death 1 1"},
    {"fmap 3", "fmap blue"},
    {"fmap -1", "fmap -2"},
    {"nodieblink 0", "nodieblink 1"},
    {"nodieblink 2", "nodieblink 4"},
    {"plain|nodieblink 2", "nodieblink 2 1"},
    {"nodieblink 3", "nodieblink"},
    {"risetime -40", "risetime 10 20"},
    {"riseinv 2 1", "riseinv 2 0"},
    {"holdblock 1", "holdblock 0"},
    {"chargetime 1.5", "chargetime 0"},
    {"throw 20 3.5", "throw far"},
    {"throwdamage 12", "throwdamage -1"},
    {"antigrab 2", "grabresistance 2 3"},
    {"grabforce -999999", "grabforce much"},
    {"subject_to_wall 0", "subject_to_wall 2"},
    {"subject_to_obstacle 0", "subject_to_obstacle 1"},
    {"subject_to_maxz 1", "subject_to_minz x"},
    {"subject_to_platform 1", "subject_to_platform -1"},
    {"facing 3", "facing 4"},
    {"nomove 1 0", "nomove 2"},
    {"running 25 4 1.5 1 0", "running fast"},
    {"aimove chase", "aimove hunt"},
    {"aimove AvoidX wander", "aimove chase 2"},
    {"bounce 2", "bounce -1"},
    {"platform 1 2 3 4 5 6", "stage|platform 1 2 3 4 5 6"},
    {"platform 1 2 3 4 5 6 7 8", "platform 1 2 3 4 5 6 7 8 9"},
    {"projectilehit enemy ground", "projectilehit all"},
    {"pbombframe 3 70", "pbombframe 3 70 1"},
    {"remove 0", "remove 2"},
    {"stage|weapon Plain", "stage|weapon Nobody"},
    {"weapons plain none", "weapons plain nobody"},
    {"counter 3", "weapnum two"},
    {"typeshot 1", "typeshot 2"},
    {"dust plain none plain", "dust nobody"},
    {"com d ~f -> a + +[3] j*,k[10][20] + d freespecial", "com d+f a freespecial"},
    {"cancel 0 2 1 F D jump", "cancel 0 2 x F jump"},
    {"stage|rock 3", "stage|rock 4"},
    {"stage|water pal 15", "stage|water pal 16"},
    {"stage|light -100 60", "stage|light 10"},
    {"stage|shadowalpha 6", "stage|shadowalpha 7"},
    {"stage|shadowcolor -1", "stage|shadowcolor 2"},
    {"stage|settime 0", "stage|settime 60"},
    {"stage|notime 1", "stage|notime 0"},
    {"stage|cameraoffset 0 -10", "stage|cameraoffset 5"},
    {"stage|cameratype 1", "stage|cameratype 2"},
    {"stage|bglayer data/PAL.gif 0.5 0.5 0 0 0 0 2 1 0 6 0 0 0 0 1.5",
     "stage|bglayer pal 1 1 0 0 0 0 0 0 0 0 1"},
    {"stage|fglayer pal 5 1.5 1 0 0 0 0 1 1 0 2", "stage|fglayer pal 5 1 1 0 0 0 0 0 0 0 7"},
    {"stage|frontpanel pal", "stage|frontpanel gone"},
    {"stage|wall 1 2 3 4 5 6 7 8", "stage|wall 1 2 3 4"},
    {"stage|blockade 500", "stage|blockade here"},
    {"stage|end", "stage|end 1"},
    {"levels|credits 5", "levels|lives many"},
    {"levels|ifcomplete 1", "levels|ifcomplete x"},
    {"levels|scene scene.txt", "levels|scene odd.txt"},
    {"models|nocost 1", "models|nocost yes"},
};

TEST(OccurrenceRefiner, EveryRuleRaisesWhatItsTextSaysAndNothingElse) {
    const test::TempFolder folder;
    folder.write("data/models.txt", "load Hero hero.txt\nload Plain plain.txt\n");
    folder.write("data/hero.txt", "combostyle 1\nanim idle\nframe a\nanim death\nframe a\n");
    folder.write("data/plain.txt", "anim idle\nframe a\n");
    folder.write("data/levels.txt", "set A\nfile stage.txt\n");
    folder.write("data/stage.txt", "weapon Plain\ncoords 1 2\nat 0\n");
    folder.write("data/pal.gif", "GIF89a");
    folder.write("data/8bit.png", std::string("\x89PNG") + std::string(21, '\0') + "\x03");
    folder.write("data/true.png", std::string("\x89PNG") + std::string(21, '\0') + "\x06");
    folder.write("data/scene.txt", "music a.bor\nanimation pal.gif 0 0 1 0\nsilence\n");
    folder.write("data/odd.txt", "animation pal.gif 0 0 1 0\nskipto 2\n");
    folder.write("data/ok.c", "void main(){ setlocalvar(1, 2); }");
    folder.write("data/bad.c", "void main(){ odd(); }");
    const ProjectScan project = scanProject(folder.path());
    GameReader game(project.dataDir, project.root);
    ScriptScanner scanner(game, project);
    OccurrenceRefiner refiner(project, game, scanner);

    const auto refine = [&](std::string text) {
        std::string file = "hero";
        if (const std::size_t bar = text.find('|'); bar < 8) {
            file = text.substr(0, bar);
            text.erase(0, bar + 1);
        }
        const TextFile lines(text);
        CommandRule rule = lookupCommand(lines.lines().front().key);
        const TextLine& line = lines.lines().front();
        refiner.refineOccurrence(rule, OccurrenceRefiner::rulesOf(line.key), line,
                                 project.dataDir / (file + ".txt"));
        return rule;
    };
    const std::span<const OccurrenceRule> rules = occurrenceRules();
    ASSERT_EQ(std::size(kExamples), rules.size());
    for (std::size_t i = 0; i < rules.size(); ++i) {
        const CommandRule raised = refine(kExamples[i].raised);
        EXPECT_EQ(raised.impact, rules[i].impact) << kExamples[i].raised;
        EXPECT_EQ(raised.status, CompatStatus::kSupported) << kExamples[i].raised;
        EXPECT_TRUE(raised.parserSupported && raised.runtimeSupported) << kExamples[i].raised;

        const CommandRule kept = refine(kExamples[i].kept);
        std::string word = kExamples[i].kept;
        word.erase(0, word.find('|') < 8 ? word.find('|') + 1 : 0);
        const CommandRule before = lookupCommand(word.substr(0, word.find_first_of(" \n")));
        EXPECT_EQ(kept.impact, before.impact) << kExamples[i].kept;
        EXPECT_EQ(kept.status, before.status) << kExamples[i].kept;
    }
}

// Single lines of a small game.
class OccurrenceRefinerLines : public testing::Test {
  protected:
    void write(const std::string& file, std::string_view text) {
        folder_.write("data/" + file, text);
    }
    void start() {
        write("any.txt", "");
        project_ = scanProject(folder_.path());
        game_.emplace(project_.dataDir, project_.root);
        scanner_.emplace(*game_, project_);
        refiner_.emplace(project_, *game_, *scanner_);
    }
    // Why the line is not raised; empty if it is.
    std::string reason(const std::string& text, const std::string& file = "x.txt") {
        const TextFile lines(text);
        const TextLine& line = lines.lines().front();
        CommandRule rule = lookupCommand(line.key);
        const OccurrenceRefiner::Rules rules = OccurrenceRefiner::rulesOf(line.key);
        refiner_->refineOccurrence(rule, rules, line, project_.dataDir / file);
        return rule.status == CompatStatus::kSupported ? "" : refiner_->reasonAgainst(rules, line);
    }
    bool isRaised(const std::string& text) { return reason(text).empty(); }

    test::TempFolder folder_;
    ProjectScan project_;
    std::optional<GameReader> game_;
    std::optional<ScriptScanner> scanner_;
    std::optional<OccurrenceRefiner> refiner_;
};

// What rests on a file that is absent, or stands where nothing reads it, does nothing.
TEST_F(OccurrenceRefinerLines, NamesThatLeadNowhereAreNotRaised) {
    write("levels.txt", "set A\nfile stage.txt\n");
    write("models.txt", "load A a.txt\n");
    write("a.txt", "anim idle\nframe a\n");
    write("stage.txt", "spawn A\nweapon A\ncoords 1 2\nat 0\n");
    write("gone.txt", "animation gone.gif 0 0 1 0\n");
    write("odd.txt", "music a.bor\nskipto 2\n");
    write("true.png", std::string("\x89PNG") + std::string(21, '\0') + "\x06");
    write("odd.c", "void main(){ a(); b(); c(); d(); }");
    start();
    const struct {
        const char* line;
        const char* file;
        const char* reason;
    } cases[] = {
        {"water gone 3", "stage.txt", "`gone` is not there"},
        {"bglayer gone 1 1", "stage.txt", "`gone` is not there"},
        {"fglayer gone 5 1 1", "stage.txt", "`gone` is not there"},
        {"weapon A", "stage.txt", "inside of another spawn it does nothing"},
        {"scene gone.txt", "levels.txt", "`gone.gif` is not there"},
        {"scene odd.txt", "levels.txt", "it has a line `skipto`"},
        {"palette true.png", "a.txt", "`true.png` has no palette"},
        {"dust a ghost", "a.txt", "no model is called `ghost`"},
        {"animationscript odd.c", "a.txt", "it asks for `a`, `b`, `c` and 1 more"},
        {"@script\nodd();\n@end_script", "a.txt", "it asks for `odd`"},
        {"@script\n;\n@end_script", "stage.txt", "in a stage it does nothing"},
        {"@script\n;\n@end_script", "a.txt", ""},
        {"com a[10] x", "a.txt", "one of its steps holds keys and presses none"},
        {"cancel 0 5 0 d[9][3] + ~a x", "a.txt", "no key can be held for these times"},
        {"cancel 0 5 0 d d+f x", "a.txt", "`d+f` is no key"},
        {"com + x", "a.txt", "it names no key"},
        {"nocost 1", "a.txt", "only `models.txt` sets it"},
        {"nocost 1", "models.txt", ""},
        {"nocost a", "models.txt", "`nocost a` has none of these forms"},
        {"@script\nlog(\"odd()\");\n@end_script", "a.txt",
         "only its comments and texts name `odd`"},
    };
    for (const auto& [line, file, why] : cases) EXPECT_EQ(reason(line, file), why) << line;
}

// A command whose steps cannot all match never fires.
TEST_F(OccurrenceRefinerLines, CommandsThatCannotFireAreNotRaised) {
    start();
    for (const std::string keys :
         {"a[10]", "d[20] u a", "d[20] -> a", "d[20],a", "a[10][5]", "~a[10][5]", "u d[3]",
          "d[9] + ~a[1][4]", "a[]", "a[1][2][3]", "+[2]", ":[4]", "|[2] a", "a+j"}) {
        EXPECT_FALSE(isRaised("com " + keys + " special2")) << keys;
        EXPECT_FALSE(isRaised("cancel 0 2 1 " + keys + " special2")) << keys;
    }
    for (const std::string keys : {"~a[10]", "a*[10][5]", "d[20] + a", "d[20] +[3] f + a",
                                   "d[5][20] + ~a", "~a[5][5]", "d f :[10] a"}) {
        EXPECT_TRUE(isRaised("com " + keys + " special2")) << keys;
        EXPECT_TRUE(isRaised("cancel 0 2 1 " + keys + " special2")) << keys;
    }
}

}  // namespace
}  // namespace tindrel
