#include "input/OutputFolders.hpp"

#include <gtest/gtest.h>

#include <string>

#include "TempFolder.hpp"

namespace tindrel {
namespace {

namespace fs = std::filesystem;

TEST(OutputFolders, LooksAtAFolderOnceHoweverManyFilesItGets) {
    const test::TempFolder folder;
    OutputFolders folders(folder.path(), 200);
    for (int file = 0; file < 50'000; ++file) {
        ASSERT_EQ(folders.prepare(fs::path("data") / "a"), FolderProblem::kNone);
    }
    EXPECT_EQ(folders.looks(), 2U);

    fs::path deep = "data";
    for (int level = 0; level < 99; ++level) deep /= "d";
    for (int file = 0; file < 50; ++file) {
        ASSERT_EQ(folders.prepare(deep / std::to_string(file)), FolderProblem::kNone);
    }
    EXPECT_EQ(folders.looks(), 2U + 99U + 50U);
    EXPECT_TRUE(fs::is_directory(folder.path() / deep / "49"));
}

TEST(OutputFolders, SaysWhyAFolderIsNone) {
    const test::TempFolder folder;
    folder.write("data/file", "");
    fs::create_directory_symlink(".", folder.path() / "data" / "link");
    OutputFolders folders(folder.path(), 2);
    EXPECT_EQ(folders.prepare(fs::path("data") / "link" / "x"), FolderProblem::kLink);
    EXPECT_EQ(folders.prepare(fs::path("data") / "file"), FolderProblem::kFailed);
    EXPECT_TRUE(folders.error());
    EXPECT_EQ(folders.prepare(fs::path("data") / "1" / "2" / "3"), FolderProblem::kTooMany);
}

}  // namespace
}  // namespace tindrel
