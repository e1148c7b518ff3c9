// Stages: how one is loaded, how it ends, and which comes next.

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "AnimationLookup.hpp"
#include "AssetPaths.hpp"
#include "Engine.hpp"
#include "Log.hpp"
#include "PathEncoding.hpp"
#include "PlayerSpawn.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

constexpr int kLeastView = 160;
constexpr int kLeastLength = 320;
constexpr int kOpenGroup = 100;
constexpr int kHealthBonus = 5;
constexpr int kLoadingMilliseconds = 250;
// Beyond this a float no longer tells pixels apart.
constexpr std::int64_t kMostLength = std::int64_t{1} << 24U;

RuntimeStageLayer layerOf(const generated::Layer& row) {
    RuntimeStageLayer layer;
    layer.kind = row.kind;
    layer.xRatio = row.xRatio;
    layer.zRatio = row.zRatio;
    layer.xOffset = row.xOffset;
    layer.zOffset = row.zOffset;
    layer.xSpacing = row.xSpacing;
    layer.zSpacing = row.zSpacing;
    layer.xRepeat = row.xRepeat;
    layer.zRepeat = row.zRepeat;
    layer.zOrder = row.zOrder;
    layer.transparency = row.transparency;
    layer.alpha = row.alpha;
    layer.waterMode = row.waterMode;
    layer.amplitude = row.amplitude;
    layer.wavelength = row.wavelength;
    layer.waveSpeed = row.waveSpeed;
    layer.bgSpeedRatio = row.bgSpeedRatio;
    return layer;
}

int viewOf(const RuntimeConfig& config) {
    return std::max(kLeastView, config.logicalWidth);
}

}  // namespace

// False, with nothing changed, for an index beyond the table. Health stays with `keepHealth`.
bool Engine::loadStage(std::size_t index, bool keepHealth) {
    if (index >= generated::kStageCount) return false;
    stageIndex_ = index;
    stage_ = &generated::kStages[index];
    smokeTrace("stage: reset");
    resetStageState();
    readStageDirection();
    if (stage_->sceneAnimationCount > 0) {
        smokeTrace("stage: cutscene");
        playStageCutscene();
    }
    StagePictures pictures;
    smokeTrace("stage: images");
    loadStageImages(pictures);
    smokeTrace("stage: layers");
    loadStageLayers(pictures);
    measureStage();
    smokeTrace("stage: players");
    placePlayer1();
    setPlayerVitals(keepHealth);
    smokeTrace("stage: level script");
    stageScriptCtx_ = {};
    runModelScript(stage_->levelScript, stageScriptCtx_, "levelscript");
    smokeTrace("stage: music");
    playStageMusic(resolveAudioAsset(dataRoot(), stage_->music));
    applyReachedJoinGates();
    logLine("Stage ", stageIndex_ + 1, "/", generated::kStageCount, ": ", stage_->sourceFile,
            " geometry=", stage_->geometryCount, " length=", stageLength_);
    smokeTrace("stage: loaded");
    return true;
}

void Engine::resetStageState() {
    entities_.clear();
    scriptAntigravity_.clear();
    entityBindings_.clear();
    projectiles_.clear();
    // These name actors that are gone.
    pendingChildSpawns_.clear();
    pendingWeaponDrops_.clear();
    grabbedEntity_ = -1;
    stageFullReported_ = false;
    bossMusicStarted_ = false;
    nextSpawn_ = nextInstruction_ = 0;
    cameraX_ = cameraMaxX_ = verticalStageScroll_ = backtrackFloor_ = 0;
    combatLocked_ = stageComplete_ = scrollBlocked_ = noJoin_ = groupRefillActive_ = false;
    groupMin_ = groupMax_ = kOpenGroup;
    cameraFixed_ = stage_->cameraType != 0;
    spawnState_.assign(stage_->spawnCount, 0);
    eventState_.assign(stage_->eventCount, 0);
}

