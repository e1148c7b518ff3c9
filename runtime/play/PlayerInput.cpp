#include "PlayerInput.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "GlobalScripts.hpp"
#include "Movement.hpp"

namespace port {
namespace {

constexpr int kDeadZone = 7849;
constexpr float kFullStick = 32767;
constexpr float kHeldBeyond = 0.25F;  // a stick counts as a held direction
constexpr int kTriggerHeldBeyond = 80;

// The names under which a kind of player's hooks are reported.
struct InputEvents {
    const char *key, *think, *update;
};
constexpr InputEvents kPlayer1Events = {"player-key", "player-think", "player-update"};
constexpr InputEvents kCoopPlayerEvents = {"coop-key", "coop-think", "coop-update"};

// What a player asks for before scripts have their say, and the key word for it.
struct Wish {
    PlayerControl control;
    unsigned word = 0;

    void hold(unsigned bit, bool held) {
        if (held) word |= bit;
    }
    void holdDirections(float dx, float dz, float beyond) {
        hold(SK_LEFT, dx < -beyond);
        hold(SK_RIGHT, dx > beyond);
        hold(SK_UP, dz < -beyond);
        hold(SK_DOWN, dz > beyond);
    }
};

struct Button {
    int RuntimeConfig::*key;
    int RuntimeConfig::*pad;
    unsigned bit;
    bool PlayerControl::*pressed;
};

constexpr std::array<Button, 6> kButtons = {{
    {&RuntimeConfig::keyAttack, &RuntimeConfig::padAttack, SK_ATTACK, &PlayerControl::attack},
    {&RuntimeConfig::keyGrab, &RuntimeConfig::padGrab, SK_ATTACK2, &PlayerControl::grab},
    {&RuntimeConfig::keyThrow, &RuntimeConfig::padThrow, SK_ATTACK3, &PlayerControl::throwing},
    {&RuntimeConfig::keyJump, &RuntimeConfig::padJump, SK_JUMP, &PlayerControl::jump},
    {&RuntimeConfig::keyDash, &RuntimeConfig::padDash, SK_SPECIAL, &PlayerControl::dash},
    {&RuntimeConfig::keyPickup, &RuntimeConfig::padPickup, SK_ATTACK4, &PlayerControl::pickup},
}};

bool keyHeld(const TickInput& input, int key) {
    return key >= 0 && key < kKeyCount && input.held.keys[static_cast<std::size_t>(key)];
}

// Null for a pad that does not answer.
const PadState* padOf(const Tick& tick, int pad) {
    const auto index = static_cast<std::size_t>(std::clamp(pad, 0, kPadCount - 1));
    const PadState& state = tick.input.held.pads[index];
    return tick.config.gamepad && state.connected ? &state : nullptr;
}

float stick(int value) {
    return std::abs(value) < kDeadZone ? 0 : static_cast<float>(value) / kFullStick;
}

void addKeys(const Tick& tick, const Player1& player, Wish& wish) {
    const RuntimeConfig& config = tick.config;
    for (const Button& button : kButtons) {
        wish.hold(button.bit, keyHeld(tick.input, config.*button.key));
        wish.control.*button.pressed = tick.input.keyPressed(config.*button.key);
    }
    const auto axis = [&](int less, int more) {
        return static_cast<float>(keyHeld(tick.input, more)) -
               static_cast<float>(keyHeld(tick.input, less));
    };
    wish.hold(SK_LEFT, keyHeld(tick.input, config.keyLeft));
    wish.hold(SK_RIGHT, keyHeld(tick.input, config.keyRight));
    wish.hold(SK_UP, keyHeld(tick.input, config.keyUp));
    wish.hold(SK_DOWN, keyHeld(tick.input, config.keyDown));
    wish.hold(SK_START, keyHeld(tick.input, kKeyEnter));
    wish.hold(SK_ESC, keyHeld(tick.input, kKeyEscape));
    wish.control.running = keyHeld(tick.input, config.keyRun);
    // Only keys wait until the player can walk. They add to the stick.
    if (!isFree(player)) return;
    wish.control.dx += axis(config.keyLeft, config.keyRight);
    wish.control.dz += axis(config.keyUp, config.keyDown);
}

void addPad(const Tick& tick, Wish& wish) {
    const RuntimeConfig& config = tick.config;
    const PadState* pad = padOf(tick, config.player1Gamepad);
    if (!pad) return;
    const float x = stick(pad->thumbLX);
    const float z = -stick(pad->thumbLY);
    wish.control.dx += x;
    wish.control.dz += z;
    wish.holdDirections(x, z, kHeldBeyond);
    wish.hold(SK_LEFT, pad->buttons & kPadLeft);
    wish.hold(SK_RIGHT, pad->buttons & kPadRight);
    wish.hold(SK_UP, pad->buttons & kPadUp);
    wish.hold(SK_DOWN, pad->buttons & kPadDown);
    for (const Button& button : kButtons) {
        const auto mask = static_cast<unsigned>(config.*button.pad);
        wish.hold(button.bit, pad->buttons & mask);
        wish.control.*button.pressed |= tick.input.buttonPressed(config.player1Gamepad, mask);
    }
    wish.hold(SK_START, pad->buttons & kPadStart);
    wish.control.running |= pad->rightTrigger > kTriggerHeldBeyond;
}

// Presses a button in every `period`th tick, at `phase`.
void pressAt(const World& world, Wish& wish, const Button& button, unsigned period,
             unsigned phase) {
    if (world.tick % period != phase) return;
    wish.hold(button.bit, true);
    wish.control.*button.pressed = true;
}

void pressPickupOnce(const World& world, Wish& wish) {
    constexpr std::uint64_t kPickupTick = 2;
    if (world.tick != kPickupTick) return;
    wish.hold(SK_ATTACK4, true);
    wish.control.pickup = true;
}

float stageDirection(const World& world) {
    return world.stage.scrollDir < 0 ? -1 : 1;
}

// Runs through the stage in a zigzag and tries every button.
Wish selfCheckWish(const World& world) {
    constexpr float kDrift = 0.18F;
    constexpr unsigned kDriftTicks = 90;
    Wish wish;
    wish.control.dx = stageDirection(world);
    wish.control.dz = world.tick / kDriftTicks % 2 == 0 ? kDrift : -kDrift;
    wish.control.running = true;
    wish.holdDirections(wish.control.dx, wish.control.dz, 0);
    for (const Button& button : kButtons) {
        if (button.bit == SK_ATTACK) pressAt(world, wish, button, 45, 10);
        if (button.bit == SK_JUMP) pressAt(world, wish, button, 180, 70);
        if (button.bit == SK_SPECIAL) pressAt(world, wish, button, 240, 120);
    }
    pressPickupOnce(world, wish);
    return wish;
}

// Walks on wherever it can. The keys for it are held as well, or the scripts' say would stop it.
Wish walkingWish(const World& world) {
    Wish wish;
    if (isFree(world.player1) && !world.player1.jumping) {
        wish.control.dx = stageDirection(world);
        wish.holdDirections(wish.control.dx, 0, 0);
    }
    pressPickupOnce(world, wish);
    return wish;
}

Wish player1Wish(const Tick& tick) {
    if (tick.drive == PlayerDrive::SelfCheck) return selfCheckWish(tick.world);
    if (tick.drive == PlayerDrive::Nobody) return walkingWish(tick.world);
    Wish wish;
    addKeys(tick, tick.world.player1, wish);
    addPad(tick, wish);
    return wish;
}

Wish coopPadWish(const Tick& tick, const RuntimeCoopPlayer& player) {
    Wish wish;
    const PadState* pad = padOf(tick, player.gamepadId);
    if (!pad) return wish;
    PlayerControl& control = wish.control;
    control.dx = stick(pad->thumbLX);
    control.dz = -stick(pad->thumbLY);
    if (pad->buttons & kPadLeft) control.dx = -1;
    if (pad->buttons & kPadRight) control.dx = 1;
    if (pad->buttons & kPadUp) control.dz = -1;
    if (pad->buttons & kPadDown) control.dz = 1;
    wish.holdDirections(control.dx, control.dz, kHeldBeyond);
    for (const Button& button : kButtons) {
        const auto mask = static_cast<unsigned>(tick.config.*button.pad);
        wish.hold(button.bit, pad->buttons & mask);
        // A co-op player has no use for the others.
        if (!(button.bit & (SK_ATTACK | SK_JUMP | SK_ATTACK4))) continue;
        control.*button.pressed = tick.input.buttonPressed(player.gamepadId, mask);
    }
    wish.hold(SK_START, pad->buttons & kPadStart);
    control.running = pad->rightTrigger > kTriggerHeldBeyond;
    return wish;
}

// Two players who both walk on would stay together: this one keeps stopping.
Wish coopWalkingWish(const World& world) {
    constexpr unsigned kWalkTicks = 60;
    Wish wish;
    if (world.tick % (2 * kWalkTicks) < kWalkTicks) {
        wish.control.dx = 0.35F;
        wish.hold(SK_RIGHT, true);
    }
    pressAt(world, wish, kButtons.front(), 90, 10);
    return wish;
}

// A run that checks itself asks no device, also where somebody has joined.
Wish coopWish(const Tick& tick, const RuntimeCoopPlayer& player) {
    if (tick.drive == PlayerDrive::SelfCheck) return {};
    if (tick.drive == PlayerDrive::Nobody) return coopWalkingWish(tick.world);
    return coopPadWish(tick, player);
}

void setKeys(PlayerSlot& slot, unsigned word) {
    word &= ~slot.disabledKeys;
    slot.newKeys = word & ~slot.keys;
    slot.releasedKeys = slot.keys & ~word;
    slot.keys = slot.playKeys = word;
}

void runInputHooks(Tick& tick, PlayerActor& player, std::size_t slot, const InputEvents& events) {
    const generated::Character& model = *player.model;
    ScriptContext& context = player.scriptCtx;
    const PlayerSlot& input = tick.world.slots[slot];
    if ((input.newKeys | input.releasedKeys) != 0) {
        tick.scripts.runHook(model.keyScript, context, events.key);
        tick.scripts.runGlobal(kKeyScripts[slot], context, "global-key-player");
        tick.scripts.runGlobal(kKeyAllScript, context, "global-key-all");
    }
    tick.scripts.runHook(model.thinkScript, context, events.think);
    tick.scripts.runHook(model.updateScript, context, events.update);
}

// What the scripts have taken out of the player's hands does not happen.
void gate(PlayerControl& control, unsigned playKeys) {
    for (const Button& button : kButtons) {
        if (!(playKeys & button.bit)) control.*button.pressed = false;
    }
    const auto stop = [&](float& axis, unsigned less, unsigned more) {
        if ((axis < 0 && !(playKeys & less)) || (axis > 0 && !(playKeys & more))) axis = 0;
    };
    stop(control.dx, SK_LEFT, SK_RIGHT);
    stop(control.dz, SK_UP, SK_DOWN);
}

void turn(PlayerActor& player, PlayerControl& control, int scrollDir) {
    const generated::Character& model = *player.model;
    if (model.noMove) control.dx = control.dz = 0;
    if (turnsFreely(model) && control.dx != 0) {
        player.facing = control.dx < 0 ? -1 : 1;
    }
    player.facing = modelFacingValue(&model, player.facing, scrollDir);
}

void recordInputHistory(PlayerSlot& slot) {
    auto& history = slot.inputHistory;
    while (history.size() >= PlayerSlot::kLongestHistory) history.erase(history.begin());
    history.push_back({slot.playKeys, slot.newKeys, slot.releasedKeys});
}

PlayerControl poll(Tick& tick, PlayerActor& player, Wish wish, const InputEvents& events) {
    const auto slot = static_cast<std::size_t>(player.handle - kPlayer1Handle);
    PlayerSlot& input = inputSlotOf(tick.world, player);
    setKeys(input, wish.word);
    player.scriptCtx.player = true;
    player.scriptCtx.playerIndex = static_cast<int>(slot);
    player.scriptCtx.local["self"] = player.handle;
    player.scriptCtx.local["player"] = static_cast<double>(slot);
    runInputHooks(tick, player, slot, events);
    gate(wish.control, input.playKeys);
    turn(player, wish.control, tick.world.stage.scrollDir);
    recordInputHistory(input);
    return wish.control;
}

}  // namespace

PlayerControl pollPlayer1(Tick& tick) {
    return poll(tick, tick.world.player1, player1Wish(tick), kPlayer1Events);
}

PlayerControl pollCoopPlayer(Tick& tick, RuntimeCoopPlayer& player) {
    return poll(tick, player, coopWish(tick, player), kCoopPlayerEvents);
}

}  // namespace port
