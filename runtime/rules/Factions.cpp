#include "Factions.hpp"

#include <algorithm>

#include "ModelFacts.hpp"

namespace port {
namespace {

using generated::Character;

// Whose side the model fights on.
const Character* effectiveCombatType(const Character* model, const Character* owner) {
    return owner && (!model || factsOf(*model).auxiliary) ? owner : model;
}

bool maskAllowsTarget(int mask, const Character& target) {
    return (static_cast<unsigned>(mask) & static_cast<unsigned>(openborTypeBit(&target))) != 0;
}

bool decideByMask(int Character::*mask, const Character* attacker, const Character* target,
                  bool legacyDefault, const Character* owner) {
    if (!target) return legacyDefault;
    if (attacker && attacker->*mask != 0) return maskAllowsTarget(attacker->*mask, *target);
    const Character* effective = effectiveCombatType(attacker, owner);
    if (effective && effective->*mask != 0) return maskAllowsTarget(effective->*mask, *target);
    return legacyDefault;
}

}  // namespace

bool modelCanPerceive(const Character* observer, const Character* target, const Character* owner) {
    if (!target) return false;
    const Character* effective = effectiveCombatType(observer, owner);
    const int perception = effective ? effective->perception : 0;
    return std::max(0, perception) >= std::max(0, target->stealth);
}

bool modelIsHostileTo(const Character* attacker, const Character* target, bool legacyDefault,
                      const Character* owner) {
    return decideByMask(&Character::hostileMask, attacker, target, legacyDefault, owner);
}

bool modelCanDamage(const Character* attacker, const Character* target, bool legacyDefault,
                    const Character* owner) {
    return decideByMask(&Character::canDamageMask, attacker, target, legacyDefault, owner);
}

}  // namespace port
