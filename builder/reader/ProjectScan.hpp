#pragma once

// What a folder holds, by names and extensions only: no file is opened.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tindrel {

// One entry below the data folder, so that later passes need no walk of their own.
struct DataEntry {
    std::filesystem::path path;  // data folder joined with the way to the entry
    std::string extension;       // lower case, with its dot
    bool regularFile = false;    // links to regular files included
    bool directory = false;      // links excluded
    bool symlink = false;
};

struct ProjectScan {
    std::filesystem::path root;     // absolute and canonical
    std::filesystem::path dataDir;  // the game's data folder
    bool hasData = false;
    bool hasModels = false, hasLevels = false, hasMenu = false, hasVideo = false;
    bool hasLifebar = false, hasScript = false;
    bool hasTitle = false, hasSelect = false, hasLoading = false;
    std::uint64_t fileCount = 0, imageCount = 0, audioCount = 0, textCount = 0;
    std::vector<std::string> warnings;  // in the order of discovery
    std::vector<DataEntry> entries;     // everything below dataDir, in the file system's order
};

// Throws a filesystem_error named after the operation for an error other than absence.
[[nodiscard]] ProjectScan scanProject(const std::filesystem::path& root);

// An image `stem` with the extension .gif, .png or .bmp.
[[nodiscard]] bool imageExists(const std::filesystem::path& stem);

// The child of `folder` with that name, without regard to case; the plain join where there is none
// or more than one.
[[nodiscard]] std::filesystem::path childOf(const std::filesystem::path& folder,
                                            std::string_view name);

}  // namespace tindrel
