#pragma once

// The pictures that scripts have loaded, and the screens that they draw into. Scripts know both by
// handles, which never name anything else in a run.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "ScriptHandles.hpp"
#include "SpriteCache.hpp"
#include "SpriteImage.hpp"

namespace port {

// In pixels; a script's font is a number of its own.
constexpr int scriptTextSize(int font) {
    return 8 + std::clamp(font, -2, 1000);
}

// The place is within 2^24 pixels, so that it can be added to another.
struct ScriptScreenText {
    int x = 0, y = 0, font = 0;
    std::string text;
};

// Text stands apart from the pixels, and in front of them.
struct ScriptScreen {
    // A script that writes anew in every tick and never clears shows what it wrote last.
    static constexpr std::size_t kMostTexts = 256;

    SpriteImage image;
    std::vector<ScriptScreenText> text;

    // The oldest text gives way where there are too many.
    void write(ScriptScreenText line);
};

class ScriptPictures {
  public:
    // Bytes of all of it: as much as the game's own sprites may have. The largest games load some
    // dozens of pictures and have a few screens of the canvas's size.
    static constexpr std::size_t kMostBytes = std::size_t{256} << 20U;
    // Bounds what their texts take.
    static constexpr std::size_t kMostScreens = 1000;
    // The sides of a screen in pixels.
    static constexpr int kLongestSide = 4096;

    explicit ScriptPictures(std::size_t limit = kMostBytes) : limit_(limit) {}

    // The handle of the picture, which is not null; 0 where there is no room left.
    [[nodiscard]] std::uintptr_t addSprite(SpritePtr sprite);
    // Of a clear screen; sides are 1 to kLongestSide.
    [[nodiscard]] std::uintptr_t addScreen(int width, int height);
    // False for a handle that names nothing.
    bool free(std::uintptr_t handle);

    // Null for a handle that names none.
    [[nodiscard]] SpritePtr sprite(std::uintptr_t handle) const;
    [[nodiscard]] std::shared_ptr<ScriptScreen> screen(std::uintptr_t handle) const;

  private:
    // Takes the bytes, or says that there is no room.
    [[nodiscard]] bool take(std::size_t bytes);

    // What an entry takes beside its pixels, about.
    static constexpr std::size_t kEntryBytes = 256;

    std::map<std::uintptr_t, SpritePtr> sprites_;
    std::map<std::uintptr_t, std::shared_ptr<ScriptScreen>> screens_;
    // How many handles share a picture, whose pixels count once.
    std::unordered_map<const SpriteImage*, std::size_t> uses_;
    std::uintptr_t nextSprite_ = kFirstSpriteHandle, nextScreen_ = kFirstScreenHandle;
    std::size_t limit_;
    std::size_t bytes_ = 0;
};

}  // namespace port
