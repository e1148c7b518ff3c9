#pragma once

// The tests' view of the world inside an engine.

#include "AnimationLookup.hpp"
#include "Engine.hpp"

namespace port {

struct EngineProbe {
    Engine& engine;

    RuntimeConfig& config() { return engine.config_; }
    Renderer& renderer() { return engine.renderer_; }
    AudioSystem& audio() { return engine.audio_; }
    ScriptVM& scripts() { return engine.scriptVm_; }
    FrontendState& state() { return engine.frontendState_; }
    std::uint64_t tick() { return engine.tickCounter_; }
    std::uint64_t worldHash() { return engine.worldHash(); }

    std::int64_t& tickScriptSteps() { return engine.tickScriptSteps_; }

    ScriptContext& playerContext() { return engine.playerScriptCtx_; }
    ScriptContext& stageContext() { return engine.stageScriptCtx_; }
    const generated::Character*& playerModel() { return engine.playerModel_; }
    AnimationPlayer& player() { return engine.player_; }
    ActorPlace playerPlace() { return engine.player1View().place(); }
    SpritePtr& playerSprite() { return engine.sprite_; }
    bool& playerAlive() { return engine.playerAlive_; }
    int& playerHealth() { return engine.playerHealth_; }
    int& playerGuard() { return engine.playerGuardPoints_; }
    float& playerX() { return engine.playerWorldX_; }
    int& playerFacing() { return engine.playerFacing_; }
    int& lives() { return engine.livesRemaining_; }
    int& credits() { return engine.creditsRemaining_; }
    const generated::Character* playerWeapon() { return engine.equippedWeapon_; }
    int playerWeaponUses() { return engine.weaponUses_; }
    void play(const char* animation) {
        engine.player_.setAnimation(exactAnimation(engine.playerModel_, animation));
        engine.lastFrame_ = kNoFrame;
    }

    std::vector<RuntimeCoopPlayer>& coop() { return engine.coopPlayers_; }
    std::deque<RuntimeEntity>& entities() { return engine.entities_; }
    std::vector<PendingChildSpawn>& pendingChildren() { return engine.pendingChildSpawns_; }
    void land(AnimationPlayer& player, const ActorPlace& place) {
        engine.applyLandFrame(player, place, kPlayer1Handle);
    }
    void queueModelDust(const char* model, float x, float z, int facing, ActorHandle parent) {
        engine.queueModelDust(model, x, z, facing, parent);
    }
    void unsummon(ActorHandle parent) { engine.unsummonChildren(parent); }
    void playHitFx(const generated::Animation* animation) { engine.playHitFx(animation); }
    void playDieSound(const generated::Character* model) { engine.playDieSound(model); }
    static void apex(AnimationPlayer& player, float before, float after) {
        Engine::applyDropFrameOnApex(player, before, after);
    }

    const generated::Stage* stage() { return engine.stage_; }
    std::size_t& stageIndex() { return engine.stageIndex_; }
    int stageLength() { return engine.stageLength_; }
    float& cameraX() { return engine.cameraX_; }
    bool noJoin() { return engine.noJoin_; }
    bool& stageComplete() { return engine.stageComplete_; }
    std::size_t& branchTarget() { return engine.pendingBranchTarget_; }
    bool& branchImmediate() { return engine.pendingBranchImmediate_; }
    int quakeTicks() { return engine.quakeTicks_; }
    int quakeIntensity() { return engine.quakeIntensity_; }
    const std::vector<SceneQueueTrace>& trace() { return engine.lastSceneQueueTrace_; }

    int hudBarWidth() { return engine.hudBarWidth_; }
    int hudBarHeight() { return engine.hudBarHeight_; }
    int completionCount() { return engine.completionCount_; }
    const std::unordered_map<std::string, std::string>& keyLabels() {
        return engine.legacyKeyLabels_;
    }
    const std::vector<std::size_t>& campaignFirstStages() { return engine.campaignFirstStages_; }
    const std::vector<std::string>& campaignNames() { return engine.campaignNames_; }
    const std::vector<int>& campaignRequirements() { return engine.campaignRequirements_; }
    std::array<bool, 4>& joinedPlayers() { return engine.joinedPlayers_; }

    void gameplayTick() { engine.gameplayTick(); }
    void advanceStage() { engine.advanceStage(); }
    [[nodiscard]] bool stageEnds() const { return engine.stageEndReached(); }
    void skipInstructions() { engine.nextInstruction_ = engine.stage_->instructionCount; }
    void runPass() { engine.runPass(); }
    void beginGame() { engine.beginGame(); }
    bool loadStage(std::size_t index) { return engine.loadStage(index, false); }
    void drawStage() { engine.drawStage(); }
    bool keyPressed(int key) { return engine.frontendKeyPressed(key); }
    bool padPressed(int pad, unsigned button) {
        return engine.gamepadButtonPressedFor(pad, button);
    }
    void pollAudioHotkeys() { engine.pollAudioHotkeys(); }
    void previewMusic() { engine.previewMusic(); }
};

}  // namespace port
