#pragma once

#include <cstddef>

#include "Game.hpp"

namespace port {

// The sets of stages in the order of their first stages.
[[nodiscard]] std::vector<Campaign> campaignsOfTables();

// Whether it opens only after more games have been finished. False for one that is not there.
[[nodiscard]] bool campaignLocked(const Frontend& frontend, std::size_t index);

// Goes on to the choice of characters, or straight to the first stage where that wants none. A
// locked campaign stays in its list.
void startCampaign(Game& game, int index);

}  // namespace port
