#include "Startup.hpp"

#include <algorithm>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <system_error>
#include <utility>
#include <vector>

#include "Autoplay.hpp"
#include "CrashHandler.hpp"
#include "Engine.hpp"
#include "ExitCodes.hpp"
#include "FileBytes.hpp"
#include "GeneratedCharacters.hpp"
#include "GeneratedStages.hpp"
#include "PathEncoding.hpp"
#include "Process.hpp"
#include "Replay.hpp"
#include "StartupLog.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

int numberOr(std::string_view text, int fallback) {
    return leadingInt(text).value_or(fallback);
}

bool isDirectory(const std::filesystem::path& path) {
    std::error_code unreadable;
    return std::filesystem::is_directory(path, unreadable);
}

// What the command line names, in full, since the working directory is about to move.
struct GivenFiles {
    FrameCapture capture;
    std::filesystem::path record, replay, report;  // empty for none
};

GivenFiles filesOf(const RunSwitches& switches) {
    const auto full = [](const std::optional<std::string>& given) -> std::filesystem::path {
        if (!given || given->empty()) return {};
        std::error_code unreachable;
        return std::filesystem::absolute(platform::pathFromArgument(*given), unreachable);
    };
    GivenFiles files{
        {}, full(switches.record), full(switches.replay), full(switches.autoplayReport)};
    const std::filesystem::path capture = full(switches.capture);
    if (!capture.empty()) files.capture = FrameCapture(capture, switches.captureEvery);
    return files;
}

// Who plays in place of the devices: null for nobody, and with an error for a recording that cannot
// be read.
std::unique_ptr<Pilot> pilotOf(const RunSwitches& switches, const GivenFiles& files,
                               std::string& error) {
    if (!files.replay.empty()) {
        Recording recording;
        std::ifstream in(files.replay);
        if (readRecording(in, recording, error)) {
            return std::make_unique<Replay>(std::move(recording));
        }
        error = PathEncoding::utf8(files.replay) + ": " + error;
        return nullptr;
    }
    if (!switches.autoplay) return nullptr;
    return std::make_unique<Autoplay>(
        AutoplaySwitches{switches.autoplayStages, switches.autoplayLives, files.report});
}

// The game itself, once its files were found good; the exit code of the process.
int playPort(const std::filesystem::path& root, const std::filesystem::path& logPath,
             const RunSwitches& switches, const GivenFiles& files) {
    Engine engine(platform::systemDevices());
    engine.setCapture(files.capture);
    std::string error;
    std::unique_ptr<Pilot> pilot = pilotOf(switches, files, error);
    if (!error.empty()) return failStartup(logPath, error);
    const bool piloted = pilot != nullptr;
    if (piloted) engine.setPilot(std::move(pilot));
    // Behind the reading, which may be of the same file.
    if (!files.record.empty() && !engine.record(files.record)) {
        return failStartup(logPath, "Cannot write " + PathEncoding::utf8(files.record));
    }
    if (!engine.initialize(root)) {
        return failStartup(logPath,
                           "Falha ao inicializar renderer/runtime. Veja runtime-startup.log.");
    }
    appendStartupLog(logPath,
                     engine.game().config.asWritten ? "READING as written" : "READING mended");
    appendStartupLog(logPath, "INITIALIZED OK");
    const bool smoke = switches.smoke && !piloted;
    const int code = smoke ? engine.runSmokeGame(switches.smokeFrames) : engine.run();
    if (smoke && code == kRanWell) {
        appendStartupLog(logPath, "SMOKE GAME OK frames=" + std::to_string(switches.smokeFrames));
    }
    appendStartupLog(logPath, "EXIT code=" + std::to_string(code));
    // Whoever starts a pilot reads its code.
    if (code == kRanWell || piloted) return code;
    return failStartup(
        logPath, "O runtime encerrou de forma anormal (codigo " + std::to_string(code) + ").");
}

int startPort(const std::filesystem::path& root, const std::filesystem::path& logPath,
              const RunSwitches& switches, const GivenFiles& files) {
    const bool hasData = isDirectory(root / "assets" / "openbor-data");
    appendStartupLog(logPath, std::string("PREFLIGHT assets=") + (hasData ? "ok" : "missing") +
                                  " characters=" + std::to_string(generated::kCharacterCount) +
                                  " stages=" + std::to_string(generated::kStageCount));
    const std::string_view failure =
        preflightFailure(hasData, generated::kCharacterCount, generated::kStageCount);
    if (!failure.empty()) return failStartup(logPath, failure);
    if (!switches.diagnose) return playPort(root, logPath, switches, files);
    appendStartupLog(logPath, "DIAGNOSE OK");
    return kRanWell;
}

}  // namespace

