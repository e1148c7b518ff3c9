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

void check(const char* operation, const fs::path& path, const std::error_code& error) {
    if (error) throw fs::filesystem_error(operation, path, error);
}

DataEntry describe(const fs::directory_entry& found) {
    DataEntry entry;
    entry.path = found.path();
    entry.extension = toLower(PathEncoding::utf8(entry.path.extension()));
    // The type that the listing brought along; only a link costs a question of its own.
    std::error_code error;
    entry.symlink = found.is_symlink(error);
    check("directory_entry::status", entry.path, error);
    if (entry.symlink) {
        entry.regularFile = found.is_regular_file(error);
        if (error && !isAbsence(error)) check("directory_entry::status", entry.path, error);
    } else {
        entry.regularFile = found.is_regular_file(error);
        check("directory_entry::status", entry.path, error);
        entry.directory = !entry.regularFile && found.is_directory(error);
        check("directory_entry::status", entry.path, error);
    }
    return entry;
}

void walkDataFolder(ProjectScan& scan) {
    std::error_code error;
    fs::recursive_directory_iterator it(scan.dataDir, error);
    check("recursive_directory_iterator::recursive_directory_iterator", scan.dataDir, error);
    while (it != fs::recursive_directory_iterator()) {
        const DataEntry& entry = scan.entries.emplace_back(describe(*it));
        if (entry.regularFile) {
            ++scan.fileCount;
            const auto* const row =
                std::find_if(std::begin(kExtensions), std::end(kExtensions),
                             [&](const auto& known) { return known.extension == entry.extension; });
            if (row != std::end(kExtensions)) ++(scan.*row->counter);
        }
        it.increment(error);
        check("recursive_directory_iterator::operator++", entry.path, error);
    }
}

}  // namespace

ProjectScan scanProject(const fs::path& root) {
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
    walkDataFolder(scan);
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
