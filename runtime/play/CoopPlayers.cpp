#include "CoopPlayers.hpp"

#include <algorithm>
#include <string>

#include "AnimationEnergy.hpp"
#include "AnimationLookup.hpp"
#include "AttackChains.hpp"
#include "Frames.hpp"
#include "PlayerMotion.hpp"
#include "Projectiles.hpp"
#include "Spawning.hpp"
#include "Terrain.hpp"
#include "Weapons.hpp"

namespace port {
namespace {

constexpr PlayerEvents kCoopMoves = {"coop-ondoattack", "coop-com", "coop-onmovex", "coop-onmovez",
                                     "coop-ondeath"};
constexpr int kSteersOffHeight = 2;  // of walkoffMoveX
constexpr float kScreenEdge = 4;
constexpr int kHoleResetX = 18, kHoleResetZ = 7;  // beside the start, by the place in the list

void startCoopJump(Tick& tick, RuntimeCoopPlayer& player, bool running) {
    const generated::Character& model = *player.model;
    player.jumping = true;
    player.knockdownAir = false;
    player.runningJump = running && model.runSpeed > 0;
    const bool runHeight = player.runningJump && model.runJumpHeight > 0;
    liftOff(tick.world, player,
            runHeight ? model.runJumpHeight : static_cast<float>(std::max(1, model.jumpHeight)));
    queueEffect(tick.world, model.dustJumpModel, kModelDust, player.place(), player.handle);
    startAnimation(player, actionAnimation(player, {"jump"}));
}

void startCoopAttack(Tick& tick, RuntimeCoopPlayer& player) {
    const bool air = player.jumping || player.altitude < -kOffGround;
    const int number = air ? 0 : nextAttackNumber(tick.world, player);
    const auto* animation =
        air ? actionAnimation(player, {"jumpattack"})
            : actionAnimation(player, {"attack" + std::to_string(number), "attack1", "attack"});
    if (!animation || !beginEnergyAnimation(player, animation)) return;
    beginAttack(player);
    player.comboWindow = comboWindowFor(*player.model, tick.config.comboWindow);
    runAttackHook(tick, player, *player.model, static_cast<double>(number), kCoopMoves.doAttack);
}

// True when the release has begun a charged attack; else it counts as the press.
bool releaseCoopCharge(Tick& tick, RuntimeCoopPlayer& player, PlayerControl& control,
                       const generated::Animation& charged) {
    const auto held = releasedCharge(tick.world, player);
    if (!held || player.attackTicks > 0 || player.attackCooldown > 0 || player.jumping) {
        return false;
    }
    if (*held < chargeThreshold(charged) || !beginEnergyAnimation(player, &charged)) {
        control.attack = true;
        return false;
    }
    beginAttack(player);
    runCommandHook(tick, player, kCoopMoves);
    return true;
}

// All that a player on its feet or in the air may begin.
void startMoves(Tick& tick, RuntimeCoopPlayer& player, PlayerControl& control,
                const generated::Animation* charged) {
    bool special =
        player.attackTicks <= 0 && !player.jumping && startCommand(tick, player, kCoopMoves);
    if (special) control.attack = control.jump = false;
    if (control.jump && !player.jumping) startCoopJump(tick, player, control.running);
    countDown(player.comboWindow);
    if (player.comboWindow == 0 && player.attackTicks <= 0) {
        player.comboStep = 0;
        player.comboBranch = -1;
    }
    if (!special && player.attackTicks > 0 && startCancel(tick, player)) {
        control.attack = control.jump = false;
    }
    if (!special && charged) special = releaseCoopCharge(tick, player, control, *charged);
    const bool canAttack = player.attackTicks <= 0 && player.attackCooldown <= 0;
    if (control.attack && !special && canAttack) startCoopAttack(tick, player);
}

void landCoop(Tick& tick, RuntimeCoopPlayer& player, float ground) {
    const generated::Character& model = *player.model;
    const bool alive = surviveLanding(tick, player, kCoopMoves);
    comeDown(player, ground);
    player.jumping = player.runningJump = false;
    queueEffect(tick.world, player.knockdownAir ? model.dustFallModel : model.dustLandModel,
                kModelDust, player.place(), player.handle);
    if (player.knockdownAir) protectRising(player);
    player.knockdownAir = false;
    if (!alive) return;
    const auto* animation = player.animation.animation();
    if (animation && animation->landFrame >= 0) {
        applyLandFrame(tick.world, player.animation, player.place(), player.handle);
        player.lastFrame = kNoFrame;
        player.hitStun = std::max(player.hitStun, remainingTicks(player));
    } else if (player.attackTicks <= 0) {
        startAnimation(player, actionAnimation(player, {"idle"}));
    }
}

// An attack that runs waits for the ground.
void updateCoopAir(Tick& tick, RuntimeCoopPlayer& player, const PlayerControl& control) {
    const generated::Character& model = *player.model;
    const float scale = player.runningJump && model.runJumpLength > 0
                            ? std::max(kWalkOffSpeed, model.runJumpLength)
                            : kWalkOffSpeed;
    const bool steersX = player.jumping || model.walkoffMoveX >= kSteersOffHeight;
    const bool steersZ =
        player.jumping ? !player.runningJump || model.runMoveZ : model.walkoffMoveZ != 0;
    if (steersX) player.worldX += control.dx * scale;
    if (steersZ) player.z += control.dz * kWalkOffSpeed;
    fall(tick.config, player);
    player.animation.update(1);
    const float ground = groundUnder(tick.world, player);
    if (player.altitude >= ground) landCoop(tick, player, ground);
}

void updateCoopAttack(Tick& tick, RuntimeCoopPlayer& player) {
    maybeSpawnProjectile(tick, player, true);
    loseSpentWeapon(tick, player);
    --player.attackTicks;
    player.animation.update(1);
    if (player.attackTicks > 0) return;
    player.projectileFired = false;
    startAnimation(player, actionAnimation(player, {"idle"}));
}

void walkCoop(Tick& tick, RuntimeCoopPlayer& player, const PlayerControl& control) {
    const generated::Character& model = *player.model;
    const World& world = tick.world;
    const float speed =
        control.running ? runSpeed(model, tick.config) : std::max(0.0F, model.speed);
    const float left = world.camera.x + kScreenEdge;
    const float right =
        std::min(static_cast<float>(world.stage.length - 1),
                 world.camera.x + static_cast<float>(tick.config.logicalWidth) - kScreenEdge);
    player.worldX = std::max(left, std::min(player.worldX + control.dx * speed, right));
    player.z += control.dz * speed;
    clampDepth(world, player);
    const bool moving = control.dx != 0 || control.dz != 0;
    const char* name = !moving ? "idle" : control.running ? "run" : "walk";
    showAnimation(player, actionAnimation(player, {name}));
    player.animation.update(1);
}

void meetTerrain(Tick& tick, RuntimeCoopPlayer& player, float oldX, float oldZ) {
    if (!applyActorTerrain(tick, player, oldX, oldZ)) return;
    sufferHole(player);
    const generated::Stage& stage = *tick.world.stage.row;
    const auto place = static_cast<float>(player.handle - kFirstCoopHandle + 1);
    player.worldX = static_cast<float>(stage.playerStartX) + kHoleResetX * place;
    player.z = static_cast<float>(stage.playerStartZ) + kHoleResetZ * place;
}

void moveCoop(Tick& tick, RuntimeCoopPlayer& player, const PlayerControl& control) {
    const float oldX = player.worldX;
    const float oldZ = player.z;
    player.worldX += player.scriptVelocityX;
    player.z += player.scriptVelocityZ;
    const bool walkedOff = player.altitude < groundUnder(tick.world, player) - kOffGround;
    if (player.jumping || walkedOff) {
        updateCoopAir(tick, player, control);
    } else if (player.attackTicks > 0) {
        updateCoopAttack(tick, player);
    } else {
        walkCoop(tick, player, control);
    }
    meetTerrain(tick, player, oldX, oldZ);
    runMoveHooks(tick, player, oldX, oldZ, kCoopMoves);
}

void updateCoopPlayer(Tick& tick, RuntimeCoopPlayer& player) {
    settleAnimationEnergy(player);
    countDown(player.invincibleTicks);
    if (!player.model) return;
    if (!player.alive) {
        player.animation.update(1);
        return;
    }
    PlayerControl control = pollCoopPlayer(tick, player);
    if (control.pickup) tryPickupWeapon(tick, player);
    const auto* charged = chargeAnimation(tick.world, player);
    if (charged && (inputSlotOf(tick.world, player).newKeys & SK_ATTACK)) control.attack = false;
    holdBlock(tick.world, player, player.hitStun <= 0 && !player.jumping);
    if (player.hitStun > 0) {
        --player.hitStun;
        if (!player.jumping) {
            player.animation.update(1);
            return;
        }
    }
    countDown(player.attackCooldown);
    startMoves(tick, player, control, charged);
    moveCoop(tick, player, control);
}

}  // namespace

void updateCoopPlayers(Tick& tick) {
    for (RuntimeCoopPlayer& player : tick.world.coop) updateCoopPlayer(tick, player);
}

}  // namespace port
