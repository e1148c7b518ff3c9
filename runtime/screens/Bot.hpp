#pragma once

// A small player for all joined places: goes to the nearest enemy and hits it, tries it another way
// when blows do not tell, takes up weapons that it passes, goes round or jumps over what is in its
// way, and walks on when nobody is left. It sees the world as it is and answers with what a person
// would hold.

#include <array>
#include <cstdint>

#include "RuntimeConfig.hpp"
#include "TickInput.hpp"
#include "Wayfinding.hpp"
#include "World.hpp"

namespace port {

class Bot {
  public:
    // What is held in the next pass. To be asked once a pass.
    [[nodiscard]] HeldInput play(const World& world, const RuntimeConfig& config);

  private:
    struct Wish {
        Heading way;
        bool attack = false, jump = false, pickup = false;
    };
    // What a player remembers from pass to pass.
    struct Mind {
        ActorHandle target = kNobody;
        int targetHealth = 0;
        float nearest = 0;  // it came to the target since then
        int patience = 0;   // passes since the target was chosen or hurt, or came nearer
        // Not worth another try until then.
        ActorHandle outOfReach = kNobody;
        std::uint64_t outOfReachUntil = 0;  // tick
        ActorHandle leftLying = kNobody;    // an item that cannot be taken up
        int detour = 0;                     // passes on the way to an item
        float x = 0, z = 0;
        int stuck = 0;  // passes of wanting to walk and not getting on
    };

    [[nodiscard]] static Wish think(const World& world, const RuntimeConfig& config,
                                    const PlayerActor& player, Mind& mind);
    [[nodiscard]] static const RuntimeEntity* watchTarget(const World& world,
                                                          const PlayerActor& player, Mind& mind);
    // The way to an item, none while a foe is near.
    [[nodiscard]] static Heading errand(const World& world, const PlayerActor& player,
                                        const RuntimeEntity& item, const RuntimeEntity* target,
                                        Mind& mind);
    [[nodiscard]] static Wish approach(const World& world, const RuntimeConfig& config,
                                       const PlayerActor& player, const RuntimeEntity& target,
                                       const Mind& mind);
    static void getUnstuck(const World& world, const PlayerActor& player, Wish& wish, Mind& mind);

    std::array<Mind, kMostPlayers> minds_{};
};

}  // namespace port