void Engine::readStageDirection() {
    const auto is = [this](std::string_view direction) {
        return equalsFolded(stage_->direction, direction);
    };
    scrollDir_ = is("left") || is("in") || is("bothleft") ? -1 : 1;
    allowBacktrack_ = is("both");
    verticalScroll_ = is("up") || is("down");
    verticalScrollSign_ = is("down") ? -1 : 1;
    if (verticalScroll_) cameraFixed_ = true;
}

// There is no player of scenes yet: the stage begins at once.
void Engine::playStageCutscene(bool) {}

// Null for a name that leads nowhere.
SpritePtr Engine::loadStagePicture(std::string_view name, StagePictures& loaded) {
    const auto [known, isNew] = loaded.try_emplace(name);
    const std::filesystem::path path = isNew ? normalizeDataPath(name) : "";
    if (path.empty()) return known->second;
    SpriteImage image;
    if (renderer_.loadSprite(runtimeCasePath(dataRoot() / path), image)) {
        known->second = std::make_shared<const SpriteImage>(std::move(image));
    }
    return known->second;
}

void Engine::loadStageImages(StagePictures& loaded) {
    const auto load = [&](std::string_view name) {
        const SpritePtr image = loadStagePicture(name, loaded);
        return image ? *image : SpriteImage();
    };
    background_ = load(stage_->background);
    water_ = load(stage_->waterPath);
    panels_.clear();
    for (const char* panel : std::span(stage_->panels, stage_->panelCount)) {
        panels_.push_back(loadStagePicture(panel, loaded));
    }
}

void Engine::loadStageLayers(StagePictures& loaded) {
    backgroundLayers_.clear();
    foregroundLayers_.clear();
    backgroundRatioX_ = 0.5F;
    backgroundOffsetX_ = backgroundOffsetY_ = 0;
    for (const generated::Layer& row : std::span(stage_->layers, stage_->layerCount)) {
        const auto is = [&row](std::string_view kind) { return equalsFolded(row.kind, kind); };
        if (is("background")) {
            backgroundRatioX_ = row.xRatio;
            backgroundOffsetX_ = row.xOffset;
            backgroundOffsetY_ = row.zOffset;
        }
        if (!is("bglayer") && !is("fglayer") && !is("frontpanel")) continue;
        RuntimeStageLayer layer = layerOf(row);
        layer.image = loadStagePicture(row.path, loaded);
        if (!layer.image) continue;
        const bool behind = is("bglayer") || (is("fglayer") && row.zOrder < 0);
        (behind ? backgroundLayers_ : foregroundLayers_).push_back(std::move(layer));
    }
    std::ranges::stable_sort(backgroundLayers_, {}, &RuntimeStageLayer::zOrder);
    std::ranges::stable_sort(foregroundLayers_, {}, &RuntimeStageLayer::zOrder);
}

// As long as its pictures, and long enough for the camera to reach everything that waits for it.
void Engine::measureStage() {
    const std::int64_t view = viewOf(config_);
    std::int64_t panels = 0;
    for (const SpritePtr& panel : panels_) panels += panel ? panel->width : 0;
    std::int64_t length = std::max<std::int64_t>({kLeastLength, panels, background_.width});
    for (const RuntimeStageLayer& layer : backgroundLayers_) {
        length = std::max(length, std::int64_t{layer.image->width} + std::max(0, layer.xOffset));
    }
    for (const generated::Spawn& spawn : std::span(stage_->spawns, stage_->spawnCount)) {
        const std::int64_t at = spawn.hasAt ? spawn.at : 0;
        if (at > 0) length = std::max(length, at + view);
        length = std::max(length, at + std::max(0, spawn.x) + 64);
    }
    for (const generated::StageEvent& event : std::span(stage_->events, stage_->eventCount)) {
        if (event.at > 0) length = std::max(length, event.at + view);
    }
    length = std::min(length, kMostLength);
    stageLength_ = static_cast<int>(length);
    if (scrollDir_ < 0 && !verticalScroll_) {
        cameraX_ = static_cast<float>(std::max<std::int64_t>(0, length - view));
    }
}

