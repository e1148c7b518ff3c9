#pragma once

#include "Game.hpp"

namespace port {

// Global scripts of a game, below its data root; each may be absent.
inline constexpr const char* kUpdateScript = "scripts/update.c";
inline constexpr const char* kUpdatedScript = "scripts/updated.c";

// One tick of play and its picture. True when the stage was left for another: the next tick follows
// at once.
bool playPass(Game& game);

// The picture of the tick, in which frames take effect, brought to the window. Under a menu it is
// shown together with that, lest the menu flickers; to the letter each is shown by itself.
void drawStage(Game& game, bool underMenu = false);

}  // namespace port
