#pragma once

// A run as its beginning and what the players did in each pass, so that it can be played again, on
// another machine too, and must come to the same world. A text file:
//
//     [recording]                     the version of the format
//     [gameplay], [combat], [input], [reading]
//                                     the settings that a world depends on
//     [begin]                         a game's start, once for each before the first pass
//     [save]                          the saved game that it goes on from, where there is one
//     [passes]                        "<pass> input ..." where the input changes,
//                                     "<pass> save <line>" for each line of a saved game that is
//                                     continued in that pass,
//                                     "<pass> hash <tick> <digits> <digits of the fields>"
//                                     every 60 ticks, see fieldDigits(),
//                                     "<pass> end <digits>" behind the last pass

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "RuntimeConfig.hpp"
#include "SavedGame.hpp"
#include "Tick.hpp"
#include "WorldHash.hpp"

namespace port {

// Ticks between two hashes of a recording.
constexpr std::uint64_t kRecordedHashTicks = 60;

// What a game begins from.
struct RecordedStart {
    std::size_t stage = 0;
    std::array<bool, kMostPlayers> joined{};
    std::array<int, kMostPlayers> select{};
    std::string model;  // of player 1
    PlayerDrive drive = PlayerDrive::Devices;
    bool keepLooks = false;
    bool skipsMenus = false;
    int extraLives = 0;
    // Of the menus that may follow: the rows that they stand on, and how often the game was
    // finished.
    int menuRow = 0, optionRow = 0, controlsRow = 0;
    int completions = 0;
    std::string save;  // the lines of the saved game that it goes on from; empty for none
    bool operator==(const RecordedStart&) const = default;
};

struct Recording {
    struct Change {
        std::uint64_t pass = 0;  // from 1 on
        TickInput input;         // from this pass on
    };
    struct Hash {
        std::uint64_t pass = 0;
        std::uint64_t tick = 0;
        std::uint64_t hash = 0;
        std::string fields;  // empty where they were not written
    };

    struct Save {
        std::uint64_t pass = 0;
        std::string lines;  // of a saved game
    };

    std::string settings;  // lines of a settings file
    std::vector<RecordedStart> starts;
    std::vector<Change> changes;
    std::vector<Hash> hashes;
    std::vector<Save> saves;    // those that were continued
    std::uint64_t passes = 0;   // as far as the file tells
    bool ended = false;         // false for a run that broke off
    std::uint64_t endHash = 0;  // of the world at the end

    // A day and a night at 60 passes a second; no recording is longer.
    static constexpr std::uint64_t kMostPasses = 60 * 60 * 60 * 24;
    // A run that checks itself without a window begins twice before its first pass.
    static constexpr std::size_t kMostStarts = 2;
};

// False, with the line that is wrong in `error`, for what is no recording. A last line without an
// end does not count.
[[nodiscard]] bool readRecording(std::istream& in, Recording& out, std::string& error);

// Writes a run as it goes on. Without a file it does nothing.
class Recorder {
  public:
    Recorder() = default;
    // Replaces the file. False when it cannot be written.
    [[nodiscard]] bool open(const std::filesystem::path& file);

    // Before a saved game begins: it is outside of what follows from the input.
    void resumes(const SavedGame& save);
    // Before a game begins. Games that begin after the first pass follow from the input.
    void begin(const RecordedStart& start, const RuntimeConfig& config);
    // At the top of a pass.
    void pass(const TickInput& input);
    // After a pass of play.
    void played(const RunState& run);
    // Says on the error stream where the file lacks something, as on a full disk.
    void end(std::uint64_t hash);

  private:
    std::ofstream out_;
    std::uint64_t passes_ = 0;
    TickInput last_;
    bool hasStart_ = false;
    std::string save_;  // of the game that is about to begin ahead of the first pass
};

}  // namespace port
