#pragma once

// What players want in a tick: their keys, and what their scripts leave of them. Player 1 has keys
// and a pad; the D-pad moves only co-op players, who have no keys.

#include "Commands.hpp"
#include "Tick.hpp"

namespace port {

struct PlayerControl {
    float dx = 0, dz = 0;  // where to: right and toward the viewer; 1 is a key's worth
    bool running = false;
    // What was pressed.
    bool attack = false, jump = false, dash = false, grab = false, throwing = false, pickup = false;

    void clearPresses() { *this = {dx, dz, running}; }
};

// The key word, the edges and the history belong to the slot in order of joining, which differs
// from `playerSlot` where joins are sparse.
[[nodiscard]] inline PlayerSlot& inputSlotOf(World& world, const PlayerActor& player) {
    return world.slots[static_cast<std::size_t>(player.handle - kPlayer1Handle)];
}

// Neither hurt nor down, and holding nobody.
[[nodiscard]] inline bool isFree(const Player1& player) {
    return player.hitStun <= 0 && player.fallTicks <= 0 && player.recoveryTicks <= 0 &&
           player.grabbedEntity == kNobody;
}

// Reads the player's input into its slot, runs the key, think and update hooks, faces the player
// the way it goes, and records the tick. For living players with a model, once a tick.
[[nodiscard]] PlayerControl pollPlayer1(Tick& tick);
[[nodiscard]] PlayerControl pollCoopPlayer(Tick& tick, RuntimeCoopPlayer& player);

}  // namespace port
