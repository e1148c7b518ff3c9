#pragma once

// Whether somebody has changed anything in a folder, told by sizes and times.

#include <cstdint>
#include <filesystem>
#include <vector>

#include "reader/TreeWalk.hpp"

namespace tindrel {

struct FileState {
    NativePath path;
    std::uintmax_t size = 0;
    std::filesystem::file_time_type changed;

    bool operator==(const FileState&) const = default;
};

// Files in the order of their paths.
using TreeState = std::vector<FileState>;

// Every file below the folder `watched`, or that file, but nothing below `except`. What is absent
// or cannot be asked is left out.
[[nodiscard]] TreeState treeState(const std::filesystem::path& watched,
                                  const std::filesystem::path& except);

// Files that came, went or changed.
[[nodiscard]] std::vector<std::filesystem::path> changedFiles(const TreeState& before,
                                                              const TreeState& after);

}  // namespace tindrel
