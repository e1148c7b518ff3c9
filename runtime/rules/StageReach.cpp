#include "StageReach.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "Ground.hpp"

namespace port {
namespace {

constexpr int kColumn = 8, kRow = 4;  // pixels of a cell
// No jump rises as high; walls that are meant to be the end of a stage measure 1,000 and more.
constexpr float kTallWall = 400;
// Looks into areas: far more than any stage needs, and some 50 ms at most.
constexpr std::int64_t kMostLooks = 10'000'000;

using Walls = std::vector<const generated::Geometry*>;

Walls tallWalls(const StageRun& stage) {
    Walls walls;
    for (std::size_t i = 0; i < stage.geometryKinds.size(); ++i) {
        const generated::Geometry& area = stage.row->geometry[i];
        if (stage.geometryKinds[i] != GeometryKind::Wall || terrainHeight(area) < kTallWall) {
            continue;
        }
        walls.push_back(&area);
    }
    return walls;
}

struct AreaSides {
    float left, right, upper, lower;
};

AreaSides sidesOf(const generated::Geometry& area, float z) {
    if (!area.openborShape) {
        const auto x = static_cast<float>(area.x), top = static_cast<float>(area.z);
        return {x, x + static_cast<float>(area.w), top, top + static_cast<float>(area.h)};
    }
    const RowEdges row = shapeEdges(area.shape, z);
    const float lower = area.shape[kShapeZ];
    return {row.left, row.right, lower - area.shape[kShapeDepth], lower};
}

// The ground of a whole stage in cells, row by row; the last row is that of its nearest depth.
class GroundCells {
  public:
    GroundCells(const StageRun& stage, Walls walls)
        : walls_(std::move(walls)),
          zLow_(std::min(stage.row->zMin, stage.row->zMax)),
          zHigh_(std::max(stage.row->zMin, stage.row->zMax)),
          columns_(stage.length / kColumn + 1),
          rows_((std::int64_t{zHigh_} - zLow_ + kRow - 1) / kRow + 1) {}

    [[nodiscard]] std::int64_t columns() const { return columns_; }
    [[nodiscard]] bool areTooMany() const {
        return columns_ * rows_ > kMostLooks / static_cast<std::int64_t>(walls_.size());
    }

    // The furthest column in that direction, 1 or -1, to which a way leads.
    [[nodiscard]] std::int64_t furthestFrom(GroundPoint from, int direction) const {
        std::vector<bool> known(static_cast<std::size_t>(columns_ * rows_));
        std::vector<std::int64_t> reached;
        const auto reach = [&](std::int64_t column, std::int64_t row) {
            if (column < 0 || column >= columns_ || row < 0 || row >= rows_) return;
            const std::int64_t cell = row * columns_ + column;
            if (known[static_cast<std::size_t>(cell)] || barred(column, row)) return;
            known[static_cast<std::size_t>(cell)] = true;
            reached.push_back(cell);
        };
        reach(columnAt(from.x), rowAt(from.z));
        if (reached.empty()) return direction > 0 ? columns_ - 1 : 0;
        std::int64_t furthest = columnAt(from.x);
        while (!reached.empty()) {
            const std::int64_t column = reached.back() % columns_, row = reached.back() / columns_;
            reached.pop_back();
            if ((column - furthest) * direction > 0) furthest = column;
            reach(column + 1, row);
            reach(column - 1, row);
            reach(column, row + 1);
            reach(column, row - 1);
        }
        return furthest;
    }

  private:
    [[nodiscard]] std::int64_t columnAt(float x) const {
        return std::clamp<std::int64_t>(std::llround(x / kColumn), 0, columns_ - 1);
    }
    [[nodiscard]] std::int64_t rowAt(float z) const {
        return std::clamp<std::int64_t>(std::llround((z - static_cast<float>(zLow_)) / kRow), 0,
                                        rows_ - 1);
    }
    [[nodiscard]] bool barred(std::int64_t column, std::int64_t row) const {
        const auto x = static_cast<float>(column * kColumn);
        const auto z = static_cast<float>(std::min<std::int64_t>(zLow_ + row * kRow, zHigh_));
        return std::ranges::any_of(
            walls_, [&](const generated::Geometry* wall) { return terrainContains(*wall, x, z); });
    }

    Walls walls_;
    int zLow_, zHigh_;
    std::int64_t columns_, rows_;
};

}  // namespace

StageReach stageReach(const StageRun& stage, GroundPoint from) {
    Walls walls = tallWalls(stage);
    if (walls.empty() || stage.verticalScroll) return {};
    const GroundCells cells(stage, std::move(walls));
    if (cells.areTooMany()) return {};
    const std::int64_t furthest = cells.furthestFrom(from, stage.scrollDir);
    if (furthest == (stage.scrollDir > 0 ? cells.columns() - 1 : 0)) return {};
    return {true, static_cast<float>(furthest * kColumn)};
}

float wayOutOf(const generated::Geometry& area, const StageRun& stage, GroundPoint from) {
    const float zLow = static_cast<float>(std::min(stage.row->zMin, stage.row->zMax));
    const float zHigh = static_cast<float>(std::max(stage.row->zMin, stage.row->zMax));
    const auto canBeWalked = [&](GroundPoint side) {
        const bool within = side.x > 0 && side.x < static_cast<float>(stage.length) &&
                            side.z > zLow && side.z < zHigh;
        const float ahead = (side.x - stage.reach.x) * static_cast<float>(stage.scrollDir);
        return within && (!stage.reach.closed || ahead <= kColumn);
    };
    const AreaSides sides = sidesOf(area, from.z);
    float nearest = std::numeric_limits<float>::infinity();
    for (const float x : {sides.left, sides.right}) {
        if (canBeWalked({x, from.z})) nearest = std::min(nearest, std::abs(x - from.x));
    }
    for (const float z : {sides.upper, sides.lower}) {
        if (canBeWalked({from.x, z})) nearest = std::min(nearest, std::abs(z - from.z));
    }
    return terrainContains(area, from.x, from.z) && std::isfinite(nearest) ? nearest : 0;
}

}  // namespace port
