#pragma once

// Which file on disk a name in a game's text means, by the rules that the port's runtime applies to
// pictures and sounds.

#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_set>

#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

class AssetFinder {
  public:
    AssetFinder(const ProjectScan& project, GameReader& game);

    // Null where the disk holds no such file. What is returned belongs to the GameReader.
    [[nodiscard]] const std::filesystem::path* file(std::string_view text);
    // Any of the picture formats may stand in for the one that is written.
    [[nodiscard]] const std::filesystem::path* picture(std::string_view text);
    // A name without an extension means the first sound format that is there.
    [[nodiscard]] const std::filesystem::path* sound(std::string_view text);

  private:
    [[nodiscard]] const std::filesystem::path* fileAt(std::string_view text,
                                                      const std::string& folded);

    GameReader& game_;
    std::unordered_set<std::filesystem::path::string_type> files_;  // regular files of the walk
    // The same relative to the data folder, in lower case: what is not here is nowhere, so that a
    // name without a file costs no question to the disk.
    std::unordered_set<std::string> folded_;
};

}  // namespace tindrel
