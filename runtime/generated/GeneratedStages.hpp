#pragma once

#include <cstddef>

namespace generated {

struct Spawn {
    int id;
    const char* model;
    const char* alias;
    const char* item;
    const char* map;
    const char* spawnScript;
    int x, z, a, y, at, health, score, spawnType;
    bool boss, flip, hasAt;
};

struct Geometry {
    const char* kind;
    int x, z, w, h, depth, altitude;
    bool openborShape;
    float shape[9];
};

struct Layer {
    const char* kind;
    const char* path;
    float xRatio, zRatio;
    int xOffset, zOffset, xSpacing, zSpacing, xRepeat, zRepeat, zOrder, transparency, alpha,
        waterMode, amplitude, wavelength;
    float waveSpeed, bgSpeedRatio;
};

struct StageEvent {
    int id;
    const char* kind;
    int at, value, group;
    bool hasAt;
    const char* text;
};

struct StageInstruction {
    int sequence, kind, refId;
};

struct CutsceneAnimation {
    const char* path;
    int x, y, skip, noSkip, durationTicks, sceneIndex;
    const char* musicBefore;
    bool musicLoop, silenceBefore;
};

struct Stage {
    const char* sourceFile;
    const char* setName;
    const char* direction;
    const char* typeName;
    const char* background;
    const char* music;
    bool musicLoop, endLevel;
    int order, setOrder, lives, credits, canSave, skipSelect, completeBg, noShare, ifComplete,
        cameraType, scrollSpeed;
    bool campaignEnd;
    int zMin, zMax, backgroundHeight, playerStartX, playerStartZ, playerStartA;
    bool player1SpawnDefined;
    const char* const* panels;
    std::size_t panelCount;
    const Layer* layers;
    std::size_t layerCount;
    const Spawn* spawns;
    std::size_t spawnCount;
    const Geometry* geometry;
    std::size_t geometryCount;
    const StageEvent* events;
    std::size_t eventCount;
    const StageInstruction* instructions;
    std::size_t instructionCount;
    const char* branchName;
    const char* nextStage;
    const char* branchStage;
    const char* levelScript;
    const char* bossMusic;
    int bossMusicOffset;
    const char* waterPath;
    int waterWarp, rockMode;
    const char* preSceneFile;
    const char* sceneMusic;
    bool sceneMusicLoop;
    const CutsceneAnimation* sceneAnimations;
    std::size_t sceneAnimationCount;
    const char* postSceneMusic;
    bool postSceneMusicLoop;
    const CutsceneAnimation* postSceneAnimations;
    std::size_t postSceneAnimationCount;
    int chapter, player2StartX, player2StartZ, player2StartA, player3StartX, player3StartZ,
        player3StartA, player4StartX, player4StartZ, player4StartA;
    bool player2SpawnDefined, player3SpawnDefined, player4SpawnDefined;
    int setWeapon, cameraOffsetX, cameraOffsetY, stageLightX, stageLightY, shadowColor, shadowAlpha,
        setTime;
    bool noSlow, noTime;
};

extern const Stage kStages[];
extern const std::size_t kStageCount;

}
