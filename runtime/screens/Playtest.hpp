#pragma once

// What a run has met of a game, stage by stage, for those who make the game.

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Game.hpp"

namespace port {

// How often each text was met, as UTF-8. Scripts can make texts without end: beyond a limit, more
// than anybody reads, new ones only count.
class Tally {
  public:
    static constexpr std::size_t kMostTexts = 1000;
    using Counts = std::map<std::string, std::uint64_t, std::less<>>;

    void add(std::string_view text, std::uint64_t times = 1);
    void add(const Tally& other);
    [[nodiscard]] const Counts& counts() const { return counts_; }
    // Of the texts that found no room.
    [[nodiscard]] std::uint64_t others() const { return others_; }

  private:
    Counts counts_;
    std::uint64_t others_ = 0;
};

// Names of models and animations are those of the tables and last as long.
struct PlaytestModel {
    std::uint64_t spawned = 0;
    std::size_t animationCount = 0;  // that the model has
    std::map<std::string_view, std::uint64_t> animations;
};

// What went wrong, and how often.
struct PlaytestFaults {
    Tally scriptErrors;  // as "<event> [<script>]: <error>"
    Tally unsupported;   // names of functions that nothing answers
    Tally missingPictures, missingSounds;

    void add(const PlaytestFaults& other);
};

// All visits to a stage together.
struct PlaytestStage {
    const generated::Stage* row = nullptr;
    std::uint64_t ticks = 0;
    int deaths = 0;
    std::string_view result = "left";  // how the last visit ended
    std::size_t spawned = 0;           // of the spawns that the stage names, in the last visit
    std::map<std::string_view, PlaytestModel> models;
    Tally hooks;  // as "<event> [<script>]"
    PlaytestFaults faults;
};

// In the order of the first visits.
using Playtest = std::vector<PlaytestStage>;

// Watches a game from its construction on. The game must outlive it.
class PlaytestWatch {
  public:
    explicit PlaytestWatch(Game& game);
    PlaytestWatch(const PlaytestWatch&) = delete;
    PlaytestWatch& operator=(const PlaytestWatch&) = delete;
    ~PlaytestWatch();

    // After each pass of play.
    void pass();
    // The stage was left. The text lasts.
    void close(const generated::Stage& row, int deaths, std::string_view result);
    [[nodiscard]] const Playtest& met() const { return met_; }

  private:
    PlaytestStage& stage(const generated::Stage& row);
    [[nodiscard]] PlaytestStage* current();
    void enterStage(PlaytestStage& stage);
    void meet(PlaytestStage& stage, const Actor& actor);
    static PlaytestModel& meet(PlaytestStage& stage, const generated::Character& model);

    Game& game_;
    Playtest met_;
    const generated::Stage* row_ = nullptr;  // of the last pass
    // What each actor of the stage played in the last pass.
    std::unordered_map<ActorHandle, const generated::Animation*> playing_;
};

}  // namespace port
