#include "toolchain/PortPackage.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "FakeTools.hpp"
#include "platform/Process.hpp"
#include "platform/ProcessPosix.hpp"

namespace tindrel {
namespace {
namespace fs = std::filesystem;

constexpr fs::perms kOwnerExec = fs::perms::owner_exec;

class PortPackageTest : public testing::Test {
  protected:
    PortPackageTest() { test::writePort(folder_, "game"); }

    int package(const fs::path& port) { return packagePort(port, {out_, err_}); }
    int package() { return package(port_); }

    [[nodiscard]] std::string lastLine() const {
        const std::string text = out_.str();
        const std::size_t start = text.rfind('\n', text.size() - 2);
        return text.substr(start == std::string::npos ? 0 : start + 1);
    }

    // With the real program behind the fake where files are really to be packed.
    void packForReal() {
        const test::Environment path("PATH", systemPath_);
        const std::string real = searchProgram("cmake").string();
        ASSERT_FALSE(real.empty());
        tools_.addProgram("packer", "#!/bin/sh\nexec " + real + " \"$@\"\n");
        tools_.addProgram("builder", tools_.read("cmake"));
        tools_.addProgram("cmake",
                          "#!/bin/sh\nif [ \"$1\" = -E ]; then exec \"${0%/*}/packer\" \"$@\"; fi\n"
                          "exec \"${0%/*}/builder\" \"$@\"\n");
    }

