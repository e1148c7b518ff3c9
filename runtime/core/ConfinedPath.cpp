#include "ConfinedPath.hpp"

#include <algorithm>
#include <system_error>

#include "AssetPaths.hpp"

namespace port {
namespace {

namespace fs = std::filesystem;

// Without following a link. What cannot be asked for is neither.
bool missingOr(fs::file_type wanted, const fs::path& path) {
    std::error_code unreadable;
    const fs::file_type type = fs::symlink_status(path, unreadable).type();
    return type == wanted || type == fs::file_type::not_found;
}

}  // namespace

fs::path confinedPath(const fs::path& base, std::string_view raw) {
    const fs::path relative = normalizeDataPath(raw);
    if (!relative.has_filename()) return {};
    fs::path path = runtimeCasePath(base / relative);
    auto [rest, end] = std::mismatch(path.begin(), path.end(), base.begin(), base.end());
    if (rest == path.end() || end != base.end()) return {};
    fs::path at = base;
    while (true) {
        at /= *rest;
        if (++rest == path.end()) break;
        if (!missingOr(fs::file_type::directory, at)) return {};
    }
    return missingOr(fs::file_type::regular, path) ? path : fs::path();
}

}  // namespace port
