#include "Campaigns.hpp"

#include <algorithm>

#include "Players.hpp"
#include "Settings.hpp"
#include "StageLoading.hpp"
#include "TextFields.hpp"

namespace port {

std::vector<Campaign> campaignsOfTables() {
    std::vector<Campaign> campaigns;
    for (std::size_t i = 0; i < generated::kStageCount; ++i) {
        const generated::Stage& stage = generated::kStages[i];
        const std::string_view set = stage.setName;
        const std::string name(set.empty() ? "NEW GAME" : set);
        const bool known = std::ranges::any_of(
            campaigns, [&](const Campaign& other) { return equalsFolded(other.name, name); });
        if (!known) campaigns.push_back({i, name, std::max(0, stage.ifComplete)});
    }
    return campaigns;
}

bool campaignLocked(const Frontend& frontend, std::size_t index) {
    return index < frontend.campaigns.size() &&
           frontend.completionCount < frontend.campaigns[index].requirement;
}

void startCampaign(Game& game, int index) {
    Frontend& frontend = game.frontend;
    if (generated::kStageCount == 0 || frontend.campaigns.empty()) return;
    const int last = static_cast<int>(frontend.campaigns.size()) - 1;
    const auto chosen = static_cast<std::size_t>(std::clamp(index, 0, last));
    if (campaignLocked(frontend, chosen)) {
        frontend.state = FrontendState::LevelSetSelect;
        return;
    }
    World& world = game.world;
    world.stage.index = frontend.campaigns[chosen].firstStage;
    expectMusic(game, world.stage.index);
    for (std::size_t slot = 0; slot < world.slots.size(); ++slot) {
        world.slots[slot].selectIndex = 0;
        world.slots[slot].joined = slot == 0;
    }
    const auto models = selectableModels();
    if (generated::kStages[world.stage.index].skipSelect == 0 || models.empty()) {
        frontend.state = FrontendState::CharacterSelect;
        return;
    }
    world.player1.model = models.front();
    game.config.activePlayers = 1;
    saveSettings(game);
    beginGame(game);
}

}  // namespace port
