// All that scripts may call, from random scripts on the living world of a random game. Nothing may
// be written outside the folder for saves, and a game must come to the same world again.

#include <cstddef>
#include <cstdint>
#include <set>

#include "GameRun.hpp"
#include "RandomGame.hpp"
#include "RandomScript.hpp"
#include "Require.hpp"
#include "StageLoading.hpp"

using namespace tindrel::fuzz;

namespace {

constexpr int kPasses = 40;
// Enough for what scripts do in earnest; a spawn alone takes a thousand.
constexpr std::int64_t kHostPassSteps = 60'000;

class Walker final : public port::Pilot {
  public:
    bool start(port::Game& game) override {
        game.scripts.setPassSteps(kHostPassSteps);
        for (port::PlayerSlot& slot : game.world.slots) slot.joined = true;
        game.skipsMenus = true;
        port::beginGame(game);
        return true;
    }
    port::TickInput next(const port::Game& game) override {
        port::HeldInput held;
        const int keys[] = {game.config.keyRight, game.config.keyAttack, game.config.keyJump};
        const auto key = static_cast<std::size_t>(keys[game.world.tick / 7 % 3]);
        if (key < held.keys.size()) held.keys.set(key);
        return port::nextInput(game.input, held);
    }
    bool goesOn(const port::Game& game) override {
        return game.frontend.state == port::FrontendState::Playing;
    }
    int result(const port::Game&) override { return 0; }
};

// The files of a port without its saves.
std::set<std::filesystem::path> filesOf(const std::filesystem::path& root) {
    std::set<std::filesystem::path> files;
    std::filesystem::recursive_directory_iterator walk(root.parent_path());
    for (auto entry = begin(walk); entry != end(walk); ++entry) {
        if (entry->path().filename() == "saves") {
            entry.disable_recursion_pending();
        } else {
            files.insert(entry->path());
        }
    }
    return files;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const FuzzPorts ports;
    Choices choices({data, size});
    Dice dice = choices.dice();
    const bool global = choices.next() % 2 != 0;
    for (const char* script : {"scripts/ok.c", "scripts/count.c", "scripts/loop.c"}) {
        const int calls = static_cast<int>(choices.next() % 32);
        ports.writeScript(global, script, randomScript(dice, calls));
    }
    const RandomGame game(choices);
    silence();
    const auto before = filesOf(ports.root(global));
    const auto saves = ports.root(global) / "saves";
    playTwice(ports.root(global), kPasses, [&] {
        std::filesystem::remove_all(saves);
        return std::make_unique<Walker>();
    });
    require(filesOf(ports.root(global)) == before, "scripts write nowhere but to their saves");
    return 0;
}
