#include "reader/TreeWalk.hpp"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "PathEncoding.hpp"
#include "platform/FileStatus.hpp"
#include "platform/LinkStatus.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

// The types come along with the listing; only a link costs a question of its own.
void setType(TreeEntry& entry, fs::file_type listed) {
    if (listed == fs::file_type::none) {
        listed = linkStatus(entry.path(), entry.error).type();
    }
    entry.symlink = listed == fs::file_type::symlink;
    if (entry.symlink) {
        entry.regularFile = fs::is_regular_file(entry.path(), entry.error);
        if (isAbsence(entry.error)) entry.error.clear();
    } else {
        entry.regularFile = listed == fs::file_type::regular;
        entry.directory = listed == fs::file_type::directory;
    }
}

// Systems whose names are bytes need no detour through a path.
template <typename Name>
std::string foldedName(Name name) {
    if constexpr (std::is_same_v<Name, std::string_view>) {
        return toLower(PathEncoding::text(name));
    } else {
        return toLower(PathEncoding::utf8(fs::path(name)));
    }
}

std::vector<TreeEntry> list(const fs::path& folder, int depth, std::error_code& error) {
    std::vector<TreeEntry> entries;
    const fs::path prefix = folder / fs::path();  // with a separator at its end
    const std::string foldedPrefix = toLower(PathEncoding::utf8(prefix));
    listFolder(
        folder,
        [&](NativeView name, fs::file_type type) {
            TreeEntry& entry = entries.emplace_back();
            entry.native.reserve(prefix.native().size() + name.size());
            entry.native.append(prefix.native()).append(name);
            entry.folded = foldedPrefix + foldedName(name);
            entry.depth = depth;
            setType(entry, type);
        },
        error);
    // Each file system has an order of its own; the same game gives the same reports everywhere.
    std::ranges::sort(entries, [](const TreeEntry& a, const TreeEntry& b) {
        return std::tie(a.folded, a.native) < std::tie(b.folded, b.native);
    });
    return entries;
}

}  // namespace

std::string_view TreeEntry::name() const {
    return std::string_view(folded).substr(folded.rfind('/') + 1);  // npos + 1 is 0
}

// A dot that begins the name begins no extension.
std::string_view TreeEntry::extension() const {
    const std::string_view all = name();
    const std::size_t dot = all.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? std::string_view() : all.substr(dot);
}

void walkTree(const fs::path& folder, const std::function<WalkStep(TreeEntry&)>& visit,
              const std::function<void(const fs::path&, std::error_code)>& unlisted) {
    std::vector<TreeEntry> pending;  // the next one last
    const auto open = [&](const fs::path& path, int depth) {
        std::error_code error;
        std::vector<TreeEntry> entries = list(path, depth, error);
        std::move(entries.rbegin(), entries.rend(), std::back_inserter(pending));
        if (error && unlisted) unlisted(path, error);
    };
    open(folder, 1);
    while (!pending.empty()) {
        TreeEntry entry = std::move(pending.back());
        pending.pop_back();
        const fs::path path = entry.directory ? entry.path() : fs::path();
        const int depth = entry.depth;
        const WalkStep step = visit(entry);
        if (step == WalkStep::Stop) return;
        if (step == WalkStep::Enter && !path.empty()) open(path, depth + 1);
    }
}

}  // namespace tindrel
