// Sounds that frames, hits and deaths ask for, and the volume keys.

#include "Engine.hpp"
#include "Log.hpp"
#include "MusicPreview.hpp"
#include "PathEncoding.hpp"
#include "VolumeKeys.hpp"

namespace port {

void Engine::playFrameSound(const generated::Frame& frame) {
    // A bare name or number is no file.
    const std::string_view sound = frame.sound;
    if (sound.find_first_of("/\\.") == sound.npos) return;
    soundEffects_.play(audio_, sound, "Frame sound diagnostic: ");
}

void Engine::playHitFx(const generated::Animation* animation) {
    if (animation) soundEffects_.play(audio_, animation->hitFx, "hitfx diagnostic: ");
}

void Engine::playDieSound(const generated::Character* model) {
    if (model) soundEffects_.play(audio_, model->dieSound, "diesound diagnostic: ");
}

void Engine::pollAudioHotkeys() {
    bool changed = false;
    for (const VolumeKey& volume : kVolumeKeys) {
        if (frontendKeyPressed(volume.key)) changed |= applyVolumeKey(audio_, volume.key);
    }
    if (!changed) return;
    logLine("Audio settings: master=", audio_.masterVolume(), " music=", audio_.musicVolume(),
            " effects=", audio_.effectsVolume());
}

void Engine::previewMusic() {
    const std::filesystem::path file = previewMusicFile(dataRoot(), config_.preferredMusicFormat);
    if (file.empty()) return;
    const std::string name = PathEncoding::utf8(file);
    if (audio_.playMusic(file, true)) {
        logLine("Preview music: ", name);
    } else {
        logLine("Music diagnostic: ", name, " -> ", audio_.lastError());
    }
}

}  // namespace port
