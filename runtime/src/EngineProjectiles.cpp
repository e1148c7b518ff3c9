// Projectiles in flight and the weapons that actors carry.

#include <algorithm>
#include <string_view>

#include "AnimationLookup.hpp"
#include "Engine.hpp"
#include "Log.hpp"
#include "TextFields.hpp"

namespace port {

// Nothing throws or shoots yet, and nothing drops a weapon.
void Engine::updateProjectiles() {}
void Engine::flushWeaponDrops() {}

// The model's weapon of that number, from 1 on, or none for 0 and less. A number without a known
// weapon changes nothing.
void Engine::setWeaponIndex(const ActorView& actor, int index) {
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
    actor.context.local["weapon"] = static_cast<double>(index);
    runModelScript(weapon->onModelCopyScript, actor.context, actor.events.onModelCopy);
    if (actor.handle == kPlayer1Handle) {
        logLine("Player weapon index=", index, " model=", weapon->name, " uses=", actor.weaponUses);
    }
}

// At the end of a stage: whatever the loss of the weapon in hand leaves, and nothing on the ground.
void Engine::loseWeapons() {
    const auto lose = [this](const ActorView& actor, const generated::Character*& item,
                             int& drops) {
        const generated::Character* weapon = actor.equippedWeapon;
        if (!weapon) return;
        const generated::Character* loss = weapon->weaponLossDefined ? weapon : actor.model;
        setWeaponIndex(actor, loss ? std::max(0, loss->weaponLossIndex) : 0);
        item = nullptr;
        drops = -1;
    };
    lose(player1View(), weaponItemModel_, weaponDropsRemaining_);
    for (std::size_t i = 0; i < coopPlayers_.size(); ++i) {
        lose(coopView(i), coopPlayers_[i].weaponItemModel, coopPlayers_[i].weaponDropsRemaining);
    }
    eachEntity([&](RuntimeEntity& entity) {
        lose(entityView(entity), entity.weaponItemModel, entity.weaponDropsRemaining);
    });
}

void Engine::setPlayerWeaponIndex(int index) {
    setWeaponIndex(player1View(), index);
}

}  // namespace port