std::span<const SwitchInfo> switchTable() {
    using enum SwitchInfo::Value;
    using Text = std::string_view;
    static constexpr SwitchInfo kSwitches[] = {
        {"--diagnose", kNone, "", "check the port's files and end",
         [](RunSwitches& run, Text) { run.diagnose = true; }},
        {"--diagnostic", kNone, "", "the same",
         [](RunSwitches& run, Text) { run.diagnose = true; }},
        {"--smoke-game", kNone, "", "play by itself for 600 frames, as fast as it goes",
         [](RunSwitches& run, Text) { run.smoke = true; }},
        {"--smoke-frames", kNeeded, "<n>", "the same for n frames, 60 to 3600",
         [](RunSwitches& run, Text value) {
             run.smoke = true;
             run.smokeFrames = numberOr(value, SmokeRun::kUsualFrames);
         }},
        {"--capture", kNeeded, "<folder>", "write every 30th frame of play as PNG",
         [](RunSwitches& run, Text value) { run.capture = value; }},
        {"--capture-every", kNeeded, "<n>", "write every n-th frame instead",
         [](RunSwitches& run, Text value) {
             run.captureEvery = numberOr(value, FrameCapture::kDefaultEvery);
         }},
        {"--record", kNeeded, "<file>", "write down what the players do",
         [](RunSwitches& run, Text value) { run.record = value; }},
        {"--replay", kNeeded, "<file>", "play such a file",
         [](RunSwitches& run, Text value) { run.replay = value; }},
        {"--autoplay", kOptional, "<stages>", "let a bot play the campaign, or so many stages",
         [](RunSwitches& run, Text value) {
             run.autoplay = true;
             run.autoplayStages = std::max(0, numberOr(value, 0));
         }},
        {"--autoplay-lives", kNeeded, "<n>", "give the bot n more lives",
         [](RunSwitches& run, Text value) { run.autoplayLives = std::max(0, numberOr(value, 0)); }},
        {"--autoplay-report", kNeeded, "<file>", "let a bot play, and write what it met",
         [](RunSwitches& run, Text value) {
             run.autoplay = true;
             run.autoplayReport = value;
         }},
        {"--help", kNone, "", "this text", [](RunSwitches& run, Text) { run.help = true; }},
        {"--version", kNone, "", "which builder made the port, and of what",
         [](RunSwitches& run, Text) { run.version = true; }},
    };
    return kSwitches;
}

RunSwitches parseArguments(std::span<const std::string> arguments, bool foldCase) {
    RunSwitches switches;
    for (const std::string& argument : arguments) {
        if (!argument.starts_with('-')) {
            switches.start = argument;
            continue;
        }
        const std::size_t end = std::min(argument.find('='), argument.size());
        const bool hasValue = end < argument.size();
        const std::string given = argument.substr(0, end);
        const std::string name = foldCase ? foldAscii(given) : given;
        const auto known = std::ranges::find_if(switchTable(), [&](const SwitchInfo& info) {
            return info.name == name && (info.value == SwitchInfo::Value::kOptional ||
                                         hasValue == (info.value == SwitchInfo::Value::kNeeded));
        });
        if (known == switchTable().end()) {
            switches.ignored.push_back(argument);
        } else {
            known->apply(switches, std::string_view(argument).substr(hasValue ? end + 1 : end));
        }
    }
    switches.smokeFrames = SmokeRun::frames(switches.smokeFrames);
    return switches;
}

std::string helpText() {
    std::string text =
        "Usage: OpenBOR-Port [switches] [folder]\n"
        "\n"
        "Plays the game in whose folder it stands, or that of the folder given.\n"
        "\n";
    for (const SwitchInfo& known : switchTable()) {
        constexpr std::size_t kNameWidth = 27;
        std::string name = "  " + std::string(known.name);
        const bool isOptional = known.value == SwitchInfo::Value::kOptional;
        if (known.value != SwitchInfo::Value::kNone) {
            name.append(isOptional ? "[=" : "=").append(known.placeholder);
            if (isOptional) name += ']';
        }
        name.resize(std::max(name.size() + 1, kNameWidth), ' ');
        text.append(name).append(known.help).append(1, '\n');
    }
    return text +
           "\n"
           "Ends with 0 after a good run; runtime-startup.log tells how it went.\n";
}

