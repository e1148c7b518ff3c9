#include "Settings.hpp"

#include "Log.hpp"

namespace port {

void saveSettings(Game& game) {
    RuntimeConfig& config = game.config;
    config.masterVolume = game.audio.masterVolume();
    config.musicVolume = game.audio.musicVolume();
    config.effectsVolume = game.audio.effectsVolume();
    game.renderer.setConfig(config);
    if (!game.keepsSettings) return;
    if (!saveRuntimeConfig(game.root / "config" / "graphics.ini", config)) {
        warnLine("Could not save graphics.ini");
    }
}

}  // namespace port
