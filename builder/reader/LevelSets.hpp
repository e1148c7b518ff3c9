#pragma once

// levels.txt: which stages make up the game, in which order, with which scenes between them.

#include <string>
#include <vector>

#include "reader/GameReader.hpp"
#include "reader/StageDef.hpp"

namespace tindrel {

[[nodiscard]] std::vector<LevelSetDef> readLevelSets(const TextFile& file);

// Every stage that levels.txt lists and the disk holds, in order. Throws ("exists") for a
// file-system error other than absence.
[[nodiscard]] std::vector<StageDef> readStages(GameReader& game);

// What a list of scene files shows, and the music that sounds first.
struct SceneList {
    std::vector<CutsceneAnimationDef> animations;
    std::string music;
    bool musicLoop = false;
};

// `sceneFiles` are data paths; a missing file is passed over.
[[nodiscard]] SceneList readScenes(GameReader& game, const std::vector<std::string>& sceneFiles);

}  // namespace tindrel
