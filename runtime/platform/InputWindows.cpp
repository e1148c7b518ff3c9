// The keyboard of Win32 and the pads of XInput.

#include <windows.h>

#include <xinput.h>

#include <array>
#include <memory>

#include "Input.hpp"

namespace port::platform {
namespace {

// The state is that of the whole system: what is typed elsewhere is not meant for the game.
bool ownsKeyboard() {
    DWORD process = 0;
    GetWindowThreadProcessId(GetForegroundWindow(), &process);
    return process == GetCurrentProcessId();
}

bool keyDown(int virtualKey) {
    // The sign bit is the key's present state.
    return GetAsyncKeyState(virtualKey) < 0 && ownsKeyboard();
}

class Pads {
  public:
    PadState state(int index) {
        Place& place = places_[static_cast<std::size_t>(index)];
        const ULONGLONG now = GetTickCount64();
        if (now < place.nextTry) return {};
        XINPUT_STATE read{};
        if (XInputGetState(static_cast<DWORD>(index), &read) != ERROR_SUCCESS) {
            place.nextTry = now + kBetweenTries;
            return {};
        }
        const XINPUT_GAMEPAD& pad = read.Gamepad;
        return {true, pad.wButtons, pad.sThumbLX, pad.sThumbLY, pad.bRightTrigger};
    }

  private:
    // Asking for a pad that is not there takes milliseconds, since the system looks for it anew.
    static constexpr ULONGLONG kBetweenTries = 2000;
    struct Place {
        ULONGLONG nextTry = 0;
    };
    std::array<Place, kPadCount> places_;
};

}  // namespace

Input systemInput() {
    const auto pads = std::make_shared<Pads>();
    return {&keyDown, [pads](int pad) { return pads->state(pad); }};
}

}  // namespace port::platform
