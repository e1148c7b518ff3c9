#include "Bot.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "Factions.hpp"
#include "ModelFacts.hpp"
#include "PlayerSpawn.hpp"

namespace port {
namespace {

// From here an attack is likely to meet its target, in pixels.
constexpr float kReachX = 45;
constexpr float kReachZ = 6;
// Nearer than this it stays where it is and strikes.
constexpr float kClose = 25;
constexpr float kPickupX = 24;
constexpr float kPickupZ = 18;
// How far ahead it looks for holes and walls.
constexpr float kLookAhead = 28;
constexpr int kLookStep = 8;
// Passes without getting on before it jumps, and before it tries another depth.
constexpr int kJumpAfter = 20;
constexpr int kTurnAfter = 60;
// A button is held and let go for so many passes each.
constexpr std::uint64_t kTap = 4;

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

// Enemies, then the way out, then what stands close enough to be in the way.
const RuntimeEntity* chooseTarget(const World& world, const PlayerActor& player) {
    const auto* enemy = nearest(world, player, [&](const RuntimeEntity& entity) {
        return openborTypeBit(entity.model) == kTypeEnemy &&
               modelCanDamage(player.model, entity.model, true);
    });
    if (enemy) return enemy;
    const auto* exit = nearest(world, player, [](const RuntimeEntity& entity) {
        return openborTypeBit(entity.model) == kTypeEndlevel;
    });
    if (exit) return exit;
    const auto* obstacle = nearest(world, player, [&](const RuntimeEntity& entity) {
        return openborTypeBit(entity.model) == kTypeObstacle &&
               modelCanDamage(player.model, entity.model, true);
    });
    return obstacle && distance(*obstacle, player) < 2 * kReachX ? obstacle : nullptr;
}

bool weaponIsNear(const World& world, const PlayerActor& player) {
    return std::ranges::any_of(world.entities, [&](const RuntimeEntity& entity) {
        return here(entity) && openborTypeBit(entity.model) == kTypeItem &&
               std::abs(entity.worldX - player.worldX) < kPickupX &&
               std::abs(entity.z - player.z) < kPickupZ;
    });
}

// The way in depth to the nearest free place ahead; 0 where it is free or nowhere is.
int wayRound(const generated::Stage& stage, float ahead, float z) {
    // Deeper ones are walked along only so far.
    constexpr std::int64_t kFarthest = 400;
    const auto depth = std::min<std::int64_t>(kFarthest, std::int64_t{stage.zMax} - stage.zMin);
    for (int step = kLookStep; step <= depth; step += kLookStep) {
        for (const int side : {1, -1}) {
            const float there = z + static_cast<float>(step * side);
            const bool inside =
                there >= static_cast<float>(stage.zMin) && there <= static_cast<float>(stage.zMax);
            if (inside && !spawnPointBlocked(stage, ahead, there)) return side;
        }
    }
    return 0;
}

void press(HeldInput& held, int key, bool down) {
    if (down && key >= 0 && key < kKeyCount) held.keys.set(static_cast<std::size_t>(key));
}

void press(PadState& pad, int button, bool down) {
    if (down) pad.buttons = static_cast<std::uint16_t>(pad.buttons | button);
}

}  // namespace

Bot::Wish Bot::think(const World& world, const PlayerActor& player, Walk& walk) const {
    Wish wish;
    if (!player.alive || !player.model || !world.stage.row) return wish;
    const bool tap = world.tick / kTap % 2 == 0;
    const RuntimeEntity* target = chooseTarget(world, player);
    if (!target) {
        wish.dx = world.stage.scrollDir;
    } else {
        const float dx = target->worldX - player.worldX;
        const float dz = target->z - player.z;
        const bool exit = openborTypeBit(target->model) == kTypeEndlevel;
        if (exit || std::abs(dx) > kClose || sign(dx) != player.facing) wish.dx = sign(dx);
        if (std::abs(dz) > kReachZ) wish.dz = sign(dz);
        wish.attack = tap && !exit && std::abs(dx) < kReachX && std::abs(dz) < 2 * kReachZ;
    }
    wish.pickup = tap && !player.equippedWeapon && weaponIsNear(world, player);

    const float ahead = player.worldX + static_cast<float>(wish.dx) * kLookAhead;
    if (wish.dx != 0 && spawnPointBlocked(*world.stage.row, ahead, player.z)) {
        const int side = wayRound(*world.stage.row, ahead, player.z);
        if (side != 0) {
            wish.dz = side;
        } else {
            wish.jump = tap;
        }
    }
    const bool stands = wish.dx != 0 && !wish.attack && std::abs(player.worldX - walk.x) < 0.5F;
    walk.stuck = stands ? walk.stuck + 1 : 0;
    walk.x = player.worldX;
    if (walk.stuck > kJumpAfter) wish.jump = tap;
    if (walk.stuck > kTurnAfter) wish.dz = walk.stuck / kTurnAfter % 2 == 0 ? 1 : -1;
    return wish;
}

HeldInput Bot::play(const World& world, const RuntimeConfig& config) {
    HeldInput held;
    const Wish own = think(world, world.player1, walks_[0]);
    press(held, config.keyLeft, own.dx < 0);
    press(held, config.keyRight, own.dx > 0);
    press(held, config.keyUp, own.dz < 0);
    press(held, config.keyDown, own.dz > 0);
    press(held, config.keyAttack, own.attack);
    press(held, config.keyJump, own.jump);
    press(held, config.keyPickup, own.pickup);
    for (std::size_t i = 0; i < world.coop.size() && i + 1 < walks_.size(); ++i) {
        const RuntimeCoopPlayer& player = world.coop[i];
        const Wish wish = think(world, player, walks_[i + 1]);
        PadState& pad =
            held.pads[static_cast<std::size_t>(std::clamp(player.gamepadId, 0, kPadCount - 1))];
        pad.connected = true;
        press(pad, kPadLeft, wish.dx < 0);
        press(pad, kPadRight, wish.dx > 0);
        press(pad, kPadUp, wish.dz < 0);
        press(pad, kPadDown, wish.dz > 0);
        press(pad, config.padAttack, wish.attack);
        press(pad, config.padJump, wish.jump);
        press(pad, config.padPickup, wish.pickup);
    }
    return held;
}

}  // namespace port
