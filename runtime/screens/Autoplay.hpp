#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <utility>

#include "Bot.hpp"
#include "Pilot.hpp"
#include "Playtest.hpp"

namespace port {

struct AutoplaySwitches {
    int stages = 0;                // to be cleared; 0 for all of the campaign
    int lives = 0;                 // more than the stage gives
    std::filesystem::path report;  // of what was met; empty for none
};

// Lets a bot play the campaign, and says a line for each stage.
class Autoplay final : public Pilot {
  public:
    explicit Autoplay(AutoplaySwitches switches) : switches_(std::move(switches)) {}

    bool start(Game& game) override;
    TickInput next(const Game& game) override;
    bool goesOn(const Game& game) override;
    int result(const Game& game) override;

  private:
    // How far a stage has come: any change is progress.
    struct Progress {
        float camera = 0;
        float scroll = 0;
        std::size_t instruction = 0;
        std::size_t dead = 0;
        bool operator==(const Progress&) const = default;
    };

    [[nodiscard]] static Progress progressOf(const World& world);
    void closeStage(const char* result);
    void openStage(const Game& game);
    [[nodiscard]] bool writeReport() const;

    AutoplaySwitches switches_;
    Bot bot_;
    std::unique_ptr<PlaytestWatch> watch_;  // null without a report
    // Of the stage that is being played.
    const generated::Stage* stage_ = nullptr;
    std::uint64_t ticks_ = 0, idle_ = 0;
    int deaths_ = 0;
    int means_ = 0;  // lives and credits of all, as they were after the last pass
    Progress progress_;
    int cleared_ = 0;
    int code_ = 0;
    bool over_ = false;
};

}  // namespace port
