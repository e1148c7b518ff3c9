#pragma once

// The sprites that a game has drawn, each loaded once.

#include <cstddef>
#include <filesystem>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "GeneratedCharacters.hpp"
#include "SpriteImage.hpp"

namespace port {

class Renderer;

using SpritePtr = std::shared_ptr<const SpriteImage>;

class SpriteCache {
  public:
    // Beyond `limit` bytes it forgets what was not asked for longest, but nothing that is held
    // elsewhere.
    explicit SpriteCache(std::size_t limit = std::size_t{256} << 20U)
        : limit_(limit), sweepAt_(limit) {}
    SpriteCache(const SpriteCache&) = delete;
    SpriteCache& operator=(const SpriteCache&) = delete;

    // The picture that `name` means under the data root, in the model's palette `mapIndex` when
    // there is a model. Null for an empty name, "none" in any case, and a picture that cannot be
    // loaded, which is not tried again while it is remembered. The model must outlive the cache.
    // One look-up and no allocation for what is known: cheap enough for each actor in each frame.
    [[nodiscard]] SpritePtr load(const Renderer& renderer, const std::filesystem::path& dataRoot,
                                 std::string_view name, const generated::Character* model,
                                 int mapIndex);

    // Is told of each name that leads to no picture, when it is asked for first; null for nobody.
    void watchMissing(std::function<void(std::string_view)> watch) { missing_ = std::move(watch); }

    // For a change of what loading gives: another data root, or the rule of the palettes' index 0.
    void clear();

  private:
    // `model` is null and `mapIndex` 0 for a picture in its own colours.
    struct Key {
        std::string_view name;
        const generated::Character* model;
        int mapIndex;
        bool operator==(const Key&) const = default;
    };
    struct Hash {
        std::size_t operator()(const Key& key) const;
    };
    struct Entry {
        std::string name;
        const generated::Character* model;
        int mapIndex;
        SpritePtr sprite;  // null for one that cannot be loaded

        [[nodiscard]] Key key() const { return {name, model, mapIndex}; }
        [[nodiscard]] std::size_t bytes() const;
    };
    using Entries = std::list<Entry>;

    void forgetOldest();

    Entries entries_;                                         // the one asked for last stands first
    std::unordered_map<Key, Entries::iterator, Hash> byKey_;  // keys view their entries' names
    std::function<void(std::string_view)> missing_;
    std::size_t limit_;
    std::size_t bytes_ = 0;
    // Where forgetting is due: beyond the limit when what others hold alone reaches it, so that a
    // walk over all of it is not made for every picture.
    std::size_t sweepAt_;
};

}  // namespace port
