#pragma once

// Which text files of a project its game loads. Folders hold drafts and leftovers: what is said of
// those matters to nobody who plays.

#include <filesystem>
#include <set>
#include <string>

#include "analysis/BrokenScripts.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

class LoadedFiles {
  public:
    // What models.txt and levels.txt lead to, the scripts that run there, and the files that are
    // known by their names. Without a models.txt every file counts.
    LoadedFiles(const ProjectScan& project, GameReader& game, const ScriptCheckup& scripts);

    // `relative` to the project root.
    [[nodiscard]] bool has(const std::filesystem::path& relative) const;

  private:
    void add(GameReader& game, std::string_view name);

    bool all_;
    bool allScripts_;
    std::set<std::string> files_;  // generic form
};

}  // namespace tindrel
