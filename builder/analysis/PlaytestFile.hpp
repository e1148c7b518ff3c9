#pragma once

// The report of a bot that has played a port, as the port writes it.

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tindrel {

// What it is called where it stands beside the reports of a game.
inline constexpr std::string_view kPlaytestName = "playtest.json";

// What went wrong, each text with how often; the most frequent first.
struct PlayedFaults {
    std::vector<std::pair<std::string, std::uint64_t>> texts;
    std::uint64_t omitted = 0;  // that found no room in the report
};

struct PlayedStage {
    std::string stage;   // its file, relative to the project root
    std::string result;  // "cleared", or how else it ended
    std::uint64_t ticks = 0, deaths = 0, spawned = 0, spawns = 0;
};

struct PlayedGame {
    enum Kind { kScriptErrors, kUnsupportedUses, kMissingPictures, kMissingSounds };

    std::uint64_t stagesCleared = 0, stages = 0;
    std::array<PlayedFaults, 4> faults;  // by Kind
    std::vector<PlayedStage> played;
    std::vector<std::string> neverMet;  // models
    std::set<std::string> models;       // all, met or not
};

// Nothing, with the reason in `why`, for what is no such report; what it lacks stays empty. Reads
// 8 MiB at most.
[[nodiscard]] std::optional<PlayedGame> readPlaytest(const std::filesystem::path& file,
                                                     std::string& why);
[[nodiscard]] std::optional<PlayedGame> parsePlaytest(std::string_view text, std::string& why);

}  // namespace tindrel
