#include "SoundEffects.hpp"

#include <system_error>

#include "AssetPaths.hpp"
#include "Log.hpp"

namespace port {
namespace {

// Room for some 20,000 names, more than games have. Scripts can make names without end; beyond this
// all are forgotten, and the disk is asked again.
constexpr std::size_t kMaxBytes = 8U << 20U;

// What a name takes beside its own text and that of its file, about.
constexpr std::size_t kEntryBytes = 160;

}  // namespace

void SoundEffects::open(const std::filesystem::path& dataRoot) {
    dataRoot_ = dataRoot;
    files_.clear();
    bytes_ = 0;
}

std::filesystem::path SoundEffects::find(std::string_view name) const {
    std::filesystem::path path = resolveAudioAsset(dataRoot_, name);
    std::error_code absent;
    if (path.empty() || !std::filesystem::exists(path, absent)) return {};
    return path;
}

const std::filesystem::path& SoundEffects::fileOf(std::string_view name) {
    auto known = files_.find(name);
    if (known == files_.end()) {
        if (bytes_ > kMaxBytes) open(dataRoot_);
        known = files_.emplace(name, find(name)).first;
        bytes_ += kEntryBytes + name.size() + known->second.native().size();
    }
    return known->second;
}

void SoundEffects::play(AudioSystem& audio, std::string_view name, std::string_view diagnostic) {
    if (name.empty()) return;
    const std::filesystem::path& file = fileOf(name);
    const bool found = !file.empty();
    const bool plays = found && audio.playEffect(file);
    if (!(found && audio.lastDecoded()) && missing_) missing_(name);
    if (found && !plays) warnLine(diagnostic, audio.lastError());
}

}  // namespace port
