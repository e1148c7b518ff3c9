#include "reader/LevelSets.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TempFolder.hpp"
#include "reader/RepeatedReads.hpp"

namespace tindrel {
namespace {

using Strings = std::vector<std::string>;

// "file branch chapter n depth zMin zMax backgroundHeight"
Strings show(const std::vector<StageEntry>& stages) {
    Strings out;
    for (const StageEntry& stage : stages) {
        const auto& [zMin, zMax, height] = stage.depth;
        out.push_back(stage.file + ' ' + stage.branchName + " chapter " +
                      std::to_string(stage.chapter) + " depth " + std::to_string(zMin) + ' ' +
                      std::to_string(zMax) + ' ' + std::to_string(height));
    }
    return out;
}

TEST(LevelSets, SetsTakeTheirLimitsAndTheFileWideDefaults) {
    const auto sets =
        readLevelSets(TextFile("lives 3\n"
                               "file early.txt\n"
                               "noshare 1\n"
                               "completebg 5\n"
                               "set\n"
                               "set Easy Mode\n"
                               "LIVES 4\n"
                               "credits -2\n"
                               "cansave 7\n"
                               "skipselect 9 player\n"
                               "ifcomplete 2\n"
                               "noshare 0\n"
                               "set Hard\n"
                               "skipselect player\n"
                               "cansave -1\n"
                               "completebg 0\n"
                               "set Last\n"));
    ASSERT_EQ(sets.size(), 3U);
    EXPECT_EQ(sets[0].name, "Easy");
    EXPECT_EQ(sets[0].lives, 4);
    EXPECT_EQ(sets[0].credits, 0);
    EXPECT_EQ(sets[0].canSave, 2);
    EXPECT_EQ(sets[0].skipSelect, 1);
    EXPECT_EQ(sets[0].ifComplete, 2);
    EXPECT_EQ(sets[0].noShare, 0);
    EXPECT_EQ(sets[0].completeBg, 1);
    EXPECT_TRUE(sets[0].stages.empty());
    EXPECT_EQ(sets[1].order, 1);
    EXPECT_EQ(sets[1].lives, 0);
    EXPECT_EQ(sets[1].skipSelect, 0);
    EXPECT_EQ(sets[1].canSave, 0);
    EXPECT_EQ(sets[1].noShare, 1);
    EXPECT_EQ(sets[1].completeBg, 0);
    EXPECT_EQ(sets[2].completeBg, 1);
}

TEST(LevelSets, StagesKeepWhatHeldAtTheirLine) {
    const auto sets =
        readLevelSets(TextFile("set A\n"
                               "branch start\n"
                               "file data\\Levels/s1.txt\n"
                               "z 100\n"
                               "z 100 200\n"
                               "next\n"
                               "next\n"
                               "branch lost\n"
                               "branch kept\n"
                               "file s2.txt\n"
                               "z bad 210 99 5\n"
                               "file s3.txt\n"
                               "branch pending\n"
                               "set B\n"
                               "end\n"
                               "file s4.txt\n"));
    ASSERT_EQ(sets.size(), 2U);
    EXPECT_EQ(show(sets[0].stages), (Strings{"Levels/s1.txt start chapter 0 depth 160 232 160",
                                             "s2.txt kept chapter 2 depth 100 200 160",
                                             "s3.txt  chapter 2 depth 0 210 99"}));
    EXPECT_EQ(show(sets[1].stages), Strings{"s4.txt  chapter 0 depth 160 232 160"});
    EXPECT_FALSE(sets[1].stages[0].campaignEnd);
}

TEST(LevelSets, ScenesBelongToTheStageAheadOfThem) {
    const auto sets =
        readLevelSets(TextFile("set A\n"
                               "scene a1\n"
                               "next\n"
                               "scene data/a2\n"
                               "file s1\n"
                               "scene b\n"
                               "file s2\n"
                               "scene c1\n"
                               "next\n"
                               "scene c2\n"
                               "endlevel\n"
                               "set B\n"
                               "scene lost\n"
                               "set C\n"
                               "file s3\n"
                               "scene d\n"));
    ASSERT_EQ(sets.size(), 3U);
    ASSERT_EQ(sets[0].stages.size(), 2U);
    const StageEntry& s1 = sets[0].stages[0];
    EXPECT_EQ(s1.preScenes, (Strings{"a1", "a2"}));
    EXPECT_EQ(s1.postScenes, Strings{"b"});
    EXPECT_FALSE(s1.campaignEnd);
    const StageEntry& s2 = sets[0].stages[1];
    EXPECT_EQ(s2.preScenes, Strings{});
    EXPECT_EQ(s2.postScenes, (Strings{"c1", "c2"}));
    EXPECT_TRUE(s2.campaignEnd);
    ASSERT_EQ(sets[2].stages.size(), 1U);
    EXPECT_EQ(sets[2].stages[0].preScenes, Strings{}) << "a set begins without scenes";
    EXPECT_EQ(sets[2].stages[0].postScenes, Strings{"d"}) << "the end of the file ends the set";
}

TEST(LevelSets, StagesCombineLevelsFilesAndScenes) {
    const test::TempFolder folder;
    folder.write("data/Levels.txt",
                 "set A\nlives 3\nscene data/scenes/intro.txt\nscene data/scenes/absent.txt\n"
                 "branch door\nz 50 90 40\nfile data/levels/one.txt\nscene data/scenes/outro.txt\n"
                 "z 60 95 45\n"
                 "file data/levels/missing.txt\nnext\nfile ../escape.txt\n"
                 "file data/LEVELS/Two.txt\nend\nset B\nfile data/levels/one.txt\n");
    folder.write("escape.txt", "");
    folder.write("data/levels/one.txt", "spawn1 10 20 0\n");
    folder.write("data/levels/two.txt", "music two.ogg\n");
    folder.write("data/scenes/intro.txt", "animation a.gif 1 2\n");
    folder.write("data/scenes/outro.txt", "music end.ogg 1\nanimation b.gif\n");
    GameReader game(folder.path() / "data", folder.path());
    const std::vector<StageDef> stages = readStages(game);
    ASSERT_EQ(stages.size(), 3U);

    const StageDef& one = stages[0];
    EXPECT_EQ(one.sourceFile, "data/levels/one.txt");
    EXPECT_EQ(one.setName, "A");
    EXPECT_EQ(one.order, 0);
    EXPECT_EQ(one.lives, 3);
    EXPECT_EQ(one.branchName, "door");
    EXPECT_EQ(one.zMin, 50);
    EXPECT_EQ(one.zMax, 90);
    EXPECT_EQ(one.backgroundHeight, 40);
    EXPECT_EQ(one.playerStartZ, 70) << "the depth of a start counts from zMin";
    EXPECT_EQ(one.preSceneFile, "scenes/intro.txt");
    EXPECT_EQ(one.preScenes, (Strings{"scenes/intro.txt", "scenes/absent.txt"}));
    EXPECT_EQ(one.sceneAnimations.size(), 1U);
    EXPECT_EQ(one.sceneMusic, "");
    EXPECT_EQ(one.postScenes, Strings{"scenes/outro.txt"});
    EXPECT_EQ(one.postSceneMusic, "end.ogg");
    EXPECT_TRUE(one.postSceneMusicLoop);
    ASSERT_EQ(one.postSceneAnimations.size(), 1U);
    EXPECT_EQ(one.postSceneAnimations[0].path, "b.gif");
    EXPECT_FALSE(one.campaignEnd);

    const StageDef& two = stages[1];
    EXPECT_EQ(two.music, "two.ogg");
    EXPECT_EQ(two.order, 1) << "a missing stage takes no place";
    EXPECT_EQ(two.chapter, 1);
    EXPECT_EQ(two.preSceneFile, "");
    EXPECT_TRUE(two.campaignEnd);
    EXPECT_EQ(stages[2].setOrder, 1);
    EXPECT_EQ(stages[2].zMin, 160);
    EXPECT_EQ(&game.stages(), &game.stages()) << "read once";

    GameReader bare(folder.path() / "data" / "levels", folder.path());
    EXPECT_TRUE(readStages(bare).empty());
}

TEST(LevelSets, ScenesPlayTheirMusicFromTheNextPictureOn) {
    const test::TempFolder folder;
    folder.write("1.txt",
                 "silence\n"
                 "animation data/A.gif 1 -2 3 x 0\n"
                 "music\n"
                 "music unheard.ogg\n"
                 "music data/first.ogg 2\n"
                 "animation\n"
                 "animation b.gif 0 0 0 0 120\n"
                 "stop\n"
                 "animation c.gif\n"
                 "music second.ogg\n"
                 "stop now\n"
                 "animation never.gif\n"
                 "music never.ogg\n");
    folder.write("3.txt", "animation d.gif\n");
    GameReader game(folder.path(), folder.path());
    const auto& [animations, music, loop] = readScenes(game, {"1.txt", "absent.txt", "3.txt"});

    struct Expected {
        std::string path, musicBefore;
        bool musicLoop, silenceBefore;
        std::int32_t durationTicks, sceneIndex;
    };
    const std::vector<Expected> expected = {
        {"A.gif", "", false, true, 1, 0},
        {"b.gif", "first.ogg", true, false, 120, 0},
        {"c.gif", "", false, false, 0, 0},
        {"d.gif", "second.ogg", false, false, 0, 2},
    };
    ASSERT_EQ(animations.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(animations[i].path, expected[i].path) << i;
        EXPECT_EQ(animations[i].musicBefore, expected[i].musicBefore) << i;
        EXPECT_EQ(animations[i].musicLoop, expected[i].musicLoop) << i;
        EXPECT_EQ(animations[i].silenceBefore, expected[i].silenceBefore) << i;
        EXPECT_EQ(animations[i].durationTicks, expected[i].durationTicks) << i;
        EXPECT_EQ(animations[i].sceneIndex, expected[i].sceneIndex) << i;
    }
    EXPECT_EQ(animations[0].x, 1);
    EXPECT_EQ(animations[0].y, -2);
    EXPECT_EQ(animations[0].skip, 3);
    EXPECT_EQ(animations[0].noSkip, 0);
    EXPECT_EQ(music, "first.ogg") << "the list's music is the first that sounds";
    EXPECT_TRUE(loop);

    folder.write("4.txt", "music only.ogg 1\n");
    const SceneList silent = readScenes(game, {"4.txt"});
    EXPECT_EQ(silent.music, "only.ogg");
    EXPECT_TRUE(silent.musicLoop);
}

// Each mention becomes records of its own.
TEST(LevelSets, MentionsOfOneFileDoNotMultiplyWithoutLimit) {
    const test::TempFolder folder;
    constexpr std::size_t kMentions = kMaxRepeatedLines / kLinesPerRead + 1000;
    std::string levels = "set A\n";
    std::string models;
    for (std::size_t i = 0; i < kMentions; ++i) {
        levels += i % 2 == 0 ? "file s.txt\n" : "scene c.txt\n";
        models += "load m" + std::to_string(i) + " m.txt\n";
    }
    folder.write("levels.txt", levels);
    folder.write("models.txt", models);
    folder.write("s.txt", "spawn m1\n");
    folder.write("c.txt", "animation a.gif\n");
    folder.write("m.txt", "anim idle\n");
    GameReader game(folder.path(), folder.path());
    std::size_t pictures = 0;
    for (const StageDef& stage : game.stages()) pictures += stage.postSceneAnimations.size();
    EXPECT_GT(game.stages().size(), kMentions / 3) << "a game's sets share stages";
    EXPECT_LT(game.stages().size() + pictures, kMentions);
    EXPECT_GT(game.models().size(), kMentions / 3);
    EXPECT_LT(game.models().size(), kMentions);
}

}  // namespace
}  // namespace tindrel