std::string versionText(const std::filesystem::path& root) {
    constexpr std::uintmax_t kMostIdentity = 4096;
    const auto bytes = readFileBytes(root / "config" / "port.ini", kMostIdentity);
    std::istringstream lines(bytes ? std::string(bytes->begin(), bytes->end()) : std::string());
    std::string builder = "unknown";
    for (std::string line; std::getline(lines, line);) {
        constexpr std::string_view kKey = "builder=";
        if (line.ends_with('\r')) line.pop_back();
        if (line.starts_with(kKey)) builder = line.substr(kKey.size());
    }
    return "OpenBOR-Port, made by Tindrel Builder " + PathEncoding::text(builder) + "\n" +
           std::to_string(generated::kCharacterCount) + " characters, " +
           std::to_string(generated::kStageCount) + " stages\n";
}

std::filesystem::path executableDir(std::string_view argv0) {
    std::error_code error;
    std::filesystem::path own = platform::ownPath();
    if (own.empty()) {
        const std::string name(argv0.empty() ? "openbor-port" : argv0);
        own = std::filesystem::absolute(platform::pathFromArgument(name), error);
    }
    if (own.has_parent_path()) return own.parent_path();
    return std::filesystem::current_path(error);
}

std::filesystem::path findPortRoot(const std::filesystem::path& start,
                                   const std::filesystem::path& fallback) {
    constexpr int kLevels = 8;
    std::error_code error;
    std::filesystem::path folder = std::filesystem::absolute(start, error).lexically_normal();
    // "port/" has itself as parent, which would use up a level.
    if (!folder.has_filename()) folder = folder.parent_path();
    for (int level = 0; level < kLevels && !folder.empty(); ++level) {
        if (isDirectory(folder / "assets" / "openbor-data")) return folder;
        const std::filesystem::path parent = folder.parent_path();
        if (parent == folder) break;
        folder = parent;
    }
    return fallback;
}

std::string_view preflightFailure(bool hasData, std::size_t characters, std::size_t stages) {
    if (!hasData) {
        return "Pasta assets/openbor-data nao encontrada. Mantenha o EXE junto das pastas assets e "
               "config.";
    }
    if (characters == 0) {
        return "Nenhum personagem foi gerado. O port precisa ser reconvertido pelo Builder.";
    }
    if (stages == 0) {
        return "Nenhuma fase foi gerada. O port precisa ser reconvertido pelo Builder.";
    }
    return {};
}

int failStartup(const std::filesystem::path& logPath, std::string_view message) {
    appendStartupLog(logPath, "FATAL: " + std::string(message));
    if (!platform::gAutomatedRun) {
        const std::filesystem::path crashLog = logPath.parent_path() / "runtime-crash.log";
        platform::showError("Tindrel Port - erro de inicializacao",
                            std::string(message) + "\n\nLogs:\n" + PathEncoding::utf8(logPath) +
                                "\n" + PathEncoding::utf8(crashLog));
    }
    std::cerr << message << std::endl;
    return kStartFailed;
}

int runPort(int argc, const char* const* argv) {
    const std::filesystem::path exe = executableDir(argc > 0 ? argv[0] : "");
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) arguments.emplace_back(argv[i]);
    const RunSwitches switches = parseArguments(arguments, platform::foldsArguments());
    const std::filesystem::path start =
        switches.start ? platform::pathFromArgument(*switches.start) : exe;
    const std::filesystem::path root = findPortRoot(start, exe);
    if (switches.help || switches.version) {
        platform::tell("OpenBOR-Port", switches.help ? helpText() : versionText(root));
        return 0;
    }
    for (const std::string& argument : switches.ignored) {
        std::cerr << "ignored: " << argument << " (OpenBOR-Port --help)\n";
    }
    platform::gAutomatedRun =
        switches.diagnose || switches.smoke || switches.replay || switches.autoplay;
    const GivenFiles files = filesOf(switches);

    const std::filesystem::path logPath = root / "runtime-startup.log";
    platform::installCrashHandler(root / "runtime-crash.log");
    std::error_code unreachable;  // the game then still finds its files, which it names in full
    std::filesystem::current_path(root, unreachable);
    appendStartupLog(logPath,
                     "START exe=" + PathEncoding::utf8(exe) + " root=" + PathEncoding::utf8(root));
    try {
        return startPort(root, logPath, switches, files);
    } catch (const std::exception& exception) {
        return failStartup(logPath, std::string("Excecao: ") + exception.what());
    } catch (...) {
        return failStartup(logPath, "Excecao desconhecida durante a inicializacao.");
    }
}

}  // namespace port
