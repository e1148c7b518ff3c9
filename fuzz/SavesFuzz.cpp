// What a player keeps beside a game: a saved game, how often it was finished, the settings. They
// may be cut, edited or of another game; what is read is within its bounds, is written and read
// again as it is, and the game goes on from it, through its menus too.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <sstream>
#include <string>
#include <variant>

#include "FileBytes.hpp"
#include "FrontendScreens.hpp"
#include "GameRun.hpp"
#include "Progress.hpp"
#include "RandomGame.hpp"
#include "Require.hpp"
#include "SavedGame.hpp"

using namespace tindrel::fuzz;

namespace {

constexpr int kMostPasses = 60;

void checkSavedGame(const std::string& text) {
    std::istringstream in(text);
    const port::SavedGame save = port::readSavedGame(in);
    require(save.activePlayers >= 1 && save.activePlayers <= 4, "a game has 1 to 4 players");
    const int mask = save.joinedMask.value_or(1);
    require(mask >= 1 && mask <= 15, "there are four places");
    require(save.lives.value_or(0) >= 0 && save.credits.value_or(0) >= 0, "nobody owes a life");
    std::stringstream again;
    port::writeSavedGame(again, save);
    require(port::readSavedGame(again) == save, "a saved game is read as it was written");
}

std::string settingsText(const port::RuntimeConfig& config) {
    std::ostringstream out;
    std::string_view section;
    for (const port::RuntimeSetting& row : port::runtimeSettings()) {
        if (row.section == section) continue;
        section = row.section;
        port::writeRuntimeSection(out, config, section);
    }
    return out.str();
}

port::RuntimeConfig settingsOf(const std::string& text) {
    port::RuntimeConfig config;
    std::istringstream in(text);
    port::readRuntimeConfig(in, config);
    return config;
}

void checkSettings(const std::string& text) {
    const port::RuntimeConfig config = settingsOf(text);
    for (const port::RuntimeSetting& row : port::runtimeSettings()) {
        const auto within = [&row](double value, double slack) {
            return std::isfinite(value) && value >= row.lowest - slack &&
                   value <= row.highest + slack;
        };
        if (const auto* number = std::get_if<int port::RuntimeConfig::*>(&row.member)) {
            require(within(config.*(*number), 0), "a whole number keeps its bounds");
        }
        if (const auto* number = std::get_if<float port::RuntimeConfig::*>(&row.member)) {
            // Bounds such as 0.01 are no floats.
            require(within(config.*(*number), 1e-6), "a fraction keeps its bounds");
        }
    }
    // Fractions lose digits in the first file, and nothing from then on.
    const std::string written = settingsText(config);
    require(settingsText(settingsOf(written)) == written, "settings are read as they were written");
}

// Continues the saved game, or chooses in the menus where that does not begin. Presses a key in
// every other pass.
class Continuer final : public port::Pilot {
  public:
    explicit Continuer(std::span<const std::uint8_t> presses) : presses_(presses) {}

    bool start(port::Game& game) override {
        require(game.frontend.completionCount >= 0, "games are finished or not");
        game.ownProgress = game.keepsSettings = true;
        game.world.slots[0].joined = true;
        if (!port::loadProgress(game)) game.frontend.state = port::FrontendState::MainMenu;
        const port::Player1& player = game.world.player1;
        require(player.health >= 0 && player.health <= player.maxHealth, "health has its bounds");
        require(player.score >= 0 && player.weaponUses >= 0, "nobody owes points");
        return true;
    }
    port::TickInput next(const port::Game& game) override {
        constexpr int kKeys[] = {port::kKeyEnter,
                                 port::kKeyEnter,
                                 port::kKeyDown,
                                 port::kKeyUp,
                                 port::kKeyRight,
                                 port::kKeyLeft,
                                 'J',
                                 port::kKeyEscape,
                                 port::kKeyF2};
        const bool released = held_.keys.none();
        held_ = {};
        if (released && !presses_.empty()) {
            const unsigned press = presses_[next_++ % presses_.size()];
            const int key = press < 128 ? kKeys[press % std::size(kKeys)] : int(press);
            held_.keys.set(static_cast<std::size_t>(key));
        }
        return port::nextInput(game.input, held_);
    }
    bool goesOn(const port::Game&) override { return true; }
    int result(const port::Game&) override { return 0; }

  private:
    std::span<const std::uint8_t> presses_;
    std::size_t next_ = 0;
    port::HeldInput held_;
};

}  // namespace

// The texts of the three files, each up to a NUL byte; behind them sixteen bytes of what is pressed
// and the game, where there is one to go on with.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const FuzzPorts ports;
    silence();
    const std::uint8_t* const end = data + size;
    const auto text = [&data, end] {
        const std::uint8_t* const from = data;
        const std::uint8_t* const to = std::find(from, end, 0);
        data = to == end ? end : to + 1;
        return std::string(from, to);
    };
    const std::string save = text();
    const std::string unlocks = text();
    const std::string settings = text();
    checkSavedGame(save);
    checkSettings(settings);
    if (data == end) return 0;
    constexpr std::ptrdiff_t kPresses = 16;
    const std::span presses(data, static_cast<std::size_t>(std::min(kPresses, end - data)));
    Choices choices({data + presses.size(), end});
    const RandomGame game(choices);
    const auto root = ports.root(false);
    playTwice(root, kMostPasses, [&] {
        std::filesystem::create_directories(root / "saves");
        std::filesystem::create_directories(root / "config");
        const bool written = port::replaceFile(root / "saves" / "slot1.sav", save) &&
                             port::replaceFile(root / "saves" / "unlocks.ini", unlocks) &&
                             port::replaceFile(root / "config" / "graphics.ini", settings);
        require(written, "the files of a player can be written");
        return std::make_unique<Continuer>(presses);
    });
    return 0;
}
