#include "Engine.hpp"

#include <algorithm>
#include <span>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "AnimationLookup.hpp"
#include "AssetPaths.hpp"
#include "ExitCodes.hpp"
#include "FileBytes.hpp"
#include "Log.hpp"
#include "PlayScreen.hpp"
#include "Players.hpp"
#include "Settings.hpp"
#include "StageLoading.hpp"
#include "StageRules.hpp"
#include "TextFields.hpp"
#include "WorldHash.hpp"

namespace port {
namespace {

constexpr int kHeadlessPasses = 900;
constexpr std::uint64_t kHeadlessLogTicks = 120;
// A smoke game may spend two of three passes outside gameplay, and three seconds in any case.
constexpr int kSmokePassesPerFrame = 3;
constexpr int kSmokeLeastPasses = 180;
// A window that closes sooner has not been seen by anybody.
constexpr int kLeastPasses = 3;

}  // namespace

bool Engine::initialize(const std::filesystem::path& portRoot) {
    game_.root = portRoot;
    game_.dataRoot = portRoot / "assets" / "openbor-data";
    game_.config = loadRuntimeConfig(portRoot / "config" / "graphics.ini");
    readLifeBarSize();
    readLogicalSize();
    if (pilot_) pilot_->configure(game_.config);
    attachScripts();
    game_.effects.open(game_.dataRoot);
    if (!game_.renderer.initialize(game_.config)) return false;
    if (!game_.audio.initialize(game_.config)) {
        warnLine("Audio warning: ", game_.audio.lastError());
    }
    logServices();
    if (generated::kStageCount > 0) game_.world.stage = freshStageRun(0);
    loadFrontend(game_);
    choosePlayerModel();
    if (pilot_) return pilot_->start(game_);
    enterFirstState();
    return true;
}

void Engine::readLifeBarSize() {
    const auto file = runtimeCasePath(game_.dataRoot / "lifebar.txt");
    std::istringstream in(readSmallText(file).value_or(""));
    for (std::string line; std::getline(in, line);) {
        std::string_view rest = line;
        rest = rest.substr(0, rest.find('#'));
        const std::string command = foldAscii(takeWord(rest));
        if (command != "lbarsize" && command != "lifebarsize") continue;
        const auto width = leadingInt(takeWord(rest));
        const auto height = leadingInt(takeWord(rest));
        if (!width || !height) continue;
        game_.hud = {std::max(8, *width), std::max(2, *height)};
    }
}

void Engine::readLogicalSize() {
    const auto file = game_.root / "config" / "openbor-video.ini";
    std::istringstream in(readSmallText(file).value_or(""));
    eachKeyValue(in, [this](std::string_view key, std::string_view text) {
        const auto value = leadingInt(text);
        if (!value) return;
        if (key == "logical_width") game_.config.logicalWidth = std::max(160, *value);
        if (key == "logical_height") game_.config.logicalHeight = std::max(120, *value);
    });
}

void Engine::attachScripts() {
    game_.scripts.open(game_.root, game_.dataRoot, &game_.host, game_.config.asWritten);
    game_.world.player1 = freshPlayer<Player1>(0, kPlayer1Handle);
}

void Engine::logServices() const {
    const RuntimeConfig& config = game_.config;
    logLine("Renderer: ", game_.renderer.backend());
    logLine("Characters: ", generated::kCharacterCount, " Stages: ", generated::kStageCount);
    logLine("Graphics: preset=", config.graphicsPreset, " upscale=", config.upscaleMode,
            " filter=", config.textureFilter, " vsync=", config.vsync, " fps=", config.fpsLimit);
    logLine("Audio volumes master=", game_.audio.masterVolume(),
            " music=", game_.audio.musicVolume(), " effects=", game_.audio.effectsVolume());
}

void Engine::choosePlayerModel() {
    const std::span characters(generated::kCharacters, generated::kCharacterCount);
    if (characters.empty()) return;
    Player1& player = game_.world.player1;
    const auto playable = std::ranges::find_if(characters, [](const generated::Character& model) {
        return equalsFolded(model.type, "player");
    });
    player.model = playable == characters.end() ? &characters.front() : &*playable;
    player.health = player.maxHealth = std::max(1, player.model->health);
    startIdle(player);
    logLine("Combat ready: player=", player.model->name, " hp=", player.health,
            " enemyAI=", game_.config.enemyAI ? "on" : "off",
            " cameraLock=", game_.config.cameraLockOnCombat ? "on" : "off");
}

void Engine::enterFirstState() {
    if (!game_.renderer.headless()) {
        game_.ownProgress = true;
        game_.world.slots[0].joined = true;
        enterMainMenu(game_);
        return;
    }
    // Nobody is there to choose in a menu.
    game_.drive = PlayerDrive::Nobody;
    game_.skipsMenus = true;
    game_.frontend.state = FrontendState::Playing;
    for (int slot = 0; slot < kMostPlayers; ++slot) {
        game_.world.slots[static_cast<std::size_t>(slot)].joined =
            slot < game_.config.activePlayers;
    }
    beginGame(game_);
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
        const bool over = lastPass || smokeRunIsOver() || smokeRunIsStuck();
        if (advanced && !over) continue;
        if (smokeRunIsOver()) break;
        if (smokeRunIsStuck()) {
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

bool Engine::smokeRunIsOver() const {
    return game_.smoke.active && game_.smoke.framesRun >= game_.smoke.frameLimit;
}

bool Engine::smokeRunIsStuck() const {
    const SmokeRun& smoke = game_.smoke;
    return smoke.active && smoke.totalFrames >=
                               std::max(kSmokeLeastPasses, smoke.frameLimit * kSmokePassesPerFrame);
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
    if (!smokeRunIsOver() && smokeRunIsStuck()) return kSmokeStuck;
    return !game_.renderer.headless() && passes < kLeastPasses ? kWindowLost : kRanWell;
}

int Engine::runSmokeGame(int frames) {
    SmokeRun& smoke = game_.smoke;
    World& world = game_.world;
    smoke = {true, std::clamp(frames, 60, 3600), 0, 0};
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
