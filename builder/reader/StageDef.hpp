#pragma once

// Stages and level sets. Fields carry the names of the generated tables that they feed; the
// defaults are those of a fresh record.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tindrel {

// Values of SpawnDef::spawnType.
enum SpawnType : std::int32_t { kSpawnPlain = 0, kSpawnItem = 1, kSpawnWeapon = 2, kSpawnBoss = 4 };

struct SpawnDef {
    std::int32_t id = 0;
    std::string model, alias, item, map, spawnScript;
    std::int32_t x = 0, z = 200, a = 0, y = 0, at = 0;
    std::int32_t health = -1, score = 0, spawnType = kSpawnPlain;
    bool boss = false, flip = false, hasAt = false;
};

struct GeometryDef {
    std::string kind;
    std::int32_t x = 0, z = 0, w = 0, h = 0, depth = 0, altitude = 0;
    bool openborShape = false;
    std::array<float, 9> shape{};
};

struct LayerDef {
    std::string kind, path;
    float xRatio = 0.5F, zRatio = 0.5F;
    std::int32_t xOffset = 0, zOffset = 0, xSpacing = 0, zSpacing = 0, xRepeat = 0, zRepeat = 0;
    std::int32_t zOrder = 0, transparency = 0, alpha = 0, waterMode = 0;
    std::int32_t amplitude = 0, wavelength = 0;
    float waveSpeed = 0, bgSpeedRatio = 0;
};

struct StageEventDef {
    std::int32_t id = 0;
    std::string kind;
    std::int32_t at = 0, value = 0, group = 0;
    bool hasAt = false;
    std::string text;
};

// Values of StageInstructionDef::kind.
enum InstructionKind : std::int32_t { kInstructionSpawn = 0, kInstructionEvent = 1 };

struct StageInstructionDef {
    std::int32_t sequence = 0;  // place in the source among spawns and events
    std::int32_t kind = kInstructionSpawn;
    std::int32_t refId = 0;  // SpawnDef::id or StageEventDef::id
};

struct CutsceneAnimationDef {
    std::string path;  // data path
    std::int32_t x = 0, y = 0, skip = 0, noSkip = 0;
    std::int32_t durationTicks = 0;  // 0 plays the full cycle
    std::int32_t sceneIndex = 0;
    std::string musicBefore;  // data path
    bool musicLoop = false, silenceBefore = false;
};

struct StageDef {
    std::string sourceFile;  // relative to the project root
    std::string setName;
    std::string direction = "right", typeName;
    std::string background, music;  // data paths
    bool musicLoop = true, endLevel = false;
    std::int32_t order = 0, setOrder = 0;
    std::int32_t lives = 0, credits = 0, canSave = 0, skipSelect = 0, completeBg = 0, noShare = 0;
    std::int32_t ifComplete = 0, cameraType = 0, scrollSpeed = 0;
    bool campaignEnd = false;
    std::int32_t zMin = 160, zMax = 232, backgroundHeight = 160;
    std::int32_t playerStartX = 80, playerStartZ = 200, playerStartA = 0;
    bool player1SpawnDefined = false;
    std::vector<std::string> panels;  // data paths
    std::string panelOrder;
    bool panelOrderValid = true;
    std::vector<LayerDef> layers;
    std::vector<SpawnDef> spawns;
    std::vector<GeometryDef> geometry;
    std::vector<StageEventDef> events;
    std::vector<StageInstructionDef> instructions;  // in the order in which the reader closed them
    std::string branchName, nextStage, branchStage, levelScript;
    std::string bossMusic;
    std::int32_t bossMusicOffset = 0;
    std::string waterPath;
    std::int32_t waterWarp = 0, rockMode = 0;
    std::vector<std::string> preScenes, postScenes;  // data paths
    std::string preSceneFile, sceneMusic;
    bool sceneMusicLoop = false;
    std::vector<CutsceneAnimationDef> sceneAnimations;
    std::string postSceneMusic;
    bool postSceneMusicLoop = false;
    std::vector<CutsceneAnimationDef> postSceneAnimations;
    std::int32_t chapter = 0;
    std::int32_t player2StartX = 98, player2StartZ = 207, player2StartA = 0;
    std::int32_t player3StartX = 116, player3StartZ = 214, player3StartA = 0;
    std::int32_t player4StartX = 134, player4StartZ = 221, player4StartA = 0;
    bool player2SpawnDefined = false, player3SpawnDefined = false, player4SpawnDefined = false;
    std::int32_t setWeapon = 0, cameraOffsetX = 0, cameraOffsetY = 0;
    std::int32_t stageLightX = 0, stageLightY = 0, shadowColor = -1, shadowAlpha = 0, setTime = 0;
    bool noSlow = false, noTime = false;
};

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
