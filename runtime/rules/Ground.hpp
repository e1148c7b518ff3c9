#pragma once

// What lies under a point of a stage: areas of its geometry, and the platforms that actors carry.

#include "Actor.hpp"
#include "GeneratedStages.hpp"

namespace port {

// The places of the values that describe an area: its lower corner, how far its edges lie from it
// at the upper and at the lower end, its depth upward, its height.
enum ShapeValue {
    kShapeX,
    kShapeZ,
    kUpperLeft,
    kLowerLeft,
    kUpperRight,
    kLowerRight,
    kShapeDepth,
    kShapeHeight,
    kShapeType
};

// The edges of an area in one row. They may cross.
struct RowEdges {
    bool within = false;  // whether the area reaches this row at all
    float left = 0, right = 0;
};
[[nodiscard]] RowEdges shapeEdges(const float (&shape)[9], float z);

// Edges included. Where the edges of a shape cross nothing lies between them.
[[nodiscard]] bool terrainContains(const generated::Geometry& area, float x, float z);
[[nodiscard]] float terrainHeight(const generated::Geometry& area);

// Whether (x, z) lies on the platform that a carrier at its place shows in this frame. Edges may
// be given in either order.
[[nodiscard]] bool platformContains(const generated::Frame& frame, const ActorPlace& carrier,
                                    float x, float z);

}  // namespace port