void Engine::placePlayer1() {
    const StagePlayerSpawn spawn =
        stagePlayerSpawn(stage_, 0, cameraX_, config_.logicalWidth, scrollDir_);
    playerWorldX_ = spawn.x;
    playerZ_ = spawn.z;
    playerAltitude_ = spawn.altitude;
    playerFacing_ = spawn.facing;
}

void Engine::stopPlayer1() {
    playerVerticalVelocity_ = 0;
    playerJumpVelocityX_ = playerJumpVelocityZ_ = 0;
    playerScriptVelocityX_ = playerScriptVelocityZ_ = 0;
}

void Engine::setPlayerVitals(bool keepHealth) {
    if (keepHealth) {
        playerHealth_ = std::clamp(playerHealth_, 1, std::max(1, playerMaxHealth_));
    } else if (playerModel_) {
        playerHealth_ = playerMaxHealth_ = std::max(1, playerModel_->health);
        playerMp_ = playerMaxMp_ = std::max(0, playerModel_->mp);
        playerGuardPoints_ = std::max(0, playerModel_->guardPoints);
    }
}

void Engine::playStageMusic(const std::filesystem::path& path) {
    audio_.stopMusic();
    if (*stage_->music == '\0') {
        if (config_.autoPreviewMusic) previewMusic();
    } else if (!audio_.playMusic(path, stage_->musicLoop)) {
        warnLine("Stage music diagnostic: ", audio_.lastError());
    }
}

// Gates that stand at the start hold from the start, and are met again by the queue of events.
void Engine::applyReachedJoinGates() {
    for (const generated::StageEvent& event : std::span(stage_->events, stage_->eventCount)) {
        if (!reachedStagePosition(event.at, event.hasAt)) continue;
        if (equalsFolded(event.kind, "nojoin")) noJoin_ = event.value != 0;
        if (equalsFolded(event.kind, "canjoin")) noJoin_ = false;
    }
}

float Engine::stageScrollPosition() const {
    if (!stage_) return 0;
    if (verticalScroll_) return std::max(0.0F, verticalStageScroll_);
    const auto hard = static_cast<float>(std::max(0, stageLength_ - viewOf(config_)));
    const float camera = std::clamp(cameraX_, 0.0F, hard);
    return scrollDir_ < 0 ? hard - camera : camera;
}

bool Engine::reachedStagePosition(int at, bool hasAt) const {
    return !hasAt || at <= 0 || stageScrollPosition() + 0.001F >= static_cast<float>(at);
}

// Nothing spawns, scrolls, locks or ends a stage by touch yet.
void Engine::updateEndLevelTriggers() {}
void Engine::processStageInstructions() {}
void Engine::updateCamera() {}
void Engine::updateCombatLock() {}

// Everything the stage had to send has come and gone, and the foremost player is near its end.
bool Engine::stageEndReached() const {
    const bool pending = stage_->instructionCount > 0
                             ? nextInstruction_ < stage_->instructionCount
                             : std::ranges::any_of(std::span(stage_->spawns, stage_->spawnCount),
                                                   [this](const generated::Spawn& spawn) {
                                                       const auto at = static_cast<std::size_t>(
                                                           &spawn - stage_->spawns);
                                                       return spawn.id >= 0 && spawnState_[at] == 0;
                                                   });
    if (pending || activeEnemies() > 0) return false;
    if (verticalScroll_) return true;
    float leading = playerAlive_ ? playerWorldX_ : 0;
    for (const RuntimeCoopPlayer& player : coopPlayers_) {
        if (player.alive) leading = std::max(leading, player.worldX);
    }
    const float end =
        static_cast<float>(stageLength_) - static_cast<float>(config_.logicalWidth) * 0.8F;
    return leading >= std::max(0.0F, end);
}

