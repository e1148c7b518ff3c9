#pragma once

// The whole game of a port: owns the world and everything that shows and sounds it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Actors.hpp"
#include "AudioSystem.hpp"
#include "Devices.hpp"
#include "FrameCapture.hpp"
#include "GeneratedCharacters.hpp"
#include "GeneratedStages.hpp"
#include "Renderer.hpp"
#include "RuntimeConfig.hpp"
#include "SceneQueue.hpp"
#include "ScriptLimits.hpp"
#include "ScriptVM.hpp"
#include "SoundEffects.hpp"
#include "SpriteCache.hpp"
#include "StageLayer.hpp"

namespace port {

enum class FrontendState {
    MainMenu,
    LevelSetSelect,
    CharacterSelect,
    Loading,
    Options,
    GraphicsOptions,
    Controls,
    Playing,
    Paused,
    GameOver,
    Quit
};

class Engine final : public ScriptHost {
  public:
    explicit Engine(platform::Devices devices = {});
    // Scripts and contexts hold the engine's address.
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    // Reads settings and tables and brings up the services. False when there is nothing to draw on;
    // missing sound only warns. Without a window a game begins at once.
    [[nodiscard]] bool initialize(const std::filesystem::path& portRoot);

    // Keeps pictures of the gameplay passes to come.
    void setCapture(FrameCapture capture) { capture_ = std::move(capture); }

    // The loop, one tick and one drawn frame a pass. 0, or 70 when a window closed within three
    // passes. Without a window it ends by itself after 900 passes.
    int run();

    // Plays by itself for 60 to 3600 frames. 0, or 72 when a game could not start, 73 when it ended
    // early, 74 when gameplay did not go on.
    int runSmokeGame(int frames = 600);

    ScriptValue callScriptFunction(const std::string& name, const std::vector<ScriptValue>& args,
                                   ScriptContext& context,
                                   std::vector<std::string>& unsupported) override;

  private:
    friend struct EngineProbe;  // the tests' view of the world

    struct DrawnActor {
        SpritePtr image;
        const generated::Frame* frame = nullptr;
        int x = 0, y = 0;
        bool flip = false;
        int alphaMode = 0;
    };
    // What a pass was.
    enum class Pass { Menu, Played, StageAdvanced };
    // Pictures of the stage that is being loaded, by name: panels repeat, their pixels need not.
    using StagePictures = std::unordered_map<std::string_view, SpritePtr>;

    // Start, in order (Engine.cpp).
    void readLifeBarSize();
    void readLogicalSize();
    void attachScripts();
    void logServices() const;
    void loadMenuBackgrounds();
    void buildCampaigns();
    void choosePlayerModel();
    void enterFirstState();

    // The loop.
    void countPass();
    Pass runPass();
    Pass gameplayTick();
    void regenerateGuard();
    void takeImmediateBranch();
    void respawnDeadPlayers();
    Pass closeTick();
    [[nodiscard]] bool smokeRunIsOver() const;
    [[nodiscard]] bool smokeRunIsStuck() const;
    void logHeadlessProgress() const;
    void pace() const;
    int endRun(int passes);
    void saveSettings();
    void smokeTrace(std::string_view message) const;
    [[nodiscard]] std::filesystem::path dataRoot() const;

    // Menus (EngineFrontend.cpp).
    void updateFrontend();
    void drawFrontend();
    void loadLegacyMenuConfig();
    void loadUnlockProgress();
    void saveUnlockProgress() const;
    void saveProgress() const;

    // Keys and pads (EngineInput.cpp). Each true answer is given once for each press.
    bool frontendKeyPressed(int virtualKey);
    bool gamepadButtonPressedFor(int pad, unsigned button);
    bool gamepadButtonPressed(unsigned button);

    // Players (EnginePlayers.cpp).
    void beginGame();
    void resetPlayer1();
    void placeCoopPlayer(RuntimeCoopPlayer& player) const;
    void buildCoopPlayers(int lives, int credits);
    void runSpawnScripts();
    void updatePlayer();
    void updateInProgressJoins();
    void updateCoopPlayers();
    bool consumeRespawnResource(int playerSlot);
    void respawnPlayerSlot(int playerSlot);
    [[nodiscard]] bool anyPlayerAlive() const;
    [[nodiscard]] RuntimeCoopPlayer* coopPlayerOfSlot(int playerSlot);
    [[nodiscard]] int gamepadOfSlot(int playerSlot) const;
    [[nodiscard]] std::vector<const generated::Character*> selectableModels() const;
    [[nodiscard]] ActorView player1View();
    [[nodiscard]] ActorView coopView(std::size_t index);

