#include "StageLoading.hpp"

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "AnimationLookup.hpp"
#include "AssetPaths.hpp"
#include "Log.hpp"
#include "MusicPreview.hpp"
#include "PathEncoding.hpp"
#include "Players.hpp"
#include "Progress.hpp"
#include "ScriptPreparation.hpp"
#include "StageFlow.hpp"
#include "StageReach.hpp"
#include "StageRules.hpp"
#include "StageShows.hpp"
#include "Weapons.hpp"

namespace port {
namespace {

// More than two stages play, and few enough to be looked for on the disk in a moment.
constexpr std::size_t kMostExpectedTracks = 16;

// Whatever stood on the last stage or was about to. Players keep their places and scripts.
void clearStage(World& world) {
    world.entities.clear();
    world.projectiles.clear();
    world.pendingChildSpawns.clear();
    world.pendingWeaponDrops.clear();
    world.player1.grabbedEntity = kNobody;
    const auto free = [](PlayerActor& player) {
        player.binding = {};
        player.hasScriptAntigravity = false;
        player.scriptAntigravity = 0;
        player.scriptedBounds = player.heldBounds = 0;
        player.opponent = kNobody;
    };
    free(world.player1);
    for (RuntimeCoopPlayer& player : world.coop) free(player);
}

void previewMusic(Game& game) {
    const std::filesystem::path file =
        previewMusicFile(game.dataRoot, game.config.preferredMusicFormat);
    if (file.empty()) return;
    const std::string name = PathEncoding::utf8(file);
    if (game.audio.playMusic(file, true)) {
        logLine("Preview music: ", name);
    } else {
        logLine("Music diagnostic: ", name, " -> ", game.audio.lastError());
    }
}

void playStageMusic(Game& game, const std::filesystem::path& path) {
    const generated::Stage& stage = *game.world.stage.row;
    game.audio.stopMusic();
    if (*stage.music == '\0') {
        if (game.config.autoPreviewMusic) previewMusic(game);
    } else if (!game.audio.playMusic(path, stage.musicLoop)) {
        warnLine("Stage music diagnostic: ", game.audio.lastError());
    }
}

void enterNextStage(Game& game, std::size_t target, int chapter) {
    World& world = game.world;
    const Vitals vitals(world);
    game.frontend.state = FrontendState::Loading;
    showLoadingScreen(game);
    loadStage(game, target, true);
    vitals.restoreRested(world, world.stage.row->chapter == chapter);
    for (RuntimeCoopPlayer& player : world.coop) {
        placeCoopPlayer(world, player, game.config.logicalWidth);
        player.animation.setAnimation(findAnimation(player.model, "idle"));
        player.lastFrame = kNoFrame;
    }
    world.stage.nextSpawn = world.stage.nextInstruction = 0;
    game.frontend.state = FrontendState::Playing;
    saveProgress(game);
}

void finishCampaign(Game& game) {
    finishProgress(game);
    enterMainMenu(game);
}

void grantExtraLives(World& world, int lives) {
    const auto grant = [lives](PlayerActor& player) {
        player.livesRemaining = static_cast<int>(
            std::min<std::int64_t>(INT32_MAX, std::int64_t{player.livesRemaining} + lives));
    };
    grant(world.player1);
    for (RuntimeCoopPlayer& player : world.coop) grant(player);
}

RecordedStart startOf(const Game& game, bool keepLooks) {
    RecordedStart start;
    start.stage = game.world.stage.index;
    for (std::size_t slot = 0; slot < game.world.slots.size(); ++slot) {
        start.joined[slot] = game.world.slots[slot].joined;
        start.select[slot] = game.world.slots[slot].selectIndex;
    }
    start.model = game.world.player1.model->name;
    start.drive = game.drive;
    start.keepLooks = keepLooks;
    start.skipsMenus = game.skipsMenus;
    start.extraLives = game.extraLives;
    start.menuRow = game.frontend.menuIndex;
    start.optionRow = game.frontend.optionIndex;
    start.controlsRow = game.frontend.controlsIndex;
    start.completions = game.frontend.completionCount;
    return start;
}

}  // namespace

void expectMusic(Game& game, std::size_t index) {
    std::vector<std::filesystem::path> files;
    const auto add = [&](const char* name) {
        if (*name == '\0' || files.size() == kMostExpectedTracks) return;
        auto file = resolveAudioAsset(game.dataRoot, name);
        if (std::ranges::find(files, file) == files.end()) files.push_back(std::move(file));
    };
    const auto addScenes = [&](std::span<const generated::CutsceneAnimation> steps) {
        for (const generated::CutsceneAnimation& step : steps) add(step.musicBefore);
    };
    const auto addStage = [&](const generated::Stage& row) {
        addScenes({row.sceneAnimations, row.sceneAnimationCount});
        add(row.music);
        add(row.bossMusic);
        addScenes({row.postSceneAnimations, row.postSceneAnimationCount});
    };
    const generated::Stage& stage = generated::kStages[index];
    addStage(stage);
    const std::size_t next = stageBehind(stage, index).target;
    if (next < generated::kStageCount) addStage(generated::kStages[next]);
    game.audio.expectMusic(files);
}

bool loadStage(Game& game, std::size_t index, bool keepHealth) {
    if (index >= generated::kStageCount) return false;
    const Scripts::Loading steps(game.scripts);
    World& world = game.world;
    const generated::Stage& row = generated::kStages[index];
    const int width = game.config.logicalWidth;
    // What was asked for until now comes before the music of this stage.
    game.playSounds();
    game.trace("stage: reset");
    clearStage(world);
    world.stage = freshStageRun(index);
    world.camera = freshCamera(world.stage);
    expectMusic(game, index);
    game.trace("stage: scenes");
    playStageCutscene(game, false);
    game.trace("stage: images");
    game.scenery = loadScenery(row, game.renderer, game.dataRoot);
    world.stage.length = stageLength(row, game.scenery.extent(), width);
    world.camera.x = cameraStart(world.stage, width);
    game.trace("stage: players");
    placePlayer1(world, width);
    if (!game.config.asWritten) {
        world.stage.reach = stageReach(world.stage, {world.player1.worldX, world.player1.z});
        if (world.stage.reach.closed) logLine("Walls close the way at x=", world.stage.reach.x);
    }
    setPlayerVitals(world.player1, keepHealth);
    game.trace("stage: level script");
    world.stageScriptCtx = {};
    game.scripts.runHook(row.levelScript, world.stageScriptCtx, "levelscript");
    prepareScripts(game.scripts, world, game.config.maxPlayers);
    game.trace("stage: music");
    playStageMusic(game, resolveAudioAsset(game.dataRoot, row.music));
    applyReachedJoinGates(world, width);
    logLine("Stage ", index + 1, "/", generated::kStageCount, ": ", row.sourceFile,
            " geometry=", row.geometryCount, " length=", world.stage.length);
    game.trace("stage: loaded");
    return true;
}

void beginGame(Game& game, bool keepLooks) {
    World& world = game.world;
    if (!world.player1.model) return;
    game.recorder.begin(startOf(game, keepLooks), game.config);
    game.trace("game: load stage");
    if (!loadStage(game, world.stage.index, false)) return;
    // What the level script has spawned goes too; its place in the instructions stays.
    game.trace("game: clear the stage");
    clearStage(world);
    world.stage.nextSpawn = 0;
    world.camera.combatLocked = false;
    world.tick = 0;
    game.trace("game: place the players");
    Tick tick = game.tick();
    startPlayers(tick, keepLooks);
    grantExtraLives(world, game.extraLives);
    game.trace("game: start the music");
    // To the letter, only a name that has its extension sounds in the first stage.
    const char* music = world.stage.row->music;
    playStageMusic(game, game.config.asWritten
                             ? runtimeCasePath(game.dataRoot / normalizeDataPath(music))
                             : resolveAudioAsset(game.dataRoot, music));
    game.frontend.state = FrontendState::Playing;
    if (!keepLooks) saveProgress(game);
    game.trace("game: run the spawn scripts");
    runPlayerSpawnScripts(tick);
    logLine("New game started local_players=", 1 + world.coop.size());
    game.trace("game: started");
}

void takeImmediateBranch(Game& game) {
    World& world = game.world;
    if (!world.branch.immediate || world.branch.target >= generated::kStageCount) return;
    const std::size_t target = std::exchange(world.branch, {}).target;
    const Vitals vitals(world);
    loadStage(game, target, true);
    vitals.restore(world);
}

void advanceStage(Game& game) {
    Tick tick = game.tick();
    loseWeapons(tick);
    playStageCompleteScreen(game);
    const int chapter = game.world.stage.row->chapter;
    playStageCutscene(game, true);
    const NextStage next = takeNextStage(game.world);
    if (next.target < generated::kStageCount) {
        enterNextStage(game, next.target, chapter);
    } else if (next.broken) {
        enterMainMenu(game);
    } else {
        finishCampaign(game);
    }
}

void enterMainMenu(Game& game) {
    game.frontend.state = FrontendState::MainMenu;
    game.frontend.menuIndex = 0;
    game.audio.stopMusic();
}

}  // namespace port
