#include "SpriteCache.hpp"

#include <algorithm>

#include "AssetPaths.hpp"
#include "Palette.hpp"
#include "Renderer.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

// What an entry takes beside its pixels and its name, about.
constexpr std::size_t kEntryBytes = 160;

std::size_t costOf(std::string_view name, const SpritePtr& sprite) {
    return kEntryBytes + name.size() + (sprite ? sprite->bgra.size() : 0);
}

SpritePtr loadAnew(const Renderer& renderer, const std::filesystem::path& dataRoot,
                   std::string_view name, const generated::Character* model, int mapIndex) {
    const std::filesystem::path path = resolveSpriteAsset(dataRoot, name);
    if (path.empty()) return nullptr;
    const auto sprite = std::make_shared<SpriteImage>();
    if (!renderer.loadSprite(path, *sprite)) return nullptr;
    if (model) applyCharacterPalette(renderer, dataRoot, *model, mapIndex, *sprite);
    return sprite;
}

}  // namespace

std::size_t SpriteCache::Hash::operator()(const KeyView& key) const {
    const std::size_t name = std::hash<std::string_view>()(key.name);
    const std::size_t model = std::hash<const void*>()(key.model);
    return (name * 31 + model) * 31 + static_cast<std::size_t>(key.mapIndex);
}

SpritePtr SpriteCache::load(const Renderer& renderer, const std::filesystem::path& dataRoot,
                            std::string_view name, const generated::Character* model,
                            int mapIndex) {
    if (name.empty() || equalsFolded(name, "none")) return nullptr;
    const bool recolored = model && hasCharacterPalette(*model, mapIndex);
    const KeyView key = {name, recolored ? model : nullptr, recolored ? mapIndex : 0};
    const auto found = sprites_.find(key);
    if (found != sprites_.end()) return found->second;

    SpritePtr sprite = loadAnew(renderer, dataRoot, name, key.model, key.mapIndex);
    sprites_.emplace(Key{std::string(name), key.model, key.mapIndex}, sprite);
    bytes_ += costOf(name, sprite);
    if (bytes_ > sweepAt_) forgetUnheld();
    return sprite;
}

void SpriteCache::clear() {
    sprites_.clear();
    bytes_ = 0;
    sweepAt_ = limit_;
}

void SpriteCache::forgetUnheld() {
    for (auto entry = sprites_.begin(); entry != sprites_.end();) {
        if (entry->second.use_count() > 1) {
            ++entry;
            continue;
        }
        bytes_ -= costOf(entry->first.name, entry->second);
        entry = sprites_.erase(entry);
    }
    sweepAt_ = std::max(limit_, 2 * bytes_);
}

}  // namespace port
