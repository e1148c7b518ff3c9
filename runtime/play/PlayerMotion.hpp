#pragma once

// What player 1 and co-op players do alike while they move and fight. Each has an order of its own
// for it, and much that the other has not.

#include <initializer_list>
#include <optional>
#include <string_view>

#include "Commands.hpp"
#include "PlayerInput.hpp"

namespace port {

constexpr float kOffGround = 0.1F;  // pixels that tell the air from the ground
constexpr float kWalkOffSpeed = 0.7F;

// The names under which a kind of player's hooks are reported.
struct PlayerEvents {
    const char *doAttack, *command, *moveX, *moveZ, *death;
};

inline void countDown(int& ticks) {
    if (ticks > 0) --ticks;
}

// The altitude of the ground under the actor: below 0 on a platform.
[[nodiscard]] float groundUnder(const World& world, const Actor& actor);

// The weapon's animation or the player's own, of the first name that gives one.
[[nodiscard]] const generated::Animation* actionAnimation(
    const Actor& actor, std::initializer_list<std::string_view> names);
// From its start, also where it runs already. Null changes nothing.
void startAnimation(Actor& actor, const generated::Animation* animation);
// Starts another animation than the running one.
void showAnimation(Actor& actor, const generated::Animation* animation);

[[nodiscard]] float runSpeed(const generated::Character& model, const RuntimeConfig& config);
// Moves nothing: the speed of a jump's start, and a place just off the ground.
void liftOff(const World& world, Actor& actor, float launchSpeed);
// One tick of rising or falling.
void fall(const RuntimeConfig& config, Actor& actor);
// Within the depth of the stage, as far as the model is subject to it.
void clampDepth(const World& world, Actor& actor);
// On the ground again: no speed upward, and nothing due any more from the fall.
void comeDown(Actor& actor, float ground);
// What the landing does to a player who was thrown. False when it has killed.
bool surviveLanding(Tick& tick, PlayerActor& player, const PlayerEvents& events);
// Ticks that the running animation still lasts.
[[nodiscard]] int remainingTicks(const Actor& actor);
// A model that is invincible after rising, from now on.
void protectRising(Actor& actor);
// Ahead, across and with a hole under the feet: the actor loses health and must go elsewhere.
void sufferHole(Actor& actor);
void runMoveHooks(Tick& tick, PlayerActor& player, float oldX, float oldZ,
                  const PlayerEvents& events);

// The counters of an attack whose animation has begun: how long it runs, and that it has not hit.
void startAttackCounters(Actor& actor);
// A player's attack besides counts as a new one for whom it meets.
void beginAttack(PlayerActor& player);
// The hook of the model whose attack it is. `attack`: its number or name.
void runAttackHook(Tick& tick, PlayerActor& player, const generated::Character& model,
                   const ScriptValue& attack, const char* event);
// The number of the next attack on the ground; goes on in the chain.
[[nodiscard]] int nextAttackNumber(const World& world, PlayerActor& player);
// The weapon's commands replace the player's.
[[nodiscard]] const generated::Character& commandModel(const PlayerActor& player);
// Starts the special move of the command that fires now. False where none does or its cost is too
// high.
bool startCommand(Tick& tick, PlayerActor& player, const PlayerEvents& events);
// Lets the running attack go over into the one of a cancel that fires now.
bool startCancel(Tick& tick, PlayerActor& player);
// The hook of a special move that has begun.
void runCommandHook(Tick& tick, PlayerActor& player, const PlayerEvents& events);

// The charged attack that a press of attack begins to charge, or a release may start; null in other
// ticks and for models that charge none.
[[nodiscard]] const generated::Animation* chargeAnimation(World& world, const PlayerActor& player);
// Ticks that attack was held before it was released in this one; nothing if it was not.
[[nodiscard]] std::optional<int> releasedCharge(World& world, const PlayerActor& player);

// The model blocks while the key is held; `ready` players only. True while it does.
bool holdBlock(World& world, PlayerActor& player, bool ready);

}  // namespace port
