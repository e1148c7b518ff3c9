#pragma once

// The whole game of a port: owns the world and everything that shows and sounds it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "../generated/GeneratedCharacters.hpp"
#include "../generated/GeneratedStages.hpp"
#include "../src/platform/Clock.hpp"
#include "AnimationPlayer.hpp"
#include "AudioSystem.hpp"
#include "Renderer.hpp"
#include "RuntimeConfig.hpp"
#include "ScriptVM.hpp"

namespace port {

enum class FrontendState {
    MainMenu,
    LevelSetSelect,
    CharacterSelect,
    Loading,
    Options,
    GraphicsOptions,
    Controls,
    Playing,
    Paused,
    GameOver,
    Quit
};

class Engine final : public ScriptHost {
  public:
    explicit Engine(platform::Clock clock = platform::systemClock());
    // Scripts and contexts hold the engine's address.
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    // Reads settings and tables and brings up the services. False when there is nothing to draw on;
    // missing sound only warns.
    [[nodiscard]] bool initialize(const std::filesystem::path& portRoot);

    // The loop, one tick and one drawn frame a pass. 0, or 70 when a window closed within three
    // passes. Without a window it ends by itself after 900 passes.
    int run();

    // Plays by itself for 60 to 3600 frames. 0, or 72 when a game could not start.
    int runSmokeGame(int frames = 600);

    ScriptValue callScriptFunction(const std::string& name, const std::vector<ScriptValue>& args,
                                   ScriptContext& context,
                                   std::vector<std::string>& unsupported) override;

  private:
    friend struct EngineProbe;  // the tests' view of the world

    // Start, in order.
    void readLifeBarSize();
    void readLogicalSize();
    void attachScripts();
    void logServices() const;
    void buildCampaigns();
    void choosePlayerModel();
    void enterFirstState();

    // One pass of the loop, in order.
    void updateFrontend();
    void gameplayTick();
    void pace() const;
    [[nodiscard]] bool headlessRunIsOver(int passes) const;
    void saveSettings();

    platform::Clock clock_;
    RuntimeConfig config_;
    Renderer renderer_;
    AudioSystem audio_;
    ScriptVM scriptVm_;
    std::filesystem::path root_;

    const generated::Character* playerModel_ = nullptr;
    AnimationPlayer player_;
    float playerWorldX_ = 80;
    int playerHealth_ = 100;
    int playerMaxHealth_ = 100;
    ScriptContext playerScriptCtx_;

    std::uint64_t tickCounter_ = 0;
    const generated::Stage* stage_ = nullptr;
    float cameraX_ = 0;
    float cameraMaxX_ = 0;
    int hudBarWidth_ = 70;
    int hudBarHeight_ = 7;

    FrontendState frontendState_ = FrontendState::MainMenu;
    std::vector<std::size_t> campaignFirstStages_;
    std::vector<std::string> campaignNames_;
    std::vector<int> campaignRequirements_;
    std::array<bool, 4> joinedPlayers_ = {true, false, false, false};
};

}  // namespace port
