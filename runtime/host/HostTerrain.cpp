// Walls and holes of the stage, as scripts ask for them: by place and, upward, by altitude.

#include "Ground.hpp"
#include "HostFunctions.hpp"

namespace port::host {
namespace {

// What lies at a place, each kind numbered by itself; -1 for none.
struct Found {
    int wall = -1, hole = -1;
    float wallHeight = 0, holeHeight = 0;
    bool covered = false;  // there is a wall over a hole
};

// The highest wall that does not stand above the altitude, and the hole: the first one, or with an
// altitude the highest that it is in.
class GroundSearch {
  public:
    explicit GroundSearch(const HostCall& call)
        : x_(call.pixels(0)),
          z_(call.pixels(1)),
          altitude_(call.pixels(2, 9'999'999)),
          byAltitude_(call.has(2)) {}

    void wall(const generated::Geometry& area) {
        const int number = walls_++;
        if (!terrainContains(area, x_, z_)) return;
        found_.covered = true;
        const float height = terrainHeight(area);
        if (height > altitude_ || !(height > found_.wallHeight)) return;
        found_.wall = number;
        found_.wallHeight = height;
    }
    void hole(const generated::Geometry& area) {
        constexpr float kStep = 2;
        const int number = holes_++;
        if (!terrainContains(area, x_, z_)) return;
        const float height = terrainHeight(area);
        const bool first = found_.hole < 0;
        if (!byAltitude_ && !first) return;
        if (byAltitude_ && height + kStep < altitude_) return;
        if (!first && height <= found_.holeHeight) return;
        found_.hole = number;
        found_.holeHeight = height;
    }
    [[nodiscard]] const Found& found() const { return found_; }

  private:
    float x_, z_, altitude_;
    bool byAltitude_;
    int walls_ = 0, holes_ = 0;
    Found found_;
};

// Nothing without a stage, or with fewer than two arguments.
Found groundAt(HostCall& call) {
    if (call.count() < 2) call.tag(call.name, "-arguments");
    const StageRun& stage = call.world().stage;
    if (call.count() < 2 || !stage.row) return {};
    call.chargeScan(stage.row->geometryCount);
    GroundSearch search(call);
    for (std::size_t i = 0; i < stage.row->geometryCount; ++i) {
        const generated::Geometry& area = stage.row->geometry[i];
        const GeometryKind kind = stage.geometryKinds[i];
        if (kind == GeometryKind::Other) continue;
        if (!area.openborShape) call.tag("terrain-legacy-rectangle");
        if (kind == GeometryKind::Wall) {
            search.wall(area);
        } else {
            search.hole(area);
        }
    }
    return search.found();
}

}  // namespace

ScriptValue isHole(HostCall& call) {
    const Found found = groundAt(call);
    return scriptTruth(found.hole >= 0 && !found.covered);
}

ScriptValue holeIndex(HostCall& call) {
    const Found found = groundAt(call);
    return static_cast<double>(found.covered ? -1 : found.hole);
}

ScriptValue wallHeight(HostCall& call) {
    return static_cast<double>(groundAt(call).wallHeight);
}

ScriptValue wallIndex(HostCall& call) {
    return static_cast<double>(groundAt(call).wall);
}

}  // namespace port::host
