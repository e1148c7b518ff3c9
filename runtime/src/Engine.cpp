#include "Engine.hpp"

#include <algorithm>
#include <fstream>
#include <span>
#include <string_view>
#include <utility>

#include "AnimationLookup.hpp"
#include "Log.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

constexpr std::uintptr_t kPlayer1Handle = 1;
constexpr int kHeadlessPasses = 900;
constexpr std::uint64_t kHeadlessLogTicks = 120;

enum LoopResult { kLoopGood = 0, kLoopWindowLost = 70, kSmokeNotStarted = 72 };

// Cuts the first word off the front of the text.
std::string_view takeWord(std::string_view& text) {
    text = trimmed(text);
    const std::string_view word = text.substr(0, text.find_first_of(kWhiteSpace));
    text.remove_prefix(word.size());
    return word;
}

}  // namespace

Engine::Engine(platform::Clock clock) : clock_(std::move(clock)) {}

bool Engine::initialize(const std::filesystem::path& portRoot) {
    root_ = portRoot;
    config_ = loadRuntimeConfig(root_ / "config" / "graphics.ini");
    readLifeBarSize();
    readLogicalSize();
    attachScripts();
    if (!renderer_.initialize(config_)) return false;
    if (!audio_.initialize(config_)) warnLine("Audio warning: ", audio_.lastError());
    logServices();
    if (generated::kStageCount > 0) stage_ = &generated::kStages[0];
    buildCampaigns();
    choosePlayerModel();
    enterFirstState();
    return true;
}

void Engine::readLifeBarSize() {
    std::ifstream in(root_ / "assets" / "openbor-data" / "lifebar.txt");
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
    for (std::string line; std::getline(in, line);) {
        const std::string_view text = line;
        const std::size_t equals = text.find('=');
        if (equals == text.npos) continue;
        const std::string_view key = trimmed(text.substr(0, equals));
        const auto value = leadingInt(text.substr(equals + 1));
        if (!value) continue;
        if (key == "logical_width") config_.logicalWidth = std::max(160, *value);
        if (key == "logical_height") config_.logicalHeight = std::max(120, *value);
    }
}

void Engine::attachScripts() {
    scriptVm_.setRoot(root_ / "assets" / "openbor-data");
    scriptVm_.setHost(this);
    playerScriptCtx_.player = true;
    playerScriptCtx_.playerIndex = 0;
    playerScriptCtx_.local["self"] = kPlayer1Handle;
}

void Engine::logServices() const {
    logLine("Renderer: ", renderer_.backend());
    logLine("Characters: ", generated::kCharacterCount, " Stages: ", generated::kStageCount);
    logLine("Graphics: preset=", config_.graphicsPreset, " upscale=", config_.upscaleMode,
            " filter=", config_.textureFilter, " vsync=", config_.vsync, " fps=", config_.fpsLimit);
    logLine("Audio volumes master=", audio_.masterVolume(), " music=", audio_.musicVolume(),
            " effects=", audio_.effectsVolume());
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
        return;
    }
    // Nobody is there to choose in a menu.
    frontendState_ = FrontendState::Playing;
    for (std::size_t slot = 0; slot < joinedPlayers_.size(); ++slot) {
        joinedPlayers_[slot] = static_cast<int>(slot) < config_.activePlayers;
    }
}

int Engine::run() {
    int passes = 0;
    while (renderer_.isRunning() && renderer_.pumpEvents()) {
        ++passes;
        if (frontendState_ == FrontendState::Quit) break;
        if (frontendState_ == FrontendState::Playing) {
            gameplayTick();
        } else {
            updateFrontend();
        }
        pace();
        if (renderer_.headless() && headlessRunIsOver(passes)) break;
    }
    saveSettings();
    return !renderer_.headless() && passes < 3 ? kLoopWindowLost : kLoopGood;
}

void Engine::updateFrontend() {
    if (renderer_.headless()) frontendState_ = FrontendState::Playing;
}

void Engine::gameplayTick() {
    ++tickCounter_;
}

// A fixed delay behind each frame, not a deadline: the limit sets the speed of the game itself.
void Engine::pace() const {
    if (config_.fpsLimit > 0) clock_.sleep(std::max(1, 1000 / config_.fpsLimit));
}

bool Engine::headlessRunIsOver(int passes) const {
    if (passes % static_cast<int>(kHeadlessLogTicks) == 0) {
        logLine("headless camera=", cameraX_, " player=", playerWorldX_, " max=", cameraMaxX_);
    }
    return passes >= kHeadlessPasses;
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

int Engine::runSmokeGame(int) {
    // No stage can be played yet, so there is no game that could prove itself.
    warnLine("SMOKE GAME FAIL: could not start gameplay");
    return kSmokeNotStarted;
}

ScriptValue Engine::callScriptFunction(const std::string& name, const std::vector<ScriptValue>&,
                                       ScriptContext&, std::vector<std::string>& unsupported) {
    if (std::ranges::find(unsupported, name) == unsupported.end()) unsupported.push_back(name);
    return {};
}

}  // namespace port
