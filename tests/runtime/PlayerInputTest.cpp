// What devices and scripts make of a player's keys.

#include "NamedHost.hpp"
#include "PlayerTrial.hpp"

namespace port {
namespace {

struct PlayerInput : PlayerTrial {
    PlayerSlot& slot = world.slots[0];

    PlayerControl poll() {
        PlayerControl control;
        quietly([&] { control = pollPlayer1(tick); });
        return control;
    }
    // As after a pass with that held.
    void feed() {
        ++world.tick;
        input = nextInput(input, next);
    }
    PadState& pad(int number) { return next.pads[static_cast<std::size_t>(number)]; }
};

TEST_F(PlayerInput, KeysAndTheStickAddUp) {
    hold({config.keyRight, config.keyUp, config.keyAttack, config.keyRun, kKeyEnter});
    pad(0).thumbLX = 32767;
    feed();
    const PlayerControl control = poll();
    EXPECT_EQ(control.dx, 2);
    EXPECT_EQ(control.dz, -1);
    EXPECT_TRUE(control.running);
    EXPECT_TRUE(control.attack);
    EXPECT_FALSE(control.jump);
    EXPECT_EQ(slot.keys, SK_RIGHT | SK_UP | SK_ATTACK | SK_START);
    EXPECT_EQ(slot.newKeys, slot.keys);
    feed();
    EXPECT_FALSE(poll().attack) << "held is not pressed";
    EXPECT_EQ(slot.newKeys, 0U);
    hold({});
    feed();
    EXPECT_EQ(poll().dx, 0);
    EXPECT_EQ(slot.releasedKeys, SK_RIGHT | SK_UP | SK_ATTACK | SK_START);

    player.hitStun = 3;
    hold({config.keyLeft});
    pad(0).thumbLX = 32767;
    feed();
    EXPECT_EQ(poll().dx, 1) << "whoever is hurt is moved by the stick alone";
    EXPECT_EQ(slot.keys, SK_LEFT | SK_RIGHT);
}

TEST_F(PlayerInput, TheDPadMovesCoopPlayersOnly) {
    RuntimeCoopPlayer& coop = addCoop();
    hold({}, kPadLeft | kPadDown | kPadB, kPadLeft | kPadDown | kPadRightShoulder);
    feed();
    const PlayerControl first = poll();
    EXPECT_EQ(first.dx, 0);
    EXPECT_EQ(first.dz, 0);
    EXPECT_TRUE(first.jump);
    EXPECT_EQ(slot.keys, SK_LEFT | SK_DOWN | SK_JUMP);
    PlayerControl second = pollCoopPlayer(tick, coop);
    EXPECT_EQ(second.dx, -1);
    EXPECT_EQ(second.dz, 1);
    EXPECT_FALSE(second.throwing) << "a co-op player has no throw, only the bit of its button";
    EXPECT_EQ(world.slots[1].keys, SK_LEFT | SK_DOWN | SK_ATTACK3);
    EXPECT_EQ(coop.facing, -1);

    hold({config.keyRight, config.keyJump});
    feed();
    second = pollCoopPlayer(tick, coop);
    EXPECT_EQ(second.dx, 0) << "a co-op player has no keys";
    EXPECT_FALSE(second.jump);
}

TEST_F(PlayerInput, ASmallTiltIsNone) {
    hold({});
    pad(0).thumbLX = 7848;
    feed();
    EXPECT_EQ(poll().dx, 0);
    pad(0).thumbLX = -32768;
    pad(0).thumbLY = 16384;
    pad(0).rightTrigger = 81;
    feed();
    PlayerControl control = poll();
    EXPECT_LT(control.dx, -0.99F);
    EXPECT_LT(control.dz, -0.49F) << "up is away from the viewer";
    EXPECT_TRUE(control.running);
    config.gamepad = false;
    feed();
    control = poll();
    EXPECT_EQ(control.dx, 0);
    EXPECT_EQ(slot.keys, 0U);
    config.gamepad = true;
    pad(0).connected = false;
    feed();
    EXPECT_EQ(poll().dx, 0);
    EXPECT_EQ(slot.inputHistory.size(), 4U);
}

// Scripts that change what their player may see.
struct Host final : NamedHost {
    std::function<void(const std::string&)> call;
    std::string calls;
    bool answer(const std::string& name, std::span<const ScriptValue>, ScriptContext& context,
                UnansweredNames&, ScriptValue&) override {
        calls += name + std::to_string(context.playerIndex) + ' ';
        if (call) call(name);
        return true;
    }
};

TEST_F(PlayerInput, ScriptsHearOfKeysAndTakeThemAway) {
    for (const char* name : {"think", "update", "key", "key1", "key2", "keyall"}) {
        folder.write("data/scripts/" + std::string(name) + ".c",
                     "void main(){ " + std::string(name) + "(); }");
    }
    Host host;
    scripts.open(folder.path(), folder.path() / "data", &host);
    model.keyScript = "scripts/key.c";
    model.thinkScript = "scripts/think.c";
    model.updateScript = "scripts/update.c";
    host.call = [&](const std::string& name) {
        if (name == "think") slot.playKeys &= ~(SK_ATTACK | SK_RIGHT);
    };
    hold({config.keyRight, config.keyAttack, config.keyJump, config.keyDash});
    slot.disabledKeys = SK_SPECIAL;
    feed();
    const PlayerControl control = poll();
    EXPECT_EQ(host.calls, "key0 key10 keyall0 think0 update0 ");
    EXPECT_EQ(control.dx, 0);
    EXPECT_FALSE(control.attack);
    EXPECT_FALSE(control.dash) << "disabled";
    EXPECT_TRUE(control.jump);
    EXPECT_EQ(slot.inputHistory.back().held, SK_JUMP);
    EXPECT_EQ(slot.inputHistory.back().newKeys, SK_RIGHT | SK_ATTACK | SK_JUMP)
        << "that they rose is kept";
    host.calls.clear();
    feed();
    poll();
    EXPECT_EQ(host.calls, "think0 update0 ") << "no key has changed";

    // P3 without P2 has the first place, the keys of the second slot and the pad of the third.
    RuntimeCoopPlayer& coop = addCoop(2);
    EXPECT_EQ(coop.handle, 2U);
    hold({});
    pad(2).buttons = kPadA;
    feed();
    host.calls.clear();
    EXPECT_TRUE(pollCoopPlayer(tick, coop).attack);
    EXPECT_EQ(world.slots[1].keys, SK_ATTACK);
    EXPECT_EQ(world.slots[2].keys, 0U);
    EXPECT_EQ(world.slots[1].inputHistory.size(), 1U);
    EXPECT_EQ(host.calls, "key1 key21 keyall1 think1 update1 ");
    EXPECT_EQ(coop.scriptCtx.local.at("self"), ScriptValue(ActorHandle{2}));
}

TEST_F(PlayerInput, TheModelDecidesHowItTurns) {
    hold({config.keyLeft});
    const auto facing = [&] {
        player.facing = 1;
        feed();
        poll();
        return player.facing;
    };
    EXPECT_EQ(facing(), -1);
    model.noFlip = true;
    EXPECT_EQ(facing(), 1);
    model.noFlip = false;
    model.facingAdjust = 4;
    EXPECT_EQ(facing(), 1);
    model.facingAdjust = 3;
    world.stage.scrollDir = -1;
    EXPECT_EQ(facing(), -1);
    model.facingAdjust = 0;
    model.noMove = true;
    EXPECT_EQ(facing(), 1);
    EXPECT_EQ(poll().dx, 0);
}

TEST_F(PlayerInput, TheHistoryGoesBack128TicksOfLife) {
    press({config.keyAttack});
    ticks(127);
    ASSERT_EQ(slot.inputHistory.size(), 128U);
    EXPECT_EQ(slot.inputHistory.front().newKeys, SK_ATTACK);
    ticks();
    EXPECT_EQ(slot.inputHistory.size(), 128U);
    EXPECT_EQ(slot.inputHistory.front().released, SK_ATTACK);
    slot.inputHistory.clear();
    player.alive = false;
    ticks();
    EXPECT_TRUE(slot.inputHistory.empty()) << "nobody moves the dead";
}

TEST_F(PlayerInput, RunsWithoutDevicesPlayThemselves) {
    RuntimeCoopPlayer& coop = addCoop();
    hold({config.keyLeft, config.keyAttack}, kPadA, kPadA);
    feed();
    drive = PlayerDrive::SelfCheck;
    world.tick = 100;
    PlayerControl control = poll();
    EXPECT_EQ(control.dx, 1);
    EXPECT_EQ(control.dz, -0.18F);
    EXPECT_TRUE(control.running);
    EXPECT_TRUE(control.attack);
    EXPECT_FALSE(control.jump);
    EXPECT_EQ(slot.keys, SK_RIGHT | SK_UP | SK_ATTACK) << "devices have no say";
    world.tick = 2;
    world.stage.scrollDir = -1;
    control = poll();
    EXPECT_EQ(control.dx, -1);
    EXPECT_EQ(control.dz, 0.18F);
    EXPECT_TRUE(control.pickup);

    drive = PlayerDrive::Nobody;
    control = poll();
    EXPECT_EQ(control.dx, -1);
    EXPECT_EQ(control.dz, 0);
    EXPECT_TRUE(control.pickup);
    EXPECT_FALSE(control.attack);
    player.jumping = true;
    EXPECT_EQ(poll().dx, 0);
    world.tick = 190;  // 70 and 10
    control = pollCoopPlayer(tick, coop);
    EXPECT_EQ(control.dx, 0);
    EXPECT_TRUE(control.attack);
    world.tick = 120;
    EXPECT_EQ(pollCoopPlayer(tick, coop).dx, 0.35F);
}

}  // namespace
}  // namespace port
