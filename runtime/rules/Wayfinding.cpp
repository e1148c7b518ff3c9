#include "Wayfinding.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "PlayerSpawn.hpp"

namespace port {
namespace {

constexpr float kCellWidth = 16, kCellDepth = 8;
constexpr int kColumns = 64, kRows = 64;
constexpr std::size_t kCells = std::size_t{kColumns} * kRows;
constexpr int kMiddleColumn = kColumns / 2, kMiddleRow = kRows / 2;

struct Cell {
    int column = 0, row = 0;
    bool operator==(const Cell&) const = default;
};
constexpr std::array<Cell, 4> kNeighbours = {{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}};

int directionOf(float distance, float reach) {
    if (std::abs(distance) <= reach) return 0;
    return distance < 0 ? -1 : 1;
}

Heading headingOf(GroundPoint from, GroundPoint to, GroundPoint reach) {
    return {directionOf(to.x - from.x, reach.x), directionOf(to.z - from.z, reach.z)};
}

// The raster lies so that `from` is in the middle of its middle cell.
class Raster {
  public:
    Raster(const generated::Stage& stage, GroundPoint from)
        : stage_(stage),
          left_(from.x - kCellWidth * kMiddleColumn),
          top_(from.z - kCellDepth * kMiddleRow),
          known_(kCells) {}

    [[nodiscard]] GroundPoint middle(Cell cell) const {
        return {left_ + static_cast<float>(cell.column) * kCellWidth,
                top_ + static_cast<float>(cell.row) * kCellDepth};
    }
    [[nodiscard]] static std::size_t index(Cell cell) {
        return static_cast<std::size_t>(cell.row) * kColumns +
               static_cast<std::size_t>(cell.column);
    }
    [[nodiscard]] bool free(Cell cell) {
        if (cell.column < 0 || cell.column >= kColumns || cell.row < 0 || cell.row >= kRows) {
            return false;
        }
        Ground& ground = known_[index(cell)];
        if (ground == Ground::Unknown) ground = look(middle(cell));
        return ground == Ground::Free;
    }

    [[nodiscard]] bool freeBetween(Cell a, Cell b) const {
        const GroundPoint from = middle(a), to = middle(b);
        return look({(from.x + to.x) / 2, (from.z + to.z) / 2}) == Ground::Free;
    }

  private:
    enum class Ground : unsigned char { Unknown, Free, Blocked };

    [[nodiscard]] Ground look(GroundPoint at) const {
        const bool inside = at.x >= 0 && at.z >= static_cast<float>(stage_.zMin) &&
                            at.z <= static_cast<float>(stage_.zMax);
        return inside && !spawnPointBlocked(stage_, at.x, at.z) ? Ground::Free : Ground::Blocked;
    }

    const generated::Stage& stage_;
    float left_, top_;
    std::vector<Ground> known_;
};

// One walks both ways at once, and then the rest of the longer one.
bool straightWayIsFree(const generated::Stage& stage, GroundPoint from, GroundPoint to) {
    constexpr int kLookAhead = static_cast<int>(kCellWidth) * kColumns / 2;
    constexpr int kLookStep = 2;
    const auto part = [](float distance, float length) {
        return std::clamp(distance, -length, length);
    };
    const float farthest = std::max(std::abs(to.x - from.x), std::abs(to.z - from.z));
    for (int i = 1; i <= kLookAhead && static_cast<float>(i) <= farthest; i += kLookStep) {
        const auto length = static_cast<float>(i);
        if (spawnPointBlocked(stage, from.x + part(to.x - from.x, length),
                              from.z + part(to.z - from.z, length))) {
            return false;
        }
    }
    return true;
}

// Nearer within a cell, as far as nothing is in the way.
Heading lastSteps(const generated::Stage& stage, GroundPoint from, Heading straight) {
    constexpr float kStep = 2;
    const auto free = [&](int dx, int dz) {
        return !spawnPointBlocked(stage, from.x + kStep * static_cast<float>(dx),
                                  from.z + kStep * static_cast<float>(dz));
    };
    return {free(straight.dx, 0) ? straight.dx : 0, free(0, straight.dz) ? straight.dz : 0};
}

}  // namespace

Heading wayTo(const generated::Stage& stage, GroundPoint from, GroundPoint to, GroundPoint reach) {
    const Heading straight = headingOf(from, to, reach);
    if (straight == Heading{} || straightWayIsFree(stage, from, to)) return straight;

    Raster raster(stage, from);
    constexpr Cell kStart{kMiddleColumn, kMiddleRow};
    std::vector<Cell> cameFrom(kCells, Cell{-1, -1});
    std::vector<Cell> reached{kStart};
    cameFrom[Raster::index(kStart)] = kStart;
    Cell best = kStart;
    const auto distance = [&](Cell cell) {
        const GroundPoint at = raster.middle(cell);
        return std::max(0.0F, std::abs(to.x - at.x) - reach.x) +
               std::max(0.0F, std::abs(to.z - at.z) - reach.z);
    };
    for (std::size_t next = 0; next < reached.size(); ++next) {
        const Cell cell = reached[next];
        if (distance(cell) < distance(best)) best = cell;
        for (const Cell& step : kNeighbours) {
            const Cell there{cell.column + step.column, cell.row + step.row};
            if (!raster.free(there) || !raster.freeBetween(cell, there)) continue;
            Cell& known = cameFrom[Raster::index(there)];
            if (known.column >= 0) continue;
            known = cell;
            reached.push_back(there);
        }
    }
    Cell first = best;
    while (!(first == kStart) && !(cameFrom[Raster::index(first)] == kStart)) {
        first = cameFrom[Raster::index(first)];
    }
    if (first == kStart) return lastSteps(stage, from, straight);
    return {first.column - kStart.column, first.row - kStart.row};
}

}  // namespace port
