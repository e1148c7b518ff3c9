#pragma once

// The ways onto a stage: a new game, the next stage, a branch; and the way back to the menu.

#include <cstddef>

#include "Game.hpp"

namespace port {

// Puts the players on the stage at `index` of the table. False, with nothing changed, for an index
// beyond it. Player 1's health stays with `keepHealth`.
bool loadStage(Game& game, std::size_t index, bool keepHealth);

// Has the music that the tables name for the stage at `index`, and for the one that is to come
// behind it, decoded before it plays.
void expectMusic(Game& game, std::size_t index);

// A game on the world's stage index, by the models and slots that were chosen. A player 1 that
// keeps its looks keeps palette and score.
void beginGame(Game& game, bool keepLooks = false);

// Straight into another stage where a script wants it: no end of this one, no save, no bonus.
void takeImmediateBranch(Game& game);

// What comes when a stage is done: the next one, or the end of the campaign.
void advanceStage(Game& game);

void enterMainMenu(Game& game);

}  // namespace port
