#include "input/ProjectRoots.hpp"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <utility>

#include "PathEncoding.hpp"
#include "input/TreeWalk.hpp"
#include "platform/FileStatus.hpp"
#include "reader/DataPaths.hpp"
#include "reader/ProjectScan.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr int kDeepestData = 10;  // elements below the folder of the search

constexpr std::int32_t kDataFolderPoints = 10;
constexpr std::int32_t kMostTextPoints = 200;
constexpr std::pair<std::string_view, std::int32_t> kFilePoints[] = {
    {"models.txt", 1000}, {"levels.txt", 900}, {"video.txt", 40},
    {"menu.txt", 30},     {"script.txt", 20},
};

struct RootCandidate {
    std::int32_t score;
    fs::path path;
};

std::string foldedName(const fs::path& path) {
    return toLower(PathEncoding::utf8(path.filename()));
}

std::string foldedExtension(const fs::path& path) {
    return toLower(PathEncoding::utf8(path.extension()));
}

// A real directory, no link; false for what cannot be asked.
bool isReadableDirectory(const fs::path& path) {
    std::error_code error;
    return fs::symlink_status(path, error).type() == fs::file_type::directory;
}

std::int32_t countTexts(const fs::path& folder) {
    std::int32_t texts = 0;
    walkTree(folder, [&](const WalkEntry& entry) {
        if (entry.regularFile) {
            const std::string extension = foldedExtension(entry.path);
            if (extension == ".txt" || extension == ".c") ++texts;
        }
        return texts < kMostTextPoints ? WalkStep::Enter : WalkStep::Stop;
    });
    return texts;
}

void addCandidate(std::vector<RootCandidate>& candidates,
                  std::unordered_set<fs::path::string_type>& seen, const fs::path& folder) {
    if (!seen.insert(folder.native()).second) return;
    const std::int32_t score = scoreProjectRoot(folder);
    if (score >= 0) candidates.push_back({score, folder});
}

}  // namespace

std::int32_t scoreProjectRoot(const fs::path& folder) {
    fs::path data = childOf(folder, "data");
    if (!isReadableDirectory(data)) {
        data = (folder / "assets" / "openbor-data").lexically_normal();
        if (!isReadableDirectory(data)) return -1;
    }
    std::int32_t score = kDataFolderPoints;
    PathResolver files(data);
    for (const auto& [name, points] : kFilePoints) {
        const fs::path& file = files.resolve(name);
        std::error_code error;
        if (!file.empty() && fs::is_regular_file(file, error)) score += points;
    }
    return score + countTexts(data);
}

std::vector<fs::path> findProjectRoots(const fs::path& folder) {
    std::vector<RootCandidate> candidates;
    std::unordered_set<fs::path::string_type> seen;
    addCandidate(candidates, seen, folder);
    // The user may have pointed at the data folder itself.
    if (foldedName(folder) == "data" && isReadableDirectory(folder)) {
        addCandidate(candidates, seen, folder.parent_path());
    }
    walkTree(folder, [&](const WalkEntry& entry) {
        if (!entry.directory) return WalkStep::Pass;
        const std::string name = foldedName(entry.path);
        const fs::path parent = entry.path.parent_path();
        if (name == "data") {
            addCandidate(candidates, seen, parent);
        } else if (name == "openbor-data" && foldedName(parent) == "assets") {
            addCandidate(candidates, seen, parent.parent_path());
        }
        return entry.depth < kDeepestData ? WalkStep::Enter : WalkStep::Pass;
    });

    std::sort(candidates.begin(), candidates.end(), [](const auto& left, const auto& right) {
        if (left.score != right.score) return left.score > right.score;
        return left.path.u8string() < right.path.u8string();
    });
    std::vector<fs::path> roots;
    std::unordered_set<fs::path::string_type> kept;
    for (const RootCandidate& candidate : candidates) {
        fs::path root = canonicalOrAbsolute(candidate.path);
        if (kept.insert(root.native()).second) roots.push_back(std::move(root));
    }
    return roots;
}

std::vector<fs::path> findPakFiles(const fs::path& path) {
    std::error_code error;
    if (foldedExtension(path) == ".pak" && fs::is_regular_file(path, error)) return {path};
    std::vector<fs::path> paks;
    walkTree(path, [&](const WalkEntry& entry) {
        if (entry.regularFile && foldedExtension(entry.path) == ".pak") paks.push_back(entry.path);
        return WalkStep::Enter;
    });
    std::sort(paks.begin(), paks.end());
    return paks;
}

void sortByScore(std::vector<fs::path>& roots) {
    std::vector<RootCandidate> scored;
    for (fs::path& root : roots) {
        const std::int32_t score = scoreProjectRoot(root);
        scored.push_back({score, std::move(root)});
    }
    std::stable_sort(scored.begin(), scored.end(),
                     [](const auto& left, const auto& right) { return left.score > right.score; });
    roots.clear();
    for (RootCandidate& candidate : scored) roots.push_back(std::move(candidate.path));
}

}  // namespace tindrel
