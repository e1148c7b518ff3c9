// Sounds that frames, hits and deaths ask for, and the volume keys.

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <vector>

#include "AssetPaths.hpp"
#include "Engine.hpp"
#include "Log.hpp"
#include "PathEncoding.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

namespace fs = std::filesystem;

constexpr float kVolumeStep = 0.05F;

// How well a file serves as music where a game names none; 0 for a file that is none.
int musicScore(const fs::path& path, std::string_view preferredFormat) {
    struct Format {
        std::string_view extension;
        int score;
    };
    constexpr std::array kFormats = {Format{".bor", 30}, Format{".wav", 20}, Format{".ogg", 10},
                                     Format{".oga", 10}, Format{".mp3", 10}, Format{".flac", 10}};
    const std::string name = foldAscii(PathEncoding::utf8(path));
    const std::string extension = foldAscii(PathEncoding::utf8(path.extension()));
    const auto* format = std::ranges::find(kFormats, extension, &Format::extension);
    if (format == kFormats.end()) return 0;
    const bool inMusic = name.find("music") != name.npos;
    std::string_view preferred = preferredFormat;
    if (preferred.starts_with('.')) preferred.remove_prefix(1);
    const bool isPreferred = preferred != "auto" && preferred == extension.substr(1);
    return format->score + (inMusic ? 20 : 0) + (isPreferred ? 40 : 0);
}

}  // namespace

void Engine::playFrameSound(const generated::Frame& frame) {
    // A bare name or number is no file.
    const std::string_view sound = frame.sound;
    if (sound.find_first_of("/\\.") == sound.npos) return;
    playEffectFile(sound, "Frame sound diagnostic: ");
}

void Engine::playHitFx(const generated::Animation* animation) {
    if (animation) playEffectFile(animation->hitFx, "hitfx diagnostic: ");
}

void Engine::playDieSound(const generated::Character* model) {
    if (model) playEffectFile(model->dieSound, "diesound diagnostic: ");
}

void Engine::playEffectFile(std::string_view name, std::string_view diagnostic) {
    if (name.empty()) return;
    const auto [known, isNew] = effectFiles_.try_emplace(name);
    if (isNew) {
        const fs::path path = resolveAudioAsset(dataRoot(), name);
        std::error_code absent;
        if (!path.empty() && fs::exists(path, absent)) known->second = path;
    }
    const fs::path& file = known->second;
    if (!file.empty() && !audio_.playEffect(file)) warnLine(diagnostic, audio_.lastError());
}

void Engine::pollAudioHotkeys() {
    struct Hotkey {
        int key;
        float step;
        float (AudioSystem::*volume)() const;
        void (AudioSystem::*setVolume)(float);
    };
    static constexpr std::array kHotkeys = {
        Hotkey{platform::kKeyF2, -kVolumeStep, &AudioSystem::musicVolume,
               &AudioSystem::setMusicVolume},
        Hotkey{platform::kKeyF3, kVolumeStep, &AudioSystem::musicVolume,
               &AudioSystem::setMusicVolume},
        Hotkey{platform::kKeyF4, -kVolumeStep, &AudioSystem::effectsVolume,
               &AudioSystem::setEffectsVolume},
        Hotkey{platform::kKeyF5, kVolumeStep, &AudioSystem::effectsVolume,
               &AudioSystem::setEffectsVolume},
        Hotkey{platform::kKeyF6, -kVolumeStep, &AudioSystem::masterVolume,
               &AudioSystem::setMasterVolume},
        Hotkey{platform::kKeyF7, kVolumeStep, &AudioSystem::masterVolume,
               &AudioSystem::setMasterVolume}};
    bool changed = false;
    for (const Hotkey& hotkey : kHotkeys) {
        if (!frontendKeyPressed(hotkey.key)) continue;
        (audio_.*hotkey.setVolume)((audio_.*hotkey.volume)() + hotkey.step);
        changed = true;
    }
    if (!changed) return;
    logLine("Audio settings: master=", audio_.masterVolume(), " music=", audio_.musicVolume(),
            " effects=", audio_.effectsVolume());
}

// The best of the game's sound files; in the order of their names, so that it is the same each
// time.
void Engine::previewMusic() {
    std::vector<fs::path> files;
    std::error_code failed;
    fs::recursive_directory_iterator entry(dataRoot(),
                                           fs::directory_options::skip_permission_denied, failed);
    for (const fs::recursive_directory_iterator end; !failed && entry != end;
         entry.increment(failed)) {
        std::error_code ignored;
        if (entry->is_regular_file(ignored)) files.push_back(entry->path());
    }
    std::ranges::sort(files);
    const fs::path* best = nullptr;
    int bestScore = 0;
    for (const fs::path& file : files) {
        const int score =
            musicScore(file.lexically_relative(dataRoot()), config_.preferredMusicFormat);
        if (score <= bestScore) continue;
        best = &file;
        bestScore = score;
    }
    if (!best) return;
    const std::string name = PathEncoding::utf8(*best);
    if (audio_.playMusic(*best, true)) {
        logLine("Preview music: ", name);
    } else {
        logLine("Music diagnostic: ", name, " -> ", audio_.lastError());
    }
}

}  // namespace port
