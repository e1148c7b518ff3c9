#include "input/ProjectRoots.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Environment.hpp"
#include "TempFolder.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

class ProjectRootsTest : public ::testing::Test {
  protected:
    std::vector<std::string> roots(const fs::path& folder) {
        std::vector<std::string> found;
        for (const fs::path& root : findProjectRoots(folder).roots) {
            found.push_back(root.lexically_relative(folder_.path()).generic_string());
        }
        return found;
    }

    test::TempFolder folder_;
};

TEST_F(ProjectRootsTest, Scores) {
    EXPECT_EQ(scoreProjectRoot(folder_.path()), -1);
    folder_.write("file/data", "");
    EXPECT_EQ(scoreProjectRoot(folder_.path() / "file"), -1);
    EXPECT_EQ(scoreProjectRoot(folder_.path() / "absent"), -1);

    fs::create_directories(folder_.path() / "empty/DATA");
    EXPECT_EQ(scoreProjectRoot(folder_.path() / "empty"), 10);
    folder_.write("port/assets/openbor-data/models.txt", "");
    EXPECT_EQ(scoreProjectRoot(folder_.path() / "port"), 10 + 1000 + 1);

    for (const char* name : {"MODELS.txt", "levels.txt", "Video.TXT", "menu.txt", "script.txt"}) {
        folder_.write(std::string("full/Data/") + name, "");
    }
    folder_.write("full/Data/scripts/a.C", "");
    folder_.write("full/Data/scripts/a.h", "");
    EXPECT_EQ(scoreProjectRoot(folder_.path() / "full"), 2000 + 6);
    for (int i = 0; i < 250; ++i) {
        folder_.write("full/Data/chars/" + std::to_string(i) + ".txt", "");
    }
    EXPECT_EQ(scoreProjectRoot(folder_.path() / "full"), 2200);
}

TEST_F(ProjectRootsTest, BestFirst) {
    folder_.write("b/data/models.txt", "");
    folder_.write("b/DATA/models.txt", "");  // its parent is a candidate already
    folder_.write("a/data/models.txt", "");
    folder_.write("a/data/data/models.txt", "");
    folder_.write("best/data/levels.txt", "");
    folder_.write("best/data/models.txt", "");
    folder_.write("port/Assets/OpenBOR-Data/levels.txt", "");  // not spelled as a port's
    folder_.write("port2/assets/openbor-data/video.txt", "");
    // "a" has one text file more than "a/data" and "b".
    EXPECT_EQ(roots(folder_.path()),
              (std::vector<std::string>{"best", "a", "a/data", "b", "port2"}));
    // The data folder itself stands for its parent, which is better than what lies inside.
    EXPECT_EQ(roots(folder_.path() / "a/data"), (std::vector<std::string>{"a", "a/data"}));
    EXPECT_EQ(roots(folder_.path() / "best/data"), std::vector<std::string>{"best"});
    // Found as "best/" and as "best".
    EXPECT_EQ(roots(folder_.path() / "best" / ""), std::vector<std::string>{"best"});
}

TEST_F(ProjectRootsTest, KeepsWhatItSawOfTheBestRoot) {
    folder_.write("a/data/models.txt", "");
    folder_.write("best/DATA/models.txt", "");
    folder_.write("best/DATA/levels.txt", "");
    folder_.write("best/DATA/data/chars/deep.txt", "");
    folder_.write("best/outside.txt", "");
    const ProjectSearch found = findProjectRoots(folder_.path());
    EXPECT_EQ(found.bestData.dataDir, folder_.path() / "best/DATA");
    const ProjectScan walked = scanProject(found.roots.front());
    const ProjectScan spared = scanProject(found.roots.front(), found.bestData);
    ASSERT_EQ(spared.entries.size(), walked.entries.size());
    for (std::size_t i = 0; i < walked.entries.size(); ++i) {
        EXPECT_EQ(spared.entries[i].native, walked.entries[i].native);
    }
    EXPECT_EQ(spared.textCount, 3U);
    // One that belongs to another folder is of no use.
    EXPECT_EQ(scanProject(folder_.path() / "a", found.bestData).textCount, 1U);
}

TEST_F(ProjectRootsTest, LooksTenLevelsDeep) {
    folder_.write("1/2/3/4/5/6/7/8/9/data/models.txt", "");
    EXPECT_EQ(roots(folder_.path()), std::vector<std::string>{"1/2/3/4/5/6/7/8/9"});
    EXPECT_EQ(roots(folder_.path() / "1/2"), std::vector<std::string>{"1/2/3/4/5/6/7/8/9"});
    folder_.write("x/1/2/3/4/5/6/7/8/9/data/models.txt", "");
    EXPECT_EQ(roots(folder_.path()), std::vector<std::string>{"1/2/3/4/5/6/7/8/9"});
}

TEST_F(ProjectRootsTest, FollowsNoLink) {
    folder_.write("game/data/models.txt", "");
    fs::create_directory_symlink(folder_.path(), folder_.path() / "game/data/loop");
    fs::create_directory_symlink(folder_.path() / "game/data", folder_.path() / "data");
    EXPECT_EQ(roots(folder_.path()), std::vector<std::string>{"game"});
}

TEST_F(ProjectRootsTest, FindsPakFiles) {
    const fs::path b = folder_.write("b/c.PAK", "");
    const fs::path a = folder_.write("b.pak", "");
    const fs::path deep = folder_.write("1/2/3/4/5/6/7/8/9/10/11/12/deep.Pak", "");
    folder_.write("b/c.pak.txt", "");
    fs::create_directory(folder_.path() / "folder.pak");
    EXPECT_EQ(findPakFiles(folder_.path()), (std::vector<fs::path>{deep, b, a}));
    EXPECT_EQ(findPakFiles(b), std::vector<fs::path>{b});
    EXPECT_TRUE(findPakFiles(folder_.path() / "absent").empty());
}

TEST_F(ProjectRootsTest, WalksMoreLevelsThanFilesCanBeOpen) {
    std::string deep;
    for (int i = 0; i < 40; ++i) deep += "d/";
    folder_.write("game/data/models.txt", "");
    const fs::path pak = folder_.write("game/data/" + deep + "x.pak", "");
    const test::FewOpenFiles few;
    EXPECT_EQ(scoreProjectRoot(folder_.path() / "game"), 1011);
    EXPECT_EQ(findPakFiles(folder_.path()), std::vector<fs::path>{pak});
}

}  // namespace
}  // namespace tindrel
