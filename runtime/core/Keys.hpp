#pragma once

// Keys and pads as plain values, under the same numbers on every system.

#include <cstdint>

namespace port {

// Virtual key codes that the engine names itself; others come from the settings. 0 to 255.
enum VirtualKey {
    kKeyBackspace = 0x08,
    kKeyEnter = 0x0D,
    kKeyEscape = 0x1B,
    kKeyLeft = 0x25,
    kKeyUp = 0x26,
    kKeyRight = 0x27,
    kKeyDown = 0x28,
    kKeyF2 = 0x71,
    kKeyF3 = 0x72,
    kKeyF4 = 0x73,
    kKeyF5 = 0x74,
    kKeyF6 = 0x75,
    kKeyF7 = 0x76
};
constexpr int kKeyCount = 256;

// Bits of PadState::buttons.
enum PadButton : std::uint16_t {
    kPadUp = 0x0001,
    kPadDown = 0x0002,
    kPadLeft = 0x0004,
    kPadRight = 0x0008,
    kPadStart = 0x0010,
    kPadBack = 0x0020,
    kPadLeftThumb = 0x0040,
    kPadRightThumb = 0x0080,
    kPadLeftShoulder = 0x0100,
    kPadRightShoulder = 0x0200,
    kPadA = 0x1000,
    kPadB = 0x2000,
    kPadX = 0x4000,
    kPadY = 0x8000
};
constexpr int kPadCount = 4;

struct PadState {
    bool connected = false;
    std::uint16_t buttons = 0;
    std::int16_t thumbLX = 0;  // -32768 left to 32767 right
    std::int16_t thumbLY = 0;  // -32768 down to 32767 up
    std::uint8_t rightTrigger = 0;
    bool operator==(const PadState&) const = default;
};

}  // namespace port
