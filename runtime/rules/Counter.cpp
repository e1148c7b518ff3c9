#include "Counter.hpp"

#include <cstdint>

#include "AnimationLookup.hpp"

namespace port {
namespace {

constexpr int kInRage = 4;

bool countersOn(int condition, const Attempt& attempt) {
    switch (condition) {
        case 1:
        case kInRage:
            return true;
        case 2:
            return attempt.hostile;
        case 3:
            return attempt.hostile && !attempt.unblockable && attempt.fromFront;
        default:
            return false;
    }
}

}  // namespace

CounterResult counterFor(const generated::Character* model, const AnimationPlayer& current,
                         const Attempt& attempt, int currentHealth) {
    const generated::Animation* running = current.animation();
    // An end before the start lets no frame through.
    if (!running || running->counterStart < 0 || running->counterEnd < 0 ||
        current.frameIndex() < static_cast<std::size_t>(running->counterStart) ||
        current.frameIndex() > static_cast<std::size_t>(running->counterEnd) ||
        !countersOn(running->counterCond, attempt)) {
        return {};
    }
    CounterResult counter;
    counter.animation = followAnimationFor(model, running);
    counter.takesDamage = running->counterTakesDamage;
    counter.rage = running->counterCond == kInRage;
    const bool lethal = std::int64_t{currentHealth} - attempt.damage <= 0;
    if (counter.rage && lethal) counter.takesDamage = false;
    return counter;
}

bool followConditionPass(int condition, const HitOutcome& outcome) {
    const bool wounded = outcome.hostile && !outcome.lethal && !outcome.blocked;
    switch (condition) {
        case 1:
            return true;
        case 2:
            return outcome.hostile;
        case 3:
        case 5:
            return wounded;
        case 4:
            return wounded && !outcome.targetNoGrab;
        default:
            return false;
    }
}

}  // namespace port
