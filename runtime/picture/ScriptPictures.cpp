#include "ScriptPictures.hpp"

#include <utility>

namespace port {

void ScriptScreen::write(ScriptScreenText line) {
    if (text.size() >= kMostTexts) text.erase(text.begin());
    text.push_back(std::move(line));
}

bool ScriptPictures::take(std::size_t bytes) {
    if (bytes > limit_ - bytes_) return false;
    bytes_ += bytes;
    return true;
}

std::uintptr_t ScriptPictures::addSprite(SpritePtr sprite) {
    const auto known = uses_.find(sprite.get());
    const std::size_t pixels = known == uses_.end() ? sprite->bgra.size() : 0;
    if (!take(kEntryBytes + pixels)) return 0;
    ++uses_[sprite.get()];
    sprites_.emplace_hint(sprites_.end(), nextSprite_, std::move(sprite));
    return nextSprite_++;
}

std::uintptr_t ScriptPictures::addScreen(int width, int height) {
    if (screens_.size() >= kMostScreens) return 0;
    const auto screen = std::make_shared<ScriptScreen>();
    screen->image.width = width;
    screen->image.height = height;
    const std::size_t bytes = pixelOffset(screen->image, 0, height);
    if (!take(kEntryBytes + bytes)) return 0;
    screen->image.bgra.resize(bytes);
    screens_.emplace_hint(screens_.end(), nextScreen_, screen);
    return nextScreen_++;
}

bool ScriptPictures::free(std::uintptr_t handle) {
    if (const auto found = screens_.find(handle); found != screens_.end()) {
        bytes_ -= kEntryBytes + found->second->image.bgra.size();
        screens_.erase(found);
        return true;
    }
    const auto found = sprites_.find(handle);
    if (found == sprites_.end()) return false;
    bytes_ -= kEntryBytes;
    const auto use = uses_.find(found->second.get());
    if (--use->second == 0) {
        bytes_ -= found->second->bgra.size();
        uses_.erase(use);
    }
    sprites_.erase(found);
    return true;
}

SpritePtr ScriptPictures::sprite(std::uintptr_t handle) const {
    const auto found = sprites_.find(handle);
    return found == sprites_.end() ? nullptr : found->second;
}

std::shared_ptr<ScriptScreen> ScriptPictures::screen(std::uintptr_t handle) const {
    const auto found = screens_.find(handle);
    return found == screens_.end() ? nullptr : found->second;
}

}  // namespace port
