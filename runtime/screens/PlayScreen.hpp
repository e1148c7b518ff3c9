#pragma once

#include "Game.hpp"

namespace port {

// One tick of play and its picture. True when the stage was left for another: the next tick follows
// at once.
bool playPass(Game& game);

// The picture of the tick, in which frames take effect, brought to the window. Under a menu it is
// shown together with that, lest the menu flickers; to the letter each is shown by itself.
void drawStage(Game& game, bool underMenu = false);

}  // namespace port
