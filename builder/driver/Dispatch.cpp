#include "driver/Dispatch.hpp"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iterator>
#include <ostream>
#include <string_view>
#include <utility>

#include "analysis/ParityAudit.hpp"
#include "analysis/ProjectAnalysis.hpp"
#include "driver/CommandTable.hpp"
#include "driver/ConsoleSummaries.hpp"
#include "driver/DialogFlow.hpp"
#include "driver/OutputNames.hpp"
#include "driver/PortTest.hpp"
#include "driver/ReportFolder.hpp"
#include "driver/Version.hpp"
#include "driver/Watch.hpp"
#include "generator/PortTree.hpp"
#include "generator/RepairPackage.hpp"
#include "input/PreparedInput.hpp"
#include "platform/ExitCodes.hpp"
#include "platform/FileStatus.hpp"
#include "platform/ProgramArgument.hpp"
#include "reader/DataPaths.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"
#include "toolchain/PortBuild.hpp"
#include "toolchain/PortPackage.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

int printUsage(std::ostream& out) {
    out << "Tindrel Builder " << kVersion << '\n'
        << "Generic OpenBOR -> native C++ converter. No game-specific hardcode.\n"
           "Usage:\n"
           "  tindrel-builder analyze <game-folder|game.zip|game.rar|game.pak>\n"
           "  tindrel-builder convert <game-folder|game.zip|game.rar|game.pak> [output-folder]\n"
           "  tindrel-builder build <game-folder|game.zip|game.rar|game.pak> <output-folder>\n"
           "  tindrel-builder scan <game-folder|game.zip|game.rar|game.pak>\n"
           "  tindrel-builder audit <game-folder|game.zip|game.rar|game.pak>\n"
           "  tindrel-builder repair <game-folder|game.zip|game.rar|game.pak> <output-folder>\n"
           "  tindrel-builder package <port-folder>\n"
           "  tindrel-builder test <port-folder>\n"
           "\n"
           "build converts and compiles the generated runtime. package assembles a portable ZIP. "
           "analyze writes analysis.json and compatibility-report.txt.\n"
           "Windows: run with no arguments and choose a folder, ZIP, RAR or PAK.\n";
    return kUsage;
}

// An analysed game, as the commands get it.
struct Run {
    const Console& console;
    const fs::path& input;
    const std::optional<fs::path>& folder;  // the third argument
    const PreparedInput& prepared;
    const ProjectScan& scan;
    GameReader& game;
    const ProjectAnalysis& analysis;
};

int runAnalyze(const Run& run) {
    std::ostream& out = run.console.out;
    printCompatibilitySummary(out, run.analysis);
    const fs::path folder =
        run.folder ? *run.folder : defaultReportsFolder(run.input, run.prepared);
    writeReportFolder(run.input, run.scan, run.analysis, run.game, folder, pageLinks(run.prepared));
    out << "Wrote " << displayPath(folder / "analysis.json") << '\n'
        << "Wrote " << displayPath(folder / "compatibility-report.txt") << '\n';
    return kSuccess;
}

int runAudit(const Run& run) {
    printCompatibilitySummary(run.console.out, run.analysis);
    run.console.out << '\n';
    printParityAudit(run.console.out);
    return kSuccess;
}

int convert(const Run& run, const fs::path& output) {
    if (isInsideDataFolder(run.scan.dataDir, output)) {
        run.console.err << "Erro: a pasta de saida nao pode ficar dentro de data/.\n";
        return kRefused;
    }
    generatePort(run.scan, run.analysis, run.game, output);
    writeReportFolder(run.input, run.scan, run.analysis, run.game, output / "reports",
                      PageLinks::kPortAssets);
    printCompatibilitySummary(run.console.out, run.analysis);
    const bool isPartial = run.analysis.partial > 0 || run.analysis.unknown > 0;
    run.console.out << "CONVERT SUCCESS: port project generated at "
                    << displayPath(tindrel::absolute(output)) << '\n'
                    << "GAME COMPATIBILITY: " << (isPartial ? "PARTIAL" : "PASS") << '\n';
    return kSuccess;
}

int runConvert(const Run& run) {
    return convert(run, run.folder ? *run.folder : defaultPortFolder(run.input, run.prepared));
}

int runBuild(const Run& run) {
    const int code = convert(run, *run.folder);
    return code == kSuccess ? buildPort(*run.folder, run.console) : code;
}

int runRepair(const Run& run) {
    writeRepairPackage(run.scan, run.analysis, *run.folder);
    printCompatibilitySummary(run.console.out, run.analysis);
    run.console.out << "AI Repair package generated at: "
                    << displayPath(tindrel::absolute(*run.folder / "AI-Repair")) << '\n';
    return kSuccess;
}

int runTest(const Run& run) {
    printCompatibilitySummary(run.console.out, run.analysis);
    return run.analysis.models > 0 || run.analysis.stages > 0 ? kSuccess : kNothingFound;
}

