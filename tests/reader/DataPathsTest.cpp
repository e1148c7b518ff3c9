#include "reader/DataPaths.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "PathEncoding.hpp"
#include "TempFolder.hpp"

namespace tindrel {
namespace {

namespace fs = std::filesystem;
using test::TempFolder;

// The file that `text` means, relative to the folder; "" for an unsafe or ambiguous one.
std::string find(const TempFolder& folder, std::string_view text) {
    const fs::path found = resolveDataPath(folder.path(), text);
    return found.empty() ? "" : PathEncoding::utf8(found.lexically_relative(folder.path()));
}

bool keepsCase(const TempFolder& folder) {
    folder.write("case-probe", "");
    return !fs::exists(folder.path() / "CASE-PROBE");
}

TEST(DataPaths, NormalisesWhatGamesWrite) {
    EXPECT_EQ(normalizeDataPath("Data\\chars\\ryu.txt"), "chars/ryu.txt");
    EXPECT_EQ(normalizeDataPath("././DATA/Chars//x/../Ryu.txt"), "Chars/Ryu.txt");
    EXPECT_EQ(normalizeDataPath("data/data/x"), "data/x");
    EXPECT_EQ(normalizeDataPath("data"), "data");
    EXPECT_EQ(normalizeDataPath("data/"), "");
    EXPECT_EQ(normalizeDataPath("a/../../x"), "../x");
    EXPECT_EQ(normalizeDataPath(""), "");
    EXPECT_EQ(normalizeDataPath("caf\xE9"), "caf\xC3\xA9");
}

TEST(DataPaths, SafeMeansBelowTheFolderOnEverySystem) {
    for (const char* unsafe : {"", "..", "a/../b", "/a", "C:/a", "c:a", "a/C:/b"}) {
        EXPECT_FALSE(isSafeRelativePath(unsafe)) << unsafe;
    }
    EXPECT_FALSE(isSafeRelativePath(std::string("a\0b", 3)));
    for (const char* safe : {"a", "a/b.txt", "..a/b.."}) {
        EXPECT_TRUE(isSafeRelativePath(safe)) << safe;
    }
#ifndef _WIN32
    EXPECT_TRUE(isSafeRelativePath("3:a")) << "no drive";
#endif
}

TEST(DataPaths, InsideIsDecidedByElementsOfTheCanonicalPath) {
    const TempFolder folder;
    folder.write("data/a.txt", "");
    folder.write("database/b.txt", "");
    const fs::path root = folder.path() / "data";
    EXPECT_TRUE(isInsideRoot(root, root));
    EXPECT_TRUE(isInsideRoot(root, root / "absent" / "x"));
    EXPECT_TRUE(isInsideRoot(root / ".." / "data", root / "x" / ".." / "a.txt"));
    EXPECT_FALSE(isInsideRoot(root, folder.path() / "database" / "b.txt"));
    EXPECT_FALSE(isInsideRoot(root, folder.path()));
    EXPECT_FALSE(isInsideRoot(root, root / ".." / "x"));
    EXPECT_FALSE(isInsideRoot({}, root));
}

TEST(DataPaths, FindsTheSpellingOnDisk) {
    const TempFolder folder;
    folder.write("Chars/Ryu/Ryu.TXT", "");
    EXPECT_EQ(find(folder, "data\\Chars/Ryu/Ryu.TXT"), "Chars/Ryu/Ryu.TXT");
    EXPECT_EQ(find(folder, "absent/File.txt"), "absent/File.txt");
    if (!keepsCase(folder)) GTEST_SKIP() << "the file system folds case itself";
    EXPECT_EQ(find(folder, "chars/RYU/ryu.txt"), "Chars/Ryu/Ryu.TXT");
    EXPECT_EQ(find(folder, "chars/ryu/Missing/Too.txt"), "Chars/Ryu/Missing/Too.txt");
    EXPECT_EQ(find(folder, "chars/ryu/ryu.txt/below"), "Chars/Ryu/Ryu.TXT/below");
}

TEST(DataPaths, TwoSpellingsAreAmbiguousUnlessOneIsExact) {
    const TempFolder folder;
    if (!keepsCase(folder)) GTEST_SKIP() << "the file system folds case itself";
    folder.write("Ryu.txt", "");
    folder.write("ryu.TXT", "");
    folder.write("Dir/a", "");
    folder.write("DIR/b", "");
    EXPECT_EQ(find(folder, "RYU.txt"), "");
    EXPECT_EQ(find(folder, "Ryu.txt"), "Ryu.txt");
    EXPECT_EQ(find(folder, "dir/a"), "");
    EXPECT_EQ(find(folder, "DIR/b"), "DIR/b");
}

TEST(DataPaths, RefusesToLeaveTheFolder) {
    const TempFolder folder;
    for (const char* unsafe :
         {"../x", "/etc/passwd", "C:\\x", "\\\\server\\share", "a/../../x", "", "a/c:/x"}) {
        EXPECT_EQ(find(folder, unsafe), "") << unsafe;
    }
    EXPECT_EQ(find(folder, std::string("a\0/../../x", 10)), "");
    EXPECT_EQ(find(folder, std::string(1U << 20U, 'a')), "");
    EXPECT_EQ(resolveDataPath({}, "x"), fs::path());
}

#ifndef _WIN32
TEST(DataPaths, LinksCountOnlyWhereTheyStayInside) {
    const TempFolder outer;
    outer.write("secret/file.txt", "");
    outer.write("root/Real/File.txt", "");
    const fs::path root = outer.path() / "root";
    fs::create_directory_symlink(outer.path() / "secret", root / "out");
    fs::create_symlink(outer.path() / "secret" / "file.txt", root / "out.txt");
    fs::create_directory_symlink("Real", root / "in");
    fs::create_symlink("nowhere", root / "dangling");

    PathResolver resolver(root);
    EXPECT_EQ(resolver.resolve("out/file.txt"), fs::path());
    EXPECT_EQ(resolver.resolve("OUT/absent"), fs::path());
    EXPECT_EQ(resolver.resolve("Out.txt"), fs::path());
    EXPECT_EQ(resolver.resolve("in/File.txt"), root / "in" / "File.txt");
    EXPECT_EQ(resolver.resolve("in/FILE.txt"), root / "in" / "FILE.txt") << "links are not listed";
    EXPECT_EQ(resolver.resolve("Dangling"), root / "dangling");
    EXPECT_EQ(resolver.resolve("real/file.txt"), root / "Real" / "File.txt");
}

TEST(DataPaths, FindsNamesThatAreNoUtf8) {
    const TempFolder folder;
    const fs::path legacy = folder.path() / "Caf\xE9.gif";
    folder.write("Caf\xE9.gif", "");
    if (!fs::exists(legacy)) GTEST_SKIP() << "the file system takes UTF-8 names only";
    EXPECT_EQ(resolveDataPath(folder.path(), "caf\xC3\xA9.GIF"), legacy);
    EXPECT_EQ(resolveDataPath(folder.path(), "caf\xE9.gif"), legacy);
    EXPECT_EQ(displayPath("Caf\xE9.gif"), "Caf\xC3\xA9.gif");
}

TEST(DataPaths, AnUnreadableFolderHasNoEntries) {
    const TempFolder folder;
    folder.write("Shut/File.txt", "");
    fs::permissions(folder.path() / "Shut", fs::perms::none);
    EXPECT_EQ(find(folder, "shut/other.txt"), "Shut/other.txt");
    fs::permissions(folder.path() / "Shut", fs::perms::owner_all);
}
#endif

}  // namespace
}  // namespace tindrel
