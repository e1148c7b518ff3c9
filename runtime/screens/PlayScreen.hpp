#pragma once

#include "Game.hpp"

namespace port {

// Global scripts of a game, below its data root; each may be absent.
inline constexpr const char* kUpdateScript = "scripts/update.c";
inline constexpr const char* kUpdatedScript = "scripts/updated.c";

// One tick of play and its picture. True when the stage was left for another: the next tick follows
// at once.
bool playPass(Game& game);

// The picture of the tick, in which frames take effect, brought to the window.
void drawStage(Game& game);

}  // namespace port
