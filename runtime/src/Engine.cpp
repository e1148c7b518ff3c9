#include "Engine.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

#include "AnimationLookup.hpp"
#include "AssetPaths.hpp"
#include "Log.hpp"
#include "Startup.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

constexpr int kHeadlessPasses = 900;
constexpr std::uint64_t kHeadlessLogTicks = 120;
constexpr std::uint64_t kGuardTicks = 60;
// A smoke game may spend two of three passes outside gameplay, and three seconds in any case.
constexpr int kSmokePassesPerFrame = 3;
constexpr int kSmokeLeastPasses = 180;

constexpr const char* kUpdateScript = "scripts/update.c";
constexpr const char* kUpdatedScript = "scripts/updated.c";

enum LoopResult {
    kLoopGood = 0,
    kLoopWindowLost = 70,
    kSmokeNotStarted = 72,
    kSmokeEndedEarly = 73,
    kSmokeStuck = 74
};

}  // namespace

Engine::Engine(platform::Devices devices)
    : devices_(std::move(devices)), renderer_(devices_.presentation), audio_(devices_.audio) {}

std::filesystem::path Engine::dataRoot() const {
    return root_ / "assets" / "openbor-data";
}

bool Engine::initialize(const std::filesystem::path& portRoot) {
    root_ = portRoot;
    config_ = loadRuntimeConfig(root_ / "config" / "graphics.ini");
    readLifeBarSize();
    readLogicalSize();
    attachScripts();
    if (!renderer_.initialize(config_)) return false;
    soundEffects_.open(dataRoot());
    if (!audio_.initialize(config_)) warnLine("Audio warning: ", audio_.lastError());
    logServices();
    if (generated::kStageCount > 0) stage_ = &generated::kStages[0];
    loadMenuBackgrounds();
    loadLegacyMenuConfig();
    loadUnlockProgress();
    buildCampaigns();
    choosePlayerModel();
    enterFirstState();
    return true;
}

void Engine::readLifeBarSize() {
    std::ifstream in(dataRoot() / "lifebar.txt");
    for (std::string line; std::getline(in, line);) {
        std::string_view rest = line;
        rest = rest.substr(0, rest.find('#'));
        const std::string command = foldAscii(takeWord(rest));
        if (command != "lbarsize" && command != "lifebarsize") continue;
        const auto width = leadingInt(takeWord(rest));
        const auto height = leadingInt(takeWord(rest));
        if (!width || !height) continue;
        hudBarWidth_ = std::max(8, *width);
        hudBarHeight_ = std::max(2, *height);
    }
}

void Engine::readLogicalSize() {
    std::ifstream in(root_ / "config" / "openbor-video.ini");
    eachKeyValue(in, [this](std::string_view key, std::string_view text) {
        const auto value = leadingInt(text);
        if (!value) return;
        if (key == "logical_width") config_.logicalWidth = std::max(160, *value);
        if (key == "logical_height") config_.logicalHeight = std::max(120, *value);
    });
}

void Engine::attachScripts() {
    scriptVm_.setRoot(dataRoot());
    scriptVm_.setHost(this);
    playerScriptCtx_.player = true;
    playerScriptCtx_.playerIndex = 0;
    playerScriptCtx_.local["self"] = kPlayer1Handle;
    const auto exists = [this](const char* script) {
        std::error_code absent;
        return std::filesystem::exists(runtimeCasePath(dataRoot() / script), absent);
    };
    hasUpdateScript_ = exists(kUpdateScript);
    hasUpdatedScript_ = exists(kUpdatedScript);
}

void Engine::logServices() const {
    logLine("Renderer: ", renderer_.backend());
    logLine("Characters: ", generated::kCharacterCount, " Stages: ", generated::kStageCount);
    logLine("Graphics: preset=", config_.graphicsPreset, " upscale=", config_.upscaleMode,
            " filter=", config_.textureFilter, " vsync=", config_.vsync, " fps=", config_.fpsLimit);
    logLine("Audio volumes master=", audio_.masterVolume(), " music=", audio_.musicVolume(),
            " effects=", audio_.effectsVolume());
}

