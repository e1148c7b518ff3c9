#include "reader/TreeState.hpp"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <tuple>
#include <utility>

namespace tindrel {
namespace fs = std::filesystem;
namespace {

void addFile(TreeState& state, const fs::path& path) {
    std::error_code noTime, noSize;
    FileState file{path.native(), fs::file_size(path, noSize), fs::last_write_time(path, noTime)};
    if (!noTime && !noSize) state.push_back(std::move(file));
}

}  // namespace

TreeState treeState(const fs::path& watched, const fs::path& except) {
    TreeState state;
    std::error_code gone;
    if (!fs::is_directory(watched, gone)) {
        addFile(state, watched);
        return state;
    }
    walkTree(watched, [&](const TreeEntry& entry) {
        if (entry.regularFile) addFile(state, entry.path());
        return entry.directory && fs::equivalent(entry.path(), except, gone) ? WalkStep::Pass
                                                                             : WalkStep::Enter;
    });
    std::ranges::sort(state, {}, &FileState::path);
    return state;
}

std::vector<fs::path> changedFiles(const TreeState& before, const TreeState& after) {
    // A file that changed stands in both, once as it was.
    TreeState different;
    std::ranges::set_symmetric_difference(
        before, after, std::back_inserter(different), [](const FileState& a, const FileState& b) {
            return std::tie(a.path, a.size, a.changed) < std::tie(b.path, b.size, b.changed);
        });
    std::vector<fs::path> paths;
    for (const FileState& file : different) {
        if (paths.empty() || paths.back().native() != file.path) paths.emplace_back(file.path);
    }
    return paths;
}

}  // namespace tindrel
