#pragma once

// What a game's text names and its data folder does not hold.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/AssetFinder.hpp"
#include "analysis/ProjectAnalysis.hpp"

namespace tindrel {

// One missing thing, with the first place that names it.
struct MissingName {
    std::string text;        // as the record has it
    std::string namedBy;     // file, relative to the project root, generic form
    std::uint64_t line = 0;  // in that file; 0 where no line shows it literally
    std::uint64_t mentions = 0;
    std::string meant;  // the model whose name it nearly is; else empty
};

struct MissingGroup {
    std::string_view title;          // "Pictures"
    std::uint64_t total = 0;         // distinct names
    std::vector<MissingName> names;  // the most frequent first, kMaxMissingNames at most
};
inline constexpr std::size_t kMaxMissingNames = 200;

// The groups that miss anything. A name counts once however it is spelled: case, slashes and a
// leading "data/" make no difference. `analysis` tells which helpers the "@cmd" lines rest on.
[[nodiscard]] std::vector<MissingGroup> findMissingFiles(GameReader& game, AssetFinder& assets,
                                                         const ProjectAnalysis& analysis);

}  // namespace tindrel
