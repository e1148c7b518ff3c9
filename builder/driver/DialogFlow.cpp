#include "driver/DialogFlow.hpp"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "analysis/ProjectAnalysis.hpp"
#include "driver/OutputNames.hpp"
#include "driver/ReportFolder.hpp"
#include "generator/PortTree.hpp"
#include "input/PreparedInput.hpp"
#include "platform/ExitCodes.hpp"
#include "platform/FileStatus.hpp"
#include "platform/HostSystem.hpp"
#include "platform/OutputFile.hpp"
#include "platform/Version.hpp"
#include "reader/DataPaths.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"
#include "toolchain/PortPackage.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view kTitle = "Tindrel Builder";
constexpr FileFilter kFilters[] = {
    {"OpenBOR ZIP/RAR/PAK", "*.zip;*.rar;*.pak"},
    {"ZIP", "*.zip"},
    {"RAR", "*.rar"},
    {"OpenBOR PAK", "*.pak"},
};

std::string welcomeText() {
    return "Tindrel Builder v" + std::string(kVersion) +
           "\n\n"
           "Agora voce pode usar:\n"
           "- uma pasta do jogo;\n"
           "- um arquivo .ZIP;\n"
           "- um arquivo .PAK do OpenBOR.\n"
           "\n"
           "SIM = escolher ZIP/RAR/PAK\n"
           "NAO = escolher pasta\n"
           "CANCELAR = sair";
}

// Empty when the user leaves.
fs::path selectGame(const Dialogs& dialogs) {
    switch (dialogs.askThreeWay(kTitle, welcomeText())) {
        case DialogAnswer::kYes:
            return dialogs.pickFile("Selecione o ZIP, RAR ou PAK do jogo OpenBOR", kFilters);
        case DialogAnswer::kNo:
            return dialogs.pickFolder("Selecione a pasta/pacote do jogo OpenBOR");
        case DialogAnswer::kCancel:
            break;
    }
    return {};
}

std::string analysisText(const fs::path& selection, const PreparedInput& prepared,
                         const ProjectAnalysis& analysis) {
    std::ostringstream text;
    text << "Entrada: " << displayPath(selection) << '\n'
         << "Projeto detectado: " << displayPath(prepared.gameRoot) << '\n'
         << "Fonte: " << prepared.sourceKind << "\n\n"
         << "Models: " << analysis.models << '\n'
         << "Stages: " << analysis.stages << '\n'
         << "Animations: " << analysis.animations << '\n'
         << "Resolution: " << analysis.logicalWidth << 'x' << analysis.logicalHeight << '\n'
         << "Supported: " << analysis.supported << '\n'
         << "Partial: " << analysis.partial << '\n'
         << "Unknown: " << analysis.unknown << "\n\n"
         << "Deseja gerar o port nativo agora?";
    return text.str();
}

struct FailureReason {
    int code;
    std::string_view text;
};

constexpr FailureReason kReasons[] = {
    {kNoCmake, "CMake not found"},
    {kNotConfigured, "CMake configure/toolchain failed"},
    {kNotCompiled, "runtime compilation failed"},
    {kNoExecutable, "runtime EXE not found after build"},
};

void writeStatus(const fs::path& output, int code) {
    OutputFile file(output / "BUILD-PACKAGE-STATUS.txt");
    file << "Tindrel Builder v" << kVersion << "\nconversion=SUCCESS\npackage_code=" << code
         << '\n';
    if (code != kSuccess) {
        const auto* const row =
            std::find_if(std::begin(kReasons), std::end(kReasons),
                         [&](const FailureReason& reason) { return reason.code == code; });
        const bool known = row != std::end(kReasons);
        file << "reason=" << (known ? row->text : "packaging/copy step failed") << '\n';
    }
    file.close();
}

std::string closingText(const fs::path& output, int code) {
    const std::string_view platform = packagePlatform(kHostSystem);
    std::ostringstream text;
    text << "CONVERSAO CONCLUIDA.\n\nPort gerado em:\n" << displayPath(output) << "\n\n";
    if (code != kSuccess) {
        text << "A CONVERSAO FOI SALVA, mas a compilacao/empacotamento " << platform
             << " parou com codigo " << code << ".\n"
             << "Veja BUILD-PACKAGE-STATUS.txt dentro da pasta do port. O projeto convertido NAO "
                "foi perdido.";
    } else {
        text << "Build nativo e pacote Portable " << platform << " gerados com sucesso:\n"
             << displayPath(packagePaths(output).zip);
    }
    text << "\nGAME COMPATIBILITY: veja reports/compatibility-report.txt (PARTIAL nao e falha de "
            "build).\n\nAbrir a pasta de saida agora?";
    return text.str();
}

int convertSelection(const Dialogs& dialogs, const Console& console, const fs::path& selection) {
    PreparedInput prepared = prepareInput(selection);
    const ProjectScan scan = scanProject(prepared.gameRoot, std::move(prepared.gameData));
    if (!scan.hasData) {
        dialogs.showError(kTitle,
                          "A pasta escolhida nao parece ser um projeto OpenBOR: a pasta data/ nao "
                          "foi encontrada.");
        return kNoData;
    }
    GameReader game(scan.dataDir, scan.root, scan.entries);
    const ProjectAnalysis analysis = analyzeProject(scan, game);
    const SelectionName name = nameSelection(selection);
    writeReportFolder(selection, scan, analysis, game, name.beside(kReportsSuffix),
                      pageLinks(prepared));
    if (!dialogs.askYesNo("Analise concluida", analysisText(selection, prepared, analysis),
                          DialogStyle::kQuestion)) {
        return kSuccess;
    }

    const fs::path output = name.beside(kPortSuffix);
    if (isInsideDataFolder(scan.dataDir, output)) {
        dialogs.showError(kTitle, "A pasta de saida nao pode ficar dentro de data/.");
        return kRefusedInDialogs;
    }
    if (tindrel::exists(output) &&
        !dialogs.askYesNo("Confirmar saida",
                          "A pasta de saida ja existe:\n" + displayPath(output) +
                              "\n\nDeseja recriar/atualizar os arquivos gerados?",
                          DialogStyle::kWarning)) {
        return kSuccess;
    }
    generatePort(scan, analysis, game, output);
    writeReportFolder(selection, scan, analysis, game, output / "reports", PageLinks::kPortAssets);
    const int code = packagePort(output, console);
    writeStatus(output, code);
    if (dialogs.askYesNo("Port concluido", closingText(output, code), DialogStyle::kInformation)) {
        dialogs.openFolder(code == kSuccess ? output.parent_path() : output);
    }
    return kSuccess;
}

}  // namespace

int runDialogFlow(const Dialogs& dialogs, const Console& console) {
    dialogs.hideConsole();
    const fs::path selection = selectGame(dialogs);
    if (selection.empty()) return kSuccess;
    try {
        return convertSelection(dialogs, console, selection);
    } catch (const std::exception& error) {
        dialogs.showError(kTitle, std::string("Falha ao processar o projeto:\n") + error.what());
        return kFailure;
    }
}

}  // namespace tindrel
