#include <algorithm>
#include <array>
#include <string>

#include "MenuInput.hpp"
#include "MenuScreens.hpp"
#include "MenuText.hpp"
#include "Settings.hpp"

namespace port {
namespace {

// Rows are keys, then pad buttons, then the pads of the players, then the way back.
struct ControlRow {
    const char* label;
    int RuntimeConfig::*value;
};

// Where the label holds a '*', the game's own name for its attack stands.
constexpr std::array<ControlRow, 11> kKeys = {{{"LEFT KEY: ", &RuntimeConfig::keyLeft},
                                               {"RIGHT KEY: ", &RuntimeConfig::keyRight},
                                               {"UP KEY: ", &RuntimeConfig::keyUp},
                                               {"DOWN KEY: ", &RuntimeConfig::keyDown},
                                               {"* KEY: ", &RuntimeConfig::keyAttack},
                                               {"JUMP KEY: ", &RuntimeConfig::keyJump},
                                               {"PICKUP KEY: ", &RuntimeConfig::keyPickup},
                                               {"DASH KEY: ", &RuntimeConfig::keyDash},
                                               {"GRAB KEY: ", &RuntimeConfig::keyGrab},
                                               {"THROW KEY: ", &RuntimeConfig::keyThrow},
                                               {"RUN KEY: ", &RuntimeConfig::keyRun}}};
constexpr std::array<ControlRow, 6> kButtons = {{{"PAD *: ", &RuntimeConfig::padAttack},
                                                 {"PAD JUMP: ", &RuntimeConfig::padJump},
                                                 {"PAD PICKUP: ", &RuntimeConfig::padPickup},
                                                 {"PAD DASH: ", &RuntimeConfig::padDash},
                                                 {"PAD GRAB: ", &RuntimeConfig::padGrab},
                                                 {"PAD THROW: ", &RuntimeConfig::padThrow}}};
constexpr std::array<ControlRow, 4> kPads = {{{"P1 GAMEPAD: ", &RuntimeConfig::player1Gamepad},
                                              {"P2 GAMEPAD: ", &RuntimeConfig::player2Gamepad},
                                              {"P3 GAMEPAD: ", &RuntimeConfig::player3Gamepad},
                                              {"P4 GAMEPAD: ", &RuntimeConfig::player4Gamepad}}};
constexpr int kFirstButton = static_cast<int>(kKeys.size());
constexpr int kFirstPad = kFirstButton + static_cast<int>(kButtons.size());
constexpr int kBackRow = kFirstPad + static_cast<int>(kPads.size());

const ControlRow& controlRow(int row) {
    if (row < kFirstButton) return kKeys[static_cast<std::size_t>(row)];
    if (row < kFirstPad) return kButtons[static_cast<std::size_t>(row - kFirstButton)];
    return kPads[static_cast<std::size_t>(row - kFirstPad)];
}

class ControlsScreen final : public Screen {
  public:
    explicit ControlsScreen(Game& game) : game_(game) {}

    FrontendState update(const TickInput& input) override {
        int& row = game_.frontend.controlsIndex;
        if (capturing_) {
            capture(input, row);
            return FrontendState::Controls;
        }
        const MenuInput menu = menuInput(input, game_.config);
        row = wrapped(row, menu.downward(), kBackRow + 1);
        if (menu.back) return FrontendState::MainMenu;
        if (row >= kFirstPad && row < kBackRow && menu.rightward() != 0) {
            int& pad = game_.config.*controlRow(row).value;
            pad = wrapped(pad, menu.rightward(), kPadCount);
            saveSettings(game_);
        }
        if (!menu.accept) return FrontendState::Controls;
        if (row == kBackRow) {
            saveSettings(game_);
            return FrontendState::MainMenu;
        }
        capturing_ = row < kFirstPad;
        delay_ = kCaptureDelay;
        return FrontendState::Controls;
    }

    void draw(DrawList& list) const override {
        const int chosen = game_.frontend.controlsIndex;
        addText(list, 18, 43, 13, "CONTROLS / REMAP", true);
        addRows(list, {.x = 18, .y = 62, .step = 15, .size = 8, .most = 10, .ahead = 5},
                kBackRow + 1, chosen, [this](int row) { return textOf(row); });
        const char* help = "ENTER remap | LEFT/RIGHT pad slot";
        if (capturing_) {
            help = chosen < kFirstButton ? "PRESS A NEW KEY..." : "PRESS A GAMEPAD BUTTON...";
        }
        addText(list, 14, 218, 7, help, capturing_);
    }

  private:
    // Passes in which the press that has chosen the row is let go.
    static constexpr int kCaptureDelay = 8;

    void capture(const TickInput& input, int row) {
        if (delay_ > 0) {
            --delay_;
            return;
        }
        const int pressed = row < kFirstButton ? pressedKey(input)
                                               : pressedButton(input, game_.config.player1Gamepad);
        if (pressed == 0) return;
        game_.config.*controlRow(row).value = pressed;
        capturing_ = false;
        saveSettings(game_);
    }

    [[nodiscard]] std::string textOf(int row) const {
        if (row == kBackRow) return "BACK";
        const ControlRow& control = controlRow(row);
        std::string text = control.label;
        if (const auto star = text.find('*'); star != text.npos) {
            const auto& labels = game_.frontend.legacyKeyLabels;
            const auto label = labels.find("attack1");
            text.replace(star, 1, label == labels.end() ? "ATTACK" : label->second);
        }
        const int value = game_.config.*control.value;
        return text + std::to_string(row < kFirstPad ? value : value + 1);
    }

    Game& game_;
    bool capturing_ = false;
    int delay_ = 0;
};

}  // namespace

std::unique_ptr<Screen> controlsScreen(Game& game) {
    return std::make_unique<ControlsScreen>(game);
}

}  // namespace port
