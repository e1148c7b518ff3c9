#pragma once

// A small player for all joined places: goes to the nearest enemy and hits it, takes up weapons
// that it passes, goes round or jumps over what is in its way, and walks on when nobody is left. It
// sees the world as it is and answers with what a person would hold.

#include <array>

#include "RuntimeConfig.hpp"
#include "TickInput.hpp"
#include "World.hpp"

namespace port {

class Bot {
  public:
    // What is held in the next pass. To be asked once a pass.
    [[nodiscard]] HeldInput play(const World& world, const RuntimeConfig& config);

  private:
    // -1, 0 or 1 each way.
    struct Wish {
        int dx = 0, dz = 0;
        bool attack = false, jump = false, pickup = false;
    };
    // Of a player who wants to walk and does not get on.
    struct Walk {
        float x = 0;
        int stuck = 0;  // passes
    };

    [[nodiscard]] Wish think(const World& world, const PlayerActor& player, Walk& walk) const;

    std::array<Walk, kMostPlayers> walks_{};
};

}  // namespace port
