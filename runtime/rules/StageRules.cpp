#include "StageRules.hpp"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>

#include "AnimationLookup.hpp"
#include "CameraRules.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

constexpr int kLeastView = 160;
constexpr int kLeastLength = 320;
constexpr int kSpawnMargin = 64;
constexpr std::int64_t kMostLength = std::int64_t{1} << 24U;

StageEventKind kindOf(std::string_view text) {
    struct Named {
        std::string_view name;
        StageEventKind kind;
    };
    constexpr Named kKinds[] = {{"wait", StageEventKind::Wait},
                                {"group", StageEventKind::Group},
                                {"blockade", StageEventKind::Blockade},
                                {"nojoin", StageEventKind::NoJoin},
                                {"canjoin", StageEventKind::CanJoin}};
    const auto* known = std::ranges::find_if(
        kKinds, [text](const Named& kind) { return equalsFolded(text, kind.name); });
    return known == std::end(kKinds) ? StageEventKind::Other : known->kind;
}

GeometryKind kindOf(const generated::Geometry& area) {
    if (equalsFolded(area.kind, "wall")) return GeometryKind::Wall;
    return equalsFolded(area.kind, "hole") ? GeometryKind::Hole : GeometryKind::Other;
}

// By their ids, the first of each.
template <class Row>
std::unordered_map<int, std::size_t> placesById(std::span<const Row> rows) {
    std::unordered_map<int, std::size_t> places;
    for (std::size_t i = 0; i < rows.size(); ++i) places.try_emplace(rows[i].id, i);
    return places;
}

std::vector<std::size_t> instructionTargets(const generated::Stage& row) {
    const auto spawns = placesById(std::span(row.spawns, row.spawnCount));
    const auto events = placesById(std::span(row.events, row.eventCount));
    std::vector<std::size_t> targets;
    for (const auto& instruction : std::span(row.instructions, row.instructionCount)) {
        const auto& places = instruction.kind == 0 ? spawns : events;
        const auto found = places.find(instruction.refId);
        targets.push_back(found == places.end() ? StageRun::kNoTarget : found->second);
    }
    return targets;
}

float lastCameraX(const StageRun& stage, int logicalWidth) {
    return static_cast<float>(std::max(0, stage.length - stageView(logicalWidth)));
}

bool isAtEndOfWay(const StageRun& stage, const Camera& camera, int logicalWidth) {
    if (!stage.reach.closed || camera.fixed) return false;
    const auto ahead = static_cast<float>(stage.scrollDir);
    const auto view = static_cast<float>(stageView(logicalWidth));
    const float drawn = cameraDrawnTo(camera, stage.reach.x - kEndOfWay * ahead, view);
    return (drawn - camera.x) * ahead <= 0;
}

}  // namespace

int stageView(int logicalWidth) {
    return std::max(kLeastView, logicalWidth);
}

StageRun freshStageRun(const generated::Stage& row) {
    StageRun stage;
    stage.row = &row;
    for (const generated::StageEvent& event : std::span(row.events, row.eventCount)) {
        stage.eventKinds.push_back(kindOf(event.kind));
    }
    for (const generated::Spawn& spawn : std::span(row.spawns, row.spawnCount)) {
        stage.spawnModels.push_back(findCharacter(spawn.model));
    }
    stage.instructionTargets = instructionTargets(row);
    for (const generated::Geometry& area : std::span(row.geometry, row.geometryCount)) {
        stage.geometryKinds.push_back(kindOf(area));
    }
    const auto is = [&row](std::string_view direction) {
        return equalsFolded(row.direction, direction);
    };
    stage.scrollDir = is("left") || is("in") || is("bothleft") ? -1 : 1;
    stage.allowBacktrack = is("both");
    stage.verticalScroll = is("up") || is("down");
    stage.verticalScrollSign = is("down") ? -1 : 1;
    stage.spawnState.assign(row.spawnCount, FireState::NotFired);
    stage.eventState.assign(row.eventCount, FireState::NotFired);
    return stage;
}

StageRun freshStageRun(std::size_t index) {
    StageRun stage = freshStageRun(generated::kStages[index]);
    stage.index = index;
    return stage;
}

Camera freshCamera(const StageRun& stage) {
    Camera camera;
    camera.fixed = stage.row->cameraType != 0 || stage.verticalScroll;
    return camera;
}

float cameraStart(const StageRun& stage, int logicalWidth) {
    return stage.scrollDir < 0 && !stage.verticalScroll ? lastCameraX(stage, logicalWidth) : 0;
}

int stageLength(const generated::Stage& stage, const SceneryExtent& scenery, int logicalWidth) {
    const std::int64_t view = stageView(logicalWidth);
    std::int64_t length =
        std::max<std::int64_t>({kLeastLength, scenery.panels, scenery.background, scenery.layers});
    for (const generated::Spawn& spawn : std::span(stage.spawns, stage.spawnCount)) {
        const std::int64_t at = spawn.hasAt ? spawn.at : 0;
        if (at > 0) length = std::max(length, at + view);
        length = std::max(length, at + std::max(0, spawn.x) + kSpawnMargin);
    }
    for (const generated::StageEvent& event : std::span(stage.events, stage.eventCount)) {
        if (event.at > 0) length = std::max(length, event.at + view);
    }
    return static_cast<int>(std::min(length, kMostLength));
}

float stageScrollPosition(const StageRun& stage, const Camera& camera, int logicalWidth) {
    if (!stage.row) return 0;
    if (stage.verticalScroll) return std::max(0.0F, stage.verticalStageScroll);
    const float last = lastCameraX(stage, logicalWidth);
    if (isAtEndOfWay(stage, camera, logicalWidth)) return last;
    const float x = std::clamp(camera.x, 0.0F, last);
    return stage.scrollDir < 0 ? last - x : x;
}

bool reachedStagePosition(int at, bool hasAt, float scrollPosition) {
    return !hasAt || at <= 0 || scrollPosition + 0.001F >= static_cast<float>(at);
}

}  // namespace port
