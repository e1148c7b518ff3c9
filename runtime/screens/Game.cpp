#include "Game.hpp"

#include "Painter.hpp"
#include "StartupLog.hpp"
#include "WorldHash.hpp"

namespace port {

void Game::show() {
    drawing.sort();
    paint(drawing, renderer, config);
    renderer.endFrame();
}

std::uint64_t Game::hash() const {
    return worldHash({world, scripts.machine(), static_cast<int>(frontend.state)});
}

void Game::playSounds() {
    for (const SoundCue& cue : events.sounds) effects.play(audio, cue.name, cue.diagnostic);
    events.sounds.clear();
}

void Game::trace(std::string_view message) const {
    if (!smoke.active) return;
    appendStartupLog(root / "runtime-startup.log", "SMOKE TRACE " + std::string(message));
}

}  // namespace port
