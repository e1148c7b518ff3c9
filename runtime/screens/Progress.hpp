#pragma once

// What a player keeps from run to run: the one saved game, and how often the game was finished.
// Runs that check themselves, replay or have no window leave both alone.

#include "Game.hpp"
#include "SavedGame.hpp"

namespace port {

// Saves the game as it stands. Nothing on a stage that does not want it; a file that cannot be
// written is no failure, and the old one stands.
void saveProgress(const Game& game);

// Begins the saved game at the start of its stage. False, with nothing changed, where there is none
// or nothing to play it with.
bool loadProgress(Game& game);
bool resumeGame(Game& game, const SavedGame& save);

// The count of the file, 0 without one.
void loadUnlockProgress(Game& game);
void saveUnlockProgress(const Game& game);

// A campaign was finished: it counts, and its saved game goes.
void finishProgress(Game& game);

}  // namespace port