struct GameCommand {
    std::string_view name;
    bool needsFolder;
    int (*run)(const Run&);
};

constexpr GameCommand kGameCommands[] = {
    {"analyze", false, runAnalyze}, {"audit", false, runAudit},  {"build", true, runBuild},
    {"convert", false, runConvert}, {"repair", true, runRepair}, {"test", false, runTest},
};

int runGameCommand(std::string_view command, const fs::path& input,
                   const std::optional<fs::path>& folder, PreparedInput& prepared, bool asWritten,
                   const Console& console) {
    console.out << "Input source: " << prepared.sourceKind << " | original=" << displayPath(input)
                << " | gameRoot=" << displayPath(prepared.gameRoot) << '\n';
    if (prepared.candidates.size() >= 2) {
        console.out << "[INFO] " << prepared.candidates.size()
                    << " candidatos detectados; usando o de maior compatibilidade estrutural.\n";
    }
    const ProjectScan scan = scanProject(prepared.gameRoot, std::move(prepared.gameData));
    printScanSummary(console.out, scan);
    if (!scan.hasData) return kNoData;
    if (command == "scan") return kSuccess;

    GameReader game(scan.dataDir, scan.root, scan.entries, asWritten);
    const ProjectAnalysis analysis = analyzeProject(scan, game);
    const auto* const row =
        std::find_if(std::begin(kGameCommands), std::end(kGameCommands),
                     [&](const GameCommand& known) { return known.name == command; });
    if (row == std::end(kGameCommands) || (row->needsFolder && !folder)) {
        return printUsage(console.out);
    }
    return row->run({console, input, folder, prepared, scan, game, analysis});
}

// The value of an option, which is taken out of the arguments; empty for one without a value.
std::optional<std::string> takeOption(std::vector<std::string>& arguments, std::string_view name) {
    const auto found = std::ranges::find_if(arguments, [&](const std::string& argument) {
        return argument.starts_with(name) && (name.ends_with('=') || argument == name);
    });
    if (found == arguments.end()) return std::nullopt;
    std::string value = found->substr(name.size());
    arguments.erase(found);
    return value;
}

int dispatch(std::vector<std::string> arguments, const Console& console) {
    // Asked for, the help is no mistake; a game of that name is given as "./--help".
    const auto asks = [&](std::string_view option) {
        return std::find(arguments.begin() + 1, arguments.end(), option) != arguments.end();
    };
    if (asks("--help") || asks("-h")) {
        printHelp(console.out);
        return kSuccess;
    }
    if (asks("--version")) {
        printVersion(console.out);
        return kSuccess;
    }
    const bool asWritten = takeOption(arguments, "--as-written").has_value();
    if (arguments.size() < 2) return printUsage(console.out);
    const std::string command = arguments[1];
    const bool starts = command == "watch" && takeOption(arguments, "--run");
    std::optional<std::string> playtest;
    if (command == "test") playtest = takeOption(arguments, "--playtest=");
    const bool forWindows = command == "package" && takeOption(arguments, "--windows");
    if (arguments.size() < 3) return printUsage(console.out);
    const fs::path input = argumentPath(arguments[2]);
    std::optional<fs::path> folder;
    if (arguments.size() > 3) folder = argumentPath(arguments[3]);
    // An unset variable of a calling script: as a path it would mean the working directory.
    if (folder && folder->empty()) {
        console.err << "Erro: a pasta de saida esta vazia.\n";
        return kRefused;
    }

    if (!tindrel::exists(input)) {
        console.err << "Erro: entrada nao encontrada: " << displayPath(input) << '\n';
        return kNoInput;
    }
    if (command == "package") {
        return packagePort(input, console, forWindows ? System::kWindows : kHostSystem);
    }
    if (command == "watch" && folder)
        return watchGame({input, *folder, starts, asWritten}, console);
    if (command == "watch") {
        console.err << "Erro: uso: tindrel-builder watch <game> <port> [--run]\n";
        return kUsage;
    }
    if (command == "test" && isDirectory(input / "assets" / "openbor-data")) {
        return testPort(input, playtest ? argumentPath(*playtest) : fs::path(), asWritten, console);
    }
    PreparedInput prepared;
    try {
        prepared = prepareInput(input);
    } catch (const std::exception& error) {
        console.err << "Erro preparando entrada: " << error.what() << '\n';
        return kNoInput;
    }
    return runGameCommand(command, input, folder, prepared, asWritten, console);
}

}  // namespace

int runBuilder(const std::vector<std::string>& arguments, const Console& console,
               const std::function<std::optional<Dialogs>()>& findDialogs) {
    try {
        if (arguments.size() > 1) return dispatch(arguments, console);
        const std::optional<Dialogs> dialogs = findDialogs();
        return dialogs ? runDialogFlow(*dialogs, console) : printUsage(console.out);
    } catch (const std::exception& error) {
        console.err << "Falha ao processar o projeto: " << error.what() << '\n';
        return kFailure;
    }
}

}  // namespace tindrel
