#include "driver/Dispatch.hpp"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iterator>
#include <map>
#include <ostream>
#include <span>
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
#include "driver/Watch.hpp"
#include "generator/PortTree.hpp"
#include "generator/RepairPackage.hpp"
#include "input/PreparedInput.hpp"
#include "platform/ExitCodes.hpp"
#include "platform/FileStatus.hpp"
#include "platform/ProgramArgument.hpp"
#include "platform/Version.hpp"
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

// The usage says how a command line looks; this says what is wrong with the one in hand.
int refuse(const Console& console, std::string_view fault, std::string_view word) {
    printUsage(console.out);
    console.err << "Erro: " << fault << ": " << word << " (tindrel-builder --help)\n";
    return kUsage;
}

// Names of options that were given, and their values.
using Options = std::map<std::string_view, std::string>;

// Takes them out of the arguments, wherever they stand; the rest keeps its order.
Options takeOptions(std::vector<std::string>& arguments) {
    Options given;
    for (const OptionInfo& option : optionTable()) {
        const std::string start = std::string(option.name) + (option.value.empty() ? "" : "=");
        std::erase_if(arguments, [&](const std::string& argument) {
            if (option.value.empty() ? argument != start : !argument.starts_with(start)) {
                return false;
            }
            given[option.name] = argument.substr(start.size());
            return true;
        });
    }
    return given;
}

// The first option that is not one of the command's; empty where all are.
std::string_view strayOption(std::string_view command, const Options& options) {
    const std::span<const OptionInfo> table = optionTable();
    const auto stray = std::ranges::find_if(table, [&](const OptionInfo& option) {
        return !option.command.empty() && option.command != command &&
               options.contains(option.name);
    });
    return stray == table.end() ? std::string_view() : stray->name;
}

// A command line, taken apart.
struct Request {
    std::string command;
    fs::path input;
    std::optional<fs::path> folder;  // the third argument
    Options options;

    [[nodiscard]] bool has(std::string_view option) const { return options.contains(option); }
    [[nodiscard]] bool asWritten() const { return has("--as-written"); }
};

// An analysed game, as the commands get it.
struct Run {
    const Console& console;
    const Request& request;
    const PreparedInput& prepared;
    const ProjectScan& scan;
    GameReader& game;
    const ProjectAnalysis& analysis;
};

int runAnalyze(const Run& run) {
    std::ostream& out = run.console.out;
    printCompatibilitySummary(out, run.analysis);
    const fs::path folder = run.request.folder
                                ? *run.request.folder
                                : defaultReportsFolder(run.request.input, run.prepared);
    writeReportFolder(run.request.input, run.scan, run.analysis, run.game, folder,
                      pageLinks(run.prepared));
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
    writeReportFolder(run.request.input, run.scan, run.analysis, run.game, output / "reports",
                      PageLinks::kPortAssets);
    printCompatibilitySummary(run.console.out, run.analysis);
    const bool isPartial = run.analysis.partial > 0 || run.analysis.unknown > 0;
    run.console.out << "CONVERT SUCCESS: port project generated at "
                    << displayPath(tindrel::absolute(output)) << '\n'
                    << "GAME COMPATIBILITY: " << (isPartial ? "PARTIAL" : "PASS") << '\n';
    return kSuccess;
}

int runConvert(const Run& run) {
    return convert(run, run.request.folder ? *run.request.folder
                                           : defaultPortFolder(run.request.input, run.prepared));
}

int runBuild(const Run& run) {
    const int code = convert(run, *run.request.folder);
    return code == kSuccess ? buildPort(*run.request.folder, run.console) : code;
}

