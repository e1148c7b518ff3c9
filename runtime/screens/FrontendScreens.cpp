#include "FrontendScreens.hpp"

#include <algorithm>
#include <fstream>
#include <span>
#include <string_view>
#include <utility>

#include "AssetPaths.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

// A picture behind a menu. Where nobody is there to choose, play goes on.
class MenuScreen final : public Screen {
  public:
    MenuScreen(FrontendState state, SpritePtr background, bool skipped)
        : state_(state), background_(std::move(background)), skipped_(skipped) {}

    FrontendState update(const TickInput&) override {
        return skipped_ ? FrontendState::Playing : state_;
    }
    void draw(DrawList& list) const override {
        if (background_) list.addBackdrop(DrawImage{background_});
    }

  private:
    FrontendState state_;
    SpritePtr background_;
    bool skipped_;
};

SpritePtr loadBackground(const Game& game, std::string_view name) {
    SpriteImage image;
    if (!game.renderer.loadSprite(resolveSpriteAsset(game.dataRoot, name), image)) return nullptr;
    return std::make_shared<const SpriteImage>(std::move(image));
}

void loadLegacyMenuConfig(Game& game) {
    std::ifstream in(game.dataRoot / "menu.txt");
    for (std::string line; std::getline(in, line);) {
        std::string_view rest = line;
        rest = rest.substr(0, rest.find('#'));
        const std::string command = foldAscii(takeWord(rest));
        const std::string key = foldAscii(takeWord(rest));
        if (key.empty()) continue;
        if (command == "renamekey") game.frontend.legacyKeyLabels[key] = trimmed(rest);
        if (command == "disablekey") game.frontend.legacyDisabledKeys.insert(key);
    }
}

void loadUnlockProgress(Game& game) {
    std::ifstream in(game.root / "saves" / "unlocks.ini");
    eachKeyValue(in, [&game](std::string_view key, std::string_view text) {
        const auto value = leadingInt(text);
        if (!value) return;
        if (equalsFolded(key, "completion_count") || equalsFolded(key, "completions")) {
            game.frontend.completionCount = std::max(0, *value);
        }
    });
}

void buildCampaigns(std::vector<Campaign>& campaigns) {
    for (std::size_t i = 0; i < generated::kStageCount; ++i) {
        const generated::Stage& stage = generated::kStages[i];
        const std::string_view set = stage.setName;
        const std::string name(set.empty() ? "NEW GAME" : set);
        const bool known = std::ranges::any_of(
            campaigns, [&](const Campaign& other) { return equalsFolded(other.name, name); });
        if (!known) campaigns.push_back({i, name, std::max(0, stage.ifComplete)});
    }
}

}  // namespace

std::unique_ptr<Screen> screenOf(FrontendState state, const Game& game) {
    const Frontend& frontend = game.frontend;
    const bool selecting = state == FrontendState::CharacterSelect && frontend.selectBackground;
    return std::make_unique<MenuScreen>(
        state, selecting ? frontend.selectBackground : frontend.titleBackground, game.skipsMenus);
}

void loadFrontend(Game& game) {
    game.frontend = {};
    game.frontend.titleBackground = loadBackground(game, "bgs/title");
    game.frontend.selectBackground = loadBackground(game, "bgs/select");
    loadLegacyMenuConfig(game);
    loadUnlockProgress(game);
    buildCampaigns(game.frontend.campaigns);
}

}  // namespace port
