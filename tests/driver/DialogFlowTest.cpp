#include "driver/DialogFlow.hpp"

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "FakeTools.hpp"
#include "driver/Dispatch.hpp"
#include "driver/SmallGame.hpp"

namespace tindrel {
namespace {
namespace fs = std::filesystem;

class DialogFlowTest : public testing::Test {
  protected:
    DialogFlowTest() { test::writeGame(folder_, "game"); }

    // The first question is answered by `first`, the others by `answers` in their order. What is
    // shown goes to `shown_` as "<kind>|<title>|<text>".
    int run(DialogAnswer first, const fs::path& choice, std::deque<bool> answers) {
        shown_.clear();
        Dialogs dialogs;
        dialogs.hideConsole = [this] { shown_.emplace_back("hide"); };
        dialogs.askThreeWay = [&](std::string_view title, std::string_view text) {
            show("three", title, text);
            return first;
        };
        dialogs.askYesNo = [&](std::string_view title, std::string_view text, DialogStyle style) {
            constexpr const char* kStyles[] = {"information", "question", "warning"};
            show(kStyles[static_cast<int>(style)], title, text);
            if (answers.empty()) throw std::logic_error("a question too many");
            const bool answer = answers.front();
            answers.pop_front();
            return answer;
        };
        dialogs.showError = [this](std::string_view title, std::string_view text) {
            show("error", title, text);
        };
        dialogs.pickFile = [&](std::string_view title, std::span<const FileFilter> filters) {
            std::string list;
            for (const FileFilter& filter : filters) {
                ((list += filter.label) += '=') += filter.patterns;
                list += '\n';
            }
            show("file", title, list);
            return choice;
        };
        dialogs.pickFolder = [&](std::string_view title) {
            show("folder", title, "");
            return choice;
        };
        dialogs.openFolder = [this](const fs::path& folder) {
            shown_.push_back("open " + folder.string());
        };
        const int code = runBuilder({"tindrel-builder"}, {out_, err_}, [&] { return dialogs; });
        EXPECT_TRUE(answers.empty()) << "a question too few";
        return code;
    }

    void show(const char* kind, std::string_view title, std::string_view text) {
        shown_.push_back(kind + ('|' + std::string(title)) + '|' + std::string(text));
    }

    [[nodiscard]] std::string path(const std::string& below) const {
        return folder_.path().string() + below;
    }
    [[nodiscard]] bool has(const std::string& below) const { return fs::exists(path(below)); }

