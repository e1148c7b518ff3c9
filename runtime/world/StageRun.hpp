#pragma once

// The stage that is being played, how far it has come, and the camera over it.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Fields.hpp"
#include "GeneratedCharacters.hpp"
#include "GeneratedStages.hpp"

namespace port {

constexpr std::size_t kNoStage = static_cast<std::size_t>(-1);

// What spawns and events of the stage have done so far.
enum class FireState : std::uint8_t { NotFired, Firing, Done };

// The kinds of events that do something; all others are Other.
enum class StageEventKind : std::uint8_t { Wait, Group, Blockade, NoJoin, CanJoin, Other };

// What an area of the ground does to whoever is on it.
enum class GeometryKind : std::uint8_t { Wall, Hole, Other };

// Where the way ahead ends.
struct StageReach {
    bool closed = false;  // by walls, before the length of the stage does
    float x = 0;          // the last place that can be walked to

    PORT_FIELDS(closed, x)
};

struct StageRun {
    static constexpr int kOpenGroup = 100;

    const generated::Stage* row = nullptr;
    std::size_t index = 0;
    std::vector<StageEventKind> eventKinds;                // of row->events
    std::vector<GeometryKind> geometryKinds;               // of row->geometry
    std::vector<const generated::Character*> spawnModels;  // of row->spawns; null for unknown names
    // Which of row->spawns or row->events each of row->instructions means, or kNoTarget.
    static constexpr std::size_t kNoTarget = static_cast<std::size_t>(-1);
    std::vector<std::size_t> instructionTargets;
    int length = 320;  // pixels
    StageReach reach;

    int scrollDir = 1;  // -1: from right to left
    bool allowBacktrack = false;
    bool verticalScroll = false;
    int verticalScrollSign = 1;
    float verticalStageScroll = 0;  // pixels scrolled on a vertical stage

    std::vector<FireState> spawnState, eventState;
    std::size_t nextSpawn = 0, nextInstruction = 0;
    int groupMin = kOpenGroup, groupMax = kOpenGroup;  // limits of active enemies
    bool groupRefillActive = false;
    bool scrollBlocked = false;  // a wait gate is on
    bool noJoin = false;
    bool complete = false;
    bool bossMusicStarted = false;

    PORT_FIELDS(row, index, eventKinds, geometryKinds, spawnModels, instructionTargets, length,
                reach, scrollDir, allowBacktrack, verticalScroll, verticalScrollSign,
                verticalStageScroll, spawnState, eventState, nextSpawn, nextInstruction, groupMin,
                groupMax, groupRefillActive, scrollBlocked, noJoin, complete, bossMusicStarted)
};

struct Camera {
    float x = 0, maxX = 0;  // stage pixels
    bool fixed = false;
    bool combatLocked = false;
    float combatLockX = 0;
    float backtrackFloor = 0;  // the leftmost place on a stage that allows going back

    PORT_FIELDS(x, maxX, fixed, combatLocked, combatLockX, backtrackFloor)
};

// The stage to go to next, asked for by a trigger or a script.
struct PendingBranch {
    std::size_t target = kNoStage;
    bool immediate = false;  // without the end of this stage

    PORT_FIELDS(target, immediate)
};

// How the picture is shaken: a quake that runs out, and the offset of this pass in pixels.
struct Shake {
    int quakeTicks = 0, quakeIntensity = 0;
    int rockX = 0, rockY = 0;

    PORT_FIELDS(quakeTicks, quakeIntensity, rockX, rockY)
};

}  // namespace port
