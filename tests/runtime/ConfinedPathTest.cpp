// Files that scripts name, in a folder with real links in it.

#include "ConfinedPath.hpp"

#include <gtest/gtest.h>

#include "TempFolder.hpp"

namespace port {
namespace {

namespace fs = std::filesystem;

TEST(ConfinedPath, StaysBelowItsFolder) {
    const tindrel::test::TempFolder folder;
    const fs::path base = folder.path() / "saves";
    folder.write("saves/Scores/Best.txt", "7");
    folder.write("secret.txt", "");
    folder.write("saves-too/mine.txt", "");
    fs::create_directory_symlink(folder.path(), base / "up");
    fs::create_directory_symlink(base / "Scores", base / "again");
    fs::create_symlink(folder.path() / "secret.txt", base / "linked.txt");
    fs::create_symlink(folder.path() / "nothing.txt", base / "dangling.txt");

    EXPECT_EQ(confinedPath(base, "data\\scores/BEST.TXT"), base / "Scores" / "Best.txt");
    EXPECT_EQ(confinedPath(base, "scores/new.txt"), base / "Scores" / "new.txt");
    EXPECT_EQ(confinedPath(base, "no/such/folder.txt"), base / "no" / "such" / "folder.txt");
    EXPECT_EQ(confinedPath(base, "scores/../a.txt"), base / "a.txt");
    for (const std::string_view refused : {"",
                                           ".",
                                           "scores",
                                           "scores/",
                                           "../secret.txt",
                                           "..\\secret.txt",
                                           "scores/../../secret.txt",
                                           "../saves-too/mine.txt",
                                           "/etc/passwd",
                                           "\\etc\\passwd",
                                           "C:secret.txt",
                                           "c:/secret.txt",
                                           "scores/C:secret.txt",
                                           "up/secret.txt",
                                           "up/saves/Scores/Best.txt",
                                           "again/Best.txt",
                                           "UP/secret.txt",
                                           "linked.txt",
                                           "dangling.txt",
                                           "scores/best.txt/x.txt"}) {
        EXPECT_EQ(confinedPath(base, refused), "") << refused;
    }
    EXPECT_EQ(confinedPath(base, std::string_view("a\0b.txt", 7)), "");
    EXPECT_EQ(confinedPath(base, std::string(5000, 'a')), "") << "no system opens it";
}

}  // namespace
}  // namespace port
