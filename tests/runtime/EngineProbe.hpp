#pragma once

// The tests' view of the world inside an engine.

#include "Engine.hpp"

namespace port {

struct EngineProbe {
    Engine& engine;

    RuntimeConfig& config() { return engine.config_; }
    AudioSystem& audio() { return engine.audio_; }
    ScriptVM& scripts() { return engine.scriptVm_; }
    ScriptContext& playerContext() { return engine.playerScriptCtx_; }
    FrontendState& state() { return engine.frontendState_; }
    const generated::Character* playerModel() { return engine.playerModel_; }
    AnimationPlayer& player() { return engine.player_; }
    int playerHealth() { return engine.playerHealth_; }
    std::uint64_t tick() { return engine.tickCounter_; }
    const generated::Stage* stage() { return engine.stage_; }
    int hudBarWidth() { return engine.hudBarWidth_; }
    int hudBarHeight() { return engine.hudBarHeight_; }
    const std::vector<std::size_t>& campaignFirstStages() { return engine.campaignFirstStages_; }
    const std::vector<std::string>& campaignNames() { return engine.campaignNames_; }
    const std::vector<int>& campaignRequirements() { return engine.campaignRequirements_; }
    const std::array<bool, 4>& joinedPlayers() { return engine.joinedPlayers_; }
};

}  // namespace port
