#include "ScriptPaths.hpp"

#include <algorithm>
#include <system_error>

#include "AssetPaths.hpp"
#include "PathEncoding.hpp"

namespace port::script {
namespace {

namespace fs = std::filesystem;

constexpr bool isLetter(char c) {
    return foldAscii(c) >= 'a' && foldAscii(c) <= 'z';
}

constexpr std::string_view kDataPrefix = "data/";

bool climbs(const fs::path& path) {
    return std::any_of(path.begin(), path.end(), [](const fs::path& part) { return part == ".."; });
}

bool onDisk(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(path, ignored);
}

// Whether the disk gives the folder by a name in another case, too.
bool ignoresCase(const fs::path& folder) {
    std::string other = PathEncoding::utf8(folder);
    for (char& c : other) {
        if (isLetter(c)) c = static_cast<char>(c ^ ('a' ^ 'A'));
    }
    std::error_code ignored;
    return other != PathEncoding::utf8(folder) &&
           fs::equivalent(folder, PathEncoding::path(other), ignored);
}

}  // namespace

bool relativeScriptPath(std::string_view raw, fs::path& out) {
    std::string text(raw);
    std::replace(text.begin(), text.end(), '\\', '/');
    std::string_view rest = text;
    while (startsWithFolded(rest, kDataPrefix)) rest.remove_prefix(kDataPrefix.size());
    out = PathEncoding::path(rest).lexically_normal();
    return !out.is_absolute() && !out.has_root_name() && !out.has_root_directory() &&
           !hasDriveLetter(out) && !climbs(out);
}

bool ScriptPaths::safeScriptPath(const fs::path& current, std::string_view raw, fs::path& out) {
    fs::path relative;
    if (!relativeScriptPath(raw, relative) || relative.empty()) return false;
    const Folded& below = folded(root_ / relative);
    out = below.path;
    if (below.exists) return true;
    Folded& beside = folded(current.parent_path() / relative);
    if (!beside.exists) return true;
    if (!beside.judged) judge(beside);
    if (!beside.inside.empty()) out = beside.inside;
    return true;
}

void ScriptPaths::judge(Folded& known) const {
    known.judged = true;
    std::error_code failed;
    const fs::path inner = fs::weakly_canonical(known.path, failed);
    const fs::path outer = fs::weakly_canonical(root_, failed);
    const fs::path between = inner.lexically_relative(outer);
    if (!failed && !between.empty() && !climbs(between)) known.inside = inner;
}

fs::path ScriptPaths::scriptCasePath(const fs::path& path) {
    return folded(path).path;
}

fs::path ScriptPaths::locate(std::string_view raw, const fs::path& relative) {
    fs::path path = scriptCasePath(root_ / relative);
    if (exists(path)) return path;
    fs::path unique = scriptUniqueBasename(raw);
    return unique.empty() ? path : unique;
}

fs::path ScriptPaths::scriptUniqueBasename(std::string_view wanted) {
    if (!indexed_) indexBasenames();
    std::string text(wanted);
    std::replace(text.begin(), text.end(), '\\', '/');
    const auto found =
        basenames_.find(lower(PathEncoding::utf8(PathEncoding::path(text).filename())));
    return found == basenames_.end() ? fs::path() : found->second;
}

ScriptPaths::Folded& ScriptPaths::folded(const fs::path& path) {
    const auto [slot, added] = folded_.try_emplace(PathEncoding::utf8(path));
    Folded& known = slot->second;
    if (!added) return known;
    known.path = path;
    known.exists = onDisk(path);
    if (!ignoresCase_) ignoresCase_ = ignoresCase(root_);
    if (known.exists && !*ignoresCase_) return known;
    fs::path built = path.root_path();
    for (const fs::path& part : path.relative_path()) {
        fs::path name = part;
        // Where any case is on the disk, only the listing tells how a file is spelled, by which it
        // is known again.
        const bool isBelow = *ignoresCase_ && built.native().size() >= root_.native().size();
        if (isBelow || !onDisk(built / part)) {
            const Listing& entries = listing(built);
            const auto entry = entries.find(lower(PathEncoding::utf8(part)));
            if (entry != entries.end()) name = entry->second;
        }
        built /= name;
    }
    known.exists = onDisk(built);
    known.path = std::move(built);
    return known;
}

const ScriptPaths::Listing& ScriptPaths::listing(const fs::path& folder) {
    const auto [slot, added] = listings_.try_emplace(PathEncoding::utf8(folder));
    if (!added) return slot->second;
    std::error_code failed;
    fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, failed);
    for (const fs::directory_iterator end; !failed && entry != end; entry.increment(failed)) {
        const fs::path name = entry->path().filename();
        slot->second.try_emplace(lower(PathEncoding::utf8(name)), name);
    }
    return slot->second;
}

void ScriptPaths::indexBasenames() {
    indexed_ = true;
    std::error_code failed;
    fs::recursive_directory_iterator entry(root_, fs::directory_options::skip_permission_denied,
                                           failed);
    for (const fs::recursive_directory_iterator end; !failed && entry != end;
         entry.increment(failed)) {
        std::error_code ignored;
        if (!entry->is_regular_file(ignored)) continue;
        const auto [slot, added] = basenames_.try_emplace(
            lower(PathEncoding::utf8(entry->path().filename())), entry->path());
        if (!added) slot->second.clear();
    }
}

}  // namespace port::script