void Engine::advanceStage() {
    loseWeapons();
    flushWeaponDrops();
    playStageCompleteScreen();
    const int chapter = stage_->chapter;
    if (stage_->postSceneAnimationCount > 0) playStageCutscene(true);
    bool broken = false;
    const std::size_t target = nextStageTarget(broken);
    if (target < generated::kStageCount) {
        enterNextStage(target, chapter);
    } else if (broken) {
        enterMainMenu();
    } else {
        finishCampaign();
    }
}

// There is no screen between stages yet.
void Engine::playStageCompleteScreen() {}

// A branch that was taken, else the stage's own successor, else the next of the set. `broken` is
// set by a successor that is not there.
std::size_t Engine::nextStageTarget(bool& broken) {
    const std::size_t branch = std::exchange(pendingBranchTarget_, kNoStage);
    pendingBranchImmediate_ = false;
    if (branch < generated::kStageCount) return branch;
    if (*stage_->nextStage == '\0') return sequentialCampaignTarget();
    const std::string wanted = PathEncoding::utf8(normalizeDataPath(stage_->nextStage));
    for (std::size_t i = 0; i < generated::kStageCount; ++i) {
        const std::string path =
            PathEncoding::utf8(normalizeDataPath(generated::kStages[i].sourceFile));
        if (!wanted.empty() && path.ends_with(wanted)) return i;
    }
    warnLine("Stage next target not found: ", stage_->nextStage);
    broken = true;
    return kNoStage;
}

std::size_t Engine::sequentialCampaignTarget() const {
    if (!stage_ || stage_->campaignEnd || stageIndex_ + 1 >= generated::kStageCount)
        return kNoStage;
    const generated::Stage& next = generated::kStages[stageIndex_ + 1];
    return next.setOrder == stage_->setOrder ? stageIndex_ + 1 : kNoStage;
}

void Engine::enterNextStage(std::size_t target, int chapter) {
    const bool alive = playerAlive_;
    const int health = playerHealth_;
    frontendState_ = FrontendState::Loading;
    drawLoadingScreen();
    scriptSteps_ = script::kLoadingSteps;
    devices_.clock.sleep(kLoadingMilliseconds);
    loadStage(target, true);
    const bool sameChapter = stage_->chapter == chapter;
    const auto healed = [sameChapter](int before, int most) {
        const std::int64_t more = std::int64_t{std::max(1, before)} + kHealthBonus;
        return sameChapter ? static_cast<int>(std::min<std::int64_t>(std::max(1, most), more))
                           : std::max(1, most);
    };
    playerAlive_ = alive;
    playerHealth_ = alive ? healed(health, playerMaxHealth_) : 0;
    for (RuntimeCoopPlayer& player : coopPlayers_) {
        placeCoopPlayer(player);
        player.health = player.alive ? healed(player.health, player.maxHealth) : 0;
        player.animation.setAnimation(findAnimation(player.model, "idle"));
        player.lastFrame = kNoFrame;
    }
    nextSpawn_ = nextInstruction_ = 0;
    frontendState_ = FrontendState::Playing;
    saveProgress();
}

void Engine::drawLoadingScreen() {
    SpriteImage image;
    renderer_.beginFrame();
    if (renderer_.loadSprite(resolveSpriteAsset(dataRoot(), "bgs/loading"), image)) {
        renderer_.drawImage(image, 0, 0);
    }
    renderer_.endFrame();
}

void Engine::enterMainMenu() {
    frontendState_ = FrontendState::MainMenu;
    menuIndex_ = 0;
    audio_.stopMusic();
}

void Engine::finishCampaign() {
    if (!smokeMode_) {
        ++completionCount_;
        saveUnlockProgress();
    }
    enterMainMenu();
}

}  // namespace port
