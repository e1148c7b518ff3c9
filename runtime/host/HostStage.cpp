// The game as a whole, the stage that is played, and the way to another.

#include <algorithm>

#include "Entities.hpp"
#include "HostFunctions.hpp"
#include "KeyTable.hpp"
#include "RosterScan.hpp"
#include "StageFlow.hpp"

namespace port::host {
namespace {

struct VariantRow {
    std::string_view key;
    ScriptValue (*read)(HostCall&);
    void (*write)(HostCall&, std::size_t value);
    bool mended;
};

struct LevelRow {
    std::string_view key;
    ScriptValue (*read)(const World&, const generated::Stage&);
    void (*write)(HostCall&, std::size_t value);
    bool mended;
};

void moveCamera(HostCall& call, std::size_t value) {
    const int most = std::max(0, call.world().stage.length - call.tick.config.logicalWidth);
    call.world().camera.x = std::clamp(call.pixels(value), 0.0F, static_cast<float>(most));
}

ScriptValue cameraPlace(HostCall& call) {
    return static_cast<double>(call.world().camera.x);
}

ScriptValue ticks(HostCall& call) {
    return static_cast<double>(call.world().tick);
}

ScriptValue playerCount(HostCall& call) {
    return 1.0 + static_cast<double>(call.world().coop.size());
}

ScriptValue mostPlayers(HostCall& call) {
    return static_cast<double>(call.tick.config.maxPlayers);
}

ScriptValue entityCount(HostCall& call) {
    const World& world = call.world();
    call.chargeScan(world.roster.present.size());
    double count = 0;
    visitRoster(world, world.roster.present, [&count](const RuntimeEntity& entity) {
        if (entity.visible) ++count;
        return false;
    });
    return count;
}

ScriptValue enemyCount(HostCall& call) {
    call.chargeScan(call.world().roster.present.size());
    return static_cast<double>(activeEnemies(call.world()));
}

ScriptValue currentPlayer(HostCall& call) {
    return static_cast<double>(call.context.playerIndex);
}

ScriptValue stageNumber(HostCall& call) {
    return static_cast<double>(call.world().stage.index);
}

ScriptValue branchName(HostCall& call) {
    const generated::Stage* stage = call.world().stage.row;
    return scriptValue(stage ? stage->branchName : "");
}

ScriptValue viewWidth(HostCall& call) {
    return static_cast<double>(call.tick.config.logicalWidth);
}

ScriptValue viewHeight(HostCall& call) {
    return static_cast<double>(call.tick.config.logicalHeight);
}

ScriptValue stageWidth(HostCall& call) {
    return static_cast<double>(call.world().stage.length);
}

double depthOf(const generated::Stage& stage) {
    return static_cast<double>(stage.zMax) - stage.zMin;
}

ScriptValue stageDepth(HostCall& call) {
    const generated::Stage* stage = call.world().stage.row;
    return stage ? depthOf(*stage) : 0.0;
}

// The player's own volume comes on top of it, once.
ScriptValue fullVolume(HostCall& /*call*/) {
    return 100.0;
}

ScriptValue inLevel(HostCall& call) {
    return scriptTruth(call.world().stage.row && call.services.isPlaying());
}

ScriptValue gameSpeed(HostCall& /*call*/) {
    return static_cast<double>(kTicksPerSecond);
}

ScriptValue noJoin(HostCall& call) {
    return scriptTruth(call.world().stage.noJoin);
}

void setNoJoin(HostCall& call, std::size_t value) {
    call.world().stage.noJoin = call.flag(value);
}

// One above the last number that getentity() may find somebody by.
ScriptValue entityEnd(HostCall& call) {
    return static_cast<double>(call.world().entities.size());
}

ScriptValue levelSet(HostCall& call) {
    const generated::Stage* stage = call.world().stage.row;
    return stage ? static_cast<double>(stage->setOrder) : 0.0;
}

// Counted from 1 in its set.
ScriptValue stageOfSet(HostCall& call) {
    const StageRun& stage = call.world().stage;
    if (!stage.row) return 0.0;
    call.chargeScan(generated::kStageCount);
    std::size_t first = std::min(stage.index, generated::kStageCount);
    while (first > 0 && generated::kStages[first - 1].setOrder == stage.row->setOrder) --first;
    return static_cast<double>(stage.index - first + 1);
}

// Scripts run only while a stage is played or loaded.
ScriptValue inMenu(HostCall& /*call*/) {
    return 0.0;
}

ScriptValue verticalScroll(HostCall& call) {
    return static_cast<double>(call.world().stage.verticalStageScroll);
}

template <int generated::Stage::*Depth>
ScriptValue playerDepth(HostCall& call) {
    const generated::Stage* stage = call.world().stage.row;
    return stage ? static_cast<double>(stage->*Depth) : 0.0;
}

ScriptValue lastHitX(HostCall& call) {
    return static_cast<double>(call.world().lastHit.x);
}

ScriptValue lastHitZ(HostCall& call) {
    return static_cast<double>(call.world().lastHit.z);
}

ScriptValue lastHitAltitude(HostCall& call) {
    return scriptUpward(call.world().lastHit.altitude);
}

ScriptValue lastHitType(HostCall& call) {
    return static_cast<double>(call.world().lastHit.type);
}

template <auto Field>
ScriptValue stageText(const World& /*world*/, const generated::Stage& stage) {
    return scriptValue(stage.*Field);
}

template <auto Field>
ScriptValue stageNumberOf(const World& /*world*/, const generated::Stage& stage) {
    return static_cast<double>(stage.*Field);
}

ScriptValue lengthOf(const World& world, const generated::Stage& /*stage*/) {
    return scriptValue(world.stage.length);
}

ScriptValue depthFor(const World& /*world*/, const generated::Stage& stage) {
    return scriptValue(depthOf(stage));
}

ScriptValue cameraOf(const World& world, const generated::Stage& /*stage*/) {
    return static_cast<double>(world.camera.x);
}

constexpr auto kVariants = sortedTable(std::to_array<VariantRow>({
#define VARIANT(key, read, write, reading) {key, read, write, reading},
#define LEVEL_PROPERTY(key, read, write, reading)
#include "HostStage.def"
#undef VARIANT
#undef LEVEL_PROPERTY
                                       }),
                                       &VariantRow::key);

constexpr auto kLevelRows = sortedTable(std::to_array<LevelRow>({
#define VARIANT(key, read, write, reading)
#define LEVEL_PROPERTY(key, read, write, reading) {key, read, write, reading},
#include "HostStage.def"
#undef VARIANT
#undef LEVEL_PROPERTY
                                        }),
                                        &LevelRow::key);

// A level may stand ahead of the key. There is one stage: it says nothing.
std::size_t placeOfLevelKey(const HostCall& call, std::size_t behindKey) {
    return call.count() > 1 + behindKey ? 1 : 0;
}

}  // namespace

ScriptValue known::variantKey(HostCall& call) {
    return resolveRow(kVariants, &VariantRow::key, call, 0);
}

ScriptValue known::levelKey(HostCall& call) {
    return resolveRow(kLevelRows, &LevelRow::key, call, placeOfLevelKey(call, 0));
}

ScriptValue known::settableLevelKey(HostCall& call) {
    return resolveRow(kLevelRows, &LevelRow::key, call, placeOfLevelKey(call, 1));
}

ScriptValue getVariant(HostCall& call) {
    const VariantRow* row = namedRow(kVariants, &VariantRow::key, call, 0);
    return row ? row->read(call) : 0.0;
}

ScriptValue setVariant(HostCall& call) {
    const VariantRow* row = namedRow(kVariants, &VariantRow::key, call, 0);
    if (row && row->write) row->write(call, 1);
    return call.value(1);
}

ScriptValue getLevelProperty(HostCall& call) {
    const generated::Stage* stage = call.world().stage.row;
    if (!stage) return {};
    const LevelRow* row = namedRow(kLevelRows, &LevelRow::key, call, placeOfLevelKey(call, 0));
    return row ? row->read(call.world(), *stage) : ScriptValue();
}

ScriptValue setLevelProperty(HostCall& call) {
    const std::size_t key = placeOfLevelKey(call, 1);
    const LevelRow* row = namedRow(kLevelRows, &LevelRow::key, call, key);
    if (!row || !row->write || !call.has(key + 1)) return false;
    row->write(call, key + 1);
    return true;
}

ScriptValue jumpToBranch(HostCall& call) {
    call.chargeScan(generated::kStageCount);
    const std::string& name = call.text(0);
    const std::size_t target = resolveBranchTarget(name);
    if (target == kNoStage) {
        call.tag("jumptobranch-missing:", foldAscii(name));
        return false;
    }
    World& world = call.world();
    world.branch = {target, call.flag(1)};
    if (world.branch.immediate) world.stage.complete = true;
    return true;
}

}  // namespace port::host
