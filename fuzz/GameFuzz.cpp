#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>

#include "GameRun.hpp"
#include "RandomGame.hpp"
#include "StageLoading.hpp"

using namespace tindrel::fuzz;

namespace {

// How the game begins, and what is pressed in it.
struct Run {
    unsigned players = 0;  // bits of the places taken beside the first, and of who drives
    unsigned view = 0;
    std::size_t firstStage = 0;
    Dice settings{0, 0};
    std::span<const std::uint8_t> moves;  // three bytes each: what is held, by whom, for how long
};

class RandomPlayer final : public port::Pilot {
  public:
    explicit RandomPlayer(const Run& run) : run_(run) {}

    void configure(port::RuntimeConfig& config) const override {
        constexpr int kWidths[] = {320, 160, 480, 640};
        config.logicalWidth = kWidths[run_.view % std::size(kWidths)];
        config.enemyAI = run_.view % 16 != 15;
        config.cameraLockOnCombat = run_.view % 32 < 24;
        // Settings are the player's own, and may be as odd as the file that they stand in lets
        // them.
        Dice dice = run_.settings;
        for (const port::RuntimeSetting& setting : port::runtimeSettings()) {
            if (setting.section != "gameplay" && setting.section != "combat") continue;
            if (!dice.odd()) continue;
            const bool low = dice.once(2);
            const double value = low ? setting.lowest : setting.highest;
            if (const auto* number = std::get_if<int port::RuntimeConfig::*>(&setting.member)) {
                config.*(*number) = static_cast<int>(std::clamp<double>(value, INT_MIN, INT_MAX));
            }
            if (const auto* number = std::get_if<float port::RuntimeConfig::*>(&setting.member)) {
                constexpr double kMost = std::numeric_limits<float>::max();
                config.*(*number) = static_cast<float>(std::clamp(value, -kMost, kMost));
            }
        }
    }
    bool start(port::Game& game) override {
        for (std::size_t slot = 0; slot < game.world.slots.size(); ++slot) {
            game.world.slots[slot].joined = slot == 0 || (run_.players >> slot & 1U) != 0;
            game.world.slots[slot].selectIndex = static_cast<int>(slot);
        }
        if (run_.players % 16 == 9) game.drive = port::PlayerDrive::Nobody;
        if (run_.players % 16 == 1) game.drive = port::PlayerDrive::SelfCheck;
        game.skipsMenus = run_.players % 8 != 7;
        game.world.stage.index = run_.firstStage;
        port::beginGame(game);
        return true;
    }
    port::TickInput next(const port::Game& game) override {
        if (game.frontend.state != port::FrontendState::Playing) {
            chooseInMenu();
        } else if (wait_ == 0 || menuPasses_ > 0) {
            move(game.config);
        } else {
            --wait_;
        }
        return port::nextInput(game.input, held_);
    }
    // Who does not find the way out of the menus gives up.
    bool goesOn(const port::Game& game) override {
        constexpr int kPatience = 100;
        menuPasses_ = game.frontend.state == port::FrontendState::Playing ? 0 : menuPasses_ + 1;
        return menuPasses_ < kPatience;
    }
    int result(const port::Game&) override { return 0; }

  private:
    // From the first again when all are done.
    unsigned nextByte() { return run_.moves.empty() ? 0 : run_.moves[next_++ % run_.moves.size()]; }
    // Every other pass, mostly what leads back to play.
    void chooseInMenu() {
        const bool released = held_.keys.none();
        held_ = {};
        if (!released) return;
        constexpr int kKeys[] = {port::kKeyEnter,
                                 port::kKeyEnter,
                                 port::kKeyEnter,
                                 port::kKeyEnter,
                                 port::kKeyEscape,
                                 37,
                                 39,
                                 40};
        held_.keys.set(static_cast<std::size_t>(kKeys[nextByte() % std::size(kKeys)]));
    }
    void move(const port::RuntimeConfig& config) {
        const unsigned buttons = nextByte();
        const unsigned how = nextByte();
        wait_ = nextByte() % 40;
        if (how % 8 < 4) {
            const unsigned who = how % 4 == 3 ? how / 8 % port::kPadCount : 0;
            pad(held_.pads[who], buttons | (how / 8) << 8U);
            return;
        }
        const int keys[] = {config.keyLeft,   config.keyRight, config.keyUp,  config.keyDown,
                            config.keyAttack, config.keyJump,  config.keyRun, config.keyPickup};
        held_.keys.reset();
        for (std::size_t i = 0; i < std::size(keys); ++i) {
            const auto key = static_cast<std::size_t>(keys[i] & 255);
            if ((buttons >> i & 1U) != 0) held_.keys.set(key);
        }
        // The top of the second byte: any key at all, Escape and those for the volume among them.
        if (how >= 192) held_.keys.set(buttons);
    }
    static void pad(port::PadState& pad, unsigned buttons) {
        constexpr unsigned kAll[] = {port::kPadLeft,
                                     port::kPadRight,
                                     port::kPadUp,
                                     port::kPadDown,
                                     port::kPadA,
                                     port::kPadB,
                                     port::kPadX,
                                     port::kPadY,
                                     port::kPadRightShoulder,
                                     port::kPadBack,
                                     port::kPadLeftShoulder,
                                     port::kPadStart};
        pad = {};
        pad.connected = true;
        for (std::size_t i = 0; i < std::size(kAll); ++i) {
            if ((buttons >> i & 1U) != 0) pad.buttons |= static_cast<std::uint16_t>(kAll[i]);
        }
        if (buttons % 7 == 6) pad.thumbLX = -32768;
    }

    Run run_;
    port::HeldInput held_;
    std::size_t next_ = 0;
    unsigned wait_ = 0;
    int menuPasses_ = 0;
};

}  // namespace

// A game, how it begins, and what is pressed in it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const FuzzPorts ports;
    silence();
    Choices choices({data, size});
    const RandomGame game(choices);
    Run run;
    const int length = static_cast<int>(choices.next());
    run.players = choices.next();
    run.view = choices.next();
    run.firstStage = choices.next() % 8 == 7 ? 1 : 0;
    run.settings = choices.dice();
    run.moves = choices.rest();
    const bool globalScripts = run.view >= 192;
    // Up to 2,000; most are short, and many of them find more than a few long ones.
    playTwice(ports.root(globalScripts), 20 + length * length / 33,
              [&] { return std::make_unique<RandomPlayer>(run); });
    return 0;
}