int runRepair(const Run& run) {
    writeRepairPackage(run.scan, run.analysis, *run.request.folder);
    printCompatibilitySummary(run.console.out, run.analysis);
    run.console.out << "AI Repair package generated at: "
                    << displayPath(tindrel::absolute(*run.request.folder / "AI-Repair")) << '\n';
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

int runGameCommand(const Request& request, PreparedInput& prepared, const Console& console) {
    console.out << "Input source: " << prepared.sourceKind
                << " | original=" << displayPath(request.input)
                << " | gameRoot=" << displayPath(prepared.gameRoot) << '\n';
    if (prepared.candidates.size() >= 2) {
        console.out << "[INFO] " << prepared.candidates.size()
                    << " candidatos detectados; usando o de maior compatibilidade estrutural.\n";
    }
    const ProjectScan scan = scanProject(prepared.gameRoot, std::move(prepared.gameData));
    printScanSummary(console.out, scan);
    if (!scan.hasData) return kNoData;
    if (request.command == "scan") return kSuccess;

    GameReader game(scan.dataDir, scan.root, scan.entries, request.asWritten());
    const ProjectAnalysis analysis = analyzeProject(scan, game);
    const auto* const row =
        std::find_if(std::begin(kGameCommands), std::end(kGameCommands),
                     [&](const GameCommand& known) { return known.name == request.command; });
    if (row == std::end(kGameCommands)) {
        return refuse(console, "comando desconhecido", request.command);
    }
    if (row->needsFolder && !request.folder) {
        return refuse(console, "falta a pasta de saida", request.command);
    }
    return row->run({console, request, prepared, scan, game, analysis});
}

int runWatch(const Request& request, const Console& console) {
    if (!request.folder) {
        console.err << "Erro: uso: tindrel-builder watch <game> <port> [--run]\n";
        return kUsage;
    }
    return watchGame({request.input, *request.folder, request.has("--run"), request.asWritten()},
                     console);
}

int runPortTest(const Request& request, const Console& console) {
    std::optional<fs::path> report;
    if (request.has("--playtest")) report = argumentPath(request.options.at("--playtest"));
    return testPort(request.input, report, request.asWritten(), console);
}

// The input exists.
int run(const Request& request, const Console& console) {
    const fs::path& input = request.input;
    if (request.command == "package") {
        return packagePort(input, console,
                           request.has("--windows") ? System::kWindows : kHostSystem);
    }
    if (request.command == "watch") return runWatch(request, console);
    if (request.command == "test" && isDirectory(input / "assets" / "openbor-data")) {
        return runPortTest(request, console);
    }
    if (request.has("--playtest")) {
        console.err << "Erro: --playtest pede a pasta de um port: " << displayPath(input) << '\n';
        return kUsage;
    }
    PreparedInput prepared;
    try {
        prepared = prepareInput(input);
    } catch (const std::exception& error) {
        console.err << "Erro preparando entrada: " << error.what() << '\n';
        return kNoInput;
    }
    return runGameCommand(request, prepared, console);
}

int dispatch(std::vector<std::string> arguments, const Console& console) {
    // A game of that name is given as "./--help".
    std::ranges::replace(arguments, std::string("-h"), std::string("--help"));
    Options options = takeOptions(arguments);
    if (options.contains("--help")) {
        printHelp(console.out);
        return kSuccess;
    }
    if (options.contains("--version")) {
        printVersion(console.out);
        return kSuccess;
    }
    // A misspelt option would become the output folder; a folder of that name is given as "./--x".
    const auto unknown = std::ranges::find_if(
        arguments, [](const std::string& argument) { return argument.starts_with("--"); });
    if (unknown != arguments.end()) return refuse(console, "opcao desconhecida", *unknown);
    if (arguments.size() < 3) return printUsage(console.out);
    if (const std::string_view stray = strayOption(arguments[1], options); !stray.empty()) {
        return refuse(console, "opcao de outro comando", stray);
    }
    Request request{arguments[1], argumentPath(arguments[2]), {}, std::move(options)};
    if (arguments.size() > 3) request.folder = argumentPath(arguments[3]);
    // An unset variable of a calling script: as a path it would mean the working directory.
    if (request.folder && request.folder->empty()) {
        console.err << "Erro: a pasta de saida esta vazia.\n";
        return kRefused;
    }
    if (!tindrel::exists(request.input)) {
        console.err << "Erro: entrada nao encontrada: " << displayPath(request.input) << '\n';
        return kNoInput;
    }
    return run(request, console);
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
