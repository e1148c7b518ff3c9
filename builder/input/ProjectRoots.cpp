#include "input/ProjectRoots.hpp"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "PathEncoding.hpp"
#include "platform/FileStatus.hpp"
#include "platform/LinkStatus.hpp"
#include "reader/DataPaths.hpp"
#include "reader/Tokens.hpp"
#include "reader/TreeWalk.hpp"

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

// What a search keeps of the data folders that it meets. Beyond that somebody has pointed at a
// whole disk, and the data folder that is chosen is walked anew.
constexpr std::size_t kMostKeptEntries = 200'000;

struct RootCandidate {
    std::int32_t score;
    fs::path path;
    fs::path dataDir;
};

std::string foldedName(const fs::path& path) {
    return toLower(PathEncoding::utf8(path.filename()));
}

// A real directory, no link; false for what cannot be asked.
bool isReadableDirectory(const fs::path& path) {
    std::error_code error;
    return linkStatus(path, error).type() == fs::file_type::directory;
}

// Empty where there is none.
fs::path dataFolderOf(const fs::path& folder) {
    fs::path data = childOf(folder, "data");
    if (isReadableDirectory(data)) return data;
    data = (folder / "assets" / "openbor-data").lexically_normal();
    return isReadableDirectory(data) ? data : fs::path();
}

bool isText(const TreeEntry& entry) {
    return entry.regularFile && (entry.extension() == ".txt" || entry.extension() == ".c");
}

std::int32_t countTexts(const fs::path& folder) {
    std::int32_t texts = 0;
    walkTree(folder, [&](const TreeEntry& entry) {
        if (isText(entry)) ++texts;
        return texts < kMostTextPoints ? WalkStep::Enter : WalkStep::Stop;
    });
    return texts;
}

std::int32_t countTexts(const DataWalk& walk) {
    const auto texts = std::count_if(walk.entries.begin(), walk.entries.end(), isText);
    return static_cast<std::int32_t>(std::min<std::ptrdiff_t>(texts, kMostTextPoints));
}

// `walk` is null where the data folder has not been walked yet.
std::int32_t scoreDataFolder(const fs::path& data, const DataWalk* walk) {
    std::int32_t score = kDataFolderPoints;
    PathResolver files(data);
    for (const auto& [name, points] : kFilePoints) {
        const fs::path& file = files.resolve(name);
        std::error_code error;
        if (!file.empty() && fs::is_regular_file(file, error)) score += points;
    }
    return score + (walk != nullptr ? countTexts(*walk) : countTexts(data));
}

// One walk over a folder: where roots may be, and what the outermost data folders hold.
class RootSearch {
  public:
    explicit RootSearch(const fs::path& folder) {
        addFolder(folder);
        // The user may have pointed at the data folder itself.
        if (foldedName(folder) == "data" && isReadableDirectory(folder)) {
            addFolder(folder.parent_path());
        }
        walkTree(
            folder, [&](TreeEntry& entry) { return visit(entry); },
            [&](const fs::path&, std::error_code error) {
                if (walk_ != nullptr) walk_->noteUnlisted(error);
            });
    }

    [[nodiscard]] std::vector<RootCandidate> candidates() const {
        std::vector<RootCandidate> scored;
        for (const fs::path& folder : folders_) {
            fs::path data = dataFolderOf(folder);
            if (data.empty()) continue;
            const auto walk = walks_.find(data.native());
            const std::int32_t score =
                scoreDataFolder(data, walk == walks_.end() ? nullptr : &walk->second);
            scored.push_back({score, folder, std::move(data)});
        }
        return scored;
    }

    [[nodiscard]] DataWalk takeWalk(const fs::path& data) {
        const auto walk = walks_.find(data.native());
        return walk == walks_.end() ? DataWalk{} : std::move(walk->second);
    }

  private:
    void addFolder(const fs::path& folder) {
        if (seen_.insert(folder.native()).second) folders_.push_back(folder);
    }

    WalkStep visit(TreeEntry& entry) {
        if (walk_ != nullptr && entry.depth <= walkDepth_) walk_ = nullptr;
        const bool mayHoldRoots = entry.directory && entry.depth <= kDeepestData;
        const bool isData = mayHoldRoots && addRootOf(entry);
        if (walk_ != nullptr) {
            keep(std::move(entry));
            return WalkStep::Enter;
        }
        if (isData && kept_ < kMostKeptEntries) {
            walkDepth_ = entry.depth;
            walk_ = &walks_[entry.native];
            walk_->dataDir = entry.path();
            return WalkStep::Enter;
        }
        return entry.depth < kDeepestData ? WalkStep::Enter : WalkStep::Pass;
    }

    // False when the folder is none that makes another one a root.
    bool addRootOf(const TreeEntry& folder) {
        const std::string_view name = folder.name();
        if (name != "data" && name != "openbor-data") return false;
        const fs::path parent = folder.path().parent_path();
        if (name == "data") {
            addFolder(parent);
            return true;
        }
        if (foldedName(parent) != "assets") return false;
        addFolder(parent.parent_path());
        return true;
    }

    void keep(TreeEntry entry) {
        walk_->entries.push_back(std::move(entry));
        if (++kept_ < kMostKeptEntries) return;
        walks_.clear();
        walk_ = nullptr;
    }

    std::vector<fs::path> folders_;
    std::unordered_set<fs::path::string_type> seen_;
    std::unordered_map<fs::path::string_type, DataWalk> walks_;  // by data folder
    DataWalk* walk_ = nullptr;  // of the data folder that the search is in
    int walkDepth_ = 0;
    std::size_t kept_ = 0;
};

}  // namespace

std::int32_t scoreProjectRoot(const fs::path& folder) {
    const fs::path data = dataFolderOf(folder);
    return data.empty() ? -1 : scoreDataFolder(data, nullptr);
}

ProjectSearch findProjectRoots(const fs::path& folder) {
    RootSearch search(folder);
    std::vector<RootCandidate> candidates = search.candidates();
    std::sort(candidates.begin(), candidates.end(), [](const auto& left, const auto& right) {
        if (left.score != right.score) return left.score > right.score;
        return left.path.u8string() < right.path.u8string();
    });
    ProjectSearch found;
    std::unordered_set<fs::path::string_type> kept;
    for (const RootCandidate& candidate : candidates) {
        fs::path root = canonicalOrAbsolute(candidate.path);
        if (kept.insert(root.native()).second) found.roots.push_back(std::move(root));
    }
    if (!candidates.empty()) found.bestData = search.takeWalk(candidates.front().dataDir);
    return found;
}

std::vector<fs::path> findPakFiles(const fs::path& path) {
    std::error_code error;
    if (toLower(PathEncoding::utf8(path.extension())) == ".pak" && fs::is_regular_file(path, error))
        return {path};
    std::vector<fs::path> paks;
    walkTree(path, [&](const TreeEntry& entry) {
        if (entry.regularFile && entry.extension() == ".pak") paks.push_back(entry.path());
        return WalkStep::Enter;
    });
    std::sort(paks.begin(), paks.end());
    return paks;
}

void sortByScore(std::vector<fs::path>& roots) {
    std::vector<RootCandidate> scored;
    for (fs::path& root : roots) {
        const std::int32_t score = scoreProjectRoot(root);
        scored.push_back({score, std::move(root), {}});
    }
    std::stable_sort(scored.begin(), scored.end(),
                     [](const auto& left, const auto& right) { return left.score > right.score; });
    roots.clear();
    for (RootCandidate& candidate : scored) roots.push_back(std::move(candidate.path));
}

}  // namespace tindrel
