#pragma once

// Where the game lies inside a folder that may hold it anywhere.

#include <cstdint>
#include <filesystem>
#include <vector>

#include "reader/ProjectScan.hpp"

namespace tindrel {

// How much like a game's root the folder looks: -1 without a data folder, 10 for an empty one, up
// to 2,200. Never fails: what cannot be read counts as absent.
[[nodiscard]] std::int32_t scoreProjectRoot(const std::filesystem::path& folder);

struct ProjectSearch {
    std::vector<std::filesystem::path> roots;
    DataWalk bestData;  // of the first root, where the search came through its data folder
};

// The roots in and around the folder, canonical, best first, at equal scores in the order of their
// paths. Data folders are found down to ten levels below it, and as the folder itself.
[[nodiscard]] ProjectSearch findProjectRoots(const std::filesystem::path& folder);

// All PAK files below the path at any depth, sorted; the path alone when it is one itself.
[[nodiscard]] std::vector<std::filesystem::path> findPakFiles(const std::filesystem::path& path);

// Best score first, each folder scored once; the order of equal scores is kept.
void sortByScore(std::vector<std::filesystem::path>& roots);

}  // namespace tindrel
