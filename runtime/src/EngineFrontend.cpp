// The screens outside play, and what outlasts a run.

#include <algorithm>
#include <fstream>
#include <string_view>

#include "Engine.hpp"
#include "TextFields.hpp"

namespace port {

void Engine::updateFrontend() {
    if (renderer_.headless()) frontendState_ = FrontendState::Playing;
}

void Engine::drawFrontend() {
    renderer_.beginFrame();
    const bool selecting = frontendState_ == FrontendState::CharacterSelect;
    renderer_.drawImage(
        selecting && !selectBackground_.bgra.empty() ? selectBackground_ : titleBackground_, 0, 0);
    renderer_.endFrame();
}

void Engine::loadLegacyMenuConfig() {
    std::ifstream in(dataRoot() / "menu.txt");
    for (std::string line; std::getline(in, line);) {
        std::string_view rest = line;
        rest = rest.substr(0, rest.find('#'));
        const std::string command = foldAscii(takeWord(rest));
        const std::string key = foldAscii(takeWord(rest));
        if (key.empty()) continue;
        if (command == "renamekey") legacyKeyLabels_[key] = trimmed(rest);
        if (command == "disablekey") legacyDisabledKeys_.insert(key);
    }
}

void Engine::loadUnlockProgress() {
    completionCount_ = 0;
    std::ifstream in(root_ / "saves" / "unlocks.ini");
    eachKeyValue(in, [this](std::string_view key, std::string_view text) {
        const auto value = leadingInt(text);
        if (!value) return;
        if (equalsFolded(key, "completion_count") || equalsFolded(key, "completions")) {
            completionCount_ = std::max(0, *value);
        }
    });
}

// Nothing keeps a game's progress yet: every run begins anew.
void Engine::saveUnlockProgress() const {}
void Engine::saveProgress() const {}

}  // namespace port