    // Entities (EngineEntities.cpp).
    // Visits all, also those that the visits add: scripts may do so, and iterators would not last.
    template <class Visit>
    void eachEntity(Visit visit) {
        std::size_t next = 0;
        while (next < entities_.size()) visit(entities_[next++]);
    }
    void updateEntities();
    void updateEntity(RuntimeEntity& entity);
    void updateDeadEntity(RuntimeEntity& entity);
    static void setEntityAnimation(RuntimeEntity& entity, const generated::Animation* animation);
    void applyEntityBindings();
    void queueChildSpawn(const generated::Character* owner, const generated::Animation& animation,
                         std::size_t frameIndex, const ActorPlace& place, ActorHandle parent);
    [[nodiscard]] bool hasSummonedChild(ActorHandle parent) const;
    void queueModelDust(const char* modelName, float x, float z, int facing, ActorHandle parent);
    void flushChildSpawns();
    [[nodiscard]] bool stageHasRoom();
    void unsummonChildren(ActorHandle parent, bool allChildren = false);
    [[nodiscard]] int activeEnemies() const;
    [[nodiscard]] static ActorHandle handleOf(const RuntimeEntity& entity);
    [[nodiscard]] static ActorView entityView(RuntimeEntity& entity);

    // Fights, projectiles and weapons (EngineCombat.cpp, EngineProjectiles.cpp).
    void resolveCombat();
    void updateProjectiles();
    void flushWeaponDrops();
    void setWeaponIndex(const ActorView& actor, int index);
    void setPlayerWeaponIndex(int index);

    // Frames taking effect (EngineFrames.cpp).
    void loadCurrentPlayerSprite();
    void loadCoopSprite(std::size_t index);
    void loadEntitySprite(RuntimeEntity& entity);
    void loadProjectileSprite(RuntimeProjectile& projectile);
    void enterFrame(const ActorView& actor);
    void triggerQuake(const generated::Character* model, const generated::Animation* animation,
                      std::size_t frame);
    // When an actor lands: the frame for it, and dust where the animation raises some.
    void applyLandFrame(AnimationPlayer& player, const ActorPlace& place, ActorHandle parent);
    // With the velocity before and after gravity: the frame for the moment an actor stops rising.
    static void applyDropFrameOnApex(AnimationPlayer& player, float before, float after);

    // Sound (EngineAudio.cpp).
    void playFrameSound(const generated::Frame& frame);
    void playHitFx(const generated::Animation* animation);
    void playDieSound(const generated::Character* model);
    void pollAudioHotkeys();
    void previewMusic();

    // Stages (EngineStage.cpp).
    bool loadStage(std::size_t index, bool keepHealth = false);
    void resetStageState();
    void readStageDirection();
    void playStageCutscene(bool post = false);
    void loadStageImages(StagePictures& loaded);
    void loadStageLayers(StagePictures& loaded);
    [[nodiscard]] SpritePtr loadStagePicture(std::string_view name, StagePictures& loaded);
    void measureStage();
    void placePlayer1();
    void stopPlayer1();
    void setPlayerVitals(bool keepHealth);
    void playStageMusic(const std::filesystem::path& path);
    void applyReachedJoinGates();
    void updateEndLevelTriggers();
    void processStageInstructions();
    void updateCamera();
    void updateCombatLock();
    [[nodiscard]] bool stageEndReached() const;
    [[nodiscard]] std::size_t nextStageTarget(bool& broken);
    [[nodiscard]] std::size_t sequentialCampaignTarget() const;
    void advanceStage();
    void loseWeapons();
    void playStageCompleteScreen();
    void enterNextStage(std::size_t target, int chapter);
    void drawLoadingScreen();
    void enterMainMenu();
    void finishCampaign();
    [[nodiscard]] float stageScrollPosition() const;
    [[nodiscard]] bool reachedStagePosition(int at, bool hasAt) const;

