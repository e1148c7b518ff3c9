#include "Player1Moves.hpp"

#include <algorithm>
#include <string>

#include "AnimationEnergy.hpp"
#include "AttackChains.hpp"
#include "Log.hpp"
#include "Spawning.hpp"

namespace port {
namespace {

bool canAct(const Player1& player) {
    return player.alive && player.model && isFree(player);
}

bool inTheAir(const Player1& player) {
    return player.jumping || player.altitude < -kOffGround;
}

void clearPlayer1Attack(Player1& player) {
    player.queuedAttack = player.animJumpTriggered = false;
}

void clearForSpecial(Player1& player) {
    clearPlayer1Attack(player);
    player.comboWindow = 0;
}

// Starts the charged attack, or else lets the release count as the press.
bool releaseCharge(Tick& tick, PlayerControl& control, const generated::Animation& charged) {
    Player1& player = tick.world.player1;
    const auto held = releasedCharge(tick.world, player);
    if (!held || player.attackTicks > 0 || !isFree(player)) return false;
    if (*held < chargeThreshold(charged) || !beginEnergyAnimation(player, &charged)) {
        control.attack = true;
        return false;
    }
    beginAttack(player);
    clearForSpecial(player);
    runCommandHook(tick, player, kPlayer1Moves);
    control.clearPresses();
    return true;
}

}  // namespace

void startPlayerAttack(Tick& tick) {
    Player1& player = tick.world.player1;
    if (!canAct(player)) return;
    if (player.attackTicks > 0) {
        if (player.comboWindow > 0 && !player.jumping) player.queuedAttack = true;
        return;
    }
    if (player.attackCooldown > 0 && player.comboWindow <= 0 && !player.jumping) return;
    const bool air = inTheAir(player);
    const int number = air ? 0 : nextAttackNumber(tick.world, player);
    const auto* animation =
        air ? actionAnimation(player, {"jumpattack", "jumpforward"})
            : actionAnimation(player, {"attack" + std::to_string(number), "attack"});
    if (!animation || !beginEnergyAnimation(player, animation)) return;
    player.comboWindow =
        player.jumping ? 0 : comboWindowFor(*player.model, tick.config.comboWindow);
    beginAttack(player);
    clearPlayer1Attack(player);
    runAttackHook(tick, player, *player.model, static_cast<double>(number), kPlayer1Moves.doAttack);
    if (air) {
        logLine("Player air attack ", animation->name);
    } else {
        logLine("Player combo attack ", number, " chain=", player.comboStep, " ", animation->name,
                " facing=", player.facing);
    }
}

void startPlayerJump(Tick& tick, bool running) {
    Player1& player = tick.world.player1;
    if (!canAct(player) || player.jumping) return;
    const generated::Character& model = *player.model;
    const bool runJump = running && model.runSpeed > 0;
    const float height = runJump && model.runJumpHeight > 0
                             ? model.runJumpHeight
                             : static_cast<float>(std::max(1, model.jumpHeight));
    player.jumping = true;
    player.runningJump = runJump;
    liftOff(tick.world, player, height);
    float speed = model.jumpSpeed > 0 ? model.jumpSpeed : std::max(0.0F, model.speed);
    if (runJump) speed = model.runSpeed * (model.runJumpLength > 0 ? model.runJumpLength : 1);
    player.jumpVelocityX = static_cast<float>(player.facing) * speed;
    player.jumpVelocityZ = 0;
    queueEffect(tick.world, model.dustJumpModel, kModelDust, player.place(), player.handle);
    startAnimation(player, actionAnimation(player, {"jump", "jumpforward"}));
    logLine("Player jump height=", height, " vx=", player.jumpVelocityX, runJump ? " run" : "");
}

void startPlayerDash(Tick& tick) {
    Player1& player = tick.world.player1;
    if (!canAct(player) || player.jumping) return;
    player.dashTicks = tick.config.dashTicks;
    startAnimation(player, actionAnimation(player, {"run"}));
    logLine("Player dash facing=", player.facing, " ticks=", player.dashTicks);
}

bool startPlayerSpecial(Tick& tick, PlayerControl& control) {
    Player1& player = tick.world.player1;
    if (player.attackTicks > 0) {
        if (startCancel(tick, player)) {
            clearPlayer1Attack(player);
            control.attack = control.jump = false;
        }
    } else if (isFree(player) && startCommand(tick, player, kPlayer1Moves)) {
        clearForSpecial(player);
        control.clearPresses();
        return true;
    }
    // Whoever charges attacks strikes when the key is released.
    const auto* charged = chargeAnimation(tick.world, player);
    if (!charged) return false;
    if (inputSlotOf(tick.world, player).newKeys & SK_ATTACK) control.attack = false;
    return releaseCharge(tick, control, *charged);
}

}  // namespace port
