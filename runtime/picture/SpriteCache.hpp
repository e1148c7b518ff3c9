#pragma once

// The sprites that a game has drawn, each loaded once.

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "GeneratedCharacters.hpp"
#include "SpriteImage.hpp"

namespace port {

class Renderer;

using SpritePtr = std::shared_ptr<const SpriteImage>;

class SpriteCache {
  public:
    // Beyond `limit` bytes it forgets all that nobody else holds.
    explicit SpriteCache(std::size_t limit = std::size_t{256} << 20U)
        : limit_(limit), sweepAt_(limit) {}

    // The picture that `name` means under the data root, in the model's palette `mapIndex` when
    // there is a model. Null for an empty name, "none" in any case, and a picture that cannot be
    // loaded, which is not tried again. The model must outlive the cache.
    [[nodiscard]] SpritePtr load(const Renderer& renderer, const std::filesystem::path& dataRoot,
                                 std::string_view name, const generated::Character* model,
                                 int mapIndex);

    // For a change of what loading gives: another data root, or the rule of the palettes' index 0.
    void clear();

  private:
    // `model` is null and `mapIndex` 0 for a picture in its own colours.
    struct KeyView {
        std::string_view name;
        const generated::Character* model;
        int mapIndex;
    };
    struct Key {
        std::string name;
        const generated::Character* model;
        int mapIndex;
        operator KeyView() const { return {name, model, mapIndex}; }
    };
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(const KeyView& key) const;
    };
    struct Equal {
        using is_transparent = void;
        bool operator()(const KeyView& a, const KeyView& b) const {
            return a.model == b.model && a.mapIndex == b.mapIndex && a.name == b.name;
        }
    };

    void forgetUnheld();

    std::unordered_map<Key, SpritePtr, Hash, Equal> sprites_;
    std::size_t limit_;
    std::size_t bytes_ = 0;
    // Where the next sweep is due: twice what others hold when that alone is near the limit, so
    // that a sweep always has something to find.
    std::size_t sweepAt_;
};

}  // namespace port
