#pragma once

// What is shown between stages.

#include "Game.hpp"

namespace port {

void showLoadingScreen(Game& game);

// The scenes ahead of the stage that is being loaded, or behind the one that has ended; silence
// follows them. Nothing for a stage without.
void playStageCutscene(Game& game, bool post);

// Nothing where the stage wants none.
void playStageCompleteScreen(Game& game);

}  // namespace port
