#pragma once

#include "Game.hpp"

namespace port {

// One tick of play and its picture. True when the stage was left for another: the next tick follows
// at once.
bool playPass(Game& game);

// The picture of the tick, in which frames take effect, brought to the window.
void drawStage(Game& game);

}  // namespace port
