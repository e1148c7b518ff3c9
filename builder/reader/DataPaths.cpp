#include "reader/DataPaths.hpp"

#include <algorithm>
#include <utility>

#include "PathEncoding.hpp"
#include "platform/FileStatus.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view kDataPrefix = "data/";

bool hasDriveLetter(std::string_view text) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    return text.size() >= 2 && text[1] == ':' && isLetter(text[0]);
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
    return PathEncoding::utf8(PathEncoding::path(rest).lexically_normal());
}

bool isSafeRelativePath(const fs::path& path) {
    if (path.empty() || path.is_absolute() || path.has_root_name() || path.has_root_directory()) {
        return false;
    }
    if (path.native().find(fs::path::value_type{}) != fs::path::string_type::npos) return false;
    if (hasDriveLetter(PathEncoding::utf8(*path.begin()))) return false;
    return std::none_of(path.begin(), path.end(),
                        [](const fs::path& element) { return element == ".."; });
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

PathResolver::PathResolver(fs::path root) : root_(std::move(root)) {}

const fs::path& PathResolver::resolve(std::string_view text) {
    const auto [entry, isNew] = resolved_.try_emplace(std::string(text));
    if (isNew) entry->second = resolveUncached(text);
    return entry->second;
}

fs::path PathResolver::resolveUncached(std::string_view text) {
    const fs::path relative = PathEncoding::path(normalizeDataPath(text));
    if (!isSafeRelativePath(relative)) return {};
    fs::path current = root_;
    for (const fs::path& element : relative) {
        fs::path candidate = current / element;
        // An unreadable parent makes the question itself fail; the spelling as written stands then.
        std::error_code error;
        const bool known = fs::exists(candidate, error) && !error;
        if (!known) {
            const auto [first, last] =
                list(current).equal_range(toLower(PathEncoding::utf8(element)));
            if (first != last) {
                if (std::next(first) != last) return {};
                candidate = first->second;
            }
        }
        current = std::move(candidate);
    }
    current = current.lexically_normal();
    return isInsideRoot(root_, current) ? current : fs::path{};
}

const PathResolver::Listing& PathResolver::list(const fs::path& folder) {
    const auto [entry, isNew] = listings_.try_emplace(folder);
    Listing& listing = entry->second;
    std::error_code error;
    // A link is not followed into: what it shows may lie outside, or change under the reader.
    if (!isNew || fs::symlink_status(folder, error).type() != fs::file_type::directory) {
        return listing;
    }
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        listing.emplace(toLower(PathEncoding::utf8(it->path().filename())), it->path());
    }
    return listing;
}

fs::path resolveDataPath(const fs::path& root, std::string_view text) {
    return PathResolver(root).resolve(text);
}

}  // namespace tindrel
