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

// How deep a stage is, as the "z" line ahead of it says.
struct DepthLimits {
    std::int32_t zMin = 160, zMax = 232, backgroundHeight = 160;
};

// One "file" line of levels.txt. All paths are data paths.
struct StageEntry {
    std::string file;
    std::vector<std::string> preScenes, postScenes;  // shown ahead of the stage, and behind it
    std::int32_t chapter = 0;
    std::string branchName;
    DepthLimits depth;
    bool campaignEnd = false;
};

// One "set" of levels.txt.
struct LevelSetDef {
    std::string name;
    std::int32_t order = 0;
    std::int32_t lives = 0, credits = 0, canSave = 0, skipSelect = 0, completeBg = 0, noShare = 0;
    std::int32_t ifComplete = 0;
    DepthLimits depth;  // for the next stage
    std::vector<StageEntry> stages;
};

}  // namespace tindrel
