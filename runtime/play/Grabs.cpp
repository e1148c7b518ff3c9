#include "Grabs.hpp"

#include <algorithm>
#include <cmath>

#include "AnimationLookup.hpp"
#include "Damage.hpp"
#include "Entities.hpp"
#include "Log.hpp"
#include "ModelFacts.hpp"
#include "Pixels.hpp"
#include "PlayerMotion.hpp"
#include "Roster.hpp"

namespace port {
namespace {

constexpr float kGrabReachZ = 16;
constexpr float kGrabReachA = 2;
constexpr float kHoldOffset = 14;
constexpr float kThrowDistance = 18;

bool canGrab(const Player1& player) {
    if (player.grabbedEntity != kNobody || !player.alive || player.attackTicks > 0) return false;
    if (std::abs(player.altitude) > kGrabReachA) return false;
    const generated::Frame* frame = player.animation.frame();
    return !frame || (frame->moveX == 0 && frame->moveZ == 0);
}

bool canBeGrabbed(const RuntimeEntity& entity, const Player1& player) {
    if (!entity.alive || entity.grabbed || entity.fallTicks > 0 || !entity.model) return false;
    const generated::Character& model = *entity.model;
    const int force = player.model ? player.model->grabForce : 0;
    return openborTypeBit(&model) == kTypeEnemy && !model.noGrab && model.grabResistance <= force &&
           std::abs(entity.altitude) < kOffGround &&
           std::abs(entity.altitude - player.altitude) <= kGrabReachA &&
           std::abs(entity.z - player.z) <= kGrabReachZ;
}

}  // namespace

void tryGrabNearest(Tick& tick) {
    World& world = tick.world;
    Player1& player = world.player1;
    if (!canGrab(player)) return;
    const int byModel = player.model ? player.model->grabDistance : 30;
    auto reach = static_cast<float>(std::max(tick.config.grabRange, byModel));
    RuntimeEntity* nearest = nullptr;
    visitRoster(world, world.roster.present, [&](RuntimeEntity& entity) {
        const float dx = std::abs(entity.worldX - player.worldX);
        if (dx <= reach && canBeGrabbed(entity, player)) {
            nearest = &entity;
            reach = dx;
        }
        return false;
    });
    if (!nearest) return;
    player.grabbedEntity = nearest->handle;
    player.grabHoldTicks = 0;
    nearest->grabbed = true;
    nearest->attackTicks = nearest->hitStun = 0;
    player.facing = nearest->worldX >= player.worldX ? 1 : -1;
    startAnimation(player, actionAnimation(player, {"grab"}));
    setEntityAnimation(*nearest, findAnimation(nearest->model, "grabbed"));
    logLine("Grabbed enemy ", nearest->model->name);
}

void throwGrabbed(Tick& tick) {
    Player1& player = tick.world.player1;
    RuntimeEntity* thrown = tick.world.entities.find(player.grabbedEntity);
    if (!thrown || !thrown->model) return;
    const generated::Character& model = *thrown->model;
    thrown->grabbed = false;
    player.grabbedEntity = kNobody;
    ++player.attackId;
    startAnimation(player, actionAnimation(player, {"throw"}));
    const bool own = player.model && player.model->throwDamage > 0;
    const int damage = own ? player.model->throwDamage : tick.config.throwDamage;
    const float distance = model.throwDistance > 0 ? model.throwDistance : kThrowDistance;
    const float height =
        model.throwHeight > 0 ? model.throwHeight : static_cast<float>(model.jumpHeight);
    const auto direction = static_cast<float>(player.facing);
    thrown->worldX = player.worldX + direction * distance;
    damageEnemy(tick, *thrown,
                {.damage = damage,
                 .knockDirection = direction,
                 .knockdown = true,
                 .dropVy = -std::max(1, roundedPixel(height)),
                 .attackType = 0,
                 .attacker = kPlayer1Handle});
    logLine("Throw executed damage=", damage, " distance=", distance, " height=", height);
}

void holdGrabbed(World& world) {
    const Player1& player = world.player1;
    RuntimeEntity* held = world.entities.find(player.grabbedEntity);
    if (!held) return;
    held->worldX = player.worldX + static_cast<float>(player.facing) * kHoldOffset;
    held->z = player.z;
}

}  // namespace port
