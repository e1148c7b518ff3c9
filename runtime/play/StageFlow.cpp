#include "StageFlow.hpp"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "AssetPaths.hpp"
#include "Boxes.hpp"
#include "Entities.hpp"
#include "Log.hpp"
#include "ModelFacts.hpp"
#include "PathEncoding.hpp"
#include "RosterScan.hpp"
#include "StageRules.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

constexpr int kHealthBonus = 5;
constexpr float kEndOfView = 0.8F;

bool spawnsArePending(const StageRun& stage) {
    const generated::Stage& row = *stage.row;
    if (row.instructionCount > 0) return stage.nextInstruction < row.instructionCount;
    for (std::size_t i = 0; i < row.spawnCount; ++i) {
        if (row.spawns[i].id >= 0 && stage.spawnState[i] == FireState::NotFired) return true;
    }
    return false;
}

std::string comparablePath(std::string_view name) {
    return PathEncoding::utf8(normalizeDataPath(name));
}

std::size_t sequentialCampaignTarget(const generated::Stage& stage, std::size_t index) {
    const std::size_t next = index + 1;
    if (stage.campaignEnd || next >= generated::kStageCount) return kNoStage;
    return generated::kStages[next].setOrder == stage.setOrder ? next : kNoStage;
}

struct Touch {
    int living = 0, touching = 0;
};

Touch touchOf(const World& world, const RuntimeEntity& trigger) {
    const RectF body = bodyOf(trigger);
    Touch touch;
    const auto count = [&](const PlayerActor& player) {
        if (!player.alive) return;
        ++touch.living;
        if (overlaps(bodyOf(player), body)) ++touch.touching;
    };
    count(world.player1);
    for (const RuntimeCoopPlayer& player : world.coop) count(player);
    return touch;
}

void takeBranch(World& world, const char* name) {
    if (*name == '\0') return;
    const std::size_t target = resolveBranchTarget(name);
    if (target == kNoStage) {
        warnLine("Endlevel branch not found: ", name);
    } else {
        world.branch.target = target;
    }
}

void triggerEnd(World& world, RuntimeEntity& trigger) {
    if (!trigger.alive || !trigger.visible) return;
    if (openborTypeBit(trigger.model) != kTypeEndlevel) return;
    const generated::Character& model = *trigger.model;
    const bool both = equalsFolded(model.subtype, "both");
    const Touch touch = touchOf(world, trigger);
    if (touch.living == 0 || touch.touching < (both ? touch.living : 1)) return;
    takeBranch(world, model.branch);
    world.stage.complete = true;
    trigger.alive = trigger.visible = false;
    logLine("Endlevel touched model=", model.name, " players=", touch.touching,
            both ? " subtype=both" : "");
}

}  // namespace

void updateEndLevelTriggers(Tick& tick) {
    World& world = tick.world;
    if (world.stage.complete) return;
    visitRoster(world, world.roster.present, [&world](RuntimeEntity& entity) {
        triggerEnd(world, entity);
        return world.stage.complete;
    });
}

std::size_t resolveBranchTarget(std::string_view name) {
    if (name.empty()) return kNoStage;
    for (std::size_t i = 0; i < generated::kStageCount; ++i) {
        if (equalsFolded(generated::kStages[i].branchName, name)) return i;
    }
    return kNoStage;
}

void applyReachedJoinGates(World& world, int logicalWidth) {
    StageRun& stage = world.stage;
    const float position = stageScrollPosition(stage, world.camera, logicalWidth);
    for (std::size_t i = 0; i < stage.row->eventCount; ++i) {
        const generated::StageEvent& event = stage.row->events[i];
        if (!reachedStagePosition(event.at, event.hasAt, position)) continue;
        if (stage.eventKinds[i] == StageEventKind::NoJoin) stage.noJoin = event.value != 0;
        if (stage.eventKinds[i] == StageEventKind::CanJoin) stage.noJoin = false;
    }
}

bool stageEndReached(const World& world, int logicalWidth) {
    if (spawnsArePending(world.stage) || activeEnemies(world) > 0) return false;
    if (world.stage.verticalScroll) return true;
    float leading = world.player1.alive ? world.player1.worldX : 0;
    for (const RuntimeCoopPlayer& player : world.coop) {
        if (player.alive) leading = std::max(leading, player.worldX);
    }
    float end =
        static_cast<float>(world.stage.length) - static_cast<float>(logicalWidth) * kEndOfView;
    const StageReach& reach = world.stage.reach;
    if (reach.closed && world.stage.scrollDir > 0) end = std::min(end, reach.x - kEndOfWay);
    return leading >= std::max(0.0F, end);
}

NextStage stageBehind(const generated::Stage& stage, std::size_t index) {
    if (*stage.nextStage == '\0') return {sequentialCampaignTarget(stage, index), false};
    const std::string wanted = comparablePath(stage.nextStage);
    for (std::size_t i = 0; i < generated::kStageCount && !wanted.empty(); ++i) {
        if (comparablePath(generated::kStages[i].sourceFile).ends_with(wanted)) return {i, false};
    }
    return {kNoStage, true};
}

NextStage takeNextStage(World& world) {
    const std::size_t branch = std::exchange(world.branch, {}).target;
    if (branch < generated::kStageCount) return {branch, false};
    const NextStage next = stageBehind(*world.stage.row, world.stage.index);
    if (next.broken) warnLine("Stage next target not found: ", world.stage.row->nextStage);
    return next;
}

Vitals::Vitals(const World& world) : player1_{world.player1.alive, world.player1.health} {
    for (const RuntimeCoopPlayer& player : world.coop) {
        coop_.push_back({player.alive, player.health});
    }
}

void Vitals::restore(World& world) const {
    const auto keep = [](const One& before, PlayerActor& player) {
        player.alive = before.alive;
        player.health =
            before.alive ? std::clamp(before.health, 1, std::max(1, player.maxHealth)) : 0;
    };
    keep(player1_, world.player1);
    for (std::size_t i = 0; i < coop_.size(); ++i) keep(coop_[i], world.coop[i]);
}

void Vitals::restoreRested(World& world, bool sameChapter) const {
    const auto rest = [sameChapter](const One& before, PlayerActor& player) {
        const int most = std::max(1, player.maxHealth);
        const std::int64_t more = std::int64_t{std::max(1, before.health)} + kHealthBonus;
        const int rested =
            sameChapter ? static_cast<int>(std::min<std::int64_t>(most, more)) : most;
        player.alive = before.alive;
        player.health = before.alive ? rested : 0;
    };
    rest(player1_, world.player1);
    for (std::size_t i = 0; i < coop_.size(); ++i) rest(coop_[i], world.coop[i]);
}

}  // namespace port
