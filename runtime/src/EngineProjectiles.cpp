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

void Engine::setPlayerWeaponIndex(int index) {
    setWeaponIndex(player1View(), index);
}

}  // namespace port
