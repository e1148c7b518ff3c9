#include "SpriteCache.hpp"

#include <functional>
#include <iterator>

#include "AssetPaths.hpp"
#include "Palette.hpp"
#include "Renderer.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

// What an entry takes beside its pixels and its name, about.
constexpr std::size_t kEntryBytes = 256;

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

std::size_t SpriteCache::Hash::operator()(const Key& key) const {
    const std::size_t name = std::hash<std::string_view>()(key.name);
    const std::size_t model = std::hash<const void*>()(key.model);
    return (name * 31 + model) * 31 + static_cast<std::size_t>(key.mapIndex);
}

std::size_t SpriteCache::Entry::bytes() const {
    return kEntryBytes + name.size() + (sprite ? sprite->bgra.size() : 0);
}

SpritePtr SpriteCache::load(const Renderer& renderer, const std::filesystem::path& dataRoot,
                            std::string_view name, const generated::Character* model,
                            int mapIndex) {
    if (name.empty() || equalsFolded(name, "none")) return nullptr;
    const bool recolored = model && hasCharacterPalette(*model, mapIndex);
    const Key key = {name, recolored ? model : nullptr, recolored ? mapIndex : 0};
    if (const auto known = byKey_.find(key); known != byKey_.end()) {
        entries_.splice(entries_.begin(), entries_, known->second);
        return known->second->sprite;
    }
    SpritePtr sprite = loadAnew(renderer, dataRoot, name, key.model, key.mapIndex);
    if (!sprite && missing_) missing_(name);
    entries_.push_front({std::string(name), key.model, key.mapIndex, sprite});
    byKey_.emplace(entries_.front().key(), entries_.begin());
    bytes_ += entries_.front().bytes();
    if (bytes_ > sweepAt_) forgetOldest();
    return sprite;
}

void SpriteCache::clear() {
    byKey_.clear();
    entries_.clear();
    bytes_ = 0;
    sweepAt_ = limit_;
}

void SpriteCache::forgetOldest() {
    for (std::size_t left = entries_.size(); left > 0 && bytes_ > limit_; --left) {
        const auto oldest = std::prev(entries_.end());
        if (oldest->sprite.use_count() > 1) {
            // In use, and out of the way of the walks to come.
            entries_.splice(entries_.begin(), entries_, oldest);
            continue;
        }
        bytes_ -= oldest->bytes();
        byKey_.erase(oldest->key());
        entries_.erase(oldest);
    }
    sweepAt_ = bytes_ > limit_ ? bytes_ + limit_ / 2 : limit_;
}

}  // namespace port
