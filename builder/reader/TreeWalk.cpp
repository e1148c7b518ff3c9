#include "reader/TreeWalk.hpp"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "PathEncoding.hpp"
#include "platform/FileStatus.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

// The types come along with the listing; only a link costs a question of its own.
TreeEntry describe(const fs::directory_entry& found, int depth) {
    TreeEntry entry;
    entry.path = found.path();
    entry.folded = toLower(PathEncoding::utf8(entry.path));
    entry.depth = depth;
    entry.symlink = found.is_symlink(entry.error);
    if (!entry.error) entry.regularFile = found.is_regular_file(entry.error);
    if (entry.symlink && isAbsence(entry.error)) entry.error.clear();
    if (!entry.error && !entry.symlink && !entry.regularFile) {
        entry.directory = found.is_directory(entry.error);
    }
    return entry;
}

std::vector<TreeEntry> list(const fs::path& folder, int depth, std::error_code& error) {
    std::vector<TreeEntry> entries;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        entries.push_back(describe(*it, depth));
    }
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
        const fs::path path = entry.directory ? entry.path : fs::path();
        const int depth = entry.depth;
        const WalkStep step = visit(entry);
        if (step == WalkStep::Stop) return;
        if (step == WalkStep::Enter && !path.empty()) open(path, depth + 1);
    }
}

}  // namespace tindrel
