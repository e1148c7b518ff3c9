#include "StageCamera.hpp"

#include "CameraRules.hpp"
#include "Entities.hpp"
#include "Log.hpp"

namespace port {
namespace {

CameraFocus focusOf(const World& world) {
    double sum = 0;
    int living = 0;
    const auto add = [&](const PlayerActor& player) {
        if (!player.alive) return;
        sum += static_cast<double>(player.worldX);
        ++living;
    };
    add(world.player1);
    for (const RuntimeCoopPlayer& player : world.coop) add(player);
    if (living == 0) return {};
    return {true, static_cast<float>(sum / living)};
}

}  // namespace

void updateCamera(Tick& tick) {
    World& world = tick.world;
    if (!world.stage.row) return;
    world.stage.verticalStageScroll = followedVerticalScroll(world.stage);
    world.camera =
        followedCamera(world.stage, world.camera, focusOf(world), tick.config.logicalWidth);
}

void updateCombatLock(Tick& tick) {
    if (!tick.config.cameraLockOnCombat) return;
    Camera& camera = tick.world.camera;
    const bool wasLocked = camera.combatLocked;
    camera = combatLockedCamera(camera, activeEnemies(tick.world) > 0);
    if (camera.combatLocked == wasLocked) return;
    if (wasLocked) {
        logLine("Camera released after wave");
    } else {
        logLine("Camera locked for combat at ", camera.combatLockX);
    }
}

}  // namespace port
