#include "Joins.hpp"

#include <algorithm>

#include "GlobalScripts.hpp"
#include "Log.hpp"
#include "Players.hpp"

namespace port {
namespace {

bool mayJoin(const World& world, const RuntimeConfig& config, int slot) {
    if (world.stage.noJoin || slot <= 0 || slot >= std::min(kMostPlayers, config.maxPlayers)) {
        return false;
    }
    return !world.slots[static_cast<std::size_t>(slot)].joined &&
           static_cast<std::size_t>(slot) == 1 + world.coop.size();
}

}  // namespace

bool joinPlayerSlot(Tick& tick, int slot) {
    World& world = tick.world;
    const auto models = selectableModels();
    if (!world.stage.row || models.empty() || !mayJoin(world, tick.config, slot)) return false;
    const auto place = static_cast<std::size_t>(slot);
    const int last = static_cast<int>(models.size()) - 1;
    const int chosen = std::clamp(world.slots[place].selectIndex, 0, last);
    RuntimeCoopPlayer& player =
        addCoopPlayer(world, tick.config, slot, *models[static_cast<std::size_t>(chosen)]);
    player.scriptCtx.local["playerindex"] = static_cast<double>(slot);
    world.slots[place].joined = true;
    furnishPlayer(tick, player);
    tick.scripts.runHook(player.model->onSpawnScript, player.scriptCtx, "coop-onspawn");
    tick.scripts.runGlobal(kJoinScripts[place], player.scriptCtx, "player-join");
    tick.scripts.runGlobal(kJoinAllScript, player.scriptCtx, "player-joinall");
    logLine("Player ", slot + 1, " joined in progress model=", player.model->name);
    return true;
}

bool updateInProgressJoins(Tick& tick) {
    const World& world = tick.world;
    if (tick.drive != PlayerDrive::Devices || !tick.config.gamepad) return false;
    const int next = 1 + static_cast<int>(world.coop.size());
    if (next >= kMostPlayers) return false;
    const int pad = gamepadOfSlot(tick.config, next);
    return tick.input.buttonPressed(pad, kPadA | kPadStart) && joinPlayerSlot(tick, next);
}

}  // namespace port
