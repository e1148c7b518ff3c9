#include "input/ArchiveExtraction.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <deque>
#include <string>
#include <vector>

#include "Environment.hpp"
#include "TempFolder.hpp"
#include "platform/Process.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

using test::Environment;

class ArchiveExtractionTest : public ::testing::Test {
  protected:
    // The tools, recorded instead of run. Each takes the next code, 1 when none is left.
    ArchiveTools recorded(ArchiveTools tools, std::deque<int> codes) {
        tools.run = [this, codes](const Command& command, const auto&) mutable {
            commands_.push_back(command);
            if (codes.empty()) return 1;
            const int code = codes.front();
            codes.pop_front();
            return code;
        };
        return tools;
    }

    // A tool chain of one shell script, which finds the destination in $1.
    static ArchiveTools shell(ArchiveTools::Call script) {
        ArchiveTools tools = posixArchiveTools();
        tools.zip = script;
        tools.tar = tools.sevenZip = [](const fs::path&, const fs::path&) { return Command(); };
        return tools;
    }

    bool extract(const ArchiveTools& tools, ArchiveMethod method = ArchiveMethod::Zip,
                 const ExtractionLimits& limits = {}) {
        return extractArchive(archive_, out_, method, error_, tools, limits);
    }

    test::TempFolder folder_;
    fs::path archive_ = folder_.path() / "game.zip";
    fs::path out_ = folder_.path() / "out";
    std::string error_;
    std::vector<Command> commands_;
};

void writeProgram(const fs::path& path) {
    fs::permissions(path, fs::perms::owner_all);
}

TEST_F(ArchiveExtractionTest, WindowsChain) {
    const Environment path("PATH", folder_.path().string());
    const Environment programs("ProgramFiles", folder_.path().string());
    archive_ = folder_.below("it's \u2019new\u2019.zip");
    const std::string in = test::text(archive_);
    const std::string out = test::text(out_);

    EXPECT_FALSE(extract(recorded(windowsArchiveTools(), {1, -1})));
    EXPECT_EQ(error_,
              "PowerShell/tar.exe/7-Zip nao conseguiram extrair o arquivo (codigos 1/-1/-1)");
    const Command powerShell = {
        "powershell.exe",
        "-NoProfile",
        "-NonInteractive",
        "-ExecutionPolicy",
        "Bypass",
        "-Command",
        "Expand-Archive -LiteralPath '" +
            test::text(folder_.below("it''s \u2019\u2019new\u2019\u2019.zip")) +
            "' -DestinationPath '" + out + "' -Force"};
    const Command tar = {"tar.exe", "-xf", in, "-C", out};
    EXPECT_EQ(commands_, (std::vector<Command>{powerShell, tar}));

    // Found although it is not on the search path.
    const fs::path program = folder_.write("7-Zip/7z.exe", "");
    commands_.clear();
    EXPECT_FALSE(extract(recorded(windowsArchiveTools(), {3, 4, 5}), ArchiveMethod::Rar));
    EXPECT_EQ(error_,
              "RAR detectado pelo conteudo, mas tar.exe/7-Zip nao conseguiram extrair (codigos "
              "3/4). Instale 7-Zip ou extraia o RAR e selecione a pasta do jogo.");
    EXPECT_EQ(
        commands_,
        (std::vector<Command>{
            tar, {test::text(fs::path(program).make_preferred()), "x", "-y", "-o" + out, in}}));

    commands_.clear();
    EXPECT_TRUE(extract(recorded(windowsArchiveTools(), {0})));
    EXPECT_EQ(commands_, std::vector<Command>{powerShell});
    EXPECT_EQ(error_, "");
}

TEST_F(ArchiveExtractionTest, PosixChain) {
    const Environment path("PATH", folder_.path().string());
    writeProgram(folder_.write("7za", ""));
    writeProgram(folder_.write("7z", ""));
    archive_ = folder_.path() / "a\\b[1]*.zip";
    const std::string in = archive_.string();
    const std::string out = out_.string();
    EXPECT_TRUE(extract(recorded(posixArchiveTools(), {9, 1, 0})));
    ASSERT_EQ(commands_.size(), 3U);
    EXPECT_EQ(commands_[0], (Command{"unzip", "-o", "-q",
                                     folder_.path().string() + "/a\\\\b[[]1][*].zip", "-d", out}));
    EXPECT_EQ(commands_[1], (Command{"bsdtar", "--passphrase", "-", "-xf", in, "-C", out}));
    EXPECT_EQ(commands_[2], (Command{folder_.path().string() + "/7z", "x", "-y", "-o" + out, in}));

    folder_.write("file", "");
    out_ = folder_.path() / "file" / "out";
    EXPECT_FALSE(extract(recorded(posixArchiveTools(), {0})));
    EXPECT_EQ(error_.find("falha criando destino do arquivo: "), 0U) << error_;
}

TEST_F(ArchiveExtractionTest, LeavesNothingHarmful) {
    folder_.write("outside/victim.txt", "untouched");
    // The second tool writes through the link that the first one left.
    ArchiveTools tools = shell([](const fs::path&, const fs::path& out) {
        return Command{"sh", "-c",
                       "cd \"$1\" && mkdir -p d/closed && echo x >d/closed/f && ln -s ../outside "
                       "link && ln -s f d/closed/l && mkfifo d/pipe && ln d/closed/f d/hard && "
                       "chmod 0 d/closed/f d/closed; exit 7",
                       "sh", out.string()};
    });
    tools.tar = [](const fs::path&, const fs::path& out) {
        return Command{"sh", "-c", "echo evil >\"$1\"/link/victim.txt", "sh", out.string()};
    };
    EXPECT_FALSE(extract(tools));
    EXPECT_NE(error_.find("(codigos 7/"), std::string::npos) << error_;
    EXPECT_EQ(folder_.read("outside/victim.txt"), "untouched");
    std::vector<std::string> left;
    for (const auto& entry : fs::recursive_directory_iterator(out_)) {
        left.push_back(entry.path().filename().string());
        const fs::perms needed =
            entry.is_directory() ? fs::perms::owner_all : fs::perms::owner_read;
        EXPECT_EQ(entry.symlink_status().permissions() & needed, needed) << entry.path();
    }
    std::sort(left.begin(), left.end());
    EXPECT_EQ(left, (std::vector<std::string>{"closed", "d", "f", "hard"}));
}