void Engine::loadMenuBackgrounds() {
    const auto load = [this](std::string_view name, SpriteImage& image) {
        if (!renderer_.loadSprite(resolveSpriteAsset(dataRoot(), name), image)) image = {};
    };
    load("bgs/title", titleBackground_);
    load("bgs/select", selectBackground_);
}

void Engine::buildCampaigns() {
    campaignFirstStages_.clear();
    campaignNames_.clear();
    campaignRequirements_.clear();
    for (std::size_t i = 0; i < generated::kStageCount; ++i) {
        const generated::Stage& stage = generated::kStages[i];
        const std::string_view set = stage.setName;
        const std::string name(set.empty() ? "NEW GAME" : set);
        const bool known = std::ranges::any_of(
            campaignNames_, [&](const std::string& other) { return equalsFolded(other, name); });
        if (known) continue;
        campaignFirstStages_.push_back(i);
        campaignNames_.push_back(name);
        campaignRequirements_.push_back(std::max(0, stage.ifComplete));
    }
}

void Engine::choosePlayerModel() {
    const std::span characters(generated::kCharacters, generated::kCharacterCount);
    if (characters.empty()) return;
    const auto player = std::ranges::find_if(characters, [](const generated::Character& model) {
        return equalsFolded(model.type, "player");
    });
    playerModel_ = player == characters.end() ? &characters.front() : &*player;
    playerHealth_ = playerMaxHealth_ = std::max(1, playerModel_->health);
    player_.setAnimation(findAnimation(playerModel_, "idle"));
    if (!player_.frame()) player_.setAnimation(findAnimation(playerModel_, "walk"));
    logLine("Combat ready: player=", playerModel_->name, " hp=", playerHealth_,
            " enemyAI=", config_.enemyAI ? "on" : "off",
            " cameraLock=", config_.cameraLockOnCombat ? "on" : "off");
}

void Engine::enterFirstState() {
    if (!renderer_.headless()) {
        frontendState_ = FrontendState::MainMenu;
        audio_.stopMusic();
        return;
    }
    // Nobody is there to choose in a menu.
    frontendState_ = FrontendState::Playing;
    for (std::size_t slot = 0; slot < joinedPlayers_.size(); ++slot) {
        joinedPlayers_[slot] = static_cast<int>(slot) < config_.activePlayers;
    }
    beginGame();
}

int Engine::run() {
    int passes = 0;
    while (renderer_.isRunning() && renderer_.pumpEvents()) {
        ++passes;
        countPass();
        if (frontendState_ == FrontendState::Quit) break;
        const Pass pass = runPass();
        const bool lastHeadlessPass = renderer_.headless() && passes >= kHeadlessPasses;
        // A stage that has ended gives way to the next at once. Stages that all end at once must
        // not keep a run that nobody can close from its end.
        const bool over = lastHeadlessPass || smokeRunIsOver() || smokeRunIsStuck();
        if (pass == Pass::StageAdvanced && !over) continue;
        if (smokeRunIsOver()) break;
        if (smokeRunIsStuck()) {
            warnLine("SMOKE GAME FAIL: gameplay stopped before target frames");
            break;
        }
        pace();
        if (pass == Pass::Played) logHeadlessProgress();
        if (lastHeadlessPass) break;
    }
    return endRun(passes);
}

void Engine::countPass() {
    if (!smokeMode_) return;
    ++smokeTotalFrames_;
    if (frontendState_ == FrontendState::Playing) ++smokeFramesRun_;
}

