#pragma once

// Stages and level sets.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tindrel {

// Values of SpawnDef::spawnType.
enum SpawnType : std::int32_t { kSpawnPlain = 0, kSpawnItem = 1, kSpawnWeapon = 2, kSpawnBoss = 4 };

// Values of StageInstructionDef::kind.
enum InstructionKind : std::int32_t { kInstructionSpawn = 0, kInstructionEvent = 1 };

// SpawnDef to StageDef, plain structures of the fields listed there.
#define RECORD(Row, Record) struct Record {
#define FIELD(type, name, value) type name = value;
#define SHAPE(name) std::array<float, 9> name{};
#define LIST(element, name, count, array) std::vector<element> name;
#define OWN FIELD
// clang-format off
#define END_RECORD };
// clang-format on
#include "reader/Stages.def"

// One "set" of levels.txt. The vectors after backgroundHeight run in parallel, one element for
// each "file" line.
struct LevelSetDef {
    std::string name;
    std::int32_t order = 0;
    std::int32_t lives = 0, credits = 0, canSave = 0, skipSelect = 0, completeBg = 0, noShare = 0;
    std::int32_t ifComplete = 0;
    std::int32_t zMin = 160, zMax = 232, backgroundHeight = 160;
    std::vector<std::string> files, firstScenes;
    std::vector<std::vector<std::string>> preScenes, postScenes;
    std::vector<std::int32_t> chapters;
    std::vector<std::string> branchNames;
    std::vector<std::int32_t> stageZMin, stageZMax, stageHeight;
    std::vector<bool> campaignEnd;
};

}  // namespace tindrel
