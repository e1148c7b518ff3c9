#include "Ground.hpp"

#include <algorithm>

namespace port {
namespace {

bool rectangleContains(const generated::Geometry& area, float x, float z) {
    const auto inside = [](float at, int from, int length) {
        return at >= static_cast<float>(from) &&
               at <= static_cast<float>(from) + static_cast<float>(length);
    };
    return inside(x, area.x, area.w) && inside(z, area.z, area.h);
}

}  // namespace

RowEdges shapeEdges(const float (&shape)[9], float z) {
    const float depth = shape[kShapeDepth];
    if (!(depth > 0) || z < shape[kShapeZ] - depth || z > shape[kShapeZ]) return {};
    const float up = shape[kShapeZ] - z;
    const auto edge = [&](ShapeValue lower, ShapeValue upper) {
        return shape[kShapeX] + shape[lower] + up * ((shape[upper] - shape[lower]) / depth);
    };
    return {true, edge(kLowerLeft, kUpperLeft), edge(kLowerRight, kUpperRight)};
}

bool terrainContains(const generated::Geometry& area, float x, float z) {
    if (!area.openborShape) return rectangleContains(area, x, z);
    const RowEdges row = shapeEdges(area.shape, z);
    return row.within && x >= row.left && x <= row.right;
}

float terrainHeight(const generated::Geometry& area) {
    return area.openborShape ? area.shape[kShapeHeight] : static_cast<float>(area.altitude);
}

bool platformContains(const generated::Frame& frame, const ActorPlace& carrier, float x, float z) {
    const generated::PlatformBox& platform = frame.platform;
    if (!frame.hasPlatform || !(platform.depth > 0) || !(platform.altitude > 0)) return false;
    const float side = static_cast<float>(carrier.facing);
    const float anchorX = carrier.x + (platform.x - static_cast<float>(frame.offsetX)) * side;
    const float anchorZ = carrier.z + (platform.z - static_cast<float>(frame.offsetY));
    const float dz = anchorZ - z;
    if (!(dz >= 0 && dz <= platform.depth)) return false;
    const float t = dz / platform.depth;
    const auto edge = [&](float lower, float upper) {
        return anchorX + (lower + (upper - lower) * t) * side;
    };
    const auto [left, right] = std::minmax({edge(platform.lowerLeft, platform.upperLeft),
                                            edge(platform.lowerRight, platform.upperRight)});
    return x >= left && x <= right;
}

}  // namespace port
