#pragma once

// The boxes by which actors hit and are hit. They lie on the screen: y is the depth of an actor
// plus its altitude, so that actors meet who look as if they did.

#include "Actor.hpp"

namespace port {

struct RectF {
    float x = 0, y = 0, w = 0, h = 0;
};

// The frame's body, or a small one about the actor for a frame that has none, or for no frame.
[[nodiscard]] RectF bboxFor(const generated::Frame* frame, float worldX, float worldY,
                            int facing = 1);
// The frame's attack; empty where there is none.
[[nodiscard]] RectF attackFor(const generated::Frame* frame, float worldX, float worldY,
                              int facing = 1);
// Whether both have an area, and some of it in common.
[[nodiscard]] bool overlaps(const RectF& a, const RectF& b);

// The middle of what both have in common.
struct PointF {
    float x = 0, y = 0;
};
[[nodiscard]] PointF middleOf(const RectF& a, const RectF& b);

// The actor's body where it is now.
[[nodiscard]] inline RectF bodyOf(const Actor& actor) {
    return bboxFor(actor.animation.frame(), actor.worldX, actor.z + actor.altitude, actor.facing);
}
// Whether the place lies on the side that the actor faces; its own place does not.
[[nodiscard]] inline bool isAhead(const Actor& actor, float worldX) {
    return actor.facing >= 0 ? worldX > actor.worldX : worldX < actor.worldX;
}

}  // namespace port
