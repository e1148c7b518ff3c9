#include "platform/FileReplace.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>

#include "TempFolder.hpp"

namespace tindrel {
namespace {

namespace fs = std::filesystem;
using test::TempFolder;

TEST(FileReplace, CopiesBytesPermissionsAndTimeToAFreePlace) {
    const TempFolder folder;
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{300'001}}) {
        std::string content(size, 'x');
        for (std::size_t i = 0; i < size; ++i) content[i] = static_cast<char>(i * 31 / 7);
        const fs::path from = folder.write("from", content);
        const fs::file_time_type changed = fs::last_write_time(from) - std::chrono::hours(1);
        fs::last_write_time(from, changed);
        fs::permissions(from, fs::perms::owner_read | fs::perms::group_all);
        std::error_code error;
        copyNewFile(from, folder.path() / "to", error);
        EXPECT_FALSE(error) << error.message();
        EXPECT_EQ(folder.read("to"), content);
        EXPECT_EQ(fs::status(folder.path() / "to").permissions(), fs::status(from).permissions());
        EXPECT_EQ(fs::last_write_time(folder.path() / "to"), changed);
        fs::permissions(from, fs::perms::owner_all);
        fs::remove(folder.path() / "to");
    }
}

TEST(FileReplace, LeavesWhatStandsThereAndNothingOfItsOwn) {
    const TempFolder folder;
    const fs::path from = folder.write("from", "new");
    const fs::path there = folder.write("there", "old");
    const fs::path link = folder.path() / "link";
    fs::create_symlink("nowhere", link);
    for (const fs::path& taken : {there, link}) {
        std::error_code error;
        copyNewFile(from, taken, error);
        EXPECT_EQ(error, std::errc::file_exists) << taken;
    }
    EXPECT_EQ(folder.read("there"), "old");
    EXPECT_FALSE(fs::exists(folder.path() / "nowhere")) << "written through a link";

    for (const fs::path& absent : {folder.path() / "absent", folder.path()}) {
        std::error_code error;
        copyNewFile(absent, folder.path() / "to", error);
        EXPECT_TRUE(error) << absent;
        EXPECT_FALSE(fs::exists(folder.path() / "to"));
    }
}

#ifdef _WIN32
TEST(FileReplace, AFileThatMayOnlyBeReadIsReplacedAndRemoved) {
    const TempFolder folder;
    const fs::path from = folder.write("from", "new");
    const fs::path to = folder.write("tree/to", "old");
    for (int turn = 0; turn < 2; ++turn) {
        fs::permissions(to, fs::perms::owner_read);
        std::error_code error;
        copyFileOver(from, to, error);
        EXPECT_FALSE(error) << error.message();
    }
    EXPECT_EQ(folder.read("tree/to"), "new");
    fs::permissions(to, fs::perms::owner_read);
    std::error_code error;
    removeAll(folder.path() / "tree", error);
    EXPECT_FALSE(error) << error.message();
    EXPECT_FALSE(fs::exists(folder.path() / "tree"));
}
#endif

}  // namespace
}  // namespace tindrel
