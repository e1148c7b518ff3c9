#pragma once

// An engine on the trial game, with devices that a test plays.

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Engine.hpp"
#include "PlayScreen.hpp"
#include "StageLoading.hpp"
#include "TempFolder.hpp"

namespace port {

struct EngineTrial : testing::Test {
    tindrel::test::TempFolder folder;
    std::uint64_t now = 0;
    std::vector<int> sleeps;
    std::set<int> keysDown;
    std::map<int, PadState> pads;
    int padPolls = 0;
    const bool windowed;
    bool windowOpens = true;
    int passesUntilClosed = 1000;
    std::function<void()> beforePass;
    int framesShown = 0;

    Engine engine{devices()};
    Game& game = engine.game();
    World& world = game.world;
    std::string log;
    std::string warnings;

    explicit EngineTrial(bool withWindow = false) : windowed(withWindow) {
        folder.write("config/graphics.ini", "");
        std::filesystem::copy(std::filesystem::path(TRIAL_PORT) / "assets",
                              folder.path() / "assets", std::filesystem::copy_options::recursive);
    }

    platform::Devices devices() {
        platform::Devices all;
        all.clock = {[this] { return now; }, [this](int ms) { sleeps.push_back(ms); }};
        all.input = {[this](int key) { return keysDown.contains(key); },
                     [this](int pad) {
                         ++padPolls;
                         return pads[pad];
                     }};
        all.presentation = {!windowed, [this](const RuntimeConfig&) { return windowOpens; },
                            [this] { return windowed ? "trial-window" : "headless-preview"; },
                            [this] {
                                if (beforePass) beforePass();
                                return passesUntilClosed-- > 0;
                            },
                            [this](const SpriteImage&, const RuntimeConfig&) { ++framesShown; }};
        return all;
    }

    template <class Call>
    auto captured(Call call) {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const auto result = call();
        log = testing::internal::GetCapturedStdout();
        warnings = testing::internal::GetCapturedStderr();
        return result;
    }

    bool initialize() {
        return captured([&] { return engine.initialize(folder.path()); });
    }
    int run() {
        return captured([&] { return engine.run(); });
    }
    int smoke(int frames) {
        return captured([&] { return engine.runSmokeGame(frames); });
    }
    // Runs what prints, for its text.
    template <class Call>
    void quietly(Call call) {
        captured([&] {
            call();
            return 0;
        });
    }
    // Gameplay ticks, without the rest of the loop.
    void ticks(int count) {
        quietly([&] {
            for (int i = 0; i < count; ++i) {
                game.scripts.beginPass();
                playPass(game);
            }
        });
    }
    // Takes all keys from the players, who would walk where nobody drives them.
    void standStill() {
        for (PlayerSlot& slot : world.slots) slot.disabledKeys = ~0U;
    }
    void begin(std::size_t stage) {
        world.stage.index = stage;
        quietly([&] { beginGame(game); });
    }
    [[nodiscard]] bool logged(std::string_view line) const {
        return ("\n" + log).find("\n" + std::string(line) + "\n") != std::string::npos;
    }
    std::string global(const std::string& name) {
        const auto found = game.scripts.machine().globals().find(name);
        if (found == game.scripts.machine().globals().end()) return "";
        const auto* text = std::get_if<ScriptText>(&found->second);
        const auto* number = std::get_if<double>(&found->second);
        return text ? text->str() : number ? std::to_string(static_cast<int>(*number)) : "?";
    }
};

// The same with somebody at the window.
struct WindowTrial : EngineTrial {
    WindowTrial() : EngineTrial(true) {}
};

}  // namespace port
