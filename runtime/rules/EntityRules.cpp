#include "EntityRules.hpp"

#include <algorithm>
#include <climits>
#include <cmath>

namespace port {
namespace {

// Nearer than this a target counts as reached, in x and in z.
constexpr float kReached = 3;
constexpr float kSlowestStep = 0.5F;

float stepSize(const generated::Character& model) {
    const auto eagerness = static_cast<float>(std::clamp(model.aggression, 0, 100));
    return std::max(kSlowestStep, model.speed * (0.55F + eagerness / 220));
}

// A way for a second and a half: to the right, to the left, toward the viewer, away.
GroundStep wanderStep(float step, const Walk& walk) {
    constexpr std::uint64_t kTicksOfWay = 90;
    const float deep = std::min(step, 1.2F);
    switch ((walk.tick / kTicksOfWay + walk.place) % 4) {
        case 0:
            return {step, 0};
        case 1:
            return {-step, 0};
        case 2:
            return {0, deep};
        default:
            return {0, -deep};
    }
}

GroundStep approachStep(const generated::Character& model, float step, const Walk& walk) {
    GroundStep move = {toward(walk.distance.x, step),
                       toward(walk.distance.z, std::min(step, 1.5F))};
    const bool avoids = aiMoves(model, kAiAvoid);
    if (avoids || aiMoves(model, kAiAvoidX)) move.x = -move.x;
    if (avoids || aiMoves(model, kAiAvoidZ)) move.z = -move.z;
    return move;
}

}  // namespace

GroundStep walkStep(const generated::Character& model, const Walk& walk) {
    constexpr std::uint64_t kTicksOfStarSwing = 30;
    const float step = stepSize(model);
    const bool wanders = aiMoves(model, kAiWander);
    const bool isStar = aiMoves(model, kAiStar);
    const bool rushes = aiMoves(model, kAiBiker | kAiArrow | kAiStar | kAiBomb);
    GroundStep move = wanders ? wanderStep(step, walk) : approachStep(model, step, walk);
    if (aiMoves(model, kAiChaseZ)) move.x = 0;
    if (aiMoves(model, kAiChaseX)) move.z = 0;
    if (rushes) move.x = static_cast<float>(walk.facing) * std::max(step, 1.0F);
    if (isStar) {
        const bool odd = walk.tick / kTicksOfStarSwing % 2 == 1;
        move.z = odd ? std::min(step, 1.0F) : -std::min(step, 1.0F);
    }
    if (std::abs(walk.distance.x) <= kReached && !wanders && !rushes) move.x = 0;
    if (std::abs(walk.distance.z) <= kReached && !wanders && !isStar) move.z = 0;
    return move;
}

int restAfterAttack(const generated::Character& model) {
    if (aiAttacks(model, kAiAlways)) return 2;
    return std::clamp(18 - std::clamp(model.aggression, -300, 300) / 6, 2, 90);
}

float bounceVelocity(float velocity, float bounceFactor) {
    return -std::max(0.5F, std::abs(velocity) * (bounceFactor > 0 ? bounceFactor : 0.5F));
}

int ticksToRise(int usual, int riseTime) {
    const double ticks = usual - std::round(riseTime * 0.6);
    return static_cast<int>(std::clamp<double>(ticks, 1, INT_MAX));
}

}  // namespace port
