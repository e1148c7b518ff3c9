#include "PlayScreen.hpp"

#include "Bindings.hpp"
#include "Combat.hpp"
#include "CoopPlayers.hpp"
#include "Entities.hpp"
#include "Frames.hpp"
#include "GlobalScripts.hpp"
#include "Joins.hpp"
#include "Log.hpp"
#include "Player1.hpp"
#include "Players.hpp"
#include "Progress.hpp"
#include "Projectiles.hpp"
#include "Spawning.hpp"
#include "StageCamera.hpp"
#include "StageFlow.hpp"
#include "StageLoading.hpp"
#include "StageQueue.hpp"
#include "StageScene.hpp"
#include "VolumeKeys.hpp"
#include "Weapons.hpp"

namespace port {
namespace {

void pollAudioHotkeys(Game& game) {
    bool changed = false;
    for (const VolumeKey& key : kVolumeKeys) {
        if (game.input.keyPressed(key.key)) changed |= applyVolumeKey(game.audio, key.key);
    }
    if (!changed) return;
    logLine("Audio settings: master=", game.audio.masterVolume(),
            " music=", game.audio.musicVolume(), " effects=", game.audio.effectsVolume());
}

}  // namespace

// Frames take effect between the scenery, which stays as the logic left it, and the actors, who are
// drawn where their frames have put them.
void drawStage(Game& game, bool underMenu) {
    Tick tick = game.tick();
    shakeScreen(game.world);
    game.drawing.clear();
    const SpriteSource sprites{game.sprites, game.renderer, game.dataRoot};
    StageScene scene(game.world, game.scenery, game.config, sprites, game.drawing);
    scene.addScenery();
    enterFrames(tick);
    game.playSounds();
    scene.addActors();
    scene.addScriptDrawing(game.scriptPictures);
    addHud(game.world, game.config, game.hud, sprites, game.drawing);
    if (underMenu && !game.config.asWritten) {
        game.compose();
    } else {
        game.show();
    }
    game.capture.pass(game.renderer.canvas());
    flushChildSpawns(tick);
}

namespace {

bool closeTick(Game& game) {
    World& world = game.world;
    if (!anyPlayerAlive(world)) {
        game.frontend.state = FrontendState::GameOver;
        saveProgress(game);
        return false;
    }
    if (!world.stage.row) return false;
    if (world.stage.complete && !world.branch.immediate) {
        advanceStage(game);
        return true;
    }
    if (stageEndReached(world, game.config.logicalWidth)) advanceStage(game);
    return false;
}

}  // namespace

// The order is what games are made for: movement, then hits, then the stage, then the picture.
bool playPass(Game& game) {
    World& world = game.world;
    Tick tick = game.tick();
    world.scripted.drawing.clearQueues();
    ++world.tick;
    pollAudioHotkeys(game);
    game.scripts.runGlobal(kUpdateScript, world.stageScriptCtx, "global-update");
    updatePlayer(tick);
    if (updateInProgressJoins(tick)) {
        game.config.activePlayers = 1 + static_cast<int>(world.coop.size());
        saveProgress(game);
    }
    updateCoopPlayers(tick);
    updateEntities(tick);
    // Once more: who turns toward the target it is bound to now knows where it stands itself.
    applyEntityBindings(world);
    updateEndLevelTriggers(tick);
    updateProjectiles(tick);
    resolveCombat(tick);
    flushWeaponDrops(tick);
    updateCombatLock(tick);
    processStageInstructions(tick);
    updateCamera(tick);
    updateCombatLock(tick);
    game.scripts.runGlobal(kUpdatedScript, world.stageScriptCtx, "global-updated");
    regenerateGuard(world);
    takeImmediateBranch(game);
    drawStage(game);
    respawnDeadPlayers(tick);
    const bool advanced = closeTick(game);
    game.playSounds();
    return advanced;
}

}  // namespace port
