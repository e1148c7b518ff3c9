#pragma once

// The search for a CMake, also where none is on the search path.

#include <filesystem>
#include <vector>

#include "platform/HostSystem.hpp"

namespace tindrel {

// Folders that candidates start from; an empty one drops its candidates.
struct SearchFolders {
    std::filesystem::path builder;
    std::filesystem::path programFiles;
    std::filesystem::path programFilesX86;
};

// Where a CMake may stand, best first. Asks the disk nothing.
[[nodiscard]] std::vector<std::filesystem::path> cmakeCandidates(System system,
                                                                 const SearchFolders& folders);

// The one on the search path, else the first candidate that exists; empty when there is none.
// Throws ("exists").
[[nodiscard]] std::filesystem::path findCmake();

}  // namespace tindrel
