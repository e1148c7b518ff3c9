#pragma once

// What a folder holds, by names and extensions only: no file is opened.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "reader/TreeWalk.hpp"

namespace tindrel {

// Everything below one data folder. A directory that could not be listed carries the error.
struct DataWalk {
    std::filesystem::path dataDir;  // empty when there was no walk
    std::vector<TreeEntry> entries;
    std::error_code error;  // of listing the data folder itself

    // A directory is listed right after its visit, so the last entry is the one that failed.
    void noteUnlisted(std::error_code failure) {
        (entries.empty() ? error : entries.back().error) = failure;
    }
};

[[nodiscard]] DataWalk walkDataFolder(const std::filesystem::path& dataDir);

struct ProjectScan {
    std::filesystem::path root;     // absolute and canonical
    std::filesystem::path dataDir;  // the game's data folder
    bool hasData = false;
    bool hasModels = false, hasLevels = false, hasMenu = false, hasVideo = false;
    bool hasLifebar = false, hasScript = false;
    bool hasTitle = false, hasSelect = false, hasLoading = false;
    std::uint64_t fileCount = 0, imageCount = 0, audioCount = 0, textCount = 0;
    std::vector<std::string> warnings;  // in the order of discovery
    std::vector<TreeEntry> entries;     // everything below dataDir, in the order of the walk
};

// Throws a filesystem_error named after the operation for an error other than absence. `walked` is
// what the caller has seen below the data folder already, if anything; it spares another walk.
[[nodiscard]] ProjectScan scanProject(const std::filesystem::path& root, DataWalk walked = {});

// ".c" or ".h", in lower case.
[[nodiscard]] constexpr bool isScriptExtension(std::string_view extension) {
    return extension == ".c" || extension == ".h";
}

// An image `stem` with the extension .gif, .png or .bmp.
[[nodiscard]] bool imageExists(const std::filesystem::path& stem);

// The child of `folder` with that name, without regard to case; the plain join where there is none
// or more than one.
[[nodiscard]] std::filesystem::path childOf(const std::filesystem::path& folder,
                                            std::string_view name);

}  // namespace tindrel