TEST_F(ArchiveExtractionTest, KeepsToItsLimits) {
    const ArchiveTools tools = shell([](const fs::path&, const fs::path& out) {
        return Command{"sh", "-c", "cd \"$1\" && mkdir -p d && echo 123 >d/a && echo 456 >b", "sh",
                       out.string()};
    });
    EXPECT_TRUE(extract(tools, ArchiveMethod::Zip, {2, 8})) << error_;
    EXPECT_FALSE(extract(tools, ArchiveMethod::Zip, {1, 8}));
    EXPECT_EQ(error_.rfind("arquivo excede limite defensivo de arquivos (2 acima de 1) em ", 0), 0U)
        << error_;
    EXPECT_FALSE(extract(tools, ArchiveMethod::Zip, {2, 7}));
    EXPECT_EQ(error_.rfind("arquivo excede limite defensivo de extracao (8 acima de 7) em ", 0), 0U)
        << error_;
    // One that goes on and on is stopped.
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(extract(shell([](const fs::path&, const fs::path& out) {
                             return Command{"sh", "-c",
                                            "for i in $(seq 600); do echo 0123456789 "
                                            ">>\"$1\"/bomb; sleep 0.05; done",
                                            "sh", out.string()};
                         }),
                         ArchiveMethod::Zip, {100, 50}));
    EXPECT_EQ(error_.rfind("arquivo excede limite defensivo de extracao (", 0), 0U) << error_;
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

// From here on with the tools of this machine.
class RealArchiveTest : public ArchiveExtractionTest {
  protected:
    // Makes `archive_` from what `arguments` name.
    void pack(Command arguments) {
        arguments.insert(arguments.begin(),
                         {"bsdtar", "--format", "zip", "-cf", archive_.string()});
        ASSERT_EQ(runCommand(arguments), 0);
    }

    void SetUp() override {
        if (searchProgram("bsdtar").empty()) GTEST_SKIP() << "bsdtar is not here to make a ZIP";
    }
};

TEST_F(RealArchiveTest, UnpacksExactlyTheGivenFile) {
    folder_.write("one/data/\u00E7/\u00E9.txt", "right");
    folder_.write("two/data/other.txt", "wrong");
    archive_ = folder_.path() / "game1.zip";
    pack({"-C", (folder_.path() / "two").string(), "data"});
    // As a pattern this name means the file above.
    archive_ = folder_.path() / "game[1].zip";
    pack({"-C", (folder_.path() / "one").string(), "data"});
    const Environment all("LC_ALL", "C");
    const Environment fallback("LANG", "C");
    EXPECT_TRUE(extract(posixArchiveTools())) << error_;
    EXPECT_EQ(folder_.read("out/data/\u00E7/\u00E9.txt"), "right");
    EXPECT_FALSE(fs::exists(out_ / "data/other.txt"));
    // The second tool alone, which knows no names outside the locale.
    fs::remove_all(out_);
    ArchiveTools tar = posixArchiveTools();
    tar.sevenZip = [](const fs::path&, const fs::path&) { return Command(); };
    EXPECT_TRUE(extract(tar, ArchiveMethod::Rar)) << error_;
    EXPECT_EQ(folder_.read("out/data/\u00E7/\u00E9.txt"), "right");
}

TEST_F(RealArchiveTest, StaysInsideWithEveryTool) {
    folder_.write("outside/victim.txt", "untouched");
    folder_.write("b/link/victim.txt", "evil");
    fs::create_directory(folder_.path() / "a");
    fs::create_directory_symlink(folder_.path() / "outside", folder_.path() / "a" / "link");
    pack({"-C", (folder_.path() / "a").string(), "link", "-C", (folder_.path() / "b").string(),
          "link/victim.txt"});
    const ArchiveTools all = posixArchiveTools();
    for (const ArchiveTools::Call call : {all.zip, all.tar, all.sevenZip}) {
        ArchiveTools one = all;
        one.zip = call;
        one.tar = one.sevenZip = [](const fs::path&, const fs::path&) { return Command(); };
        static_cast<void>(extract(one));
        EXPECT_EQ(folder_.read("outside/victim.txt"), "untouched");
        EXPECT_FALSE(fs::is_symlink(out_ / "link"));
        fs::remove_all(out_);
    }
}

TEST_F(RealArchiveTest, AsksNobodyForAPassword) {
    Command encrypt = {"bsdtar",
                       "--format",
                       "zip",
                       "--options",
                       "zip:encryption",
                       "-cf",
                       archive_.string(),
                       "--passphrase",
                       "secret",
                       "-C",
                       folder_.path().string(),
                       "game.txt"};
    folder_.write("game.txt", "text");
    if (runCommand(encrypt) != 0) GTEST_SKIP() << "this bsdtar cannot encrypt";
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(extract(posixArchiveTools()));
    EXPECT_EQ(error_.find("PowerShell/tar.exe/7-Zip nao conseguiram extrair"), 0U) << error_;
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

}  // namespace
}  // namespace tindrel
