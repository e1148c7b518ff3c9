#include "Boxes.hpp"

#include <algorithm>

namespace port {
namespace {

// In floats from the start: a game's numbers may add up to more than an int holds.
RectF placed(const generated::Frame& frame, const generated::Box& box, float worldX, float worldY,
             int facing) {
    const auto offsetX = static_cast<float>(frame.offsetX);
    const auto offsetY = static_cast<float>(frame.offsetY);
    const auto x = static_cast<float>(box.x);
    const auto w = static_cast<float>(box.w);
    const float left = facing >= 0 ? worldX - offsetX + x : worldX + offsetX - x - w;
    return {left, worldY - offsetY + static_cast<float>(box.y), w, static_cast<float>(box.h)};
}

}  // namespace

RectF bboxFor(const generated::Frame* frame, float worldX, float worldY, int facing) {
    if (!frame || !frame->hasBBox) return {worldX - 10, worldY - 28, 20, 28};
    return placed(*frame, frame->bbox, worldX, worldY, facing);
}

RectF attackFor(const generated::Frame* frame, float worldX, float worldY, int facing) {
    if (!frame || !frame->hasAttack) return {};
    const generated::AttackBox& attack = frame->attack;
    return placed(*frame, {attack.x, attack.y, attack.w, attack.h}, worldX, worldY, facing);
}

bool overlaps(const RectF& a, const RectF& b) {
    return a.w > 0 && a.h > 0 && b.w > 0 && b.h > 0 && a.x < b.x + b.w && b.x < a.x + a.w &&
           a.y < b.y + b.h && b.y < a.y + a.h;
}

PointF middleOf(const RectF& a, const RectF& b) {
    return {(std::max(a.x, b.x) + std::min(a.x + a.w, b.x + b.w)) / 2,
            (std::max(a.y, b.y) + std::min(a.y + a.h, b.y + b.h)) / 2};
}

}  // namespace port