    test::TempFolder folder_;
    test::FakeTools tools_;
    std::vector<std::string> shown_;
    std::ostringstream out_, err_;
};

TEST_F(DialogFlowTest, CancelLeavesEverythingAlone) {
    EXPECT_EQ(run(DialogAnswer::kCancel, {}, {}), 0);
    EXPECT_EQ(shown_, (std::vector<std::string>{
                          "hide",
                          "three|Tindrel Builder|Tindrel Builder v0.34.32\n\n"
                          "Agora voce pode usar:\n- uma pasta do jogo;\n- um arquivo .ZIP;\n"
                          "- um arquivo .PAK do OpenBOR.\n\nSIM = escolher ZIP/RAR/PAK\n"
                          "NAO = escolher pasta\nCANCELAR = sair"}));
    EXPECT_EQ(run(DialogAnswer::kYes, {}, {}), 0);
    EXPECT_EQ(shown_.back(),
              "file|Selecione o ZIP, RAR ou PAK do jogo OpenBOR|"
              "OpenBOR ZIP/RAR/PAK=*.zip;*.rar;*.pak\nZIP=*.zip\nRAR=*.rar\nOpenBOR PAK=*.pak\n");
    EXPECT_EQ(run(DialogAnswer::kNo, {}, {}), 0);
    EXPECT_EQ(shown_.back(), "folder|Selecione a pasta/pacote do jogo OpenBOR|");
    EXPECT_FALSE(has("/game-analysis"));
}

TEST_F(DialogFlowTest, LeadsToThePackage) {
    EXPECT_EQ(run(DialogAnswer::kNo, path("/game"), {true, true}), 0);
    ASSERT_EQ(shown_.size(), 6U);
    EXPECT_EQ(shown_[3], "question|Analise concluida|Entrada: " + path("/game") +
                             "\nProjeto detectado: " + path("/game") +
                             "\nFonte: folder\n\nModels: 1\nStages: 1\nAnimations: 1\n"
                             "Resolution: 320x240\nSupported: 11\nPartial: 0\nUnknown: 0\n\n"
                             "Deseja gerar o port nativo agora?");
    EXPECT_EQ(shown_[4],
              "information|Port concluido|CONVERSAO CONCLUIDA.\n\nPort gerado em:\n" +
                  path("/game-Native-Port") +
                  "\n\nBuild nativo e pacote Portable Linux64 gerados com sucesso:\n" +
                  path("/game-Native-Port-Portable-Linux64.zip") +
                  "\nGAME COMPATIBILITY: veja reports/compatibility-report.txt (PARTIAL nao e "
                  "falha de build).\n\nAbrir a pasta de saida agora?");
    EXPECT_EQ(shown_[5], "open " + folder_.path().string());
    EXPECT_TRUE(has("/game-analysis/analysis.json"));
    EXPECT_TRUE(has("/game-Native-Port-Portable-Linux64.zip"));
    EXPECT_EQ(folder_.read("game-Native-Port/BUILD-PACKAGE-STATUS.txt"),
              "Tindrel Builder v0.34.32\nconversion=SUCCESS\npackage_code=0\n");
}

TEST_F(DialogFlowTest, AsksBeforeItWritesOverAPort) {
    folder_.write("game-Native-Port/mine.txt", "");
    EXPECT_EQ(run(DialogAnswer::kNo, path("/game"), {true, false}), 0);
    EXPECT_EQ(shown_.back(), "warning|Confirmar saida|A pasta de saida ja existe:\n" +
                                 path("/game-Native-Port") +
                                 "\n\nDeseja recriar/atualizar os arquivos gerados?");
    EXPECT_FALSE(has("/game-Native-Port/config/port.ini"));
    EXPECT_EQ(run(DialogAnswer::kNo, path("/game"), {true, true, false}), 0);
    EXPECT_TRUE(has("/game-Native-Port/config/port.ini"));
    EXPECT_EQ(shown_.back().rfind("information|Port concluido|", 0), 0U);
}

TEST_F(DialogFlowTest, ARefusedAnalysisEndsThere) {
    EXPECT_EQ(run(DialogAnswer::kNo, path("/game"), {false}), 0);
    EXPECT_TRUE(has("/game-analysis/compatibility-report.txt"));
    EXPECT_FALSE(has("/game-Native-Port"));
}

TEST_F(DialogFlowTest, AFailedBuildIsToldButKeepsTheConversion) {
    const struct {
        const char* flag;
        int code;
        const char* reason;
    } cases[] = {
        {"no-executable", 23, "runtime EXE not found after build"},
        {"fail-build", 22, "runtime compilation failed"},
        {"fail-configure", 21, "CMake configure/toolchain failed"},
        {nullptr, 20, "CMake not found"},
    };
    for (const auto& [flag, code, reason] : cases) {
        fs::remove_all(path("/game-Native-Port"));
        if (flag != nullptr) {
            tools_.set(flag);
        } else {
            tools_.removeProgram("cmake");
        }
        EXPECT_EQ(run(DialogAnswer::kNo, path("/game"), {true, true}), 0);
        const std::string number = std::to_string(code);
        EXPECT_EQ(folder_.read("game-Native-Port/BUILD-PACKAGE-STATUS.txt"),
                  "Tindrel Builder v0.34.32\nconversion=SUCCESS\npackage_code=" + number +
                      "\nreason=" + reason + '\n');
        EXPECT_EQ(shown_[shown_.size() - 2],
                  "information|Port concluido|CONVERSAO CONCLUIDA.\n\nPort gerado em:\n" +
                      path("/game-Native-Port") +
                      "\n\nA CONVERSAO FOI SALVA, mas a compilacao/empacotamento Linux64 parou com "
                      "codigo " +
                      number +
                      ".\nVeja BUILD-PACKAGE-STATUS.txt dentro da pasta do port. O projeto "
                      "convertido NAO foi perdido.\nGAME COMPATIBILITY: veja "
                      "reports/compatibility-report.txt (PARTIAL nao e falha de build).\n\nAbrir a "
                      "pasta de saida agora?");
        EXPECT_EQ(shown_.back(), "open " + path("/game-Native-Port"));
    }
}

TEST_F(DialogFlowTest, AFailedPackageHasAReasonOfItsOwn) {
    tools_.set("fail-zip");
    EXPECT_EQ(run(DialogAnswer::kNo, path("/game"), {true, false}), 0);
    EXPECT_EQ(folder_.read("game-Native-Port/BUILD-PACKAGE-STATUS.txt"),
              "Tindrel Builder v0.34.32\nconversion=SUCCESS\npackage_code=33\n"
              "reason=packaging/copy step failed\n");
}

TEST_F(DialogFlowTest, RefusesOutputInsideTheData) {
    // The folder that was picked lies in the data of the game that was found around it.
    folder_.write("outer/data/models.txt", "load Hero data/hero.txt\n");
    fs::create_directory_symlink(path("/outer"), path("/outer/data/link"));
    EXPECT_EQ(run(DialogAnswer::kNo, path("/outer/data/link"), {true}), 4);
    EXPECT_EQ(shown_.back(),
              "error|Tindrel Builder|A pasta de saida nao pode ficar dentro de "
              "data/.");
    EXPECT_FALSE(has("/outer/data/link-Native-Port"));
}

TEST_F(DialogFlowTest, ShowsWhyAnInputFailed) {
    const std::string notes = folder_.write("notes.txt", "no game").string();
    EXPECT_EQ(run(DialogAnswer::kYes, notes, {}), 10);
    EXPECT_EQ(shown_.back(),
              "error|Tindrel Builder|Falha ao processar o projeto:\nFormato de entrada nao "
              "suportado. Use pasta, .zip, .rar ou .pak.");
}

}  // namespace
}  // namespace tindrel
