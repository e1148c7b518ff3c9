#pragma once

// Which file on disk a name in a game's text means, by the rules that the port's runtime applies to
// pictures, sounds and scripts.

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "analysis/BaseNames.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

// One name for all spellings of a path.
[[nodiscard]] std::string foldedPath(std::string_view text);

class AssetFinder {
  public:
    AssetFinder(const ProjectScan& project, GameReader& game);

    // Null where the disk holds no such file. What is returned belongs to the scan or the reader.
    [[nodiscard]] const NativePath* file(std::string_view text);
    // Any of the picture formats may stand in for the one that is written.
    [[nodiscard]] const NativePath* picture(std::string_view text);
    // A name without an extension means the first sound format that is there.
    [[nodiscard]] const NativePath* sound(std::string_view text);

    // A script that is not at its path is the one file of its base name anywhere in the game.
    [[nodiscard]] const NativePath* script(std::string_view text);

  private:
    [[nodiscard]] const NativePath* fileAt(std::string_view text, const std::string& folded);

    GameReader& game_;
    const std::vector<TreeEntry>& entries_;
    // The regular files of the walk by their path below the data folder in lower case, so that a
    // name costs no question to the disk. Null where only the resolver can tell: for a link, and
    // where two names differ in case alone.
    std::unordered_map<std::string_view, const NativePath*> files_;
    bool foldersDifferInCase_ = false;
    std::optional<BaseNames> baseNames_;  // made when a script asks first
};

}  // namespace tindrel
