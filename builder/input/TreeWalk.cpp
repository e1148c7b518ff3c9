#include "input/TreeWalk.hpp"

#include <utility>
#include <vector>

namespace tindrel {
namespace fs = std::filesystem;
namespace {

struct Folder {
    fs::path path;
    int depth;
};

WalkEntry describe(const fs::directory_entry& found, int depth) {
    WalkEntry entry;
    entry.path = found.path();
    entry.depth = depth;
    // The types come along with the listing; a question that fails leaves an entry of no type.
    std::error_code ignored;
    entry.link = found.is_symlink(ignored);
    entry.regularFile = found.is_regular_file(ignored);
    entry.directory = !entry.link && !entry.regularFile && found.is_directory(ignored);
    return entry;
}

}  // namespace

void walkTree(const fs::path& folder, const std::function<WalkStep(const WalkEntry&)>& visit,
              const std::function<void(const fs::path&)>& unlisted) {
    std::vector<Folder> pending{{folder, 0}};
    while (!pending.empty()) {
        const Folder current = std::move(pending.back());
        pending.pop_back();
        std::error_code error;
        for (fs::directory_iterator it(current.path, error), end; !error && it != end;
             it.increment(error)) {
            WalkEntry entry = describe(*it, current.depth + 1);
            const WalkStep step = visit(entry);
            if (step == WalkStep::Stop) return;
            if (step == WalkStep::Enter && entry.directory) {
                pending.push_back({std::move(entry.path), entry.depth});
            }
        }
        if (error && unlisted) unlisted(current.path);
    }
}

}  // namespace tindrel