    // The picture (EngineScene.cpp).
    void drawStage();
    void shakeScreen();
    void drawBackground();
    void drawLayer(const RuntimeStageLayer& layer);
    void queueScenery();
    void queueActors();
    void queueEntity(RuntimeEntity& entity);
    void queueActor(const ActorView& actor);
    void queueProjectiles();
    void queueSprite(SceneKind kind, const ActorPlace& place, const SpritePtr& sprite,
                     const generated::Frame* frame, const generated::Character* model);
    template <class Draw>
    void addToScene(SceneKind kind, int z, Draw draw);
    void drawHud();
    [[nodiscard]] int sceneZMin() const;
    [[nodiscard]] int sceneZMax() const;
    [[nodiscard]] float renderCameraX() const;
    [[nodiscard]] int renderOffsetY() const;

    // Scripts (EngineScript.cpp).
    void clearScriptDrawing();
    template <class Run>
    ScriptRunResult runWithinBudget(Run run);
    void runModelScript(const char* path, ScriptContext& context, const char* event);
    void runAnimationCommand(const ActorView& actor, const generated::Frame& frame,
                             const generated::Animation& animation);
    void logScriptLine(const std::string& line);

    // The world as a number (EngineHash.cpp): the same for two runs on the same inputs, unless a
    // script makes a number of an actor's handle.
    [[nodiscard]] std::uint64_t worldHash() const;

    // Services.
    platform::Devices devices_;
    RuntimeConfig config_;
    Renderer renderer_;
    AudioSystem audio_;
    ScriptVM scriptVm_;
    std::filesystem::path root_;
    SpriteCache sprites_;
    SoundEffects soundEffects_;
    FrameCapture capture_;
    std::ofstream scriptLog_;
    std::size_t scriptLogBytes_ = 0;

    // Player 1's body.
    const generated::Character* playerModel_ = nullptr;
    AnimationPlayer player_;
    float playerWorldX_ = 80, playerZ_ = 200, playerAltitude_ = 0, playerVerticalVelocity_ = 0;
    float playerJumpVelocityX_ = 0, playerJumpVelocityZ_ = 0;
    int playerFacing_ = 1;
    float playerScriptVelocityX_ = 0, playerScriptVelocityZ_ = 0;
    std::size_t lastFrame_ = kNoFrame;
    SpritePtr sprite_;

    // Player 1's vitals.
    int playerHealth_ = 100, playerMaxHealth_ = 100, playerMp_ = 0, playerMaxMp_ = 0;
    bool playerAlive_ = true;
    int playerPaletteMap_ = 0;
    std::int64_t playerScore_ = 0;
    int playerGuardPoints_ = 0, playerBlockState_ = 0;
    bool playerBlocking_ = false;
    float playerKnockdownMeter_ = 0;
    int livesRemaining_ = 0, creditsRemaining_ = 0;

    // What player 1 does.
    int playerHitStun_ = 0, playerAttackTicks_ = 0, playerAttackCooldown_ = 0;
    int playerComboStep_ = 0, playerComboBranch_ = -1, playerComboWindow_ = 0;
    int playerFallTicks_ = 0, playerRecoveryTicks_ = 0, playerInvincibleTicks_ = 0;
    int playerDashTicks_ = 0, playerReactionType_ = 0;
    int playerLandingDamage_ = 0, playerLandingMode_ = 0, playerLandingType_ = -1;
    bool playerQueuedAttack_ = false, playerProjectileFired_ = false;
    bool playerJumping_ = false, playerRunningJump_ = false, playerAnimJumpTriggered_ = false;
    bool playerAttackHasHit_ = false;
    int playerAttackHits_ = 0;
    unsigned playerAttackId_ = 0;
    std::set<ActorHandle> playerLandingHitTargets_;
    PendingEnergyCost playerEnergyPending_;
    int grabbedEntity_ = -1;  // index into entities_
    int grabHoldTicks_ = 0;

    // Player 1's weapon.
    const generated::Character* equippedWeapon_ = nullptr;
    int weaponUses_ = 0;
    const generated::Character* weaponItemModel_ = nullptr;
    int weaponDropsRemaining_ = -1;

