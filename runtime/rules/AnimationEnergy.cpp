#include "AnimationEnergy.hpp"

#include <algorithm>

#include "ModelTypes.hpp"

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

void finishAnimationEnergy(PendingEnergyCost& pending, int& hp, int& mp) {
    if (pending.animation && pending.hit) debitAnimationEnergy(pending.cost, pending.mode, hp, mp);
    pending = {};
}

bool beginEnergyAnimation(AnimationPlayer& player, const generated::Animation* animation,
                          const generated::Character* model, int& hp, int& mp,
                          PendingEnergyCost& pending) {
    if (!hasAnimationEnergy(animation, model, hp, mp)) return false;
    finishAnimationEnergy(pending, hp, mp);
    // That debit may have spent the means.
    if (!hasAnimationEnergy(animation, model, hp, mp)) return false;
    if (model && model->globalNoCost && animation->energyCost > 0) {
        pending = {animation, animation->energyCost, animation->energyMode, false};
    } else {
        debitAnimationEnergy(animation->energyCost, animation->energyMode, hp, mp);
    }
    player.setAnimation(animation);
    return true;
}

void settleAnimationEnergy(PendingEnergyCost& pending, const AnimationPlayer& player, int& hp,
                           int& mp) {
    if (!pending.animation) return;
    if (player.animation() != pending.animation || player.finished()) {
        finishAnimationEnergy(pending, hp, mp);
    }
}

}  // namespace port
