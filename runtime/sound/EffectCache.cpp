#include "EffectCache.hpp"

#include <iterator>
#include <utility>

namespace port {

std::shared_ptr<const DecodedAudio> EffectCache::decode(const std::filesystem::path& path,
                                                        std::string& error) {
    const std::optional<FileStamp> stamp = fileStamp(path);
    if (const auto found = byPath_.find(path.native()); found != byPath_.end()) {
        if (found->second->stamp == stamp) {
            entries_.splice(entries_.begin(), entries_, found->second);
            return found->second->audio;
        }
        drop(found->second);
    }
    auto audio = std::make_shared<DecodedAudio>();
    if (!AudioDecoder::decodeFile(path, *audio, error)) return nullptr;
    if (stamp) keep({path.native(), *stamp, audio});
    return audio;
}

std::size_t EffectCache::weight(const Entry& entry) {
    return sizeof(Entry) + sizeof(DecodedAudio) + 2 * entry.path.size() +
           entry.audio->pcm.capacity() * sizeof(std::int16_t);
}

void EffectCache::keep(Entry entry) {
    const std::size_t size = weight(entry);
    if (size > capacity_) return;
    while (bytes_ + size > capacity_) drop(std::prev(entries_.end()));
    bytes_ += size;
    entries_.push_front(std::move(entry));
    byPath_[entries_.front().path] = entries_.begin();
}

void EffectCache::drop(std::list<Entry>::iterator entry) {
    bytes_ -= weight(*entry);
    byPath_.erase(entry->path);
    entries_.erase(entry);
}

}  // namespace port
