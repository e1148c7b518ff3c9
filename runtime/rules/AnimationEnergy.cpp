#include "AnimationEnergy.hpp"

#include <algorithm>
#include <utility>

#include "ModelFacts.hpp"

namespace port {
namespace {

enum EnergyMode { kMpOnly = 1, kHealthOnly = 2 };
enum EnergyDisable { kForAll = 1, kForEnemyNpc = 2, kForPlayerNpc = 3, kForPlayerEnemy = 4 };

}  // namespace

bool costDisabled(const generated::Character* model, int disable) {
    const int type = openborTypeBit(model);
    if (disable == 0) return false;
    if (disable == kForAll || disable == -kForAll) return true;
    if (disable == kForEnemyNpc || disable == -kForEnemyNpc) {
        return type == kTypeEnemy || type == kTypeNpc;
    }
    if (disable == kForPlayerNpc || disable == -kForPlayerNpc) {
        return type == kTypePlayer || type == kTypeNpc;
    }
    if (disable == kForPlayerEnemy || disable == -kForPlayerEnemy) {
        return type == kTypePlayer || type == kTypeEnemy;
    }
    return disable == type;
}

bool hasAnimationEnergy(const generated::Animation* animation, const generated::Character* model,
                        int hp, int mp) {
    if (!animation || costDisabled(model, animation->energyDisable)) return false;
    const int cost = std::max(0, animation->energyCost);
    return (animation->energyMode != kHealthOnly && mp >= cost) ||
           (animation->energyMode != kMpOnly && hp > cost);
}

void debitAnimationEnergy(int cost, int mode, int& hp, int& mp) {
    if (cost <= 0) return;
    if (mode != kHealthOnly && mp >= cost) {
        mp -= cost;
    } else if (mode != kMpOnly) {
        hp = hp > cost ? hp - cost : 1;
    }
}

void finishAnimationEnergy(Actor& actor) {
    const PendingEnergyCost pending = std::exchange(actor.energyPending, {});
    if (pending.animation && pending.hit) {
        debitAnimationEnergy(pending.cost, pending.mode, actor.health, actor.mp);
    }
}

bool beginEnergyAnimation(Actor& actor, const generated::Animation* animation) {
    const auto canPay = [&] {
        return hasAnimationEnergy(animation, actor.model, actor.health, actor.mp);
    };
    if (!canPay()) return false;
    finishAnimationEnergy(actor);
    // That debit may have spent the means.
    if (!canPay()) return false;
    if (actor.model && actor.model->globalNoCost && animation->energyCost > 0) {
        actor.energyPending = {animation, animation->energyCost, animation->energyMode, false};
    } else {
        debitAnimationEnergy(animation->energyCost, animation->energyMode, actor.health, actor.mp);
    }
    actor.animation.setAnimation(animation);
    return true;
}

void settleAnimationEnergy(Actor& actor) {
    const generated::Animation* pending = actor.energyPending.animation;
    if (!pending) return;
    if (actor.animation.animation() != pending || actor.animation.finished()) {
        finishAnimationEnergy(actor);
    }
}

}  // namespace port
