#pragma once

// What players do in a tick, and how they come, die and come again.

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

// Player 1 and the co-op players of a new game on the stage that was loaded. Lives, credits, weapon
// and places are the stage's; models and slots are those that were chosen. A player 1 that keeps
// its looks keeps palette and score.
void startPlayers(Tick& tick, bool keepLooks);
// The spawn hooks of all players.
void runPlayerSpawnScripts(Tick& tick);

void updatePlayer(Tick& tick);
void updateCoopPlayers(Tick& tick);

// The dead stand up while there are lives and credits.
void respawnDeadPlayers(Tick& tick);
[[nodiscard]] bool anyPlayerAlive(const World& world);

// Once a second everybody's guard comes back a little.
void regenerateGuard(World& world);

}  // namespace port
