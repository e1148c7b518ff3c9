#include "driver/Dispatch.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "FakeTools.hpp"
#include "PakWriter.hpp"
#include "driver/CommandTable.hpp"
#include "driver/SmallGame.hpp"

namespace tindrel {
namespace {
namespace fs = std::filesystem;

constexpr const char* kUsageStart = "Tindrel Builder 0.34.32\nGeneric OpenBOR";

class DispatchTest : public testing::Test {
  protected:
    DispatchTest() { test::writeGame(folder_, "game"); }

    // Arguments that begin with '/' mean a path below the test's folder.
    int run(std::vector<std::string> arguments) {
        out_.str("");
        err_.str("");
        for (std::string& argument : arguments) {
            if (argument.starts_with('/')) argument = path(argument);
        }
        arguments.insert(arguments.begin(), "tindrel-builder");
        return runBuilder(arguments, {out_, err_}, [] { return std::nullopt; });
    }

    [[nodiscard]] std::string path(const std::string& below) const {
        return folder_.path().string() + below;
    }
    [[nodiscard]] bool has(const std::string& below) const { return fs::exists(path(below)); }

    // What every command prints of the game ahead of its own lines.
    [[nodiscard]] std::string preamble(const std::string& kind = "folder",
                                       const std::string& input = "/game") const {
        return "Input source: " + kind + " | original=" + path(input) +
               " | gameRoot=" + path("/game") + "\nOpenBOR project: " + path("/game") +
               "\ndata/: OK\nmodels.txt: OK\nlevels.txt: OK\n"
               "menu.txt: none  video.txt: none  lifebar.txt: none  script.txt: none\n"
               "files=5 images=1 audio=0 text=4\n";
    }

    [[nodiscard]] std::string lastLine() const {
        const std::string text = out_.str();
        return text.substr(text.rfind('\n', text.size() - 2) + 1);
    }

