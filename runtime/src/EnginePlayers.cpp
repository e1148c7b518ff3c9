// The players: how a game begins for them, what they do in a tick, their lives and credits.

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "AnimationEnergy.hpp"
#include "AnimationLookup.hpp"
#include "AssetPaths.hpp"
#include "Engine.hpp"
#include "Log.hpp"
#include "ModelTypes.hpp"
#include "PlayerSpawn.hpp"

namespace port {
namespace {

constexpr int kMostPlayers = 4;

int baseLives(const generated::Stage* stage) {
    return stage && stage->lives > 0 ? stage->lives : 1;
}

void startIdle(AnimationPlayer& player, const generated::Character* model) {
    player.setAnimation(findAnimation(model, "idle"));
    if (!player.frame()) player.setAnimation(findAnimation(model, "walk"));
}

// Takes a life, or a credit that buys a full set of them. The last life is the counter at 1.
bool takeRespawnResource(int& lives, int& credits, int base) {
    if (lives > 1) {
        --lives;
        return true;
    }
    if (credits <= 0) return false;
    --credits;
    lives = base;
    return true;
}

}  // namespace

// A game from `stageIndex_`, `playerModel_`, `joinedPlayers_` and `selectIndexes_`.
void Engine::beginGame() {
    if (!playerModel_) return;
    scriptSteps_ = script::kLoadingSteps;
    smokeTrace("game: load stage");
    if (!loadStage(stageIndex_, false)) return;
    const int lives = livesRemaining_ = baseLives(stage_);
    const int credits = creditsRemaining_ = std::max(0, stage_->credits);

    smokeTrace("game: clear the stage");
    // What the level script has spawned goes too; its place in the instructions stays.
    entities_.clear();
    scriptAntigravity_.clear();
    entityBindings_.clear();
    projectiles_.clear();
    equippedWeapon_ = nullptr;
    grabbedEntity_ = -1;
    grabHoldTicks_ = 0;
    nextSpawn_ = 0;
    combatLocked_ = false;
    tickCounter_ = 0;

    smokeTrace("game: place the players");
    placePlayer1();
    stopPlayer1();
    resetPlayer1();
    buildCoopPlayers(lives, credits);
    if (stage_->setWeapon > 0) {
        setPlayerWeaponIndex(stage_->setWeapon);
        for (std::size_t i = 0; i < coopPlayers_.size(); ++i) {
            setWeaponIndex(coopView(i), stage_->setWeapon);
        }
    }
    smokeTrace("game: start the music");
    playStageMusic(runtimeCasePath(dataRoot() / normalizeDataPath(stage_->music)));
    frontendState_ = FrontendState::Playing;
    saveProgress();
    smokeTrace("game: run the spawn scripts");
    runSpawnScripts();
    logLine("New game started local_players=", 1 + coopPlayers_.size());
    smokeTrace("game: started");
}

void Engine::resetPlayer1() {
    playerEnergyPending_ = {};
    playerAlive_ = true;
    playerHealth_ = playerMaxHealth_ = std::max(1, playerModel_->health);
    playerMp_ = playerMaxMp_ = std::max(0, playerModel_->mp);
    playerGuardPoints_ = std::max(0, playerModel_->guardPoints);
    if (!suspendSave_) {
        playerPaletteMap_ = 0;
        playerScore_ = 0;
    }
    playerBlockState_ = 0;
    playerBlocking_ = false;
    playerKnockdownMeter_ = 0;
    playerHitStun_ = playerAttackTicks_ = playerAttackCooldown_ = 0;
    playerComboStep_ = playerComboWindow_ = 0;
    playerComboBranch_ = -1;
    playerFallTicks_ = playerRecoveryTicks_ = playerInvincibleTicks_ = playerDashTicks_ = 0;
    playerReactionType_ = 0;
    playerLandingDamage_ = playerLandingMode_ = 0;
    playerLandingType_ = -1;
    playerLandingHitTargets_.clear();
    playerQueuedAttack_ = playerProjectileFired_ = playerAnimJumpTriggered_ = false;
    playerJumping_ = playerRunningJump_ = playerAttackHasHit_ = false;
    playerAttackHits_ = 0;
    playerAttackId_ = 0;
    weaponUses_ = 0;
    weaponItemModel_ = nullptr;
    weaponDropsRemaining_ = -1;
    lastFrame_ = kNoFrame;
    startIdle(player_, playerModel_);
}

void Engine::placeCoopPlayer(RuntimeCoopPlayer& player) const {
    const StagePlayerSpawn spawn =
        stagePlayerSpawn(stage_, player.playerSlot, cameraX_, config_.logicalWidth, scrollDir_);
    player.worldX = spawn.x;
    player.z = spawn.z;
    player.altitude = spawn.altitude;
    player.facing = spawn.facing;
}

void Engine::buildCoopPlayers(int lives, int credits) {
    coopPlayers_.clear();
    const auto models = selectableModels();
    if (models.empty()) return;
    for (int slot = 1; slot < std::min(kMostPlayers, config_.maxPlayers); ++slot) {
        const auto at = static_cast<std::size_t>(slot);
        if (!joinedPlayers_[at]) continue;
        const auto chosen = static_cast<std::size_t>(std::max(0, selectIndexes_[at]));
        RuntimeCoopPlayer player;
        player.model = models[chosen % models.size()];
        player.playerSlot = slot;
        player.health = player.maxHealth = std::max(1, player.model->health);
        player.mp = player.maxMp = std::max(0, player.model->mp);
        player.guardPoints = std::max(0, player.model->guardPoints);
        player.livesRemaining = lives;
        player.creditsRemaining = credits;
        placeCoopPlayer(player);
        player.gamepadId = gamepadOfSlot(slot);
        player.paletteMap = slot;
        startIdle(player.animation, player.model);
        player.scriptCtx.player = true;
        player.scriptCtx.playerIndex = slot;
        player.scriptCtx.local["self"] = static_cast<ActorHandle>(slot) + 1;
        player.scriptCtx.local["player"] = static_cast<double>(slot);
        coopPlayers_.push_back(std::move(player));
    }
}

void Engine::runSpawnScripts() {
    playerScriptCtx_.player = true;
    playerScriptCtx_.playerIndex = 0;
    playerScriptCtx_.local["self"] = kPlayer1Handle;
    playerScriptCtx_.local["player"] = 0.0;
    runModelScript(playerModel_->onSpawnScript, playerScriptCtx_, kPlayerEvents.onSpawn);
    for (RuntimeCoopPlayer& player : coopPlayers_) {
        runModelScript(player.model->onSpawnScript, player.scriptCtx, kCoopEvents.onSpawn);
    }
}

// A player whom nobody drives: the animation goes on.
void Engine::updatePlayer() {
    settleAnimationEnergy(playerEnergyPending_, player_, playerHealth_, playerMp_);
    playerInvincibleTicks_ = std::max(0, playerInvincibleTicks_ - 1);
    if (!playerModel_ || !playerAlive_) return;
    player_.update(1);
}

void Engine::updateCoopPlayers() {
    for (RuntimeCoopPlayer& player : coopPlayers_) {
        settleAnimationEnergy(player.energyPending, player.animation, player.health, player.mp);
        player.invincibleTicks = std::max(0, player.invincibleTicks - 1);
        if (player.model) player.animation.update(1);
    }
}

// Nobody can ask to join a running game.
void Engine::updateInProgressJoins() {}

bool Engine::consumeRespawnResource(int playerSlot) {
    const int base = baseLives(stage_);
    if (stage_ && stage_->noShare > 0 && playerSlot > 0) {
        RuntimeCoopPlayer* player = coopPlayerOfSlot(playerSlot);
        return player &&
               takeRespawnResource(player->livesRemaining, player->creditsRemaining, base);
    }
    return takeRespawnResource(livesRemaining_, creditsRemaining_, base);
}

void Engine::respawnPlayerSlot(int playerSlot) {
    if (playerSlot == 0) {
        if (!playerModel_) return;
        placePlayer1();
        stopPlayer1();
        playerAlive_ = true;
        playerHealth_ = std::max(1, playerMaxHealth_);
        playerMp_ = std::max(0, playerMaxMp_);
        playerFallTicks_ = playerRecoveryTicks_ = playerHitStun_ = 0;
        playerAttackTicks_ = playerAttackCooldown_ = 0;
        playerJumping_ = playerRunningJump_ = false;
        startIdle(player_, playerModel_);
        lastFrame_ = kNoFrame;
        runModelScript(playerModel_->onSpawnScript, playerScriptCtx_, "player-respawn");
        return;
    }
    RuntimeCoopPlayer* player = coopPlayerOfSlot(playerSlot);
    if (!player) return;
    placeCoopPlayer(*player);
    player->verticalVelocity = player->scriptVelocityX = player->scriptVelocityZ = 0;
    player->alive = true;
    player->health = std::max(1, player->maxHealth);
    player->mp = std::max(0, player->maxMp);
    player->hitStun = player->attackTicks = player->attackCooldown = 0;
    player->jumping = player->knockdownAir = player->runningJump = false;
    startIdle(player->animation, player->model);
    player->lastFrame = kNoFrame;
    runModelScript(player->model->onSpawnScript, player->scriptCtx, "coop-respawn");
}

bool Engine::anyPlayerAlive() const {
    return playerAlive_ || std::ranges::any_of(coopPlayers_, &RuntimeCoopPlayer::alive);
}

RuntimeCoopPlayer* Engine::coopPlayerOfSlot(int playerSlot) {
    const auto found = std::ranges::find(coopPlayers_, playerSlot, &RuntimeCoopPlayer::playerSlot);
    return found == coopPlayers_.end() ? nullptr : &*found;
}

int Engine::gamepadOfSlot(int playerSlot) const {
    const std::array<int, kMostPlayers> pads = {config_.player1Gamepad, config_.player2Gamepad,
                                                config_.player3Gamepad, config_.player4Gamepad};
    return pads[static_cast<std::size_t>(std::clamp(playerSlot, 0, kMostPlayers - 1))];
}

// All models of players, else the first of all.
std::vector<const generated::Character*> Engine::selectableModels() const {
    std::vector<const generated::Character*> models;
    const std::span all(generated::kCharacters, generated::kCharacterCount);
    for (const generated::Character& model : all) {
        if (openborTypeBit(&model) == kTypePlayer) models.push_back(&model);
    }
    if (models.empty() && !all.empty()) models.push_back(&all.front());
    return models;
}

ActorView Engine::player1View() {
    return {.handle = kPlayer1Handle,
            .events = kPlayerEvents,
            .model = playerModel_,
            .animation = player_,
            .worldX = playerWorldX_,
            .z = playerZ_,
            .altitude = playerAltitude_,
            .facing = playerFacing_,
            .paletteMap = playerPaletteMap_,
            .equippedWeapon = equippedWeapon_,
            .weaponUses = weaponUses_,
            .lastFrame = lastFrame_,
            .sprite = sprite_,
            .context = playerScriptCtx_};
}

ActorView Engine::coopView(std::size_t index) {
    RuntimeCoopPlayer& player = coopPlayers_[index];
    return {.handle = kFirstCoopHandle + index,
            .events = kCoopEvents,
            .model = player.model,
            .animation = player.animation,
            .worldX = player.worldX,
            .z = player.z,
            .altitude = player.altitude,
            .facing = player.facing,
            .paletteMap = player.paletteMap,
            .equippedWeapon = player.equippedWeapon,
            .weaponUses = player.weaponUses,
            .lastFrame = player.lastFrame,
            .sprite = player.sprite,
            .context = player.scriptCtx};
}

}  // namespace port
