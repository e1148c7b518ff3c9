#include "StageQueue.hpp"

#include <algorithm>

#include "Entities.hpp"
#include "Log.hpp"
#include "StageRules.hpp"
#include "StageSpawns.hpp"

namespace port {
namespace {

template <class Row>
bool isReached(const Tick& tick, const Row& row) {
    const float position =
        stageScrollPosition(tick.world.stage, tick.world.camera, tick.config.logicalWidth);
    return reachedStagePosition(row.at, row.hasAt, position);
}

// What the kinds have in common, with a list and without.
void applyEvent(World& world, std::size_t index) {
    StageRun& stage = world.stage;
    const generated::StageEvent& event = stage.row->events[index];
    float& floor = world.camera.backtrackFloor;
    switch (stage.eventKinds[index]) {
        case StageEventKind::Group:
            stage.groupMin = std::max(0, event.value);
            stage.groupMax = std::max(stage.groupMin, event.group);
            logLine("Group rule min=", stage.groupMin, " max=", stage.groupMax, " at=", event.at);
            break;
        case StageEventKind::Blockade:
            floor = std::max(floor, static_cast<float>(event.value != 0 ? event.value : event.at));
            logLine("Blockade floor=", floor, " trigger=", event.at);
            break;
        case StageEventKind::NoJoin:
            stage.noJoin = event.value != 0;
            logLine("Join gate ", stage.noJoin ? "closed" : "open", " at ", event.at);
            break;
        case StageEventKind::CanJoin:
            stage.noJoin = false;
            logLine("Join gate open at ", event.at);
            break;
        case StageEventKind::Wait:
        case StageEventKind::Other:
            break;
    }
}

// Whoever comes is marked as come before any script runs, so that none comes twice.
RuntimeEntity* send(Tick& tick, std::size_t spawn) {
    StageRun& stage = tick.world.stage;
    stage.spawnState[spawn] = FireState::Firing;
    RuntimeEntity* entity = spawnStageEntity(tick, spawn);
    stage.spawnState[spawn] = FireState::Done;
    ++stage.nextSpawn;
    return entity;
}

// The list of a stage, from the cursor on.

// False where it has to wait. `active` counts the enemies that it adds.
bool runSpawn(Tick& tick, std::size_t spawn, int& active) {
    StageRun& stage = tick.world.stage;
    const generated::Spawn& record = stage.row->spawns[spawn];
    if (stage.spawnState[spawn] != FireState::NotFired) {
        ++stage.nextInstruction;
        return true;
    }
    if (!isReached(tick, record)) return false;
    ++stage.nextInstruction;
    if (record.id < 0) {
        stage.spawnState[spawn] = FireState::Done;
        return true;
    }
    const RuntimeEntity* entity = send(tick, spawn);
    if (!entity) return true;
    if (countsInGroup(stage, spawn)) ++active;
    logLine("Stage action spawn id=", record.id, " model=", record.model, " at=", record.at,
            " worldX=", entity->worldX);
    return true;
}

bool runEvent(Tick& tick, std::size_t index) {
    StageRun& stage = tick.world.stage;
    const generated::StageEvent& event = stage.row->events[index];
    if (stage.eventState[index] != FireState::NotFired) {
        ++stage.nextInstruction;
        return true;
    }
    if (!isReached(tick, event)) return false;
    ++stage.nextInstruction;
    stage.eventState[index] = FireState::Done;
    if (stage.eventKinds[index] == StageEventKind::Wait) {
        // What stands at the same place still comes in this tick.
        stage.scrollBlocked = true;
        logLine("Wait gate armed at ", event.at);
    }
    applyEvent(tick.world, index);
    return true;
}

bool runInstruction(Tick& tick, int& active) {
    StageRun& stage = tick.world.stage;
    const std::size_t target = stage.instructionTargets[stage.nextInstruction];
    if (target == StageRun::kNoTarget) {
        ++stage.nextInstruction;
        return true;
    }
    const bool isSpawn = stage.row->instructions[stage.nextInstruction].kind == 0;
    return isSpawn ? runSpawn(tick, target, active) : runEvent(tick, target);
}

void runList(Tick& tick) {
    StageRun& stage = tick.world.stage;
    int active = activeEnemies(tick.world);
    if (stage.scrollBlocked) {
        if (active > 0) return;
        stage.scrollBlocked = false;
    }
    if (active >= stage.groupMin) return;
    while (stage.nextInstruction < stage.row->instructionCount && active < stage.groupMax) {
        if (!runInstruction(tick, active)) return;
    }
}

// A stage without a list.

void updateStageEvents(Tick& tick) {
    StageRun& stage = tick.world.stage;
    const bool enemiesAreLeft = activeEnemies(tick.world) > 0;
    for (std::size_t i = 0; i < stage.row->eventCount; ++i) {
        const generated::StageEvent& event = stage.row->events[i];
        if (stage.eventState[i] != FireState::NotFired || !isReached(tick, event)) continue;
        const StageEventKind kind = stage.eventKinds[i];
        if (kind == StageEventKind::Wait) {
            stage.scrollBlocked = enemiesAreLeft;
            if (enemiesAreLeft) continue;
            logLine("Wait cleared at ", event.at);
        }
        if (kind == StageEventKind::Group) stage.groupRefillActive = false;
        stage.eventState[i] = FireState::Done;
        applyEvent(tick.world, i);
    }
}

// A group comes in waves: it fills up to its maximum once it has fallen below its minimum.
void triggerSpawns(Tick& tick) {
    StageRun& stage = tick.world.stage;
    int active = activeEnemies(tick.world);
    const bool limited = stage.groupMax > 0;
    if (limited && active < stage.groupMin) stage.groupRefillActive = true;
    for (std::size_t i = 0; i < stage.row->spawnCount; ++i) {
        const generated::Spawn& record = stage.row->spawns[i];
        if (stage.spawnState[i] != FireState::NotFired || record.id < 0) continue;
        if (!isReached(tick, record)) continue;
        const bool grouped = limited && countsInGroup(stage, i);
        if (grouped && active >= stage.groupMax) stage.groupRefillActive = false;
        if (grouped && !stage.groupRefillActive) continue;
        const RuntimeEntity* entity = send(tick, i);
        if (!entity) continue;
        logLine("Spawn trigger id=", record.id, " model=", record.model, " at=", record.at,
                " worldX=", entity->worldX, " boss=", record.boss, " state=COMPLETED");
        if (grouped && ++active >= stage.groupMax) stage.groupRefillActive = false;
    }
}

}  // namespace

void processStageInstructions(Tick& tick) {
    const generated::Stage* row = tick.world.stage.row;
    if (!row) return;
    if (row->instructionCount > 0) {
        runList(tick);
    } else {
        updateStageEvents(tick);
        triggerSpawns(tick);
    }
}

}  // namespace port
