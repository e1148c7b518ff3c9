#include "Autoplay.hpp"

#include <algorithm>

#include "ExitCodes.hpp"
#include "Log.hpp"
#include "PathEncoding.hpp"
#include "PlaytestReport.hpp"
#include "StageLoading.hpp"
#include "WorldHash.hpp"

namespace port {
namespace {

// Ten minutes without the camera moving on or anybody falling.
constexpr std::uint64_t kMostIdleTicks = 10 * 60 * kTicksPerSecond;

// A run that breaks off leaves a report that is no older.
constexpr std::uint64_t kReportTicks = 60 * kTicksPerSecond;

// Lives and credits of everybody. A death costs one of the owner's lives, or a credit that buys new
// ones.
Autoplay::Means meansOf(const World& world) {
    Autoplay::Means means{{world.player1.livesRemaining, world.player1.creditsRemaining}};
    for (const RuntimeCoopPlayer& player : world.coop) {
        means.push_back(player.livesRemaining);
        means.push_back(player.creditsRemaining);
    }
    return means;
}

}  // namespace

bool Autoplay::start(Game& game) {
    if (!switches_.report.empty()) {
        watch_ = std::make_unique<PlaytestWatch>(game);
        // Better to know now than after an hour.
        if (!writeReport()) return false;
    }
    for (int slot = 0; slot < kMostPlayers; ++slot) {
        game.world.slots[static_cast<std::size_t>(slot)].joined =
            slot == 0 || slot < game.config.activePlayers;
    }
    game.world.stage.index = 0;
    game.extraLives = switches_.lives;
    beginGame(game);
    if (!game.world.stage.row || game.frontend.state != FrontendState::Playing) {
        warnLine("AUTOPLAY FAIL: could not start gameplay");
        return false;
    }
    openStage(game);
    return true;
}

TickInput Autoplay::next(const Game& game) {
    return nextInput(game.input, bot_.play(game.world, game.config));
}

Autoplay::Progress Autoplay::progressOf(const World& world) {
    const auto dead = std::ranges::count_if(world.entities, [](const RuntimeEntity& entity) {
        return !entity.alive && !entity.animationEffect;
    });
    return {world.camera.maxX, world.stage.verticalStageScroll, world.stage.nextInstruction,
            static_cast<std::size_t>(dead)};
}

void Autoplay::openStage(const Game& game) {
    stage_ = game.world.stage.row;
    ticks_ = idle_ = 0;
    deaths_ = 0;
    means_ = meansOf(game.world);
    completions_ = game.frontend.completionCount;
    progress_ = progressOf(game.world);
}

void Autoplay::closeStage(const char* result) {
    logLine("AUTOPLAY stage=", stage_->sourceFile, " ticks=", ticks_, " deaths=", deaths_,
            " result=", result);
    if (!watch_) return;
    watch_->close(*stage_, deaths_, result);
    static_cast<void>(writeReport());  // the last writing counts
}

bool Autoplay::writeReport() const {
    if (!watch_ || writePlaytest(watch_->met(), switches_.report)) return true;
    warnLine("AUTOPLAY FAIL: cannot write ", PathEncoding::utf8(switches_.report));
    return false;
}

bool Autoplay::goesOn(const Game& game) {
    const World& world = game.world;
    if (watch_) watch_->pass();
    ++ticks_;
    if (ticks_ % kReportTicks == 0) static_cast<void>(writeReport());
    const Means means = meansOf(world);
    for (std::size_t i = 0; i < std::min(means.size(), means_.size()); ++i) {
        deaths_ += means[i] < means_[i] ? 1 : 0;
    }
    means_ = means;
    const FrontendState state = game.frontend.state;
    const auto end = [this](const char* result, int code) {
        closeStage(result);
        code_ = code;
        over_ = true;
        return false;
    };
    if (state == FrontendState::GameOver) {
        ++deaths_;
        return end("gameover", kAutoplayGameOver);
    }
    const bool finished = state != FrontendState::Playing;
    if (finished || world.stage.row != stage_) {
        ++cleared_;
        if (finished && game.frontend.completionCount == completions_) {
            warnLine("AUTOPLAY FAIL: no stage is what comes after ", stage_->sourceFile);
            return end("cleared", kAutoplayStuck);
        }
        if (finished || cleared_ == switches_.stages) return end("cleared", kRanWell);
        closeStage("cleared");
        openStage(game);
        return true;
    }
    const Progress progress = progressOf(world);
    idle_ = progress == progress_ ? idle_ + 1 : 0;
    progress_ = progress;
    return idle_ < kMostIdleTicks || end("stuck", kAutoplayStuck);
}

int Autoplay::result(const Game& game) {
    logLine("AUTOPLAY HASH ", hashDigits(game.hash()));
    const int code = over_ ? code_ : kWindowLost;
    return !writeReport() && code == kRanWell ? kReportNotWritten : code;
}

}  // namespace port
