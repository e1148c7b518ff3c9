#include "StageSpawns.hpp"

#include <algorithm>
#include <utility>

#include "ModelFacts.hpp"
#include "Spawning.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

// Places on the screen of the moment, so that a spawn that was held back still comes from its edge.
float stageSpawnWorldX(const World& world, const generated::Spawn& spawn) {
    return static_cast<float>(spawn.x) + (world.stage.verticalScroll ? 0 : world.camera.x);
}

// A model's guard does not count for those whom a stage sends: they begin without.
RuntimeEntity sentEntity(const World& world, const generated::Spawn& spawn,
                         const generated::Character* model) {
    RuntimeEntity entity = entityOf(model);
    entity.spawn = &spawn;
    entity.worldX = stageSpawnWorldX(world, spawn);
    entity.z = static_cast<float>(spawn.z);
    entity.altitude = -static_cast<float>(std::max(0, spawn.a));
    entity.paletteMap = std::max(0, leadingInt(spawn.map).value_or(0));
    entity.facing = spawn.flip ? -1 : 1;
    if (!model) return entity;
    if (spawn.health > 0) entity.health = entity.maxHealth = spawn.health;
    startFirstOf(entity.animation, *model, {"idle", "walk"});
    return entity;
}

void runSpawnHooks(Tick& tick, RuntimeEntity& entity, const generated::Spawn& spawn) {
    if (entity.model) {
        tick.scripts.runHook(entity.model->onSpawnScript, entity.scriptCtx, "entity-onspawn");
    }
    if (*spawn.spawnScript == '\0') return;
    auto& local = entity.scriptCtx.local;
    local["spawnx"] = static_cast<double>(spawn.x);
    local["spawny"] = static_cast<double>(spawn.y);
    local["spawnz"] = static_cast<double>(spawn.z);
    local["spawnat"] = static_cast<double>(spawn.at);
    tick.scripts.runHook(spawn.spawnScript, entity.scriptCtx, "spawnscript");
}

void startBossMusic(Tick& tick) {
    StageRun& stage = tick.world.stage;
    if (*stage.row->bossMusic == '\0' || std::exchange(stage.bossMusicStarted, true)) return;
    tick.events.bossMusic.push_back(
        {stage.row->bossMusic, std::max(0, stage.row->bossMusicOffset)});
}

}  // namespace

RuntimeEntity* spawnStageEntity(Tick& tick, std::size_t spawn) {
    World& world = tick.world;
    const generated::Spawn& record = world.stage.row->spawns[spawn];
    RuntimeEntity* entity =
        world.entities.add(sentEntity(world, record, world.stage.spawnModels[spawn]));
    if (entity) runSpawnHooks(tick, *entity, record);
    if (record.boss) startBossMusic(tick);
    return entity;
}

bool countsInGroup(const StageRun& stage, std::size_t spawn) {
    const int type = stage.row->spawns[spawn].spawnType;
    return type != 1 && type != 2 && openborTypeBit(stage.spawnModels[spawn]) == kTypeEnemy;
}

}  // namespace port
