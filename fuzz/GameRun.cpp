#include "GameRun.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>

#include "Engine.hpp"
#include "Log.hpp"
#include "Require.hpp"
#include "WorldHash.hpp"

namespace tindrel::fuzz {
namespace {

// Actors and projectiles times passes. A crowd of a thousand would take a minute.
constexpr std::size_t kMostWork = 40'000;
constexpr std::size_t kStageWork = 500;  // of loading one
// What all scripts of a pass may take: some of those below want more.
constexpr std::int64_t kPassSteps = 2'000;
// A low picture costs little; its width is a matter of the game.
constexpr int kLogicalHeight = 8;

struct Script {
    const char* path;
    const char* text;
};
constexpr Script kScripts[] = {
    {"scripts/ok.c",
     "void main() { void me = getlocalvar(\"self\"); setlocalvar(\"seen\", me); "
     "if (me) { setglobalvar(\"last\", me); } }"},
    {"scripts/count.c",
     "void main() { int n = getglobalvar(\"n\"); setglobalvar(\"n\", n + 1); "
     "setlocalvar(\"list\", array(2)); }"},
    {"scripts/bad.c", "void main() { int x = ; }"},
    {"scripts/rand.c", "void main() { setglobalvar(\"r\", rand() % 7); nosuchfunction(1); }"},
    {"scripts/loop.c", "void main() { int i; for (i = 0; i < 99; i = i + 1) { i = i; } }"},
};
constexpr Script kGlobalScripts[] = {
    {"scripts/update.c", "void main() { setglobalvar(\"u\", rand()); }"},
    {"scripts/updated.c", "void main() { setlocalvar(\"v\", getglobalvar(\"u\")); }"},
};

// Two by two pixels, for every picture that a game here names.
constexpr std::string_view kPicture(
    "BM\x46\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\2\0\0\0\2\0\0\0\1\0\x18\0\0\0\0\0\x10\0\0\0"
    "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\1\2\3\4\5\6\0\0\7\1\2\3\4\5\0\0",
    70);

// Lets another pilot play, for a while and on a small picture.
class ShortFlight final : public port::Pilot {
  public:
    ShortFlight(std::unique_ptr<port::Pilot> pilot, int mostPasses)
        : pilot_(std::move(pilot)), passesLeft_(mostPasses) {}

    void configure(port::RuntimeConfig& config) const override {
        pilot_->configure(config);
        config.logicalWidth = std::min(config.logicalWidth, 640);
        config.logicalHeight = kLogicalHeight;
        config.autoPreviewMusic = false;
    }
    bool start(port::Game& game) override {
        game.scripts.setPassSteps(kPassSteps);
        return pilot_->start(game);
    }
    port::TickInput next(const port::Game& game) override { return pilot_->next(game); }
    bool goesOn(const port::Game& game) override {
        work_ += 8 + game.world.entities.size() + game.world.projectiles.size();
        if (game.world.stage.row != std::exchange(stage_, game.world.stage.row))
            work_ += kStageWork;
        return pilot_->goesOn(game) && --passesLeft_ > 0 && work_ < kMostWork;
    }
    int result(const port::Game& game) override { return pilot_->result(game); }

  private:
    std::unique_ptr<port::Pilot> pilot_;
    int passesLeft_;
    std::size_t work_ = 0;
    const generated::Stage* stage_ = nullptr;
};

port::platform::Devices nullDevices() {
    port::platform::Devices none;
    none.clock = {[] { return std::uint64_t{0}; }, [](int) {}};
    none.input = {[](int) { return false; }, [](int) { return port::PadState{}; }};
    none.presentation = {true, [](const port::RuntimeConfig&) { return true; },
                         [] { return "none"; }, [] { return true; },
                         [](const port::SpriteImage&, const port::RuntimeConfig&) {}};
    none.audio = {};
    return none;
}

port::RunState stateOf(port::Engine& engine) {
    const port::Game& game = engine.game();
    return {game.world, game.scripts.machine(), static_cast<int>(game.frontend.state)};
}

}  // namespace

FuzzPorts::FuzzPorts() {
    for (const bool global : {false, true}) {
        const std::string data = std::string(global ? "b" : "a") + "/assets/openbor-data/";
        for (const Script& script : kScripts) folder_.write(data + script.path, script.text);
        folder_.write(data + "bgs/tile.bmp", kPicture);
        if (!global) continue;
        for (const Script& script : kGlobalScripts) folder_.write(data + script.path, script.text);
    }
    // Where a folder cannot be made, no log grows from input to input.
    folder_.write("a/logs", "");
    folder_.write("b/logs", "");
}

std::filesystem::path FuzzPorts::root(bool globalScripts) const {
    return folder_.path() / (globalScripts ? "b" : "a");
}

void FuzzPorts::writeScript(bool globalScripts, const std::string& path,
                            std::string_view text) const {
    folder_.write((globalScripts ? "b/assets/openbor-data/" : "a/assets/openbor-data/") + path,
                  text);
}

void playTwice(const std::filesystem::path& root, int mostPasses,
               const std::function<std::unique_ptr<port::Pilot>()>& pilot) {
    const auto play = [&] {
        auto engine = std::make_unique<port::Engine>(nullDevices());
        engine->setPilot(std::make_unique<ShortFlight>(pilot(), mostPasses));
        if (engine->initialize(root)) engine->run();
        const port::World& world = engine->game().world;
        port::logLine("FUZZ tick=", world.tick, " entities=", world.entities.size(),
                      " came=", world.entities.nextHandle(),
                      " projectiles=", world.projectiles.size(),
                      " screen=", static_cast<int>(engine->game().frontend.state));
        return engine;
    };
    const auto first = play();
    const auto second = play();
    if (port::worldHash(stateOf(*first)) == port::worldHash(stateOf(*second))) return;
    const std::string where = port::firstDifference(stateOf(*first), stateOf(*second));
    std::fprintf(stderr, "%s\n", where.c_str());
    require(false, "a game played again on the same input comes to the same world");
}

void silence() {
    if (std::getenv("TINDREL_FUZZ_LOG")) return;
    std::cout.setstate(std::ios::badbit);
    std::cerr.setstate(std::ios::badbit);
}

}  // namespace tindrel::fuzz
