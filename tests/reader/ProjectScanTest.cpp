#include "reader/ProjectScan.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "TempFolder.hpp"
#include "reader/GameReader.hpp"

namespace tindrel {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;
using test::TempFolder;

TEST(ProjectScan, CountsByExtensionAndRecordsTheWalk) {
    const TempFolder folder;
    folder.write("DATA/MODELS.TXT", "");
    folder.write("DATA/levels.txt", "");
    folder.write("DATA/video.txt", "");
    folder.write("DATA/bgs/title.pcx", "");
    folder.write("DATA/bgs/select.png", "");
    folder.write("DATA/bgs/loading2.bmp", "");
    folder.write("DATA/music/a.b/one.BOR", "");
    folder.write("DATA/music/two.JPG", "");
    folder.write("DATA/thumbs.db", "");
    folder.write("DATA/.png", "");
    folder.write("outside.txt", "");
    const ProjectScan scan = scanProject(folder.path() / "." / "");

    EXPECT_EQ(scan.root, folder.path());
    EXPECT_EQ(scan.dataDir, folder.path() / "DATA");
    EXPECT_TRUE(scan.hasData);
    EXPECT_TRUE(scan.hasModels);
    EXPECT_TRUE(scan.hasLevels);
    EXPECT_TRUE(scan.hasVideo);
    EXPECT_FALSE(scan.hasMenu);
    EXPECT_FALSE(scan.hasLifebar);
    EXPECT_FALSE(scan.hasScript);
    EXPECT_FALSE(scan.hasTitle) << "a .pcx title does not count";
    EXPECT_TRUE(scan.hasSelect);
    EXPECT_TRUE(scan.hasLoading);
    EXPECT_EQ(scan.fileCount, 10U);
    EXPECT_EQ(scan.imageCount, 4U);
    EXPECT_EQ(scan.audioCount, 1U);
    EXPECT_EQ(scan.textCount, 3U);
    EXPECT_TRUE(scan.warnings.empty());

    EXPECT_EQ(scan.entries.size(), 13U);
    const auto entry = [&](const fs::path& relative) {
        const auto found =
            std::find_if(scan.entries.begin(), scan.entries.end(), [&](const TreeEntry& candidate) {
                return candidate.path() == scan.dataDir / relative;
            });
        return found == scan.entries.end() ? TreeEntry{} : *found;
    };
    EXPECT_TRUE(entry("music/a.b").directory);
    EXPECT_FALSE(entry("music/a.b").regularFile);
    EXPECT_TRUE(entry("music/a.b/one.BOR").regularFile);
    EXPECT_EQ(entry("music/a.b/one.BOR").extension(), ".bor");
    EXPECT_EQ(entry(".png").extension(), "");
}

TEST(ProjectScan, ScansAPortAndPrefersTheGame) {
    const TempFolder folder;
    folder.write("assets/openbor-data/models.txt", "");
    ProjectScan scan = scanProject(folder.path());
    EXPECT_EQ(scan.dataDir, folder.path() / "assets" / "openbor-data");
    EXPECT_TRUE(scan.hasModels);
    EXPECT_EQ(scan.warnings, Strings{"levels.txt nao encontrado."});

    folder.write("data", "a plain file is no folder");
    EXPECT_TRUE(scanProject(folder.path()).hasData);

    fs::remove(folder.path() / "data");
    folder.write("data/x.h", "");
    scan = scanProject(folder.path());
    EXPECT_EQ(scan.dataDir, folder.path() / "data");
    EXPECT_EQ(scan.warnings, (Strings{"models.txt nao encontrado.", "levels.txt nao encontrado."}));
}

TEST(ProjectScan, WithoutDataThereIsOneWarning) {
    const TempFolder folder;
    folder.write("models.txt", "");
    for (const fs::path& root : {folder.path(), folder.path() / "absent"}) {
        const ProjectScan scan = scanProject(root);
        EXPECT_EQ(scan.root, root);
        EXPECT_FALSE(scan.hasData);
        EXPECT_FALSE(scan.hasModels);
        EXPECT_EQ(scan.fileCount, 0U);
        EXPECT_TRUE(scan.entries.empty());
        EXPECT_EQ(scan.warnings, Strings{"Pasta data/ nao encontrada."});
    }
}

TEST(ProjectScan, ChildrenAreFoundInAnyCase) {
    const TempFolder folder;
    folder.write("Data/a", "");
    EXPECT_TRUE(fs::equivalent(childOf(folder.path(), "data"), folder.path() / "Data"));
    EXPECT_EQ(childOf(folder.path(), "saves"), folder.path() / "saves");
}

TEST(ProjectScan, FailuresAreNamedAfterTheOperation) {
    try {
        static_cast<void>(scanProject({}));
        FAIL() << "an empty path has no absolute form";
    } catch (const fs::filesystem_error& error) {
        EXPECT_NE(std::string(error.what()).find("absolute"), std::string::npos) << error.what();
    }
}

#ifndef _WIN32
TEST(ProjectScan, LinksAreNotWalked) {
    const TempFolder folder;
    folder.write("real/models.txt", "");
    fs::create_directory_symlink("real", folder.path() / "data");
    EXPECT_FALSE(scanProject(folder.path()).hasData);

    fs::rename(folder.path() / "real", folder.path() / "DATA");
    fs::remove(folder.path() / "data");
    fs::create_directory_symlink(".", folder.path() / "DATA" / "again");
    fs::create_symlink("models.txt", folder.path() / "DATA" / "link.txt");
    fs::create_symlink("nowhere.txt", folder.path() / "DATA" / "dangling.txt");
    fs::create_symlink("loop.txt", folder.path() / "DATA" / "loop.txt");
    const ProjectScan scan = scanProject(folder.path());
    EXPECT_EQ(scan.entries.size(), 5U);
    EXPECT_EQ(scan.fileCount, 2U) << "a link to a file counts, one to nothing does not";
    for (const TreeEntry& entry : scan.entries) {
        EXPECT_FALSE(entry.directory) << entry.path();
        EXPECT_EQ(entry.symlink, entry.path().filename() != "models.txt") << entry.path();
    }

    fs::remove(scan.dataDir / "models.txt");
    const PathResolver resolver(scan.dataDir, scan.entries);
    EXPECT_EQ(resolver.plainType(scan.dataDir / "models.txt"), fs::file_type::regular)
        << "the scan's word is taken for it";
    EXPECT_EQ(resolver.plainType(scan.dataDir / "link.txt"), fs::file_type::none);
    EXPECT_EQ(resolver.plainType(scan.dataDir), fs::file_type::directory) << "not in the scan";
}

TEST(ProjectScan, AFolderThatCannotBeReadEndsTheWalk) {
    const TempFolder folder;
    folder.write("data/shut/a.txt", "");
    fs::permissions(folder.path() / "data" / "shut", fs::perms::none);
    std::error_code denied;
    fs::directory_iterator probe(folder.path() / "data" / "shut", denied);
    std::string message;
    try {
        static_cast<void>(scanProject(folder.path()));
    } catch (const fs::filesystem_error& error) {
        message = error.what();
    }
    fs::permissions(folder.path() / "data" / "shut", fs::perms::owner_all);
    if (!denied) GTEST_SKIP() << "this user reads everything";
    EXPECT_NE(message.find("recursive_directory_iterator::operator++"), std::string::npos)
        << message;
}

TEST(GameReaderPaths, AreRelativeToTheCanonicalRoot) {
    const TempFolder folder;
    folder.write("game/data/chars/ryu.txt", "name Ryu");
    fs::create_directory_symlink("game", folder.path() / "link");
    fs::create_symlink("ryu.txt", folder.path() / "game/data/chars/ken.txt");
    GameReader game(folder.path() / "link" / "data", folder.path() / "link");
    const fs::path chars = folder.path() / "link" / "data" / "chars";
    EXPECT_EQ(game.relativeToProject(chars / "ryu.txt"), "data/chars/ryu.txt");
    EXPECT_EQ(game.relativeToProject(chars / "ken.txt"), "data/chars/ryu.txt");
    EXPECT_EQ(game.relativeToProject(folder.path() / "game/data/../data/x.txt"), "data/x.txt");
    EXPECT_EQ(game.relativeToProject(folder.path() / "other.txt"), "../other.txt");

    fs::create_symlink("loop", folder.path() / "game/data/loop");
    for (int again = 0; again < 2; ++again) {
        EXPECT_THROW(
            static_cast<void>(game.relativeToProject(folder.path() / "link/data/loop/x.txt")),
            fs::filesystem_error);
    }

    const TextFile& lines = game.lines(chars / "ryu.txt");
    EXPECT_EQ(&game.lines(chars / "ryu.txt"), &lines);
    game.release(chars / "ryu.txt");
    folder.write("game/data/chars/ryu.txt", "name Ken\nname Ryu");
    EXPECT_EQ(game.lines(chars / "ryu.txt").lines().size(), 2U);
}
#endif

}  // namespace
}  // namespace tindrel
