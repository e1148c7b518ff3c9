#include "Input.hpp"

#include <SDL.h>
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <set>

#include "Environment.hpp"
#include "VirtualKeys.hpp"

namespace port {
namespace {

using platform::VirtualKeys;
using platform::virtualKeysOf;

TEST(VirtualKeys, FollowThePrintOfLettersAndThePlaceOfTheRest) {
    // The keys of a French keyboard, by place and meaning.
    EXPECT_EQ(virtualKeysOf(SDL_SCANCODE_Q, SDLK_a), VirtualKeys{'A'});
    EXPECT_EQ(virtualKeysOf(SDL_SCANCODE_SEMICOLON, SDLK_m), VirtualKeys{'M'});
    EXPECT_EQ(virtualKeysOf(SDL_SCANCODE_M, SDLK_COMMA), VirtualKeys{0xBC});
    EXPECT_EQ(virtualKeysOf(SDL_SCANCODE_1, SDLK_AMPERSAND), VirtualKeys{'1'});
    // A Cyrillic one.
    EXPECT_EQ(virtualKeysOf(SDL_SCANCODE_J, 0x43E), VirtualKeys{'J'});
    EXPECT_EQ(virtualKeysOf(SDL_SCANCODE_LSHIFT, SDLK_LSHIFT), (VirtualKeys{0x10, 0xA0}));
    EXPECT_EQ(virtualKeysOf(SDL_SCANCODE_RSHIFT, SDLK_RSHIFT), (VirtualKeys{0x10, 0xA1}));
    EXPECT_EQ(virtualKeysOf(SDL_SCANCODE_UNKNOWN, 0), VirtualKeys{});
    EXPECT_EQ(virtualKeysOf(-7, -7), VirtualKeys{});
}

TEST(VirtualKeys, CoverTheWholeKeyboard) {
    std::set<int> reached;
    for (int place = 0; place < SDL_NUM_SCANCODES; ++place) {
        for (const int key : virtualKeysOf(place, 0)) reached.insert(key);
    }
    const auto row = [&](int first, int last) {
        for (int key = first; key <= last; ++key) EXPECT_TRUE(reached.contains(key)) << key;
    };
    row('0', '9');
    row('A', 'Z');
    row(0x20, 0x29);  // the space bar and the keys that move
    row(0x60, 0x6F);  // the pad of digits
    row(0x70, 0x87);  // F1 to F24
    row(0xA0, 0xB7);  // sides of pairs, browser and media
    row(0xBA, 0xC2);
    row(0xDB, 0xDE);
    for (const int key : {0x08, 0x09, 0x0D, 0x10, 0x11, 0x12, 0x1B, 0x2D, 0x2E, 0xE2})
        row(key, key);
}

// A pad without hardware.
class VirtualPad {
  public:
    VirtualPad() {
        SDL_JoystickAttachVirtual(SDL_JOYSTICK_TYPE_GAMECONTROLLER, SDL_CONTROLLER_AXIS_MAX,
                                  SDL_CONTROLLER_BUTTON_MAX, 0);
        SDL_PumpEvents();
        const int index = SDL_NumJoysticks() - 1;
        id_ = SDL_JoystickGetDeviceInstanceID(index);
        joystick_ = SDL_JoystickOpen(index);
    }
    VirtualPad(const VirtualPad&) = delete;
    VirtualPad& operator=(const VirtualPad&) = delete;
    ~VirtualPad() {
        SDL_JoystickClose(joystick_);
        for (int i = 0; i < SDL_NumJoysticks(); ++i) {
            if (SDL_JoystickGetDeviceInstanceID(i) == id_) SDL_JoystickDetachVirtual(i);
        }
        SDL_PumpEvents();
    }
    void button(SDL_GameControllerButton button, bool down = true) {
        SDL_JoystickSetVirtualButton(joystick_, button, down ? 1 : 0);
        SDL_PumpEvents();
    }
    void axis(SDL_GameControllerAxis axis, Sint16 value) {
        SDL_JoystickSetVirtualAxis(joystick_, axis, value);
        SDL_PumpEvents();
    }

