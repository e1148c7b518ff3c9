#pragma once

// How players come, die and come again.

#include <vector>

#include "Tick.hpp"

namespace port {

// All models of players, else the first of all; empty only without models.
[[nodiscard]] std::vector<const generated::Character*> selectableModels();

// "idle", or "walk" where that gives no frame.
void startIdle(Actor& actor);

// At the places that the stage has for them, for the current camera.
void placePlayer1(World& world, int logicalWidth);
void placeCoopPlayer(World& world, RuntimeCoopPlayer& player, int logicalWidth);

// Player 1's health, MP and guard as a stage begins: as they were, or the model's.
void setPlayerVitals(Player1& player, bool keepHealth);

// The pad of a player's slot, as the settings have it.
[[nodiscard]] int gamepadOfSlot(const RuntimeConfig& config, int slot);
// A co-op player of that slot, last in the list and at its place. References into the list do not
// survive it.
RuntimeCoopPlayer& addCoopPlayer(World& world, const RuntimeConfig& config, int slot,
                                 const generated::Character& model);
// Gives a player what the stage has for those who come: lives, credits, a weapon.
void furnishPlayer(Tick& tick, PlayerActor& player);

// Player 1 and the co-op players of a new game on the stage that was loaded. Lives, credits, weapon
// and places are the stage's; models and slots are those that were chosen. A player 1 that keeps
// its looks keeps palette and score.
void startPlayers(Tick& tick, bool keepLooks);
// The spawn hooks of all players.
void runPlayerSpawnScripts(Tick& tick);

// The dead stand up while there are lives and credits.
void respawnDeadPlayers(Tick& tick);
[[nodiscard]] bool anyPlayerAlive(const World& world);

// Once a second everybody's guard comes back a little.
void regenerateGuard(World& world);

}  // namespace port
