#include "generator/PortTree.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>

#include "TempFolder.hpp"
#include "generator/RuntimeEmission.hpp"

#ifndef _WIN32
#include <sys/resource.h>

#include <csignal>
#endif

namespace tindrel::test {
namespace {
namespace fs = std::filesystem;

constexpr const char* kAssets = "assets/openbor-data/";

class PortTree : public testing::Test {
  protected:
    PortTree() {
        game_.write("data/models.txt", "know Hero data/chars/hero.txt\n");
        game_.write("data/chars/hero.txt",
                    "name Hero\nnosuchword 1\nanim idle\ndelay 5\nframe data/chars/a.gif\n");
        game_.write("data/chars/a.gif", "picture");
        game_.write("data/sounds/hit.WAV", "12345");
        game_.write("data/sounds/theme.FLAC", "1234567");
        game_.write("data/scripts/Update.C", "void main(){}\n");
    }

    void generate(const fs::path& root, const fs::path& output) {
        const ProjectScan project = scanProject(root);
        generate(project, output);
    }
    void generate(const ProjectScan& project, const fs::path& output) {
        GameReader game(project.dataDir, project.root);
        const ProjectAnalysis analysis = analyzeProject(project, game);
        generatePort(project, analysis, game, output);
    }
    void generate() { generate(game_.path(), port_.path()); }

    [[nodiscard]] std::string asset(const std::string& name) const {
        return port_.read(kAssets + name);
    }
    [[nodiscard]] bool hasAsset(const std::string& name) const {
        return fs::exists(fs::symlink_status(port_.path() / (kAssets + name)));
    }