    std::string systemPath_ = std::getenv("PATH");
    test::TempFolder folder_;
    test::FakeTools tools_;
    fs::path port_ = folder_.path() / "game";
    fs::path stage_ = folder_.path() / "game-Portable-Linux64";
    fs::path zip_ = folder_.path() / "game-Portable-Linux64.zip";
    std::ostringstream out_, err_;
};

TEST_F(PortPackageTest, GathersWhatAPlayerNeeds) {
    folder_.write("game-Portable-Linux64/assets/old.txt", "of an earlier package");
    const fs::path before = fs::current_path();
    EXPECT_EQ(package(), 0) << err_.str();
    EXPECT_EQ(fs::current_path(), before);
    EXPECT_EQ(err_.str(), "");
    EXPECT_EQ(lastLine(), "PACKAGE SUCCESS: " + zip_.string() + '\n');
    const std::string log = tools_.log();
    EXPECT_NE(log.find("-E tar cf " + zip_.string() + " --format=zip game-Portable-Linux64\nin " +
                       folder_.path().string() + '\n'),
              std::string::npos)
        << log;

    std::vector<std::string> entries;
    for (const auto& entry : fs::recursive_directory_iterator(stage_)) {
        if (entry.is_regular_file()) {
            entries.push_back(entry.path().lexically_relative(stage_).generic_string());
        }
    }
    std::sort(entries.begin(), entries.end());
    EXPECT_EQ(entries, (std::vector<std::string>{
                           "DIAGNOSTICO.sh", "INICIAR-JOGO.sh", "OpenBOR-Port", "README-PORT.txt",
                           "SE-O-JOGO-FECHAR.txt", "assets/openbor-data/models.txt",
                           "config/graphics.ini", "lib/libone.so.1", "reports/analysis.json"}));
    EXPECT_NE(log.find(" -P " + port_.string() + "/runtime/PortableLibraries.cmake\n"),
              std::string::npos)
        << log;
    for (const char* program : {"DIAGNOSTICO.sh", "INICIAR-JOGO.sh", "OpenBOR-Port"}) {
        EXPECT_NE(fs::status(stage_ / program).permissions() & kOwnerExec, fs::perms::none)
            << program;
    }
}

TEST_F(PortPackageTest, NamesThePackageAfterTheFolderHoweverItIsWritten) {
    fs::remove_all(port_ / "reports");
    fs::remove(port_ / "README-PORT.txt");
    const fs::path before = fs::current_path();
    fs::current_path(folder_.path());
    EXPECT_EQ(package("game/"), 0) << err_.str();
    fs::current_path(port_);
    EXPECT_EQ(package("."), 0) << err_.str();
    fs::current_path(before);
    EXPECT_EQ(lastLine(), "PACKAGE SUCCESS: " + zip_.string() + '\n');
    EXPECT_TRUE(fs::exists(zip_));
    EXPECT_FALSE(fs::exists(stage_ / "reports"));
}

TEST_F(PortPackageTest, ReplacesLinksInsteadOfFollowingThem) {
    folder_.write("elsewhere/precious.txt", "kept");
    folder_.write("precious.zip", "kept");
    fs::create_directory_symlink(folder_.path() / "elsewhere", stage_);
    fs::create_symlink(folder_.path() / "precious.zip", zip_);
    EXPECT_EQ(package(), 0) << err_.str();
    EXPECT_FALSE(fs::is_symlink(stage_));
    EXPECT_FALSE(fs::is_symlink(zip_));
    EXPECT_EQ(folder_.read("elsewhere/precious.txt"), "kept");
    EXPECT_FALSE(fs::exists(folder_.path() / "elsewhere" / "assets"));
    EXPECT_EQ(folder_.read("precious.zip"), "kept");
}

TEST_F(PortPackageTest, RefusesWhatIsNoPort) {
    fs::remove_all(port_ / "assets");
    EXPECT_EQ(package(), 30);
    EXPECT_EQ(err_.str(), "Erro: a pasta nao parece ser um port gerado valido.\n");
    EXPECT_EQ(package(folder_.path() / "absent"), 30);
    EXPECT_EQ(tools_.log(), "");
    EXPECT_FALSE(fs::exists(stage_));
}

TEST_F(PortPackageTest, HandsOnTheBuildsCode) {
    tools_.set("fail-build");
    EXPECT_EQ(package(), 22);
    EXPECT_FALSE(fs::exists(stage_));
}

TEST_F(PortPackageTest, ReportsAFailedCopy) {
    fs::create_symlink("nowhere", port_ / "config" / "dangling.ini");
    EXPECT_EQ(package(), 31);
    EXPECT_EQ(err_.str().rfind("Erro empacotando config: ", 0), 0U) << err_.str();
}

TEST_F(PortPackageTest, ReportsLibrariesThatCannotBePacked) {
    tools_.set("fail-libraries");
    EXPECT_EQ(package(), 31);
    EXPECT_EQ(err_.str(), "Erro empacotando lib: o CMake terminou com 7\n");
}

TEST_F(PortPackageTest, ReportsAFailedZip) {
    tools_.set("fail-zip");
    const fs::path before = fs::current_path();
    EXPECT_EQ(package(), 33);
    EXPECT_EQ(fs::current_path(), before);
    EXPECT_EQ(err_.str(), "");
    EXPECT_EQ(out_.str().find("PACKAGE SUCCESS"), std::string::npos);

    tools_.set("gone-after-build");
    EXPECT_EQ(package(), 33);
    EXPECT_EQ(err_.str(), "Erro: CMake nao encontrado para criar o ZIP portatil.\n");
    EXPECT_EQ(fs::current_path(), before);
}

TEST_F(PortPackageTest, ArchiveKeepsNamesAndExecutableBits) {
    packForReal();
    folder_.write("game/assets/openbor-data/m\xC3\xBAsica/tema.txt", "utf-8");
    // A name of a legacy code page beside one in UTF-8.
    folder_.write("game/assets/openbor-data/m\xC3\xBAsica/a\xE7\xE3o.txt", "legacy");
    const test::Environment locale("LC_ALL", "C");
    ASSERT_EQ(package(), 0) << err_.str();
    EXPECT_STREQ(std::getenv("LC_ALL"), "C");

    const test::Environment path("PATH", systemPath_);
    if (searchProgram("unzip").empty()) GTEST_SKIP() << "unzip is not there";
    const test::Environment utf8("LC_ALL", "C.UTF-8");
    ASSERT_EQ(runCommand({"unzip", "-q", zip_.string(), "-d", (folder_.path() / "un").string()}),
              0);
    const std::string top = "un/game-Portable-Linux64/";
    EXPECT_EQ(folder_.read(top + "assets/openbor-data/m\xC3\xBAsica/tema.txt"), "utf-8");
    EXPECT_EQ(folder_.read(top + "assets/openbor-data/m\xC3\xBAsica/a\xC3\xA7\xC3\xA3o.txt"),
              "legacy");
    for (const char* program : {"INICIAR-JOGO.sh", "DIAGNOSTICO.sh", "OpenBOR-Port"}) {
        const fs::path file = folder_.path() / (top + program);
        EXPECT_NE(fs::status(file).permissions() & kOwnerExec, fs::perms::none) << file;
    }
}

TEST_F(PortPackageTest, LaunchersStartTheGameBesideThem) {
    ASSERT_EQ(package(), 0) << err_.str();
    folder_.write("game-Portable-Linux64/runtime-crash.log", "the crash\n");
    const test::Environment path("PATH", systemPath_);
    int code = 0;
    const std::string shown = runCommandOutput(
        {"sh", "-c", "\"$1\" < /dev/null", "sh", (stage_ / "INICIAR-JOGO.sh").string()}, code);
    EXPECT_EQ(code, 3) << "the fake game's code";
    EXPECT_EQ(shown, "\nO jogo encerrou com erro 3.\nthe crash\n");
    EXPECT_EQ(folder_.read("game-Portable-Linux64/started"), "ran \n");

    const std::string diagnosis = runCommandOutput(
        {"sh", "-c", "\"$1\" < /dev/null", "sh", (stage_ / "DIAGNOSTICO.sh").string()}, code);
    EXPECT_EQ(diagnosis, "\nthe crash\n");
    EXPECT_EQ(folder_.read("game-Portable-Linux64/started"), "ran --diagnose\n");
}

TEST(PackageTexts, WindowsLaunchersAreBatchFiles) {
    const auto texts = packageTexts(System::kWindows);
    ASSERT_EQ(texts.size(), 3U);
    EXPECT_EQ(texts[0].name, "INICIAR-JOGO.cmd");
    EXPECT_EQ(texts[0].content,
              R"(@echo off
cd /d "%~dp0"
start "" /wait "OpenBOR-Port.exe"
set RC=%ERRORLEVEL%
if not "%RC%"=="0" (
  echo.
  echo O jogo encerrou com erro %RC%.
  if exist runtime-startup.log type runtime-startup.log
  if exist runtime-crash.log type runtime-crash.log
  pause
)
exit /b %RC%
)");
    EXPECT_EQ(texts[1].name, "DIAGNOSTICO.cmd");
    EXPECT_EQ(texts[2].name, "SE-O-JOGO-FECHAR.txt");
}

TEST(CheckExists, CountsWhatIsMissing) {
    const test::TempFolder folder;
    folder.write("config/a.ini", "");
    std::ostringstream out, err;
    int failures = 4;
    checkExists(folder.path(), failures, "config/a.ini", {out, err});
    EXPECT_EQ(failures, 4);
    checkExists(folder.path(), failures, "config/b.ini", {out, err});
    EXPECT_EQ(failures, 5);
    EXPECT_EQ(out.str(), "[PASS] config/a.ini\n");
    EXPECT_EQ(err.str(), "[FAIL] missing config/b.ini\n");
}

TEST_F(PortPackageTest, PacksForWindowsFromAnotherSystem) {
    const Console console{out_, err_};
    EXPECT_EQ(packagePort(port_, console, System::kWindows), 20) << "a port of an older builder";
    const fs::path toolchain = folder_.write("game/runtime/mingw-w64.cmake", "");
    EXPECT_EQ(packagePort(port_, console, System::kWindows), 0) << err_.str();
    EXPECT_NE(tools_.log().find("-DCMAKE_TOOLCHAIN_FILE=" + toolchain.string()), std::string::npos)
        << tools_.log();
    const fs::path stage = folder_.path() / "game-Portable-Win64";
    for (const char* file : {"OpenBOR-Port.exe", "INICIAR-JOGO.cmd", "assets/openbor-data"}) {
        EXPECT_TRUE(fs::exists(stage / file)) << file;
    }
    EXPECT_FALSE(fs::exists(stage / "INICIAR-JOGO.sh"));
    EXPECT_TRUE(fs::exists(folder_.path() / "game-Portable-Win64.zip"));
    EXPECT_FALSE(fs::exists(zip_)) << "this system's own package is another";
}

}  // namespace
}  // namespace tindrel
