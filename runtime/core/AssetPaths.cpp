#include "AssetPaths.hpp"

#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "PathEncoding.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kDataPrefix = "data/";
constexpr const char* kPictures[] = {".gif", ".bmp", ".pcx", ".png"};
constexpr const char* kSounds[] = {".ogg", ".oga", ".wav", ".bor", ".mp3", ".flac"};

// No system opens a longer path; a hostile one would only cost time.
constexpr std::size_t kMaxPathBytes = 32767;

bool staysBelow(const fs::path& path) {
    return !path.has_root_path() && std::none_of(path.begin(), path.end(), [](const fs::path& e) {
        return e == ".." || hasDriveLetter(e);
    });
}

bool onDisk(const fs::path& path) {
    std::error_code unreadable;
    return fs::exists(path, unreadable);
}

std::string foldedName(const fs::path& name) {
    try {
        return foldAscii(PathEncoding::utf8(name));
    } catch (const std::exception&) {
        return {};  // A name that is no text on Windows; no game can mean it.
    }
}

// The entry of `folder` that `name` means in another case: `name` itself when there is none,
// nothing when there are two.
std::optional<fs::path> spelledOnDisk(const fs::path& folder, const fs::path& name) {
    const std::string wanted = foldedName(name);
    fs::path found;
    std::error_code failed;
    fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, failed);
    for (const fs::directory_iterator end; !failed && entry != end; entry.increment(failed)) {
        fs::path candidate = entry->path().filename();
        if (foldedName(candidate) != wanted) continue;
        if (!found.empty()) return std::nullopt;
        found = std::move(candidate);
    }
    return found.empty() ? name : found;
}

fs::path withExtension(const fs::path& path, const char* extension) {
    fs::path other = path;
    return runtimeCasePath(other.replace_extension(extension));
}

// The name below the data root in the disk's spelling; empty for an unusable one.
fs::path assetPath(const fs::path& dataRoot, std::string_view raw) {
    const fs::path relative = normalizeDataPath(raw);
    return relative.empty() ? relative : runtimeCasePath(dataRoot / relative);
}

template <std::size_t kCount>
fs::path firstOnDisk(const fs::path& path, const char* const (&extensions)[kCount]) {
    for (const char* const extension : extensions) {
        fs::path other = withExtension(path, extension);
        if (onDisk(other)) return other;
    }
    return path;
}

fs::path onlyPictureOf(const fs::path& path) {
    fs::path only;
    for (const char* const extension : kPictures) {
        fs::path sibling = withExtension(path, extension);
        if (!onDisk(sibling)) continue;
        if (!only.empty()) return path;
        only = std::move(sibling);
    }
    return only.empty() ? path : only;
}

}  // namespace

bool hasDriveLetter(const fs::path& element) {
    const fs::path::string_type& name = element.native();
    return name.size() >= 2 && name[1] == ':' &&
           ((name[0] >= 'a' && name[0] <= 'z') || (name[0] >= 'A' && name[0] <= 'Z'));
}

fs::path normalizeDataPath(std::string_view raw) {
    if (raw.size() > kMaxPathBytes || raw.find('\0') != raw.npos) return {};
    std::string slashed(raw);
    std::replace(slashed.begin(), slashed.end(), '\\', '/');
    std::string_view rest = slashed;
    while (rest.starts_with("./")) rest.remove_prefix(2);
    if (startsWithFolded(rest, kDataPrefix)) rest.remove_prefix(kDataPrefix.size());
    fs::path normal = PathEncoding::path(rest).lexically_normal();
    return staysBelow(normal) ? normal : fs::path();
}

fs::path runtimeCasePath(const fs::path& path) {
    if (onDisk(path)) return path;
    fs::path built = path.root_path();
    bool known = true;  // A name below what is missing has nowhere to be looked for.
    for (const fs::path& part : path.relative_path()) {
        if (known && !part.empty() && !onDisk(built / part)) {
            const auto spelled = spelledOnDisk(built, part);
            if (!spelled) return path;
            built /= *spelled;
            known = onDisk(built);
        } else {
            built /= part;
        }
    }
    return built;
}

fs::path resolveSpriteAsset(const fs::path& dataRoot, std::string_view raw) {
    fs::path path = assetPath(dataRoot, raw);
    if (path.empty() || onDisk(path)) return path;
    return path.has_extension() ? onlyPictureOf(path) : firstOnDisk(path, kPictures);
}

fs::path resolveAudioAsset(const fs::path& dataRoot, std::string_view raw) {
    fs::path path = assetPath(dataRoot, raw);
    if (path.empty() || path.has_extension() || onDisk(path)) return path;
    return firstOnDisk(path, kSounds);
}

}  // namespace port
