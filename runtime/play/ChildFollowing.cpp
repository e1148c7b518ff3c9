#include "ChildFollowing.hpp"

#include <algorithm>
#include <cmath>

#include "Entities.hpp"
#include "KnownAnimations.hpp"
#include "ModelFacts.hpp"

namespace port {
namespace {

using generated::Character;

struct Distance {
    float x, z, altitude;
};

bool within(float value, float least, float most) {
    return value >= least && value <= most;
}

bool isInRecallRange(const Character& model, const Distance& way) {
    return within(way.x, model.childRecallRangeXMin, model.childRecallRangeXMax) &&
           within(way.z, model.childRecallRangeZMin, model.childRecallRangeZMax) &&
           within(way.altitude, model.childRecallRangeYMin, model.childRecallRangeYMax);
}

bool isInFollowRange(const Character& model, const Distance& way) {
    return within(way.x, model.childFollowRangeXMin, model.childFollowRangeXMax) &&
           within(way.z, model.childFollowRangeZMin, model.childFollowRangeZMax) &&
           within(way.altitude, model.childFollowRangeYMin, model.childFollowRangeYMax);
}

void recall(RuntimeEntity& child, const Actor& parent) {
    const Character& model = *child.model;
    const float side = static_cast<float>(parent.facing);
    child.worldX = parent.worldX + (model.childRecallOffsetX + model.childFollowOffsetX) * side;
    child.z = parent.z + model.childRecallOffsetZ + model.childFollowOffsetZ;
    child.altitude = parent.altitude - (model.childRecallOffsetY + model.childFollowOffsetY);
    child.facing = parent.facing;
    const generated::Animation* animation = nullptr;
    if (*model.childRecallAnimation != '\0') {
        animation = exactAnimation(&model, model.childRecallAnimation);
    }
    if (!animation) animation = exactAnimation(&model, "respawn");
    if (!animation) animation = findAnimation(&model, "spawn");
    setEntityAnimation(child, animation);
}

int facingOf(const RuntimeEntity& child, const Actor& parent, float dx) {
    enum Adjust { kSame = 1, kOpposite, kLeft, kRight, kAway, kToward };
    switch (child.model->childDirectionAdjust) {
        case kSame:
            return parent.facing;
        case kOpposite:
            return -parent.facing;
        case kLeft:
            return -1;
        case kRight:
            return 1;
        case kAway:
            return dx < 0 ? 1 : -1;
        case kToward:
            return dx < 0 ? -1 : 1;
        default:
            if (!(std::abs(dx) > 1)) return child.facing;
            return dx < 0 ? -1 : 1;
    }
}

void goAlong(RuntimeEntity& child, const Distance& way) {
    constexpr float kThere = 0.001F;
    constexpr float kFastestClimb = 1.5F;
    const Character& model = *child.model;
    const bool runs = model.runSpeed > 0;
    const float speed = std::max(0.0F, runs ? model.runSpeed : model.speed);
    const float distance = std::hypot(way.x, way.z, way.altitude);
    if (distance > kThere) {
        child.worldX += way.x / distance * speed;
        child.z += way.z / distance * speed;
        child.altitude += way.altitude / distance * std::min(speed, kFastestClimb);
    }
    setEntityAnimation(child,
                       findAnimation(&model, runs ? KnownAnimation::Run : KnownAnimation::Walk));
}

}  // namespace

void updateChildFollowing(const World& world, RuntimeEntity& child) {
    if (child.parentHandle == kNobody || !child.alive || !child.model) return;
    const Character& model = *child.model;
    if (model.noMove || (!(model.childFollowRange > 0) && !factsOf(model).followsParent)) return;
    const Actor* parent = world.find(child.parentHandle);
    if (!parent || !parent->alive) return;
    const float side = static_cast<float>(parent->facing);
    const Distance way = {parent->worldX + model.childFollowOffsetX * side - child.worldX,
                          parent->z + model.childFollowOffsetZ - child.z,
                          parent->altitude - model.childFollowOffsetY - child.altitude};
    if (!isInRecallRange(model, way)) {
        recall(child, *parent);
        return;
    }
    child.facing = facingOf(child, *parent, way.x);
    if (!isInFollowRange(model, way)) {
        goAlong(child, way);
    } else if (child.attackTicks <= 0 && child.hitStun <= 0 && child.fallTicks <= 0) {
        setEntityAnimation(child, findAnimation(&model, KnownAnimation::Idle));
    }
}

}  // namespace port
