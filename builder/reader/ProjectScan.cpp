#include "reader/ProjectScan.hpp"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "PathEncoding.hpp"
#include "platform/FileStatus.hpp"
#include "reader/DataPaths.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

struct TextFileFlag {
    std::string_view name;
    bool ProjectScan::*flag;
};

constexpr TextFileFlag kTextFiles[] = {
    {"models.txt", &ProjectScan::hasModels},   {"levels.txt", &ProjectScan::hasLevels},
    {"menu.txt", &ProjectScan::hasMenu},       {"video.txt", &ProjectScan::hasVideo},
    {"lifebar.txt", &ProjectScan::hasLifebar}, {"script.txt", &ProjectScan::hasScript},
};

struct ExtensionCounter {
    std::string_view extension;
    std::uint64_t ProjectScan::*counter;
};

constexpr ExtensionCounter kExtensions[] = {
    {".png", &ProjectScan::imageCount},  {".gif", &ProjectScan::imageCount},
    {".bmp", &ProjectScan::imageCount},  {".jpg", &ProjectScan::imageCount},
    {".pcx", &ProjectScan::imageCount},  {".jpeg", &ProjectScan::imageCount},
    {".webp", &ProjectScan::imageCount}, {".wav", &ProjectScan::audioCount},
    {".ogg", &ProjectScan::audioCount},  {".mp3", &ProjectScan::audioCount},
    {".bor", &ProjectScan::audioCount},  {".flac", &ProjectScan::audioCount},
    {".txt", &ProjectScan::textCount},   {".cfg", &ProjectScan::textCount},
    {".c", &ProjectScan::textCount},     {".h", &ProjectScan::textCount},
};

// A title or loading image; a .pcx or .jpg one does not count.
constexpr std::string_view kScreenImageExtensions[] = {".gif", ".png", ".bmp"};

// Takes over what the walk has found, unless some of it could not be read.
void addEntries(ProjectScan& scan, DataWalk walk) {
    if (walk.error) {
        throw fs::filesystem_error("recursive_directory_iterator::recursive_directory_iterator",
                                   scan.dataDir, walk.error);
    }
    for (const TreeEntry& entry : walk.entries) {
        if (entry.error) {
            throw fs::filesystem_error(entry.directory ? "recursive_directory_iterator::operator++"
                                                       : "directory_entry::status",
                                       entry.path(), entry.error);
        }
        if (!entry.regularFile) continue;
        ++scan.fileCount;
        const std::string_view extension = entry.extension();
        const auto* const row =
            std::find_if(std::begin(kExtensions), std::end(kExtensions),
                         [&](const auto& known) { return known.extension == extension; });
        if (row != std::end(kExtensions)) ++(scan.*row->counter);
    }
    scan.entries = std::move(walk.entries);
}

}  // namespace

DataWalk walkDataFolder(const fs::path& dataDir) {
    DataWalk walk;
    walk.dataDir = dataDir;
    walkTree(
        dataDir,
        [&](TreeEntry& entry) {
            walk.entries.push_back(std::move(entry));
            return WalkStep::Enter;
        },
        [&](const fs::path&, std::error_code error) { walk.noteUnlisted(error); });
    return walk;
}

ProjectScan scanProject(const fs::path& root, DataWalk walked) {
    ProjectScan scan;
    const fs::path absoluteRoot = tindrel::absolute(root);
    std::error_code error;
    scan.root = fs::weakly_canonical(absoluteRoot, error);
    if (error) scan.root = absoluteRoot.lexically_normal();

    scan.dataDir = childOf(scan.root, "data");
    if (!isDirectory(scan.dataDir)) {
        // A port that was generated before scans as a project, too.
        fs::path portData = scan.root / "assets" / "openbor-data";
        if (isDirectory(portData)) scan.dataDir = std::move(portData);
    }
    scan.hasData = isDirectory(scan.dataDir);
    if (!scan.hasData) {
        scan.warnings.emplace_back("Pasta data/ nao encontrada.");
        return scan;
    }

    PathResolver files(scan.dataDir);
    for (const auto& [name, flag] : kTextFiles) {
        const fs::path& file = files.resolve(name);
        scan.*flag = !file.empty() && tindrel::exists(file);
    }
    const fs::path screens = scan.dataDir / "bgs";
    scan.hasTitle = imageExists(screens / "title");
    scan.hasSelect = imageExists(screens / "select");
    scan.hasLoading = imageExists(screens / "loading") || imageExists(screens / "loading2");
    if (!scan.hasModels) scan.warnings.emplace_back("models.txt nao encontrado.");
    if (!scan.hasLevels) scan.warnings.emplace_back("levels.txt nao encontrado.");
    if (walked.dataDir.native() != scan.dataDir.native()) walked = walkDataFolder(scan.dataDir);
    addEntries(scan, std::move(walked));
    return scan;
}

bool imageExists(const fs::path& stem) {
    return std::any_of(std::begin(kScreenImageExtensions), std::end(kScreenImageExtensions),
                       [&](std::string_view extension) {
                           fs::path image = stem;
                           image += extension;
                           return tindrel::exists(image);
                       });
}

fs::path childOf(const fs::path& folder, std::string_view name) {
    fs::path child = resolveDataPath(folder, name);
    return child.empty() ? folder / PathEncoding::path(name) : child;
}

}  // namespace tindrel
