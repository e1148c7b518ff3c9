#include "Weapons.hpp"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <utility>

#include "AnimationLookup.hpp"
#include "Log.hpp"
#include "Spawning.hpp"
#include "TextFields.hpp"
#include "WeaponItems.hpp"

namespace port {
namespace {

constexpr float kReachX = 24, kReachZ = 18;
constexpr float kDropDistance = 12;

bool isInReach(const Actor& actor, const Actor& item) {
    return std::abs(item.worldX - actor.worldX) <= kReachX && std::abs(item.z - actor.z) <= kReachZ;
}

// No weapon to reload is no loss: the item may still be one.
bool reload(PlayerActor& player, const generated::Character& item) {
    const generated::Character* weapon = player.equippedWeapon;
    if (item.reloadAmount <= 0 || !weapon || weapon->shootNum <= 0) return false;
    const std::int64_t uses = std::int64_t{player.weaponUses} + item.reloadAmount;
    player.weaponUses = static_cast<int>(std::min<std::int64_t>(INT_MAX, uses));
    if (player.handle == kPlayer1Handle) {
        logLine("Ammo reload +", item.reloadAmount, " uses=", player.weaponUses);
    }
    return true;
}

bool equipFromList(Tick& tick, PlayerActor& player, const RuntimeEntity& item) {
    if (item.model->weaponNumber <= 0) return false;
    setWeaponIndex(tick, player, item.model->weaponNumber);
    if (player.equippedWeapon) holdItem(player, item);
    return player.equippedWeapon;
}

bool equipItself(PlayerActor& player, const generated::Character& item) {
    if (!isThrowable(item)) return false;
    player.equippedWeapon = &item;
    player.weaponUses = std::max(0, item.shootNum);
    player.weaponItemModel = nullptr;
    player.weaponDropsRemaining = -1;
    return true;
}

int dropsLeft(const Actor& actor) {
    if (actor.weaponDropsRemaining >= 0 || !actor.weaponItemModel) {
        return actor.weaponDropsRemaining;
    }
    return std::max(0, actor.weaponItemModel->weaponDropCounter);
}

}  // namespace

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

void holdItem(Actor& actor, const RuntimeEntity& item) {
    actor.weaponItemModel = item.model;
    actor.weaponDropsRemaining = item.weaponDropsRemaining >= 0
                                     ? item.weaponDropsRemaining
                                     : std::max(0, item.model->weaponDropCounter);
}

void tryPickupWeapon(Tick& tick, PlayerActor& player) {
    bool taken = false;
    tick.world.entities.visit([&](RuntimeEntity& item) {
        if (taken || !item.alive || !item.model || !isInReach(player, item)) return;
        if (!canBePickedUp(*item.model)) return;
        taken = reload(player, *item.model) || equipFromList(tick, player, item) ||
                equipItself(player, *item.model);
        if (taken) item.alive = item.visible = false;
    });
}

void dropWeapon(Tick& tick, Actor& actor, bool stageLoss) {
    const generated::Character* weapon = actor.equippedWeapon;
    if (!weapon) return;
    const generated::Character* loss = weapon->weaponLossDefined ? weapon : actor.model;
    const int remaining = dropsLeft(actor);
    if (!stageLoss && actor.weaponItemModel && remaining > 1) {
        tick.world.pendingWeaponDrops.push_back({actor.weaponItemModel, actor.worldX, actor.z,
                                                 actor.altitude, actor.facing, remaining - 1});
    }
    setWeaponIndex(tick, actor, loss ? std::max(0, loss->weaponLossIndex) : 0);
    actor.weaponItemModel = nullptr;
    actor.weaponDropsRemaining = -1;
}

void flushWeaponDrops(Tick& tick) {
    const auto drops = std::exchange(tick.world.pendingWeaponDrops, {});
    for (const PendingWeaponDrop& drop : drops) {
        if (!drop.itemModel) continue;
        RuntimeEntity item = entityOf(drop.itemModel);
        item.worldX = drop.worldX + kDropDistance * static_cast<float>(drop.facing);
        item.z = drop.z;
        item.altitude = drop.altitude;
        item.facing = drop.facing;
        item.weaponDropsRemaining = drop.remainingDrops;
        startFirstOf(item.animation, *item.model, {"respawn", "spawn", "idle"});
        RuntimeEntity* entity = tick.world.entities.add(std::move(item));
        if (!entity) continue;
        tick.scripts.runHook(entity->model->onSpawnScript, entity->scriptCtx, "weapon-drop");
    }
}

void loseWeapons(Tick& tick) {
    tick.world.visitActors([&](Actor& actor) { dropWeapon(tick, actor, true); });
    flushWeaponDrops(tick);
}

}  // namespace port