  private:
    SDL_JoystickID id_;
    SDL_Joystick* joystick_;
};

struct InputTrial : testing::Test {
    tindrel::test::Environment offscreen{"SDL_VIDEODRIVER", "offscreen"};
    platform::Input input;
    InputTrial() {
        SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
        SDL_InitSubSystem(SDL_INIT_VIDEO | SDL_INIT_GAMECONTROLLER);
        input = platform::systemInput();
    }
    ~InputTrial() override {
        input = {};
        SDL_QuitSubSystem(SDL_INIT_VIDEO | SDL_INIT_GAMECONTROLLER);
    }
    // How many of the four places have a pad, as bits.
    unsigned connected() {
        unsigned places = 0;
        for (int pad = 0; pad < kPadCount; ++pad) {
            if (input.pad(pad).connected) places |= 1U << static_cast<unsigned>(pad);
        }
        return places;
    }
};

TEST_F(InputTrial, AQuickTapIsDownOnce) {
    SDL_Event tap{};
    tap.type = SDL_KEYDOWN;
    tap.key.keysym.scancode = SDL_SCANCODE_LSHIFT;
    SDL_PushEvent(&tap);
    EXPECT_TRUE(input.keyDown(0x10));
    EXPECT_TRUE(input.keyDown(0xA0));
    EXPECT_FALSE(input.keyDown(0x10));
    EXPECT_FALSE(input.keyDown(0xA1));
    SDL_PushEvent(&tap);
    tap.key.keysym.scancode = SDL_SCANCODE_SPACE;
    SDL_PushEvent(&tap);
    EXPECT_FALSE(input.keyDown(0)) << "not every key has two codes";
    SDL_Event away{};
    away.type = SDL_WINDOWEVENT;
    away.window.event = SDL_WINDOWEVENT_FOCUS_LOST;
    SDL_PushEvent(&away);
    EXPECT_FALSE(input.keyDown(0x10) || input.keyDown(0x20))
        << "pressed before the window lost its player";
}

TEST_F(InputTrial, PadsSpeakInTheirMasks) {
    EXPECT_EQ(input.pad(0), PadState());
    VirtualPad pad;
    EXPECT_TRUE(input.pad(0).connected);
    const std::pair<SDL_GameControllerButton, unsigned> masks[] = {
        {SDL_CONTROLLER_BUTTON_A, 4096},           {SDL_CONTROLLER_BUTTON_B, 8192},
        {SDL_CONTROLLER_BUTTON_X, 16384},          {SDL_CONTROLLER_BUTTON_Y, 32768},
        {SDL_CONTROLLER_BUTTON_LEFTSHOULDER, 256}, {SDL_CONTROLLER_BUTTON_RIGHTSHOULDER, 512},
        {SDL_CONTROLLER_BUTTON_START, 16},         {SDL_CONTROLLER_BUTTON_BACK, 32},
        {SDL_CONTROLLER_BUTTON_LEFTSTICK, 64},     {SDL_CONTROLLER_BUTTON_RIGHTSTICK, 128},
        {SDL_CONTROLLER_BUTTON_DPAD_UP, 1},        {SDL_CONTROLLER_BUTTON_DPAD_DOWN, 2},
        {SDL_CONTROLLER_BUTTON_DPAD_LEFT, 4},      {SDL_CONTROLLER_BUTTON_DPAD_RIGHT, 8},
        {SDL_CONTROLLER_BUTTON_GUIDE, 0}};
    for (const auto& [button, mask] : masks) {
        pad.button(button);
        EXPECT_EQ(input.pad(0).buttons, mask) << button;
        pad.button(button, false);
    }
    pad.axis(SDL_CONTROLLER_AXIS_LEFTX, -1000);
    pad.axis(SDL_CONTROLLER_AXIS_LEFTY, -32768);
    pad.axis(SDL_CONTROLLER_AXIS_TRIGGERRIGHT, 32767);
    EXPECT_EQ(input.pad(0).thumbLX, -1000) << "the dead zone is not ours";
    EXPECT_EQ(input.pad(0).thumbLY, 32767) << "up";
    EXPECT_EQ(input.pad(0).rightTrigger, 255);
    pad.axis(SDL_CONTROLLER_AXIS_LEFTY, 32767);
    pad.axis(SDL_CONTROLLER_AXIS_TRIGGERRIGHT, 2 * (81 << 7) - 32767);
    EXPECT_EQ(input.pad(0).thumbLY, -32768);
    EXPECT_EQ(input.pad(0).rightTrigger, 81);
}

TEST_F(InputTrial, APadStaysWithItsPlayer) {
    std::array<std::optional<VirtualPad>, 5> pads;
    EXPECT_EQ(connected(), 0U);
    for (auto& pad : pads) pad.emplace();
    EXPECT_EQ(connected(), 0b1111U) << "the fifth finds no place";
    pads[1]->button(SDL_CONTROLLER_BUTTON_A);
    EXPECT_EQ(input.pad(1).buttons, kPadA);
    pads[4].reset();
    pads[0].reset();
    pads[2].reset();
    EXPECT_EQ(connected(), 0b1010U);
    EXPECT_EQ(input.pad(1).buttons, kPadA);
    EXPECT_EQ(input.pad(0), PadState());
    pads[0].emplace();
    EXPECT_EQ(connected(), 0b1011U);
}

}  // namespace
}  // namespace port
