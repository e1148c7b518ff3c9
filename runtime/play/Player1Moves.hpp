#pragma once

// What player 1 starts to do.

#include "PlayerMotion.hpp"

namespace port {

constexpr PlayerEvents kPlayer1Moves = {"player-ondoattack", "player-com", "player-onmovex",
                                        "player-onmovez", "player-ondeath"};

// The next attack of the chain, or one in the air. Queued while another runs.
void startPlayerAttack(Tick& tick);
// Always forward, also from a standstill.
void startPlayerJump(Tick& tick, bool running = false);
void startPlayerDash(Tick& tick);

// Commands, cancels and charged attacks; takes those presses out of `control` that they use up.
// True when a special move has begun that stands for all actions of the tick.
bool startPlayerSpecial(Tick& tick, PlayerControl& control);

}  // namespace port