    test::TempFolder folder_;
    std::ostringstream out_, err_;
};

TEST_F(DispatchTest, ShowsTheUsageWithoutACommandOrAnInput) {
    EXPECT_EQ(run({}), 1);
    EXPECT_EQ(run({"scan"}), 1);
    EXPECT_EQ(out_.str().rfind(kUsageStart, 0), 0U) << out_.str();
    for (const char* command :
         {"analyze", "convert", "build", "scan", "audit", "repair", "package", "test"}) {
        EXPECT_NE(out_.str().find("\n  tindrel-builder " + std::string(command) + " <"),
                  std::string::npos)
            << command;
    }
    EXPECT_EQ(lastLine(), "Windows: run with no arguments and choose a folder, ZIP, RAR or PAK.\n");
    EXPECT_EQ(err_.str(), "");
}

TEST_F(DispatchTest, TellsOfItselfWhenAsked) {
    for (const std::vector<std::string>& asked :
         std::vector<std::vector<std::string>>{{"--help"}, {"-h"}, {"convert", "--help"}}) {
        EXPECT_EQ(run(asked), 0);
        EXPECT_NE(out_.str().find("\n  watch <game> <port>"), std::string::npos) << out_.str();
    }
    std::istringstream help(out_.str());
    for (std::string line; std::getline(help, line);) EXPECT_LE(line.size(), 80U) << line;
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_EQ(out_.str(), "Tindrel Builder 0.34.32\n");
}

// Everything that the program can be asked for, in its manual page and in each shell.
TEST(CommandTable, IsWhatManualAndCompletionsTell) {
    const fs::path packaging = fs::path(TINDREL_SOURCE_DIR) / "packaging";
    const auto read = [&](const char* name) {
        std::ifstream in(packaging / name);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    const std::string manual = read("man/tindrel-builder.1");
    const std::string bash = read("completions/tindrel-builder.bash");
    const std::string zsh = read("completions/tindrel-builder.zsh");
    const std::string fish = read("completions/tindrel-builder.fish");
    const auto expect = [](const std::string& text, const std::string& pattern) {
        EXPECT_TRUE(std::regex_search(text, std::regex(pattern))) << pattern;
    };
    for (const CommandInfo& command : commandTable()) {
        const std::string name(command.name);
        expect(manual, "\n\\.It Cm " + name + " Ar ");
        expect(bash, "[' ]" + name + "[' ]");
        expect(zsh, "'" + name + ":");
        expect(fish, " -a " + name + " ");
    }
    for (const OptionInfo& option : optionTable()) {
        const std::string name(option.name.substr(2));
        expect(manual, "\n\\.It Fl Fl " + name + "\\b");
        expect(bash, "[' ]--" + name + "[=' ]");
        expect(zsh, "--" + name + "=?\\[");
        expect(fish, " -l " + name + " ");
    }
}

TEST_F(DispatchTest, ReportsAnInputThatCannotBeUsed) {
    for (const char* input : {"/absent", "/game/data/models.txt/x"}) {
        EXPECT_EQ(run({"convert", input}), 2);
        EXPECT_EQ(err_.str(), "Erro: entrada nao encontrada: " + path(input) + '\n');
        EXPECT_EQ(out_.str(), "");
    }
    folder_.write("notes.txt", "no game");
    EXPECT_EQ(run({"scan", "/notes.txt"}), 2);
    EXPECT_EQ(err_.str(),
              "Erro preparando entrada: Formato de entrada nao suportado. Use pasta, .zip, .rar ou "
              ".pak.\n");
}

TEST_F(DispatchTest, AnEmptyOutputIsNotTheWorkingDirectory) {
    const fs::path before = fs::current_path();
    fs::create_directories(path("/cwd"));
    fs::current_path(path("/cwd"));
    for (const char* command : {"convert", "build", "analyze", "repair"}) {
        EXPECT_EQ(run({command, "/game", ""}), 5) << command;
        EXPECT_EQ(err_.str(), "Erro: a pasta de saida esta vazia.\n");
        EXPECT_EQ(out_.str(), "");
    }
    fs::current_path(before);
    EXPECT_TRUE(fs::is_empty(path("/cwd")));
}

TEST_F(DispatchTest, ScanSumsUpAndEnds) {
    EXPECT_EQ(run({"scan", "/game"}), 0);
    EXPECT_EQ(out_.str(), preamble());
    EXPECT_EQ(err_.str(), "");
}

TEST_F(DispatchTest, TellsOfOtherCandidates) {
    folder_.write("both/a/data/models.txt", "");
    folder_.write("both/b/data/levels.txt", "");
    EXPECT_EQ(run({"scan", "/both"}), 0);
    const std::string start = "Input source: openbor-package-folder | original=" + path("/both") +
                              " | gameRoot=" + path("/both/a") +
                              "\n[INFO] 2 candidatos detectados; usando o de maior "
                              "compatibilidade estrutural.\nOpenBOR project: " +
                              path("/both/a") + '\n';
    EXPECT_EQ(out_.str().substr(0, start.size()), start);
}

TEST_F(DispatchTest, AnalyzeWritesReportsWhereItSays) {
    EXPECT_EQ(run({"analyze", "/game"}), 0);
    EXPECT_EQ(out_.str(), preamble() + test::kCleanCounters + "Wrote " +
                              path("/game/reports/analysis.json") + "\nWrote " +
                              path("/game/reports/compatibility-report.txt") + '\n');
    EXPECT_TRUE(has("/game/reports/analysis.json"));
    EXPECT_TRUE(has("/game/reports/index.html"));
    EXPECT_EQ(run({"analyze", "/game", "/elsewhere/deep", "ignored"}), 0);
    EXPECT_TRUE(has("/elsewhere/deep/compatibility-report.txt"));
}

TEST_F(DispatchTest, TakesAGameToTheLetterWhereItIsTold) {
    const auto files = [&](const std::string& below) {
        std::map<std::string, std::string> texts;
        for (const auto& entry : fs::directory_iterator(path(below))) {
            const std::string name = entry.path().filename().string();
            texts[name] = folder_.read((below + '/' + name).substr(1));
        }
        return texts;
    };
    // Without a line to mend both ways are the same, to the byte.
    EXPECT_EQ(run({"analyze", "/game", "/one"}), 0);
    EXPECT_EQ(run({"analyze", "--as-written", "/game", "/two"}), 0);
    EXPECT_EQ(files("/one"), files("/two"));

    folder_.write("game/data/levels/one.txt", "spawn1 10 20\nspawn Hero\ncoords 10 200\nat 0\n");
    EXPECT_EQ(run({"convert", "/game", "/port"}), 0);
    EXPECT_NE(folder_.read("port/reports/index.html").find("1 line mended"), std::string::npos);
    EXPECT_TRUE(has("/port/reports/mended-lines.txt"));
    const std::string tables = folder_.read("port/runtime/generated/GeneratedStages.cpp");
    EXPECT_EQ(folder_.read("port/config/graphics.ini").find("as_written"), std::string::npos);

    EXPECT_EQ(run({"convert", "/game", "/port", "--as-written"}), 0);
    EXPECT_FALSE(has("/port/reports/mended-lines.txt"));
    EXPECT_NE(folder_.read("port/runtime/generated/GeneratedStages.cpp"), tables);
    EXPECT_TRUE(
        folder_.read("port/config/graphics.ini").ends_with("\n[reading]\nas_written=true\n"));
}

TEST_F(DispatchTest, AuditEndsWithTheParityTable) {
    EXPECT_EQ(run({"audit", "/game"}), 0);
    const std::string start =
        preamble() + test::kCleanCounters + "\nTindrel Builder 0.34.32 - Parity Audit\n\n";
    EXPECT_EQ(out_.str().substr(0, start.size()), start);
}

TEST_F(DispatchTest, ConvertWritesAPortBesideTheGame) {
    EXPECT_EQ(run({"convert", "/game"}), 0) << err_.str();
    const std::string port = "/game-Native-Port";
    EXPECT_EQ(out_.str(), preamble() + test::kCleanCounters +
                              "CONVERT SUCCESS: port project generated at " + path(port) +
                              "\nGAME COMPATIBILITY: PASS\n");
    for (const char* file :
         {"/assets/openbor-data/models.txt", "/runtime/CMakeLists.txt", "/reports/analysis.json",
          "/reports/index.html", "/runtime/generated/GeneratedCharacters.cpp",
          "/config/openbor-video.ini"}) {
        EXPECT_TRUE(has(port + file)) << file;
    }
}

TEST_F(DispatchTest, PartialAndUnknownCommandsMakeAGamePartial) {
    folder_.write("game/data/chars/hero.txt", "name Hero\nanim idle\nnosuchcommand 1\n");
    EXPECT_EQ(run({"convert", "/game", "/out"}), 0);
    EXPECT_EQ(lastLine(), "GAME COMPATIBILITY: PARTIAL\n");
}

TEST_F(DispatchTest, NamesOutputAfterAnInputFile) {
    folder_.write("x.pak", test::pakBytes({{"data\\models.txt", "load Hero data/chars/hero.txt\n"},
                                           {"data\\chars\\hero.txt", "name Hero\n"}}));
    EXPECT_EQ(run({"convert", "/x.pak"}), 0) << err_.str();
    EXPECT_TRUE(has("/x-Native-Port/assets/openbor-data/models.txt"));
    EXPECT_EQ(run({"analyze", "/x.pak"}), 0) << err_.str();
    EXPECT_TRUE(has("/x-analysis/analysis.json"));

    const fs::path before = fs::current_path();
    fs::current_path(folder_.path());
    fs::remove_all("x-Native-Port");
    const int code = run({"convert", "x.pak"});
    fs::current_path(before);
    EXPECT_EQ(code, 0) << err_.str();
    EXPECT_TRUE(has("/x-Native-Port/config/port.ini"));
}

TEST_F(DispatchTest, KeepsWhatAnUnpackedFolderGives) {
    folder_.write("pack/paks/x.pak", test::pakBytes({{"data\\models.txt", ""}}));
    EXPECT_EQ(run({"convert", "/pack"}), 0) << err_.str();
    EXPECT_TRUE(has("/pack-Native-Port/config/port.ini"));
    EXPECT_EQ(run({"analyze", "/pack"}), 0) << err_.str();
    EXPECT_TRUE(has("/pack/reports/analysis.json"));
}

TEST_F(DispatchTest, RefusesOutputInsideTheData) {
    for (const char* output : {"/game/data", "/game/data/out", "/game/x/../data/out"}) {
        for (const char* command : {"convert", "build"}) {
            EXPECT_EQ(run({command, "/game", output}), 5) << command << ' ' << output;
            EXPECT_EQ(err_.str(), "Erro: a pasta de saida nao pode ficar dentro de data/.\n");
            EXPECT_EQ(out_.str(), preamble());
        }
    }
    EXPECT_FALSE(has("/game/data/out"));
    EXPECT_EQ(run({"convert", "/game", "/game/database"}), 0) << err_.str();
    EXPECT_TRUE(has("/game/database/config/port.ini"));
}

TEST_F(DispatchTest, BuildConvertsAndCompiles) {
    const test::FakeTools tools;
    EXPECT_EQ(run({"build", "/game", "/out"}), 0) << err_.str();
    EXPECT_TRUE(has("/out/OpenBOR-Port"));
    const std::string text = out_.str();
    const auto converted = text.find("GAME COMPATIBILITY: PASS\n> \"" + tools.cmake() + '"');
    EXPECT_NE(converted, std::string::npos) << text;
    EXPECT_EQ(lastLine(), "NATIVE BUILD SUCCESS: " + path("/out/OpenBOR-Port") + '\n');

    tools.set("fail-build");
    EXPECT_EQ(run({"build", "/game", "/out2"}), 22);
    EXPECT_TRUE(has("/out2/config/port.ini")) << "a failed build takes no conversion back";
}

TEST_F(DispatchTest, NeededFolderIsMissedOnlyAfterTheAnalysis) {
    const std::pair<const char*, const char*> faults[] = {
        {"build", "Erro: falta a pasta de saida: build"},
        {"repair", "Erro: falta a pasta de saida: repair"},
        {"nonsense", "Erro: comando desconhecido: nonsense"}};
    for (const auto& [command, fault] : faults) {
        EXPECT_EQ(run({command, "/game"}), 1) << command;
        EXPECT_TRUE(out_.str().starts_with(preamble() + kUsageStart)) << out_.str();
        EXPECT_TRUE(err_.str().starts_with(fault)) << err_.str();
    }
    EXPECT_FALSE(has("/game-Native-Port"));
}

TEST_F(DispatchTest, AnOptionThatDoesNotFitIsNamed) {
    EXPECT_EQ(run({"convert", "/game", "--as-writen"}), 1);
    EXPECT_TRUE(out_.str().starts_with(kUsageStart)) << out_.str();
    EXPECT_TRUE(err_.str().starts_with("Erro: opcao desconhecida: --as-writen")) << err_.str();
    EXPECT_FALSE(fs::exists("--as-writen"));

    EXPECT_EQ(run({"convert", "/game", "--windows"}), 1);
    EXPECT_TRUE(err_.str().starts_with("Erro: opcao de outro comando: --windows")) << err_.str();
}

TEST_F(DispatchTest, RepairWritesItsPackage) {
    EXPECT_EQ(run({"repair", "/game", "/out"}), 0) << err_.str();
    EXPECT_EQ(out_.str(), preamble() + test::kCleanCounters +
                              "AI Repair package generated at: " + path("/out/AI-Repair") + '\n');
    EXPECT_TRUE(has("/out/AI-Repair"));
}

TEST_F(DispatchTest, TestOfAGameWritesNothing) {
    EXPECT_EQ(run({"test", "/game"}), 0);
    EXPECT_EQ(out_.str(), preamble() + test::kCleanCounters);
    EXPECT_FALSE(has("/game/reports"));
    folder_.write("empty/data/readme.txt", "");
    EXPECT_EQ(run({"test", "/empty"}), 4);
}

TEST_F(DispatchTest, TestOfAPortChecksAndCompilesIt) {
    const test::FakeTools tools;
    ASSERT_EQ(run({"convert", "/game", "/port"}), 0) << err_.str();
    const std::string checks =
        "[PASS] assets/openbor-data\n[PASS] runtime/CMakeLists.txt\n"
        "[PASS] runtime/generated/GeneratedCharacters.cpp\n"
        "[PASS] runtime/generated/GeneratedStages.cpp\n[PASS] runtime/src/Engine.cpp\n"
        "[PASS] config/openbor-video.ini\n[PASS] video config matches detected resolution\n> ";
    EXPECT_EQ(run({"test", "/port"}), 0) << err_.str();
    EXPECT_EQ(out_.str().rfind("OpenBOR project: " + path("/port") + '\n', 0), 0U) << out_.str();
    EXPECT_NE(out_.str().find(test::kCleanCounters + checks), std::string::npos) << out_.str();

    folder_.write("met.json", R"({"summary": {"stagesCleared": 1, "stages": 1},
        "stages": [{"stage": "data/levels/one.txt", "models": {"Hero": {}}}]})");
    EXPECT_EQ(run({"test", "--playtest=" + path("/met.json"), "/port"}), 0) << err_.str();
    EXPECT_NE(folder_.read("port/reports/index.html").find("A bot cleared 1 of 1 stage."),
              std::string::npos);
    EXPECT_EQ(folder_.read("port/reports/index.html").find("class=\"warn\""), std::string::npos);
    EXPECT_EQ(folder_.read("port/reports/playtest.json"), folder_.read("met.json"));
    EXPECT_EQ(run({"test", "/port", "--playtest=" + path("/absent.json")}), 2);
    EXPECT_EQ(err_.str(),
              "Erro: relatorio de jogo invalido: " + path("/absent.json") + ": cannot be read\n");
    EXPECT_EQ(run({"test", "/port", "--playtest="}), 2) << "an unset variable";
    EXPECT_EQ(run({"test", "/game", "--playtest=" + path("/met.json")}), 1);
    EXPECT_EQ(err_.str(), "Erro: --playtest pede a pasta de um port: " + path("/game") + '\n');

    folder_.write("port/config/openbor-video.ini", "logical_width=480\nlogical_height=240\n");
    fs::remove(path("/port/runtime/src/Engine.cpp"));
    tools.log("");
    EXPECT_EQ(run({"test", "/port"}), 40);
    EXPECT_EQ(err_.str(),
              "[FAIL] missing runtime/src/Engine.cpp\n"
              "[FAIL] video config does not match detected resolution\n");
    EXPECT_EQ(tools.log(), "") << "an incomplete port is not compiled";
}

TEST_F(DispatchTest, PackageTakesAPortAsItIs) {
    const test::FakeTools tools;
    EXPECT_EQ(run({"package", "/game"}), 30);
    EXPECT_EQ(out_.str(), "");
    test::writePort(folder_, "port");
    EXPECT_EQ(run({"package", "/port"}), 0) << err_.str();
    EXPECT_EQ(lastLine(), "PACKAGE SUCCESS: " + path("/port-Portable-Linux64.zip") + '\n');
}

TEST_F(DispatchTest, AFailureOfTheDiskEndsTheRun) {
    folder_.write("blocked", "a file where a folder should be");
    EXPECT_EQ(run({"convert", "/game", "/blocked/out"}), 10);
    EXPECT_EQ(err_.str().rfind("Falha ao processar o projeto: ", 0), 0U) << err_.str();
    EXPECT_EQ(out_.str(), preamble()) << "nothing is called done";
}

}  // namespace
}  // namespace tindrel
