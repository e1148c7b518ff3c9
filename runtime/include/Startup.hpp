#pragma once

// The way from the command line to a running engine: root folder, logs, checks, messages.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "FrameCapture.hpp"
#include "SmokeRun.hpp"

namespace port {

struct RunSwitches {
    bool diagnose = false;  // stop after the checks
    bool smoke = false;     // play by itself for smokeFrames frames
    int smokeFrames = SmokeRun::kUsualFrames;
    std::optional<std::string> capture;  // the folder for pictures of the gameplay
    int captureEvery = FrameCapture::kDefaultEvery;
    std::optional<std::string> record;          // the file to record the run into
    std::optional<std::string> replay;          // the recording to play
    bool autoplay = false;                      // let a bot play
    int autoplayStages = 0;                     // so many stages; 0 for all
    int autoplayLives = 0;                      // with so many more lives
    std::optional<std::string> autoplayReport;  // the file for what the bot meets
    bool help = false, version = false;         // tell, and end
    std::optional<std::string> start;           // where to look for the port, as it was given
    std::vector<std::string> ignored;           // unknown, or without the value that they need
};

// A switch of the command line, once for reading it and for telling of it.
struct SwitchInfo {
    enum class Value { kNone, kOptional, kNeeded };

    std::string_view name;
    Value value;  // behind a "="
    std::string_view placeholder;
    std::string_view help;
    void (*apply)(RunSwitches& run, std::string_view value);
};

[[nodiscard]] std::span<const SwitchInfo> switchTable();

// For a terminal of 80 columns.
[[nodiscard]] std::string helpText();

// Which builder made the port in that folder, and what it holds.
[[nodiscard]] std::string versionText(const std::filesystem::path& root);

// Arguments without the program's name, in any order.
[[nodiscard]] RunSwitches parseArguments(std::span<const std::string> arguments, bool foldCase);

// The folder of the running program, from the system or else from its name; never empty.
[[nodiscard]] std::filesystem::path executableDir(std::string_view argv0);

// The first of `start` and its parents, eight folders in all, that holds assets/openbor-data;
// `fallback` if none does.
[[nodiscard]] std::filesystem::path findPortRoot(const std::filesystem::path& start,
                                                 const std::filesystem::path& fallback);

// What is wrong with a port that cannot start, for its player; empty for a good one.
[[nodiscard]] std::string_view preflightFailure(bool hasData, std::size_t characters,
                                                std::size_t stages);

// Tells the player by log, box and error stream; returns 1.
int failStartup(const std::filesystem::path& logPath, std::string_view message);

// The whole program: 0 after a good run, 1 where it failed, and after a recording or a bot that
// came to nothing its ExitCode. Moves the working directory to the port's root.
int runPort(int argc, const char* const* argv);

}  // namespace port
