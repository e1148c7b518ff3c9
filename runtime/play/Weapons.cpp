#include "Weapons.hpp"

#include <algorithm>

#include "AnimationLookup.hpp"
#include "Log.hpp"
#include "TextFields.hpp"

namespace port {

void setWeaponIndex(Tick& tick, Actor& actor, int index) {
    if (index <= 0) {
        actor.equippedWeapon = nullptr;
        actor.weaponUses = 0;
        return;
    }
    if (!actor.model || static_cast<std::size_t>(index) > actor.model->weaponCount) return;
    const char* name = actor.model->weapons[index - 1];
    if (*name == '\0' || equalsFolded(name, "none")) return;
    const generated::Character* weapon = findCharacter(name);
    if (!weapon) return;
    actor.equippedWeapon = weapon;
    actor.weaponUses = std::max(0, weapon->shootNum);
    actor.scriptCtx.local["weapon"] = static_cast<double>(index);
    tick.scripts.runHook(weapon->onModelCopyScript, actor.scriptCtx,
                         eventsOf(actor.handle).onModelCopy);
    if (actor.handle == kPlayer1Handle) {
        logLine("Player weapon index=", index, " model=", weapon->name, " uses=", actor.weaponUses);
    }
}

void loseWeapons(Tick& tick) {
    tick.world.visitActors([&](Actor& actor) {
        const generated::Character* weapon = actor.equippedWeapon;
        if (!weapon) return;
        const generated::Character* loss = weapon->weaponLossDefined ? weapon : actor.model;
        setWeaponIndex(tick, actor, loss ? std::max(0, loss->weaponLossIndex) : 0);
        actor.weaponItemModel = nullptr;
        actor.weaponDropsRemaining = -1;
    });
}

}  // namespace port
