#include "Player1.hpp"

#include <algorithm>
#include <cmath>

#include "AnimationEnergy.hpp"
#include "AnimationLookup.hpp"
#include "Frames.hpp"
#include "Grabs.hpp"
#include "Log.hpp"
#include "Player1Moves.hpp"
#include "Projectiles.hpp"
#include "Spawning.hpp"
#include "Terrain.hpp"
#include "Weapons.hpp"

namespace port {
namespace {

constexpr int kSteers = 2;  // of jumpMoveX and walkoffMoveX
constexpr float kSteerX = 0.10F;
constexpr float kSteerZ = 0.08F;
constexpr int kRunLandTicks = 2;
constexpr float kLeastJump = 0.001F;

// The ends of the stage hold player 1, the edges of the screen do not.
void clampToStage(const World& world, Actor& actor) {
    const auto right = static_cast<float>(std::max(0, world.stage.length - 1));
    actor.worldX = std::clamp(actor.worldX, 0.0F, right);
}

void applyStageGeometry(Tick& tick, float oldX, float oldZ) {
    Player1& player = tick.world.player1;
    if (!applyActorTerrain(tick, player, oldX, oldZ)) return;
    sufferHole(player);
    player.worldX = static_cast<float>(tick.world.stage.row->playerStartX);
    player.z = static_cast<float>(tick.world.stage.row->playerStartZ);
    logLine("Hole reset, hp=", player.health);
}

void act(Tick& tick, const PlayerControl& control) {
    if (control.pickup) tryPickupWeapon(tick, tick.world.player1);
    if (control.jump) startPlayerJump(tick, control.running);
    if (control.dash) startPlayerDash(tick);
    if (control.grab) tryGrabNearest(tick);
    if (control.throwing) throwGrabbed(tick);
    if (control.attack) startPlayerAttack(tick);
}

void land(Tick& tick, Player1& player) {
    const generated::Character& model = *player.model;
    queueEffect(tick.world, model.dustFallModel, kModelDust, player.place(), player.handle);
    const auto* animation = player.animation.animation();
    const bool hasLandFrame = animation && animation->landFrame >= 0;
    applyLandFrame(tick.world, player.animation, player.place(), player.handle);
    player.lastFrame = kNoFrame;
    if (hasLandFrame) {
        player.recoveryTicks = remainingTicks(player);
        return;
    }
    player.recoveryTicks = tick.config.recoveryTicks;
    const auto* rise = reactionAnimation(&model, "rise", player.reactionType);
    startAnimation(player, rise ? rise : findAnimation(&model, "rise"));
}

// Thrown, or walked off a height: only the latter steers.
void updateFalling(Tick& tick, const PlayerControl& control, float ground) {
    Player1& player = tick.world.player1;
    const generated::Character& model = *player.model;
    if (player.fallTicks <= 0) {
        const float speed = std::max(0.0F, model.speed) * kWalkOffSpeed;
        if (model.walkoffMoveX >= kSteers) player.worldX += control.dx * speed;
        if (model.walkoffMoveZ != 0) player.z += control.dz * speed;
        clampToStage(tick.world, player);
        clampDepth(tick.world, player);
    }
    countDown(player.fallTicks);
    fall(tick.config, player);
    if (player.altitude >= ground) {
        const bool alive = surviveLanding(tick, player, kPlayer1Moves);
        comeDown(player, ground);
        player.fallTicks = player.recoveryTicks = 0;
        if (!alive) return;
        land(tick, player);
    }
    player.animation.update(1);
}

// A projectile leaves in its frame, and a weapon without shots goes.
void fireAttack(Tick& tick, Player1& player) {
    maybeSpawnProjectile(tick, player, true);
    loseSpentWeapon(tick, player);
}

bool holdsForward(World& world, const Player1& player) {
    const unsigned forward = player.facing < 0 ? SK_LEFT : SK_RIGHT;
    return (inputSlotOf(world, player).playKeys & forward) != 0;
}

void endJump(Tick& tick, Player1& player, float ground) {
    const generated::Character& model = *player.model;
    player.altitude = ground;
    player.verticalVelocity = player.jumpVelocityX = player.jumpVelocityZ = 0;
    player.scriptVelocityX = player.scriptVelocityZ = 0;
    player.jumping = player.projectileFired = false;
    player.attackTicks = 0;
    queueEffect(tick.world, model.dustLandModel, kModelDust, player.place(), player.handle);
    const auto* animation = player.animation.animation();
    if (animation && animation->landFrame >= 0) {
        applyLandFrame(tick.world, player.animation, player.place(), player.handle);
        player.recoveryTicks = remainingTicks(player);
    } else {
        const auto* landing = findAnimation(&model, "land");
        startAnimation(player, landing ? landing : actionAnimation(player, {"idle"}));
    }
    if (player.runningJump && model.runLand && holdsForward(tick.world, player)) {
        player.dashTicks = std::max(player.dashTicks, kRunLandTicks);
    }
    player.runningJump = false;
    player.lastFrame = kNoFrame;
    logLine("Player landed");
}

void updateJumping(Tick& tick, const PlayerControl& control) {
    Player1& player = tick.world.player1;
    const generated::Character& model = *player.model;
    const float oldX = player.worldX;
    const float oldZ = player.z;
    // Steering adds to the right-hand velocity in either direction because facing follows dx.
    if (model.jumpMoveX >= kSteers) {
        player.jumpVelocityX += control.dx * kSteerX * static_cast<float>(player.facing);
    }
    const bool steersZ = player.runningJump ? model.runMoveZ : model.jumpMoveZ != 0;
    if (steersZ) player.jumpVelocityZ += control.dz * kSteerZ;
    player.worldX += player.jumpVelocityX;
    player.z += player.jumpVelocityZ;
    fall(tick.config, player);
    if (player.attackTicks > 0) {
        fireAttack(tick, player);
        --player.attackTicks;
    }
    player.animation.update(1);
    const float ground = groundUnder(tick.world, player);
    if (player.altitude >= ground) endJump(tick, player, ground);
    clampToStage(tick.world, player);
    clampDepth(tick.world, player);
    applyStageGeometry(tick, oldX, oldZ);
}

void updateRecovery(Player1& player) {
    player.animation.update(1);
    if (--player.recoveryTicks > 0) return;
    protectRising(player);
    startAnimation(player, actionAnimation(player, {"idle"}));
}

void updateHitStun(Player1& player) {
    player.animation.update(1);
    if (--player.hitStun > 0) return;
    startAnimation(player, actionAnimation(player, {"idle"}));
}

// An attack whose animation leaps, once it has come to that frame.
void leapInAttack(const World& world, Player1& player) {
    const auto* animation = player.animation.animation();
    if (!animation || animation->jumpFrame < 0 || player.animJumpTriggered) return;
    if (player.animation.frameIndex() < static_cast<std::size_t>(animation->jumpFrame)) return;
    player.animJumpTriggered = player.jumping = true;
    const float y = std::abs(animation->jumpVelocityY) > kLeastJump
                        ? animation->jumpVelocityY
                        : static_cast<float>(std::max(1, player.model->jumpHeight));
    liftOff(world, player, y);
    player.jumpVelocityX = animation->jumpVelocityX * static_cast<float>(player.facing);
    player.jumpVelocityZ = animation->jumpVelocityZ;
    logLine("jumpframe triggered y=", y, " x=", animation->jumpVelocityX,
            " z=", animation->jumpVelocityZ);
}

void updateAttack(Tick& tick) {
    Player1& player = tick.world.player1;
    fireAttack(tick, player);
    leapInAttack(tick.world, player);
    --player.attackTicks;
    player.animation.update(1);
    if (player.attackTicks > 0 || player.jumping) return;
    if (player.queuedAttack) {
        player.queuedAttack = false;
        player.attackCooldown = 0;
        startPlayerAttack(tick);
    } else {
        startAnimation(player, actionAnimation(player, {"idle"}));
    }
}

void runBlockHook(Tick& tick, Player1& player, const char* script, int plane, const char* event) {
    if (*script == '\0') return;
    player.scriptCtx.local["plane"] = static_cast<double>(plane);
    tick.scripts.runHook(script, player.scriptCtx, event);
}

void holdInStage(Tick& tick, Player1& player) {
    const float x = player.worldX;
    clampToStage(tick.world, player);
    if (player.worldX != x) {
        runBlockHook(tick, player, player.model->onBlockSScript, 0, "player-onblocks");
    }
    const float z = player.z;
    clampDepth(tick.world, player);
    if (player.z != z) {
        runBlockHook(tick, player, player.model->onBlockZScript, 1, "player-onblockz");
    }
}

void updateWalking(Tick& tick, const PlayerControl& control) {
    Player1& player = tick.world.player1;
    const generated::Character& model = *player.model;
    const float run = runSpeed(model, tick.config);
    float speed = control.running ? run : std::max(0.0F, model.speed);
    float dx = control.dx;
    if (player.dashTicks > 0) {
        --player.dashTicks;
        dx = static_cast<float>(player.facing);
        speed = std::max(tick.config.dashSpeed, run);
    }
    const float oldX = player.worldX;
    const float oldZ = player.z;
    player.worldX += dx * speed + player.scriptVelocityX;
    player.z += control.dz * speed + player.scriptVelocityZ;
    holdInStage(tick, player);
    applyStageGeometry(tick, oldX, oldZ);
    runMoveHooks(tick, player, oldX, oldZ, kPlayer1Moves);
    const bool moving = dx != 0 || control.dz != 0;
    const bool running = control.running || player.dashTicks > 0;
    showAnimation(player, actionAnimation(player, {!moving ? "idle" : running ? "run" : "walk"}));
    player.animation.update(1);
}

void updateState(Tick& tick, const PlayerControl& control) {
    Player1& player = tick.world.player1;
    const float ground = groundUnder(tick.world, player);
    const bool falling = player.fallTicks > 0 || player.altitude < ground - kOffGround;
    if (falling && !player.jumping) {
        updateFalling(tick, control, ground);
    } else if (player.jumping) {
        updateJumping(tick, control);
    } else if (player.recoveryTicks > 0) {
        updateRecovery(player);
    } else if (player.hitStun > 0) {
        updateHitStun(player);
    } else if (player.attackTicks > 0) {
        updateAttack(tick);
    } else if (player.grabbedEntity != kNobody) {
        holdGrabbed(tick.world);
        player.animation.update(1);
    } else {
        updateWalking(tick, control);
    }
}

}  // namespace

void updatePlayer(Tick& tick) {
    Player1& player = tick.world.player1;
    settleAnimationEnergy(player);
    countDown(player.invincibleTicks);
    if (!player.model || !player.alive) return;
    PlayerControl control = pollPlayer1(tick);
    if (holdBlock(tick.world, player, isFree(player))) control.dash = false;
    if (!startPlayerSpecial(tick, control)) act(tick, control);
    countDown(player.attackCooldown);
    countDown(player.comboWindow);
    if (player.comboWindow == 0 && player.attackTicks <= 0) player.comboStep = 0;
    updateState(tick, control);
}

}  // namespace port
