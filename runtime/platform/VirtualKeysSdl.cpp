#include <SDL.h>

#include <utility>

#include "VirtualKeys.hpp"

namespace port::platform {
namespace {

struct KeyRow {
    SDL_Scancode place;
    VirtualKeys keys;
};

// Letters, digits and function keys stand in rows of their own numbers on both sides.
constexpr KeyRow kKeys[] = {
    {SDL_SCANCODE_BACKSPACE, {0x08}},
    {SDL_SCANCODE_TAB, {0x09}},
    {SDL_SCANCODE_CLEAR, {0x0C}},
    {SDL_SCANCODE_RETURN, {0x0D}},
    {SDL_SCANCODE_RETURN2, {0x0D}},
    {SDL_SCANCODE_KP_ENTER, {0x0D}},
    {SDL_SCANCODE_LSHIFT, {0x10, 0xA0}},
    {SDL_SCANCODE_RSHIFT, {0x10, 0xA1}},
    {SDL_SCANCODE_LCTRL, {0x11, 0xA2}},
    {SDL_SCANCODE_RCTRL, {0x11, 0xA3}},
    {SDL_SCANCODE_LALT, {0x12, 0xA4}},
    {SDL_SCANCODE_RALT, {0x12, 0xA5}},
    {SDL_SCANCODE_PAUSE, {0x13}},
    {SDL_SCANCODE_CAPSLOCK, {0x14}},
    {SDL_SCANCODE_LANG1, {0x15}},
    {SDL_SCANCODE_LANG2, {0x19}},
    {SDL_SCANCODE_ESCAPE, {0x1B}},
    {SDL_SCANCODE_INTERNATIONAL4, {0x1C}},
    {SDL_SCANCODE_INTERNATIONAL5, {0x1D}},
    {SDL_SCANCODE_SPACE, {0x20}},
    {SDL_SCANCODE_PAGEUP, {0x21}},
    {SDL_SCANCODE_PAGEDOWN, {0x22}},
    {SDL_SCANCODE_END, {0x23}},
    {SDL_SCANCODE_HOME, {0x24}},
    {SDL_SCANCODE_LEFT, {0x25}},
    {SDL_SCANCODE_UP, {0x26}},
    {SDL_SCANCODE_RIGHT, {0x27}},
    {SDL_SCANCODE_DOWN, {0x28}},
    {SDL_SCANCODE_SELECT, {0x29}},
    {SDL_SCANCODE_EXECUTE, {0x2B}},
    {SDL_SCANCODE_PRINTSCREEN, {0x2C}},
    {SDL_SCANCODE_INSERT, {0x2D}},
    {SDL_SCANCODE_DELETE, {0x2E}},
    {SDL_SCANCODE_HELP, {0x2F}},
    {SDL_SCANCODE_0, {0x30}},
    {SDL_SCANCODE_LGUI, {0x5B}},
    {SDL_SCANCODE_RGUI, {0x5C}},
    {SDL_SCANCODE_APPLICATION, {0x5D}},
    {SDL_SCANCODE_SLEEP, {0x5F}},
    {SDL_SCANCODE_KP_0, {0x60}},
    {SDL_SCANCODE_KP_MULTIPLY, {0x6A}},
    {SDL_SCANCODE_KP_PLUS, {0x6B}},
    {SDL_SCANCODE_SEPARATOR, {0x6C}},
    {SDL_SCANCODE_KP_MINUS, {0x6D}},
    {SDL_SCANCODE_KP_PERIOD, {0x6E}},
    {SDL_SCANCODE_KP_DIVIDE, {0x6F}},
    {SDL_SCANCODE_NUMLOCKCLEAR, {0x90}},
    {SDL_SCANCODE_SCROLLLOCK, {0x91}},
    {SDL_SCANCODE_KP_EQUALS, {0x92}},
    {SDL_SCANCODE_AC_BACK, {0xA6}},
    {SDL_SCANCODE_AC_FORWARD, {0xA7}},
    {SDL_SCANCODE_AC_REFRESH, {0xA8}},
    {SDL_SCANCODE_AC_STOP, {0xA9}},
    {SDL_SCANCODE_AC_SEARCH, {0xAA}},
    {SDL_SCANCODE_AC_BOOKMARKS, {0xAB}},
    {SDL_SCANCODE_AC_HOME, {0xAC}},
    {SDL_SCANCODE_AUDIOMUTE, {0xAD}},
    {SDL_SCANCODE_MUTE, {0xAD}},
    {SDL_SCANCODE_VOLUMEDOWN, {0xAE}},
    {SDL_SCANCODE_VOLUMEUP, {0xAF}},
    {SDL_SCANCODE_AUDIONEXT, {0xB0}},
    {SDL_SCANCODE_AUDIOPREV, {0xB1}},
    {SDL_SCANCODE_AUDIOSTOP, {0xB2}},
    {SDL_SCANCODE_AUDIOPLAY, {0xB3}},
    {SDL_SCANCODE_MAIL, {0xB4}},
    {SDL_SCANCODE_MEDIASELECT, {0xB5}},
    {SDL_SCANCODE_COMPUTER, {0xB6}},
    {SDL_SCANCODE_CALCULATOR, {0xB7}},
    {SDL_SCANCODE_SEMICOLON, {0xBA}},
    {SDL_SCANCODE_EQUALS, {0xBB}},
    {SDL_SCANCODE_COMMA, {0xBC}},
    {SDL_SCANCODE_MINUS, {0xBD}},
    {SDL_SCANCODE_PERIOD, {0xBE}},
    {SDL_SCANCODE_SLASH, {0xBF}},
    {SDL_SCANCODE_GRAVE, {0xC0}},
    {SDL_SCANCODE_INTERNATIONAL1, {0xC1}},
    {SDL_SCANCODE_KP_COMMA, {0xC2}},
    {SDL_SCANCODE_LEFTBRACKET, {0xDB}},
    {SDL_SCANCODE_BACKSLASH, {0xDC}},
    {SDL_SCANCODE_NONUSHASH, {0xDC}},
    {SDL_SCANCODE_INTERNATIONAL3, {0xDC}},
    {SDL_SCANCODE_RIGHTBRACKET, {0xDD}},
    {SDL_SCANCODE_APOSTROPHE, {0xDE}},
    {SDL_SCANCODE_NONUSBACKSLASH, {0xE2}},
};

// Places and codes that count up together.
struct KeySeries {
    SDL_Scancode first, last;
    int key;
};
constexpr KeySeries kSeries[] = {
    {SDL_SCANCODE_A, SDL_SCANCODE_Z, 'A'},        {SDL_SCANCODE_1, SDL_SCANCODE_9, '1'},
    {SDL_SCANCODE_KP_1, SDL_SCANCODE_KP_9, 0x61}, {SDL_SCANCODE_F1, SDL_SCANCODE_F12, 0x70},
    {SDL_SCANCODE_F13, SDL_SCANCODE_F24, 0x7C},
};

VirtualKeys keysByPlace(int scanCode) {
    for (const KeySeries& series : kSeries) {
        if (scanCode < series.first || scanCode > series.last) continue;
        return {static_cast<std::uint8_t>(series.key + scanCode - series.first)};
    }
    for (const KeyRow& row : kKeys) {
        if (row.place == scanCode) return row.keys;
    }
    return {};
}

}  // namespace

VirtualKeys virtualKeysOf(int scanCode, int keyCode) {
    if (keyCode >= SDLK_a && keyCode <= SDLK_z) {
        return {static_cast<std::uint8_t>('A' + keyCode - SDLK_a)};
    }
    switch (keyCode) {
        case SDLK_COMMA:
            return {0xBC};
        case SDLK_PERIOD:
            return {0xBE};
        case SDLK_MINUS:
            return {0xBD};
        case SDLK_EQUALS:
            return {0xBB};
        default:
            return keysByPlace(scanCode);
    }
}

}  // namespace port::platform