    TempFolder game_, port_;
};

std::string fileBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

TEST_F(PortTree, HoldsTheGameAndItsReports) {
    generate();
    EXPECT_EQ(asset("chars/a.gif"), "picture");
    EXPECT_EQ(port_.read("config/port.ini"),
              "[port]\nformat_version=3\nsource=OpenBOR\nruntime=native-cpp\nbuilder=0.34.32\n"
              "compatibility_scan=true\nai_repair_package=true\nlogical_width=320\n"
              "logical_height=240\n");
    EXPECT_EQ(port_.read("config/openbor-video.ini"), "logical_width=320\nlogical_height=240\n");

    const std::string report = port_.read("reports/compatibility.txt");
    EXPECT_EQ(report.substr(0, report.find("Recognized")),
              "Tindrel Builder - Compatibility Report\nFiles: 6\nImages: 1\nAudio: 2\n"
              "Text/script-like: 3\nmodels.txt: OK\nlevels.txt: MISSING\nScanned text files: 3\n");
    EXPECT_NE(report.find("\n[YELLOW] data/chars/hero.txt:2 command=nosuchword - "),
              std::string::npos);
    EXPECT_NE(report.find("\n[WARNING] levels.txt nao encontrado.\n"), std::string::npos);
    EXPECT_NE(port_.read("reports/command-usage.csv").find("\nnosuchword,1\n"), std::string::npos);
    EXPECT_NE(port_.read("reports/openbor-special-files.txt").find("\nvideo.txt: not present\n"),
              std::string::npos);

    const std::string audio = port_.read("reports/audio-compatibility.txt");
    EXPECT_NE(audio.find("\nNATIVE\tdata/sounds/hit.WAV\t5 bytes\n"), std::string::npos);
    EXPECT_NE(audio.find("\nWINDOWS_MEDIA_FOUNDATION\tdata/sounds/theme.FLAC\t7 bytes\n"),
              std::string::npos);
    EXPECT_NE(port_.read("reports/script-vm-compatibility.txt")
                  .find("\n\nVM_CANDIDATE\tdata/scripts/Update.C\n"),
              std::string::npos);
    EXPECT_NE(port_.read("runtime/generated/GeneratedCharacters.cpp").find("chars/a.gif"),
              std::string::npos);
    for (const char* file : {"reports/graphics-backend.txt", "reports/input-multiplayer.txt",
                             "reports/openbor-parity.md", "reports/stage-data.json",
                             "AI-Repair/original-sources/data/chars/hero.txt", "README-PORT.txt"}) {
        EXPECT_TRUE(fs::is_regular_file(port_.path() / file)) << file;
    }
}

TEST_F(PortTree, WithoutDataFolder) {
    const TempFolder empty;
    generate(empty.path(), port_.path());
    EXPECT_TRUE(fs::is_empty(port_.path() / "assets"));
    EXPECT_NE(port_.read("runtime/generated/GeneratedStages.cpp").find("kStageCount=0;"),
              std::string::npos);
}

TEST_F(PortTree, CarriesTheRuntimeByteForByte) {
    generate();
    const auto files = runtimeFiles();
    ASSERT_GE(files.size(), 22U);
    EXPECT_EQ(files[0].path, "runtime/include/PathEncoding.hpp");
    EXPECT_EQ(files[1].path, "config/graphics.ini");
    EXPECT_EQ(files[16].path, "runtime/src/main.cpp");
    EXPECT_EQ(files[21].path, "COMPILAR-E-INICIAR-WINDOWS.cmd");
    const fs::path tree = TINDREL_SOURCE_DIR;
    for (const EmbeddedFile& file : files) {
        const bool root = file.path.find('/') == std::string_view::npos;
        const std::string source = fileBytes((root ? tree / "port" : tree) / file.path);
        EXPECT_FALSE(source.empty()) << file.path;
        EXPECT_TRUE(file.content == source) << file.path;
        EXPECT_TRUE(port_.read(file.path) == source) << file.path;
    }
    for (const char* schema : {"GeneratedCharacters.hpp", "GeneratedStages.hpp"}) {
        const fs::path path = fs::path("runtime/generated") / schema;
        EXPECT_TRUE(port_.read(path.string()) == fileBytes(tree / path)) << schema;
        EXPECT_TRUE(std::none_of(files.begin(), files.end(), [&](const EmbeddedFile& file) {
            return file.path == path.generic_string();
        })) << schema;
    }
#ifndef _WIN32
    const auto script = fs::status(port_.path() / "BUILD-PORTABLE-LINUX.sh").permissions();
    EXPECT_NE(script & fs::perms::owner_exec, fs::perms::none);
#endif
}

TEST_F(PortTree, SecondRunOverwritesAndKeepsTheRest) {
    generate();
    port_.write("config/graphics.ini", "a player's own");
    port_.write("saves/slot1.sav", "kept");
    game_.write("data/chars/a.gif", "new picture");
    fs::permissions(port_.path() / kAssets / "chars/a.gif", fs::perms::owner_read);
    fs::remove(game_.path() / "data/sounds/hit.WAV");
    generate();
    EXPECT_EQ(asset("chars/a.gif"), "new picture");
    EXPECT_EQ(asset("sounds/hit.WAV"), "12345");
    EXPECT_EQ(port_.read("saves/slot1.sav"), "kept");
    EXPECT_NE(port_.read("config/graphics.ini"), "a player's own");
}

TEST_F(PortTree, ASecondRunTouchesOnlyWhatChanged) {
    game_.write("data/levels.txt", "set Main\nfile data/levels/one.txt\n");
    game_.write("data/levels/one.txt", "spawn Hero\ncoords 10 200\nat 0\n");
    generate();
    const auto past = fs::file_time_type::clock::now() - std::chrono::hours(1);
    const auto files = [&] {
        std::vector<fs::path> all;
        for (const auto& entry : fs::recursive_directory_iterator(port_.path())) {
            if (entry.is_regular_file()) all.push_back(entry.path());
        }
        return all;
    };
    // Assets keep the times of the game's files.
    for (const char* part : {"config", "reports", "runtime"}) {
        for (const auto& entry : fs::recursive_directory_iterator(port_.path() / part)) {
            if (entry.is_regular_file()) fs::last_write_time(entry, past);
        }
    }
    std::map<fs::path, fs::file_time_type> before;
    for (const fs::path& file : files()) before[file] = fs::last_write_time(file);

    const fs::path level = game_.write("data/levels/one.txt", "spawn Hero\ncoords 99 200\nat 0\n");
    // Some systems tell whole seconds only.
    fs::last_write_time(level, fs::last_write_time(level) + std::chrono::seconds(2));
    generate();
    std::vector<std::string> touched;
    for (const fs::path& file : files()) {
        if (before[file] == fs::last_write_time(file)) continue;
        touched.push_back(file.lexically_relative(port_.path()).generic_string());
    }
    std::sort(touched.begin(), touched.end());
    EXPECT_EQ(touched, (std::vector<std::string>{"assets/openbor-data/levels/one.txt",
                                                 "reports/stage-data.json",
                                                 "runtime/generated/GeneratedStages.cpp"}));
}

TEST_F(PortTree, LinksOfTheGameAreAbsent) {
    const fs::path secret = port_.write("secret.gif", "secret");
    std::error_code error;
    fs::create_symlink(secret, game_.path() / "data/link.gif", error);
    if (error) GTEST_SKIP() << "No links here: " << error.message();
    fs::create_directory_symlink(game_.path() / "data/chars", game_.path() / "data/folder");
    fs::create_symlink("nowhere", game_.path() / "data/broken.gif");
    generate();
    for (const char* link : {"link.gif", "folder", "broken.gif"}) EXPECT_FALSE(hasAsset(link));
}

TEST_F(PortTree, LinksInThePortAreReplacedNotFollowed) {
    const TempFolder elsewhere;
    elsewhere.write("victim", "untouched");
    fs::create_directories(port_.path() / kAssets / "chars");
    std::error_code error;
    fs::create_symlink(elsewhere.path() / "victim", port_.path() / kAssets / "chars/a.gif", error);
    if (error) GTEST_SKIP() << "No links here: " << error.message();
    fs::create_directory_symlink(elsewhere.path(), port_.path() / kAssets / "sounds");
    generate();
    EXPECT_EQ(asset("chars/a.gif"), "picture");
    EXPECT_EQ(asset("sounds/hit.WAV"), "12345");
    EXPECT_EQ(elsewhere.read("victim"), "untouched");
    EXPECT_FALSE(fs::exists(elsewhere.path() / "hit.WAV"));
}

TEST_F(PortTree, WhatCannotBeCopiedIsAbsent) {
    game_.write("data/vanished.gif", "");
    const ProjectScan project = scanProject(game_.path());
    fs::remove(game_.path() / "data/vanished.gif");
    port_.write(std::string(kAssets) + "chars/a.gif/in-the-way", "");
    generate(project, port_.path());
    EXPECT_FALSE(hasAsset("vanished.gif"));
    EXPECT_TRUE(fs::is_directory(port_.path() / kAssets / "chars/a.gif"));
    EXPECT_EQ(asset("sounds/hit.WAV"), "12345");
}

// A port scans as a project; its assets are then the source and the target of the copy.
TEST_F(PortTree, APortIsRegeneratedInPlace) {
    generate();
    generate(port_.path(), port_.path());
    EXPECT_EQ(asset("chars/a.gif"), "picture");
    EXPECT_EQ(asset("models.txt"), "know Hero data/chars/hero.txt\n");
}

TEST_F(PortTree, OutputInsideTheDataFolderIsRefused) {
    for (const char* output : {"data", "data/port", "data/chars/../deep/er"}) {
        try {
            generate(game_.path(), game_.path() / output);
            ADD_FAILURE() << output;
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(),
                         "Output folder must not be inside the source data/ directory.");
        }
    }
    EXPECT_FALSE(fs::exists(game_.path() / "data/port"));
    generate(game_.path(), game_.path() / "data-port");
    EXPECT_TRUE(fs::exists(game_.path() / "data-port/README-PORT.txt"));
}

#ifndef _WIN32
// A limit on the size of files stands for a full disk.
TEST_F(PortTree, AFullDiskEndsTheRun) {
    game_.write("data/big.gif", std::string(100'000, 'x'));
    const auto before = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    rlimit low = limit;
    low.rlim_cur = 50'000;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &low), 0);
    std::string operation;
    try {
        generate();
    } catch (const fs::filesystem_error& error) {
        operation = error.what();
    }
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, before);
    EXPECT_NE(operation.find("copy_file"), std::string::npos) << operation;
    EXPECT_FALSE(hasAsset("big.gif"));
    EXPECT_FALSE(fs::exists(port_.path() / "README-PORT.txt"));
}
#endif

}  // namespace
}  // namespace tindrel::test
