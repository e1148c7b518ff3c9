#include "Startup.hpp"

#include <algorithm>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

#include "Autoplay.hpp"
#include "CrashHandler.hpp"
#include "Engine.hpp"
#include "GeneratedCharacters.hpp"
#include "GeneratedStages.hpp"
#include "PathEncoding.hpp"
#include "Process.hpp"
#include "Replay.hpp"
#include "StartupLog.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

constexpr int kDefaultSmokeFrames = 600;
constexpr std::string_view kSmokeFramesOption = "--smoke-frames=";
constexpr std::string_view kCaptureOption = "--capture=";
constexpr std::string_view kRecordOption = "--record=";
constexpr std::string_view kReplayOption = "--replay=";
constexpr std::string_view kAutoplayOption = "--autoplay";
constexpr std::string_view kAutoplayLivesOption = "--autoplay-lives=";
constexpr std::string_view kAutoplayReportOption = "--autoplay-report=";
constexpr std::string_view kCaptureEveryOption = "--capture-every=";

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

// Checks, engine and game; the exit code of the process.
int startPort(const std::filesystem::path& root, const std::filesystem::path& logPath,
              const RunSwitches& switches, GivenFiles files) {
    const bool hasData = isDirectory(root / "assets" / "openbor-data");
    appendStartupLog(logPath, std::string("PREFLIGHT assets=") + (hasData ? "ok" : "missing") +
                                  " characters=" + std::to_string(generated::kCharacterCount) +
                                  " stages=" + std::to_string(generated::kStageCount));
    const std::string_view failure =
        preflightFailure(hasData, generated::kCharacterCount, generated::kStageCount);
    if (!failure.empty()) return failStartup(logPath, failure);
    if (switches.diagnose) {
        appendStartupLog(logPath, "DIAGNOSE OK");
        return 0;
    }

    Engine engine(platform::systemDevices());
    engine.setCapture(std::move(files.capture));
    if (!files.replay.empty()) {
        Recording recording;
        std::string error;
        std::ifstream in(files.replay);
        if (!readRecording(in, recording, error)) {
            return failStartup(logPath, PathEncoding::utf8(files.replay) + ": " + error);
        }
        engine.setPilot(std::make_unique<Replay>(std::move(recording)));
    } else if (switches.autoplay) {
        engine.setPilot(std::make_unique<Autoplay>(
            AutoplaySwitches{switches.autoplayStages, switches.autoplayLives, files.report}));
    }
    // Behind the reading, which may be of the same file.
    if (!files.record.empty() && !engine.record(files.record)) {
        return failStartup(logPath, "Cannot write " + PathEncoding::utf8(files.record));
    }
    if (!engine.initialize(root)) {
        return failStartup(logPath,
                           "Falha ao inicializar renderer/runtime. Veja runtime-startup.log.");
    }
    appendStartupLog(logPath, engine.game().config.asWritten ? "READING as written"
                                                             : "READING mended");
    appendStartupLog(logPath, "INITIALIZED OK");
    const bool piloted = !files.replay.empty() || switches.autoplay;
    const bool smoke = switches.smoke && !piloted;
    const int code = smoke ? engine.runSmokeGame(switches.smokeFrames) : engine.run();
    if (smoke && code == 0) {
        appendStartupLog(logPath, "SMOKE GAME OK frames=" + std::to_string(switches.smokeFrames));
    }
    appendStartupLog(logPath, "EXIT code=" + std::to_string(code));
    if (code == 0) return 0;
    // Whoever starts these reads the code.
    if (piloted) return code;
    return failStartup(
        logPath, "O runtime encerrou de forma anormal (codigo " + std::to_string(code) + ").");
}

}  // namespace

RunSwitches parseArguments(std::span<const std::string> arguments, bool foldCase) {
    RunSwitches switches;
    for (const std::string& argument : arguments) {
        if (!argument.starts_with('-')) {
            switches.start = argument;
            continue;
        }
        const std::string option = foldCase ? foldAscii(argument) : argument;
        if (option == "--diagnose" || option == "--diagnostic") {
            switches.diagnose = true;
        } else if (option == "--smoke-game") {
            switches.smoke = true;
        } else if (option.starts_with(kSmokeFramesOption)) {
            switches.smoke = true;
            switches.smokeFrames =
                leadingInt(option.substr(kSmokeFramesOption.size())).value_or(kDefaultSmokeFrames);
        } else if (option.starts_with(kCaptureOption)) {
            switches.capture = argument.substr(kCaptureOption.size());
        } else if (option.starts_with(kRecordOption)) {
            switches.record = argument.substr(kRecordOption.size());
        } else if (option.starts_with(kReplayOption)) {
            switches.replay = argument.substr(kReplayOption.size());
        } else if (option.starts_with(kAutoplayLivesOption)) {
            switches.autoplayLives =
                std::max(0, leadingInt(option.substr(kAutoplayLivesOption.size())).value_or(0));
        } else if (option.starts_with(kAutoplayReportOption)) {
            switches.autoplay = true;
            switches.autoplayReport = argument.substr(kAutoplayReportOption.size());
        } else if (option == kAutoplayOption ||
                   option.starts_with(std::string(kAutoplayOption) + "=")) {
            switches.autoplay = true;
            const std::string stages = option.substr(kAutoplayOption.size());
            switches.autoplayStages =
                stages.empty() ? 0 : std::max(0, leadingInt(stages.substr(1)).value_or(0));
        } else if (option.starts_with(kCaptureEveryOption)) {
            switches.captureEvery = leadingInt(option.substr(kCaptureEveryOption.size()))
                                        .value_or(FrameCapture::kDefaultEvery);
        }
    }
    switches.smokeFrames = std::clamp(switches.smokeFrames, 60, 3600);
    return switches;
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
    return 1;
}

int runPort(int argc, const char* const* argv) {
    const std::filesystem::path exe = executableDir(argc > 0 ? argv[0] : "");
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) arguments.emplace_back(argv[i]);
    const RunSwitches switches = parseArguments(arguments, platform::foldsArguments());
    const std::filesystem::path start =
        switches.start ? platform::pathFromArgument(*switches.start) : exe;
    const std::filesystem::path root = findPortRoot(start, exe);
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
