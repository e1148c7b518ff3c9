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
};

struct LevelRow {
    std::string_view key;
    ScriptValue (*read)(const World&, const generated::Stage&);
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

constexpr auto kVariants = sortedTable(std::to_array<VariantRow>({
                                           {"xpos", cameraPlace},
                                           {"levelpos", cameraPlace},
                                           {"elapsed_time", ticks},
                                           {"elapsedtime", ticks},
                                           {"count_players", playerCount},
                                           {"maxplayers", mostPlayers},
                                           {"max_players", mostPlayers},
                                           {"count_entities", entityCount},
                                           {"ent_count", entityCount},
                                           {"count_enemies", enemyCount},
                                           {"current_player", currentPlayer},
                                           {"current_level", stageNumber},
                                           {"currentlevel", stageNumber},
                                           {"current_branch", branchName},
                                           {"currentbranch", branchName},
                                           {"hresolution", viewWidth},
                                           {"vresolution", viewHeight},
                                           {"levelwidth", stageWidth},
                                           {"levelheight", stageDepth},
                                           {"effectvol", fullVolume},
                                           {"in_level", inLevel},
                                           {"inlevel", inLevel},
                                           {"game_speed", gameSpeed},
                                           {"gamespeed", gameSpeed},
                                           {"nojoin", noJoin},
                                       }),
                                       &VariantRow::key);

template <auto Field>
ScriptValue stageText(const World& /*world*/, const generated::Stage& stage) {
    return scriptValue(stage.*Field);
}

template <auto Field>
ScriptValue stageNumberOf(const World& /*world*/, const generated::Stage& stage) {
    return static_cast<double>(stage.*Field);
}

constexpr auto kLevelRows = sortedTable(
    std::to_array<LevelRow>({
        {"name", stageText<&generated::Stage::sourceFile>},
        {"source", stageText<&generated::Stage::sourceFile>},
        {"direction", stageText<&generated::Stage::direction>},
        {"branch", stageText<&generated::Stage::branchName>},
        {"zmin", stageNumberOf<&generated::Stage::zMin>},
        {"zmax", stageNumberOf<&generated::Stage::zMax>},
        {"scrollspeed", stageNumberOf<&generated::Stage::scrollSpeed>},
        {"width", [](const World& world,
                     const generated::Stage&) { return scriptValue(world.stage.length); }},
        {"height",
         [](const World&, const generated::Stage& stage) { return scriptValue(depthOf(stage)); }},
        {"camerax",
         [](const World& world,
            const generated::Stage&) { return scriptValue(static_cast<double>(world.camera.x)); }},
    }),
    &LevelRow::key);

}  // namespace

ScriptValue getVariant(HostCall& call) {
    const VariantRow* row = findRow(kVariants, &VariantRow::key, FoldedKey(call.text(0)));
    return row ? row->read(call) : 0.0;
}

ScriptValue setVariant(HostCall& call) {
    const FoldedKey key(call.text(0));
    if (key == "xpos" || key == "levelpos") moveCamera(call, 1);
    if (key == "nojoin") call.world().stage.noJoin = call.flag(1);
    return call.value(1);
}

// There is one stage: a level ahead of the key says nothing.
ScriptValue getLevelProperty(HostCall& call) {
    const generated::Stage* stage = call.world().stage.row;
    if (!stage) return {};
    const FoldedKey key(call.text(call.count() > 1 ? 1 : 0));
    const LevelRow* row = findRow(kLevelRows, &LevelRow::key, key);
    return row ? row->read(call.world(), *stage) : ScriptValue();
}

ScriptValue setLevelProperty(HostCall& call) {
    const std::size_t key = call.count() > 2 ? 1 : 0;
    if (FoldedKey(call.text(key)) != "camerax" || !call.has(key + 1)) return false;
    moveCamera(call, key + 1);
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
