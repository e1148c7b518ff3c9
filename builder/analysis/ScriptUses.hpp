#pragma once

// Where a game's scripts use the names that the port does not know.

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/ProjectAnalysis.hpp"
#include "reader/GameReader.hpp"
#include "reader/ProjectScan.hpp"

namespace tindrel {

struct ScriptUse {
    std::string file;        // relative to the project root, generic form
    std::uint64_t line = 0;  // of the "@script" for a block in an entity file
    bool inCode = true;      // not in a comment or text
};
struct ScriptUses {
    std::uint64_t total = 0, inCode = 0;
    std::vector<ScriptUse> places;  // the first kMaxScriptUses, those in code first
};
inline constexpr std::size_t kMaxScriptUses = 40;

// By the names of the analysis' script findings, in the order of the walk.
[[nodiscard]] std::map<std::string, ScriptUses, std::less<>> findScriptUses(
    const ProjectScan& project, const ProjectAnalysis& analysis, GameReader& game);

}  // namespace tindrel