Engine::Pass Engine::runPass() {
    if (frontendState_ == FrontendState::Playing) {
        const bool escape = frontendKeyPressed(platform::kKeyEscape);
        const bool start = gamepadButtonPressed(platform::kPadStart);
        if (escape || start) {
            frontendState_ = FrontendState::Paused;
            pauseIndex_ = 0;
        }
    }
    if (frontendState_ == FrontendState::Playing) return gameplayTick();
    updateFrontend();
    drawFrontend();
    return Pass::Menu;
}

// The order is what games are made for: movement, then hits, then the stage, then the picture.
Engine::Pass Engine::gameplayTick() {
    clearScriptDrawing();
    scriptSteps_ = tickScriptSteps_;
    ++tickCounter_;
    pollAudioHotkeys();
    if (hasUpdateScript_) runModelScript(kUpdateScript, stageScriptCtx_, "global-update");
    updatePlayer();
    updateInProgressJoins();
    updateCoopPlayers();
    updateEntities();
    applyEntityBindings();
    updateEndLevelTriggers();
    updateProjectiles();
    resolveCombat();
    flushWeaponDrops();
    updateCombatLock();
    processStageInstructions();
    updateCamera();
    updateCombatLock();
    if (hasUpdatedScript_) runModelScript(kUpdatedScript, stageScriptCtx_, "global-updated");
    if (tickCounter_ % kGuardTicks == 0) regenerateGuard();
    takeImmediateBranch();
    drawStage();
    capture_.pass(renderer_.canvas());
    respawnDeadPlayers();
    return closeTick();
}

void Engine::regenerateGuard() {
    const auto regenerate = [](const generated::Character* model, int& guardPoints) {
        if (!model || model->guardPoints <= 0) return;
        guardPoints = static_cast<int>(std::min<std::int64_t>(
            model->guardPoints, std::int64_t{guardPoints} + std::max(1, model->guardRate)));
    };
    regenerate(playerModel_, playerGuardPoints_);
    for (RuntimeCoopPlayer& player : coopPlayers_) regenerate(player.model, player.guardPoints);
    for (RuntimeEntity& entity : entities_) regenerate(entity.model, entity.guardPoints);
}

// Straight into another stage: no stage-complete screen, no cutscene, no save, no bonus. Co-op
// players keep their places.
void Engine::takeImmediateBranch() {
    if (!pendingBranchImmediate_ || pendingBranchTarget_ >= generated::kStageCount) return;
    const std::size_t target = std::exchange(pendingBranchTarget_, kNoStage);
    pendingBranchImmediate_ = false;
    const bool alive = playerAlive_;
    const int health = playerHealth_;
    std::vector<std::pair<bool, int>> coop;
    for (const RuntimeCoopPlayer& player : coopPlayers_) {
        coop.emplace_back(player.alive, player.health);
    }
    loadStage(target, true);
    const auto keep = [](bool wasAlive, int before, bool& isAlive, int& now, int most) {
        isAlive = wasAlive;
        now = wasAlive ? std::clamp(before, 1, std::max(1, most)) : 0;
    };
    keep(alive, health, playerAlive_, playerHealth_, playerMaxHealth_);
    for (std::size_t i = 0; i < coop.size(); ++i) {
        RuntimeCoopPlayer& player = coopPlayers_[i];
        keep(coop[i].first, coop[i].second, player.alive, player.health, player.maxHealth);
    }
}

void Engine::respawnDeadPlayers() {
    const auto log = [](int number, int lives, int credits) {
        logLine("Respawn P", number, " lives=", lives, " credits=", credits);
    };
    if (!playerAlive_ && consumeRespawnResource(0)) {
        respawnPlayerSlot(0);
        log(1, livesRemaining_, creditsRemaining_);
    }
    for (const RuntimeCoopPlayer& player : coopPlayers_) {
        const int slot = player.playerSlot;
        if (player.alive || !consumeRespawnResource(slot)) continue;
        respawnPlayerSlot(slot);
        const bool own = stage_ && stage_->noShare > 0;
        log(slot + 1, own ? player.livesRemaining : livesRemaining_,
            own ? player.creditsRemaining : creditsRemaining_);
    }
}

