#include "reader/DataPaths.hpp"

#include <algorithm>
#include <utility>

#include "PathEncoding.hpp"
#include "platform/FileStatus.hpp"
#include "platform/FolderListing.hpp"
#include "platform/HostSystem.hpp"
#include "platform/LinkStatus.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view kDataPrefix = "data/";

// No system opens a longer path; a hostile one would only cost time.
constexpr std::size_t kMaxPathBytes = 32767;

// Joined to a folder on Windows, an element "C:" would replace it.
bool hasDriveLetter(const fs::path& element) {
    const fs::path::string_type& name = element.native();
    return name.size() >= 2 && name[1] == ':' &&
           ((name[0] >= 'a' && name[0] <= 'z') || (name[0] >= 'A' && name[0] <= 'Z'));
}

// True for the plain relative paths that nearly all of a game's are: the normal form is the same.
bool isNormal(std::string_view path) {
    bool isAscii = true;
    char before = '/';
    for (const char c : path) {
        if (before == '/' && (c == '/' || c == '.')) return false;
        isAscii = isAscii && static_cast<unsigned char>(c) < 0x80;
        before = c;
    }
    return isAscii || PathEncoding::validUtf8(path);
}

}  // namespace

std::string normalizeDataPath(std::string_view text) {
    std::string slashed(text);
    std::replace(slashed.begin(), slashed.end(), '\\', '/');
    std::string_view rest = slashed;
    while (rest.substr(0, 2) == "./") rest.remove_prefix(2);
    if (equalsFolded(rest.substr(0, kDataPrefix.size()), kDataPrefix)) {
        rest.remove_prefix(kDataPrefix.size());
    }
    if (isNormal(rest)) return std::string(rest);
    return PathEncoding::utf8(PathEncoding::path(rest).lexically_normal());
}

bool isSafeRelativePath(const fs::path& path) {
    if (path.empty() || path.is_absolute() || path.has_root_name() || path.has_root_directory()) {
        return false;
    }
    if (path.native().find(fs::path::value_type{}) != fs::path::string_type::npos) return false;
    return std::none_of(path.begin(), path.end(), [](const fs::path& element) {
        return element == ".." || hasDriveLetter(element);
    });
}

bool isInsideRoot(const fs::path& root, const fs::path& path) {
    const fs::path base = canonicalOrAbsolute(root);
    const fs::path target = canonicalOrAbsolute(path);
    if (base.empty() || target.empty()) return false;
    const fs::path relative = target.lexically_relative(base);
    if (relative.empty()) return target == base;
    if (relative.is_absolute()) return false;
    return std::none_of(relative.begin(), relative.end(),
                        [](const fs::path& element) { return element == ".."; });
}

std::string displayPath(const fs::path& path) {
    const std::u8string native = path.u8string();
    return PathEncoding::text(std::string(native.begin(), native.end()));
}

PathResolver::PathResolver(fs::path root, std::span<const TreeEntry> known)
    : root_(std::move(root)) {
    rootIsNormal_ = root_.lexically_normal().native() == root_.native();
    folders_[{}] = {root_, true, isInsideRoot(root_, root_)};
    knownTypes_.reserve(known.size());
    for (const TreeEntry& entry : known) {
        if (entry.symlink || (!entry.regularFile && !entry.directory)) continue;
        knownTypes_[entry.native] =
            entry.directory ? fs::file_type::directory : fs::file_type::regular;
    }
}

fs::file_type PathResolver::plainType(const fs::path& path) const {
    const auto known = knownTypes_.find(path.native());
    if (known != knownTypes_.end()) return known->second;
    std::error_code error;
    const fs::file_type type = linkStatus(path, error).type();
    const bool isPlain = type == fs::file_type::regular || type == fs::file_type::directory;
    return isPlain ? type : fs::file_type::none;
}

const fs::path& PathResolver::resolve(std::string_view text) {
    const auto [entry, isNew] = resolved_.try_emplace(std::string(text));
    if (isNew) entry->second = resolveUncached(text);
    return entry->second;
}

fs::path PathResolver::resolveUncached(std::string_view text) {
    const std::string relative = normalizeDataPath(text);
    if (relative.size() > kMaxPathBytes) return {};
    if (!isSafeRelativePath(PathEncoding::path(relative))) return {};
    const Place* folder = &folders_.at({});
    std::string_view rest = relative;
    for (auto slash = rest.find('/'); slash != std::string_view::npos && folder->known;
         slash = rest.find('/')) {
        const std::size_t prefix = relative.size() - rest.size() + slash;
        const auto [entry, isNew] = folders_.try_emplace(relative.substr(0, prefix));
        if (isNew) entry->second = step(*folder, rest.substr(0, slash));
        folder = &entry->second;
        rest.remove_prefix(slash + 1);
    }
    Place place = folder->known ? step(*folder, rest) : *folder;
    // Below what is not on disk the spelling stands as written.
    if (!folder->known) place.path /= PathEncoding::path(rest);
    if (!place.inside) return {};
    // Joined element by element, as nearly all are, the path is normal already.
    const bool isNormal = rootIsNormal_ && folder->known && relative != ".";
    return isNormal ? std::move(place.path) : place.path.lexically_normal();
}

PathResolver::Place PathResolver::step(const Place& folder, std::string_view element) {
    Place place{folder.path / PathEncoding::path(element), true, folder.inside};
    // An unreadable parent makes the question itself fail; the spelling as written stands then.
    std::error_code error;
    fs::file_type type = plainType(place.path);
    // Where the system itself takes any case, only the listing tells how a file is spelled, by
    // which the passes know it again.
    if (kHostSystem == System::kWindows && !knownTypes_.contains(place.path.native())) {
        const auto [first, last] = list(folder.path).equal_range(toLower(element));
        if (std::distance(first, last) == 1) place.path = first->second;
    }
    if (type == fs::file_type::none && (!fs::exists(place.path, error) || error)) {
        const auto [first, last] = list(folder.path).equal_range(toLower(element));
        const auto matches = std::distance(first, last);
        place.known = matches == 1;
        // Two spellings, none of them the one asked for: nobody can tell which is meant.
        if (matches > 1) place.inside = false;
        if (!place.known) return place;
        place.path = first->second;
        type = plainType(place.path);
    }
    // Only a link can lead out of the folder that holds it. On Windows nobody tells where to.
    if (type == fs::file_type::none) {
        const bool untold = kHostSystem == System::kWindows && isLink(place.path);
        place.inside = !untold && isInsideRoot(root_, place.path);
    }
    return place;
}

const PathResolver::Listing& PathResolver::list(const fs::path& folder) {
    const auto [entry, isNew] = listings_.try_emplace(folder);
    Listing& listing = entry->second;
    std::error_code error;
    // A link is not followed into: what it shows may lie outside, or change under the reader.
    if (!isNew || plainType(folder) != fs::file_type::directory) return listing;
    const auto add = [&](NativeView native, fs::file_type) {
        const fs::path name(native);
        listing.emplace(toLower(PathEncoding::utf8(name)), folder / name);
    };
    listFolder(folder, add, error);
    return listing;
}

fs::path resolveDataPath(const fs::path& root, std::string_view text) {
    return PathResolver(root).resolve(text);
}

}  // namespace tindrel
