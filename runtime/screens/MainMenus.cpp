// The menus around a game: the first one, the choice of a campaign, the pause, the end.

#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "Campaigns.hpp"
#include "MenuInput.hpp"
#include "MenuScreens.hpp"
#include "MenuText.hpp"
#include "Progress.hpp"
#include "StageLoading.hpp"

namespace port {
namespace {

// A menu of rows of which one is chosen and accepted.
class RowMenu : public Screen {
  public:
    RowMenu(Game& game, int Frontend::*chosen, const RowLayout& layout,
            std::span<const char* const> rows)
        : game_(game), chosen_(chosen), layout_(layout), rows_(rows) {}

    FrontendState update(const TickInput& input) override {
        const MenuInput menu = menuInput(input, game_.config);
        int& row = game_.frontend.*chosen_;
        row = wrapped(row, menu.downward(), count());
        if (menu.back && backContinues()) return FrontendState::Playing;
        if (menu.accept) accept(row);
        return game_.frontend.state;
    }
    void draw(DrawList& list) const override {
        addRows(list, layout_, count(), game_.frontend.*chosen_,
                [this](int row) { return rows_[static_cast<std::size_t>(row)]; });
    }

  protected:
    [[nodiscard]] Game& game() { return game_; }

  private:
    virtual void accept(int row) = 0;
    [[nodiscard]] virtual bool backContinues() const { return false; }
    [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }

    Game& game_;
    int Frontend::*chosen_;
    RowLayout layout_;
    std::span<const char* const> rows_;
};

class MainMenu final : public RowMenu {
  public:
    explicit MainMenu(Game& game) : RowMenu(game, &Frontend::menuIndex, {28, 62, 29, 13}, kRows) {}

    void draw(DrawList& list) const override {
        RowMenu::draw(list);
        addText(list, 18, 216, 8, "ENTER/J select  UP/DOWN navigate");
    }

  private:
    enum Row { kNewGame, kContinue, kOptions, kControls, kQuit };
    static constexpr std::array<const char*, 5> kRows = {"NEW GAME", "CONTINUE", "OPTIONS",
                                                         "CONTROLS", "QUIT"};

    void accept(int row) override {
        Frontend& frontend = game().frontend;
        switch (row) {
            case kNewGame:
                frontend.campaignIndex = 0;
                if (frontend.campaigns.size() > 1) {
                    frontend.state = FrontendState::LevelSetSelect;
                } else {
                    startCampaign(game(), 0);
                }
                break;
            case kContinue:
                if (loadProgress(game())) frontend.state = FrontendState::Playing;
                break;
            case kOptions:
                frontend.optionsFromPause = false;
                frontend.state = FrontendState::Options;
                break;
            case kControls:
                frontend.state = FrontendState::Controls;
                break;
            case kQuit:
                frontend.state = FrontendState::Quit;
                break;
            default:
                break;
        }
    }
};

class LevelSetSelect final : public Screen {
  public:
    explicit LevelSetSelect(Game& game) : game_(game) {}

    FrontendState update(const TickInput& input) override {
        Frontend& frontend = game_.frontend;
        if (frontend.campaigns.empty()) return FrontendState::MainMenu;
        const MenuInput menu = menuInput(input, game_.config);
        frontend.campaignIndex = wrapped(frontend.campaignIndex, menu.downward(),
                                         static_cast<int>(frontend.campaigns.size()));
        if (menu.back) return FrontendState::MainMenu;
        if (menu.accept) startCampaign(game_, frontend.campaignIndex);
        return frontend.state;
    }
    void draw(DrawList& list) const override {
        const Frontend& frontend = game_.frontend;
        addText(list, 20, 42, 14, "SELECT GAME", true);
        addRows(list, {.x = 28, .y = 68, .step = 20, .size = 10, .most = 8, .ahead = 4},
                static_cast<int>(frontend.campaigns.size()), frontend.campaignIndex,
                [&](int row) { return nameOf(static_cast<std::size_t>(row)); });
        const auto chosen = static_cast<std::size_t>(frontend.campaignIndex);
        if (campaignLocked(frontend, chosen)) {
            addText(list, 20, 204, 7,
                    "Finish the game " + std::to_string(frontend.campaigns[chosen].requirement) +
                        " time(s) to unlock");
        }
        addText(list, 20, 220, 7, "ENTER select   ESC back");
    }

  private:
    [[nodiscard]] std::string nameOf(std::size_t index) const {
        const Campaign& campaign = game_.frontend.campaigns[index];
        if (!campaignLocked(game_.frontend, index)) return campaign.name;
        return campaign.name + "  [LOCKED " + std::to_string(campaign.requirement) + "]";
    }

    Game& game_;
};

class PauseMenu final : public RowMenu {
  public:
    explicit PauseMenu(Game& game)
        : RowMenu(game, &Frontend::pauseIndex, {30, 78, 25, 11}, kRows) {}

    void draw(DrawList& list) const override {
        addText(list, 24, 49, 15, "PAUSED", true);
        RowMenu::draw(list);
    }

  private:
    enum Row { kContinue, kOptions, kRestart, kMainMenu, kQuit };
    static constexpr std::array<const char*, 5> kRows = {"CONTINUE", "OPTIONS", "RESTART STAGE",
                                                         "MAIN MENU", "QUIT"};

    [[nodiscard]] bool backContinues() const override { return true; }
    void accept(int row) override {
        Frontend& frontend = game().frontend;
        switch (row) {
            case kContinue:
                frontend.state = FrontendState::Playing;
                break;
            case kOptions:
                frontend.optionsFromPause = true;
                frontend.state = FrontendState::Options;
                break;
            case kRestart:
                beginGame(game());
                break;
            case kMainMenu:
                enterMainMenu(game());
                break;
            case kQuit:
                frontend.state = FrontendState::Quit;
                break;
            default:
                break;
        }
    }
};

class GameOverScreen final : public Screen {
  public:
    explicit GameOverScreen(Game& game) : game_(game) {}

    // Back counts where both are pressed, also after a game that was loaded.
    FrontendState update(const TickInput& input) override {
        const MenuInput menu = menuInput(input, game_.config);
        FrontendState next = FrontendState::GameOver;
        if (menu.accept) {
            next = loadProgress(game_) ? FrontendState::Playing : FrontendState::MainMenu;
        }
        return menu.back ? FrontendState::MainMenu : next;
    }
    void draw(DrawList& list) const override {
        addText(list, 78, 92, 24, "GAME OVER", true);
        addText(list, 35, 138, 9, "ENTER CONTINUE   ESC MAIN MENU");
    }

  private:
    Game& game_;
};

}  // namespace

std::unique_ptr<Screen> mainMenu(Game& game) {
    return std::make_unique<MainMenu>(game);
}

std::unique_ptr<Screen> levelSetSelect(Game& game) {
    return std::make_unique<LevelSetSelect>(game);
}

std::unique_ptr<Screen> pauseMenu(Game& game) {
    return std::make_unique<PauseMenu>(game);
}

std::unique_ptr<Screen> gameOverScreen(Game& game) {
    return std::make_unique<GameOverScreen>(game);
}

}  // namespace port