Engine::Pass Engine::closeTick() {
    if (!anyPlayerAlive()) {
        frontendState_ = FrontendState::GameOver;
        saveProgress();
        return Pass::Played;
    }
    if (!stage_) return Pass::Played;
    if (stageComplete_ && !pendingBranchImmediate_) {
        advanceStage();
        return Pass::StageAdvanced;
    }
    if (stageEndReached()) advanceStage();
    return Pass::Played;
}

bool Engine::smokeRunIsOver() const {
    return smokeMode_ && smokeFramesRun_ >= smokeFrameLimit_;
}

bool Engine::smokeRunIsStuck() const {
    return smokeMode_ && smokeTotalFrames_ >=
                             std::max(kSmokeLeastPasses, smokeFrameLimit_ * kSmokePassesPerFrame);
}

void Engine::logHeadlessProgress() const {
    if (!renderer_.headless() || tickCounter_ % kHeadlessLogTicks != 0) return;
    logLine("headless camera=", cameraX_, " player=", playerWorldX_, " max=", cameraMaxX_);
}

// A fixed delay behind each frame, not a deadline: the limit sets the speed of the game itself. A
// smoke game has no limit, and so leaves the player's one alone.
void Engine::pace() const {
    if (config_.fpsLimit > 0 && !smokeMode_) {
        devices_.clock.sleep(std::max(1, 1000 / config_.fpsLimit));
    }
}

int Engine::endRun(int passes) {
    saveSettings();
    if (smokeMode_ || renderer_.headless()) {
        std::array<char, 17> digits{};
        std::snprintf(digits.data(), digits.size(), "%016llx",
                      static_cast<unsigned long long>(worldHash()));
        logLine("SMOKE GAME HASH ", digits.data());
    }
    if (!smokeRunIsOver() && smokeRunIsStuck()) return kSmokeStuck;
    return !renderer_.headless() && passes < 3 ? kLoopWindowLost : kLoopGood;
}

void Engine::saveSettings() {
    config_.masterVolume = audio_.masterVolume();
    config_.musicVolume = audio_.musicVolume();
    config_.effectsVolume = audio_.effectsVolume();
    renderer_.setConfig(config_);
    if (!saveRuntimeConfig(root_ / "config" / "graphics.ini", config_)) {
        warnLine("Could not save graphics.ini");
    }
}

int Engine::runSmokeGame(int frames) {
    smokeMode_ = true;
    smokeFrameLimit_ = std::clamp(frames, 60, 3600);
    smokeFramesRun_ = smokeTotalFrames_ = 0;
    joinedPlayers_ = {true, false, false, false};
    selectIndexes_ = {};
    config_.activePlayers = 1;
    stageIndex_ = 0;
    suspendSave_ = true;
    beginGame();
    suspendSave_ = false;
    if (frontendState_ != FrontendState::Playing || !stage_ || !playerModel_) {
        smokeMode_ = false;
        warnLine("SMOKE GAME FAIL: could not start gameplay");
        return kSmokeNotStarted;
    }
    logLine("SMOKE GAME START frames=", smokeFrameLimit_, " stage=", stage_->sourceFile,
            " player=", playerModel_->name);
    int result = run();
    if (result == kLoopGood && smokeFramesRun_ >= smokeFrameLimit_) {
        logLine("SMOKE GAME OK frames=", smokeFramesRun_);
    } else if (result == kLoopGood) {
        warnLine("SMOKE GAME FAIL gameplay_frames=", smokeFramesRun_,
                 " expected=", smokeFrameLimit_);
        result = kSmokeEndedEarly;
    }
    smokeMode_ = false;
    return result;
}

void Engine::smokeTrace(std::string_view message) const {
    if (!smokeMode_) return;
    appendStartupLog(root_ / "runtime-startup.log", "SMOKE TRACE " + std::string(message));
}

}  // namespace port