    // Scripts.
    ScriptContext playerScriptCtx_;
    ScriptContext stageScriptCtx_;
    bool hasUpdateScript_ = false, hasUpdatedScript_ = false;
    std::int64_t tickScriptSteps_ = script::kPassSteps;
    bool stageFullReported_ = false;
    std::int64_t scriptSteps_ = script::kLoadingSteps;  // left for the scripts of this tick or load
    std::array<std::unordered_map<std::string, ScriptValue>, 4> playerScriptVars_;
    std::unordered_map<ActorHandle, float> scriptAntigravity_;
    std::unordered_map<ActorHandle, EntityBinding> entityBindings_;
    SceneQueue scene_;
    std::vector<SceneQueueTrace> lastSceneQueueTrace_;
    std::size_t scriptDrawSequence_ = 0;

    // Keys and pads, as they were when they were last asked for.
    std::array<bool, 256> frontendKeys_{};
    struct PadSnapshot {
        std::uint64_t stamp = 0;
        bool polled = false;
        std::uint16_t current = 0, previous = 0;
    };
    std::array<PadSnapshot, 4> pads_{};

    // World. Entities are only ever added during a stage, so that their addresses stay theirs.
    std::deque<RuntimeEntity> entities_;
    std::vector<RuntimeProjectile> projectiles_;
    std::vector<RuntimeCoopPlayer> coopPlayers_;
    std::vector<PendingChildSpawn> pendingChildSpawns_;
    std::vector<PendingWeaponDrop> pendingWeaponDrops_;
    std::uint64_t tickCounter_ = 0;

    // Stage and camera.
    const generated::Stage* stage_ = nullptr;
    std::size_t stageIndex_ = 0;
    float cameraX_ = 0, cameraMaxX_ = 0;
    int stageLength_ = 320;
    float verticalStageScroll_ = 0;
    bool verticalScroll_ = false;
    int verticalScrollSign_ = 1, scrollDir_ = 1;
    bool cameraFixed_ = false, allowBacktrack_ = false, scrollBlocked_ = false, noJoin_ = false;
    bool combatLocked_ = false, groupRefillActive_ = false, stageComplete_ = false;
    bool bossMusicStarted_ = false;
    float combatLockX_ = 0, backtrackFloor_ = 0;
    int groupMin_ = 0, groupMax_ = 0;
    std::size_t nextSpawn_ = 0, nextInstruction_ = 0;
    std::vector<std::uint8_t> spawnState_, eventState_;  // 0 not fired, 1 firing, 2 done
    static constexpr std::size_t kNoStage = static_cast<std::size_t>(-1);
    std::size_t pendingBranchTarget_ = kNoStage;
    bool pendingBranchImmediate_ = false;
    int quakeTicks_ = 0, quakeIntensity_ = 0;

    // Pictures of the stage.
    SpriteImage background_, water_;
    std::vector<SpritePtr> panels_;  // null for one that did not load
    std::vector<RuntimeStageLayer> backgroundLayers_, foregroundLayers_;
    float backgroundRatioX_ = 0.5F;
    int backgroundOffsetX_ = 0, backgroundOffsetY_ = 0;
    int hudBarWidth_ = 70, hudBarHeight_ = 7;

    // One frame's drawing: the shake of the screen, and the actors that the queue points to.
    int rockX_ = 0, rockY_ = 0;
    std::vector<DrawnActor> drawnActors_;

    // Menus.
    FrontendState frontendState_ = FrontendState::MainMenu;
    int menuIndex_ = 0, pauseIndex_ = 0;
    std::vector<std::size_t> campaignFirstStages_;
    std::vector<std::string> campaignNames_;
    std::vector<int> campaignRequirements_;
    int completionCount_ = 0;
    std::unordered_map<std::string, std::string> legacyKeyLabels_;
    std::set<std::string> legacyDisabledKeys_;
    std::array<int, 4> selectIndexes_{};
    std::array<bool, 4> joinedPlayers_ = {true, false, false, false};
    SpriteImage titleBackground_, selectBackground_;

    // The run that checks itself.
    bool smokeMode_ = false;
    int smokeFrameLimit_ = 0, smokeFramesRun_ = 0, smokeTotalFrames_ = 0;
    bool suspendSave_ = false;
};

}  // namespace port
