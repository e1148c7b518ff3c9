#include "Bot.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "Factions.hpp"
#include "ModelFacts.hpp"
#include "PlayerSpawn.hpp"
#include "Wayfinding.hpp"
#include "WeaponItems.hpp"

namespace port {
namespace {

// Nearer than this in depth an attack is likely to meet its target, in pixels.
constexpr float kReachZ = 5;
// So near it begins to strike, however it wants to stand.
constexpr float kReachX = 45;
constexpr float kPickupX = 24;
constexpr float kPickupZ = 18;
// How far it goes for what lies on the ground while nobody is near.
constexpr float kDetour = 70;
// Passes after which it leaves lying what it could not take up.
constexpr int kLongestDetour = 120;
// A place is reached when it is nearer than this.
constexpr float kHere = 6;
// A goal at any depth.
constexpr float kAnyDepth = 100000;
// The screen ends for a player a little before the picture does.
constexpr float kScreenEdge = 12;
// Passes without getting on before it jumps, and before it tries another depth.
constexpr int kJumpAfter = 20;
constexpr int kTurnAfter = 60;
// A button is held and let go for so many passes each.
constexpr std::uint64_t kTap = 4;

// The ways to stand to a target. Each is tried for a while in which its blows do not tell.
struct Stance {
    float distance;  // from the target, in pixels
    bool jump;
    bool strike;
};
constexpr std::array<Stance, 5> kStances = {{
    {30, false, true},
    {10, false, true},
    {70, false, false},
    {45, false, true},
    {25, true, true},
}};
constexpr int kStancePasses = 100;
// After all of them twice the target is left alone for so long, unless nobody else is there.
constexpr int kGiveUpAfter = 2 * kStancePasses * static_cast<int>(kStances.size());
constexpr std::uint64_t kLeaveAlone = 600;

int sign(float value) {
    return value < 0 ? -1 : 1;
}

bool here(const RuntimeEntity& entity) {
    return entity.alive && entity.visible && entity.model;
}

float distance(const Actor& a, const Actor& b) {
    return std::abs(a.worldX - b.worldX) + std::abs(a.z - b.z);
}

template <class Wanted>
const RuntimeEntity* nearest(const World& world, const Actor& player, Wanted wanted) {
    const RuntimeEntity* best = nullptr;
    for (const RuntimeEntity& entity : world.entities) {
        if (!here(entity) || !wanted(entity)) continue;
        if (!best || distance(entity, player) < distance(*best, player)) best = &entity;
    }
    return best;
}

// Enemies, then the way out, then what stands close enough to be in the way; not `except`.
const RuntimeEntity* chooseTarget(const World& world, const PlayerActor& player,
                                  ActorHandle except) {
    const auto hostile = [&](const RuntimeEntity& entity, int type) {
        return entity.handle != except && openborTypeBit(entity.model) == type &&
               modelCanDamage(player.model, entity.model, true);
    };
    const auto* enemy = nearest(
        world, player, [&](const RuntimeEntity& entity) { return hostile(entity, kTypeEnemy); });
    if (enemy) return enemy;
    const auto* exit = nearest(world, player, [](const RuntimeEntity& entity) {
        return openborTypeBit(entity.model) == kTypeEndlevel;
    });
    if (exit) return exit;
    const auto* obstacle = nearest(
        world, player, [&](const RuntimeEntity& entity) { return hostile(entity, kTypeObstacle); });
    return obstacle && distance(*obstacle, player) < 2 * kReachX ? obstacle : nullptr;
}

const RuntimeEntity* itemNear(const World& world, const Actor& player, ActorHandle except) {
    const auto* item = nearest(world, player, [&](const RuntimeEntity& entity) {
        return entity.handle != except && canBePickedUp(*entity.model);
    });
    return item && distance(*item, player) < kDetour ? item : nullptr;
}

// Whom to strike, and not where to go.
bool isFoe(const RuntimeEntity& target) {
    return openborTypeBit(target.model) != kTypeEndlevel;
}

GroundPoint groundOf(const Actor& actor) {
    return {actor.worldX, actor.z};
}

Heading wayOn(const World& world, const RuntimeConfig& config, const Actor& player) {
    const float ahead = static_cast<float>(world.stage.scrollDir * config.logicalWidth);
    return wayTo(*world.stage.row, groundOf(player), {player.worldX + ahead, player.z},
                 {kHere, kAnyDepth});
}

bool isTap(const World& world) {
    return world.tick / kTap % 2 == 0;
}

void press(HeldInput& held, int key, bool down) {
    if (down && key >= 0 && key < kKeyCount) held.keys.set(static_cast<std::size_t>(key));
}

void press(PadState& pad, int button, bool down) {
    if (down) pad.buttons = static_cast<std::uint16_t>(pad.buttons | button);
}

}  // namespace

// Beside the target, on the side where the player is.
Bot::Wish Bot::approach(const World& world, const RuntimeConfig& config, const PlayerActor& player,
                        const RuntimeEntity& target, const Mind& mind) {
    const auto turn = static_cast<std::size_t>(mind.patience / kStancePasses);
    const Stance& stance = kStances[turn % kStances.size()];
    const float dx = target.worldX - player.worldX;
    const float dz = target.z - player.z;
    const float left = world.camera.x + kScreenEdge;
    const float right = world.camera.x + static_cast<float>(config.logicalWidth) - kScreenEdge;
    const float beside = target.worldX - static_cast<float>(sign(dx)) * stance.distance;
    // Player 1 may leave the screen, and does for those who do not come.
    const bool leaves = player.handle == kPlayer1Handle && turn > 0;
    const GroundPoint goal{leaves ? beside : std::clamp(beside, left, std::max(left, right)),
                           target.z};
    Wish wish{wayTo(*world.stage.row, groundOf(player), goal, {kHere, kReachZ})};
    const bool level = std::abs(dz) <= kReachZ;
    const bool near = std::abs(dx) < std::max(kReachX, stance.distance + kHere);
    // It may stand where no way leads: then a long arm is the last hope.
    const bool noNearer = wish.way == Heading{};
    if (!stance.strike || !(noNearer || (level && near))) return wish;
    if (noNearer && sign(dx) != player.facing) {
        wish.way.dx = sign(dx);
    } else if (std::abs(dx) < stance.distance + kHere) {
        wish.way = {};
    }
    // Thrown down inside a wall it would lie out of reach: only the first blow of a chain then.
    const bool gently = spawnPointBlocked(*world.stage.row, target.worldX, target.z);
    const bool fresh = player.comboWindow == 0 && player.attackTicks <= 0;
    wish.attack = isTap(world) && (!stance.jump || player.jumping) && (!gently || fresh);
    wish.jump = stance.jump && isTap(world) && !player.jumping;
    return wish;
}

const RuntimeEntity* Bot::watchTarget(const World& world, const PlayerActor& player, Mind& mind) {
    const bool leavesAlone = world.tick < mind.outOfReachUntil;
    const RuntimeEntity* target =
        chooseTarget(world, player, leavesAlone ? mind.outOfReach : kNobody);
    const ActorHandle handle = target ? target->handle : kNobody;
    const int health = target ? target->health : 0;
    const float away = target ? distance(*target, player) : 0;
    const bool tells = handle != mind.target || health < mind.targetHealth;
    const bool nearer = away < mind.nearest && away > kDetour;
    mind.patience = tells || nearer ? 0 : mind.patience + 1;
    if (tells || nearer) mind.nearest = away;
    mind.target = handle;
    mind.targetHealth = health;
    if (mind.patience > kGiveUpAfter) {
        mind.outOfReach = handle;
        mind.outOfReachUntil = world.tick + kLeaveAlone;
        mind.patience = 0;
    }
    return target;
}

Heading Bot::errand(const World& world, const PlayerActor& player, const RuntimeEntity& item,
                    const RuntimeEntity* target, Mind& mind) {
    if (target && isFoe(*target) && distance(*target, player) <= kDetour) {
        mind.detour = 0;
        return {};
    }
    if (++mind.detour > kLongestDetour) mind.leftLying = item.handle;
    return wayTo(*world.stage.row, groundOf(player), groundOf(item), {kHere, kReachZ});
}

void Bot::getUnstuck(const World& world, const PlayerActor& player, Wish& wish, Mind& mind) {
    const bool stands = wish.way != Heading{} && player.attackTicks <= 0 &&
                        std::abs(player.worldX - mind.x) + std::abs(player.z - mind.z) < 0.1F;
    mind.stuck = stands ? mind.stuck + 1 : std::max(0, mind.stuck - 1);
    mind.x = player.worldX;
    mind.z = player.z;
    if (mind.stuck > kJumpAfter) wish.jump |= isTap(world);
    if (mind.stuck > kTurnAfter) wish.way.dz = mind.stuck / kTurnAfter % 2 == 0 ? 1 : -1;
}

Bot::Wish Bot::think(const World& world, const RuntimeConfig& config, const PlayerActor& player,
                     Mind& mind) {
    Wish wish;
    if (!player.alive || !player.model || !world.stage.row) return wish;
    const RuntimeEntity* target = watchTarget(world, player, mind);
    const RuntimeEntity* item =
        player.equippedWeapon ? nullptr : itemNear(world, player, mind.leftLying);
    if (item) wish.way = errand(world, player, *item, target, mind);
    if (wish.way == Heading{}) {
        if (!target) {
            wish.way = wayOn(world, config, player);
        } else if (isFoe(*target)) {
            wish = approach(world, config, player, *target, mind);
        } else {
            wish.way = wayTo(*world.stage.row, groundOf(player), groundOf(*target), {1, 1});
        }
    }
    wish.pickup = item && isTap(world) && std::abs(item->worldX - player.worldX) < kPickupX &&
                  std::abs(item->z - player.z) < kPickupZ;
    getUnstuck(world, player, wish, mind);
    return wish;
}

HeldInput Bot::play(const World& world, const RuntimeConfig& config) {
    HeldInput held;
    const Wish own = think(world, config, world.player1, minds_[0]);
    press(held, config.keyLeft, own.way.dx < 0);
    press(held, config.keyRight, own.way.dx > 0);
    press(held, config.keyUp, own.way.dz < 0);
    press(held, config.keyDown, own.way.dz > 0);
    press(held, config.keyAttack, own.attack);
    press(held, config.keyJump, own.jump);
    press(held, config.keyPickup, own.pickup);
    for (std::size_t i = 0; i < world.coop.size() && i + 1 < minds_.size(); ++i) {
        const RuntimeCoopPlayer& player = world.coop[i];
        const Wish wish = think(world, config, player, minds_[i + 1]);
        PadState& pad =
            held.pads[static_cast<std::size_t>(std::clamp(player.gamepadId, 0, kPadCount - 1))];
        pad.connected = true;
        press(pad, kPadLeft, wish.way.dx < 0);
        press(pad, kPadRight, wish.way.dx > 0);
        press(pad, kPadUp, wish.way.dz < 0);
        press(pad, kPadDown, wish.way.dz > 0);
        press(pad, config.padAttack, wish.attack);
        press(pad, config.padJump, wish.jump);
        press(pad, config.padPickup, wish.pickup);
    }
    return held;
}

}  // namespace port
