#include "Engine.hpp"

#include <algorithm>
#include <utility>

#include "ExitCodes.hpp"
#include "GameStart.hpp"
#include "Log.hpp"
#include "PlayScreen.hpp"
#include "Settings.hpp"
#include "StageLoading.hpp"
#include "WorldHash.hpp"

namespace port {
namespace {

constexpr int kHeadlessPasses = 900;
constexpr std::uint64_t kHeadlessLogTicks = 120;
// A window that closes sooner has not been seen by anybody.
constexpr int kLeastPasses = 3;

}  // namespace

bool Engine::initialize(const std::filesystem::path& portRoot) {
    readSettings(game_, portRoot);
    if (pilot_) pilot_->configure(game_.config);
    if (!startServices(game_)) return false;
    if (pilot_) return pilot_->start(game_);
    enterFirstState(game_);
    return true;
}

int Engine::run() {
    int passes = 0;
    SmokeRun& smoke = game_.smoke;
    while (game_.renderer.isRunning() && game_.renderer.pumpEvents()) {
        ++passes;
        ++smoke.totalFrames;
        if (game_.frontend.state == FrontendState::Playing) ++smoke.framesRun;
        if (game_.frontend.state == FrontendState::Quit) break;
        const bool played = game_.frontend.state == FrontendState::Playing;
        const bool advanced = runPass();
        if (played) game_.recorder.played(game_.runState());
        const bool lastPass = pilot_ ? !pilot_->goesOn(game_)
                                     : game_.renderer.headless() && passes >= kHeadlessPasses;
        // A stage that has ended gives way to the next at once. Stages that all end at once must
        // not keep a run that nobody can close from its end.
        const bool over = lastPass || smoke.isOver() || smoke.isStuck();
        if (advanced && !over) continue;
        if (smoke.isOver()) break;
        if (smoke.isStuck()) {
            warnLine("SMOKE GAME FAIL: gameplay stopped before target frames");
            break;
        }
        pace();
        if (played && !advanced && !pilot_) logHeadlessProgress();
        if (lastPass) break;
    }
    return endRun(passes);
}

// Presses that a show took are not meant for the pass behind it.
TickInput Engine::deviceInput() {
    const TickInput input = nextInput(game_.input, game_.heldInput());
    return std::exchange(game_.pressesAreForShow, false) ? input.withoutPresses() : input;
}

// True when a stage gave way to the next.
bool Engine::runPass() {
    game_.scripts.beginPass();
    game_.input = pilot_ ? pilot_->next(game_) : deviceInput();
    game_.recorder.pass(game_.input);
    if (game_.frontend.state == FrontendState::Playing) {
        const bool paused = game_.input.keyPressed(kKeyEscape) ||
                            game_.input.buttonPressed(game_.config.player1Gamepad, kPadStart);
        if (!paused) {
            screen_.reset();
            return playPass(game_);
        }
        game_.frontend.state = FrontendState::Paused;
        game_.frontend.pauseIndex = 0;
        game_.input = game_.input.withoutPresses();
    }
    runFrontendPass();
    return false;
}

// The screen that a choice leads to is shown in the same pass.
void Engine::runFrontendPass() {
    Frontend& frontend = game_.frontend;
    const auto bringUp = [&] {
        if (screen_ && screenState_ == frontend.state) return;
        screen_ = screenOf(frontend.state, game_);
        screenState_ = frontend.state;
    };
    bringUp();
    frontend.state = screen_->update(game_.input);
    ++frontend.tick;
    if (frontend.state == FrontendState::Playing || frontend.state == FrontendState::Quit) return;
    bringUp();
    const bool overStage = liesOverStage(frontend);
    if (overStage) drawStage(game_, true);
    game_.drawing.clear();
    addMenuBackground(game_.drawing, frontend);
    screen_->draw(game_.drawing);
    game_.show(overStage);
}

void Engine::logHeadlessProgress() const {
    const World& world = game_.world;
    if (!game_.renderer.headless() || world.tick % kHeadlessLogTicks != 0) return;
    logLine("headless camera=", world.camera.x, " player=", world.player1.worldX,
            " max=", world.camera.maxX);
}

// A fixed delay behind each frame, not a deadline: the limit sets the speed of the game itself. A
// smoke game has no limit, and so leaves the player's one alone; nor has a pilot whom nobody sees.
void Engine::pace() const {
    const bool unseen = game_.smoke.active || (pilot_ && game_.renderer.headless());
    if (game_.config.fpsLimit > 0 && !unseen) {
        game_.devices.clock.sleep(std::max(1, 1000 / game_.config.fpsLimit));
    }
}

int Engine::endRun(int passes) {
    const std::uint64_t hash = game_.hash();
    game_.recorder.end(hash);
    if (pilot_) return pilot_->result(game_);
    saveSettings(game_);
    if (game_.playsByItself()) logLine("SMOKE GAME HASH ", hashDigits(hash));
    const SmokeRun& smoke = game_.smoke;
    if (!smoke.isOver() && smoke.isStuck()) return kSmokeStuck;
    return !game_.renderer.headless() && passes < kLeastPasses ? kWindowLost : kRanWell;
}

int Engine::runSmokeGame(int frames) {
    SmokeRun& smoke = game_.smoke;
    World& world = game_.world;
    smoke = {.active = true, .frameLimit = SmokeRun::frames(frames)};
    game_.drive = PlayerDrive::SelfCheck;
    game_.ownProgress = false;
    for (PlayerSlot& slot : world.slots) slot = {};
    world.slots[0].joined = true;
    game_.config.activePlayers = 1;
    world.stage.index = 0;
    beginGame(game_, true);
    const StageRun& stage = world.stage;
    if (game_.frontend.state != FrontendState::Playing || !stage.row || !world.player1.model) {
        smoke.active = false;
        warnLine("SMOKE GAME FAIL: could not start gameplay");
        return kSmokeNotStarted;
    }
    logLine("SMOKE GAME START frames=", smoke.frameLimit, " stage=", stage.row->sourceFile,
            " player=", world.player1.model->name);
    int result = run();
    if (result == kRanWell && smoke.framesRun >= smoke.frameLimit) {
        logLine("SMOKE GAME OK frames=", smoke.framesRun);
    } else if (result == kRanWell) {
        warnLine("SMOKE GAME FAIL gameplay_frames=", smoke.framesRun,
                 " expected=", smoke.frameLimit);
        result = kSmokeEndedEarly;
    }
    smoke.active = false;
    return result;
}

}  // namespace port
