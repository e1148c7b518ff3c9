#include "Game.hpp"

#include "AssetPaths.hpp"
#include "Log.hpp"
#include "Painter.hpp"
#include "StartupLog.hpp"

namespace port {

Game::Game(platform::Devices given)
    : HostServices(given), devices(std::move(given)), host(*this, tick()) {
    isPlaying = [this] { return frontend.state == FrontendState::Playing; };
}

HeldInput Game::heldInput() const {
    HeldInput held;
    for (int key = 0; key < kKeyCount; ++key) {
        held.keys[static_cast<std::size_t>(key)] = devices.input.keyDown(key);
    }
    for (int pad = 0; config.gamepad && pad < kPadCount; ++pad) {
        const PadState state = devices.input.pad(pad);
        if (state.connected) held.pads[static_cast<std::size_t>(pad)] = state;
    }
    return held;
}

void Game::compose(bool over) {
    drawing.sort();
    paint(drawing, renderer, config, over);
}

void Game::show(bool over) {
    compose(over);
    renderer.endFrame();
    audio.update();
}

RunState Game::runState() const {
    return {world, scripts.machine(), static_cast<int>(frontend.state)};
}

void Game::playSounds() {
    for (const SoundCue& cue : events.sounds) effects.play(audio, cue.name, cue.diagnostic);
    events.sounds.clear();
    for (const BossMusicCue& cue : events.bossMusic) {
        if (audio.playMusic(resolveAudioAsset(dataRoot, cue.name), true, cue.loopOffset)) {
            logLine("Boss music started loop_offset_bytes=", cue.loopOffset);
        } else {
            warnLine("Boss music diagnostic: ", audio.lastError());
        }
    }
    events.bossMusic.clear();
}

void Game::trace(std::string_view message) const {
    if (!smoke.active) return;
    appendStartupLog(root / "runtime-startup.log", "SMOKE TRACE " + std::string(message));
}

}  // namespace port
