#include "FrontendScreens.hpp"

#include <sstream>
#include <string_view>
#include <utility>

#include "AssetPaths.hpp"
#include "Campaigns.hpp"
#include "FileBytes.hpp"
#include "MenuScreens.hpp"
#include "MenuText.hpp"
#include "Progress.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

// Stands for every menu where nobody is there to choose: play goes on.
class SkippedMenu final : public Screen {
  public:
    FrontendState update(const TickInput&) override { return FrontendState::Playing; }
    void draw(DrawList&) const override {}
};

SpritePtr loadBackground(const Game& game, std::string_view name) {
    SpriteImage image;
    if (!game.renderer.loadSprite(resolveSpriteAsset(game.dataRoot, name), image)) return nullptr;
    return std::make_shared<const SpriteImage>(std::move(image));
}

void loadLegacyMenuConfig(Game& game) {
    const auto file = runtimeCasePath(game.dataRoot / "menu.txt");
    std::istringstream in(readSmallText(file).value_or(""));
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

}  // namespace

std::unique_ptr<Screen> screenOf(FrontendState state, Game& game) {
    if (game.skipsMenus) return std::make_unique<SkippedMenu>();
    switch (state) {
        case FrontendState::LevelSetSelect:
            return levelSetSelect(game);
        case FrontendState::CharacterSelect:
            return characterSelect(game);
        case FrontendState::Options:
            return optionsScreen(game);
        case FrontendState::GraphicsOptions:
            return graphicsOptionsScreen(game);
        case FrontendState::Controls:
            return controlsScreen(game);
        case FrontendState::Paused:
            return pauseMenu(game);
        case FrontendState::GameOver:
            return gameOverScreen(game);
        default:
            return mainMenu(game);
    }
}

bool liesOverStage(const Frontend& frontend) {
    const bool options = frontend.state == FrontendState::Options ||
                         frontend.state == FrontendState::GraphicsOptions;
    return frontend.state == FrontendState::Paused || (options && frontend.optionsFromPause);
}

void addMenuBackground(DrawList& list, const Frontend& frontend) {
    if (liesOverStage(frontend)) {
        list.addBackdrop(DrawRectangle{8, 22, 304, 210, 0x121218});
        return;
    }
    const bool selecting = frontend.state == FrontendState::CharacterSelect;
    const SpritePtr& image = selecting && frontend.selectBackground ? frontend.selectBackground
                                                                    : frontend.titleBackground;
    if (image) {
        list.addBackdrop(DrawImage{image});
        return;
    }
    addText(list, 10, 6, 15, "TINDREL PORT", true);
    addText(list, 11, 25, 8, "Tindrel Builder");
}

void loadFrontend(Game& game) {
    game.frontend = {};
    game.frontend.titleBackground = loadBackground(game, "bgs/title");
    game.frontend.selectBackground = loadBackground(game, "bgs/select");
    loadLegacyMenuConfig(game);
    loadUnlockProgress(game);
    game.frontend.campaigns = campaignsOfTables();
}

}  // namespace port
