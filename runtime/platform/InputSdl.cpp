// SDL's keyboard and game controllers. What they do arrives while the window handles its events.

#include <SDL.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <cstring>
#include <memory>
#include <vector>

#include "Input.hpp"
#include "VirtualKeys.hpp"

namespace port::platform {
namespace {

class Keyboard {
  public:
    Keyboard() { readLayout(); }

    // A key that went down and up again since the last question was down, too.
    bool down(int virtualKey) {
        const auto key = static_cast<std::size_t>(virtualKey);
        const Uint8* held = SDL_GetKeyboardState(nullptr);
        const bool tapped = tapped_[key];
        tapped_[key] = false;
        return tapped ||
               std::ranges::any_of(places_[key], [held](int place) { return held[place] != 0; });
    }

    void readLayout() {
        for (std::vector<int>& places : places_) places.clear();
        for (int place = 0; place < SDL_NUM_SCANCODES; ++place) {
            for (const std::uint8_t key : keysAt(place)) {
                if (key != 0) places_[key].push_back(place);
            }
        }
    }

    void pressed(int place) {
        for (const std::uint8_t key : keysAt(place)) tapped_[key] = key != 0;
    }
    void forgetTaps() { tapped_.reset(); }

  private:
    static VirtualKeys keysAt(int place) {
        return virtualKeysOf(place, SDL_GetKeyFromScancode(static_cast<SDL_Scancode>(place)));
    }

    std::array<std::vector<int>, kKeyCount> places_;  // of each virtual key
    std::bitset<kKeyCount> tapped_;
};

constexpr std::pair<SDL_GameControllerButton, PadButton> kPadButtons[] = {
    {SDL_CONTROLLER_BUTTON_DPAD_UP, kPadUp},
    {SDL_CONTROLLER_BUTTON_DPAD_DOWN, kPadDown},
    {SDL_CONTROLLER_BUTTON_DPAD_LEFT, kPadLeft},
    {SDL_CONTROLLER_BUTTON_DPAD_RIGHT, kPadRight},
    {SDL_CONTROLLER_BUTTON_START, kPadStart},
    {SDL_CONTROLLER_BUTTON_BACK, kPadBack},
    {SDL_CONTROLLER_BUTTON_LEFTSTICK, kPadLeftThumb},
    {SDL_CONTROLLER_BUTTON_RIGHTSTICK, kPadRightThumb},
    {SDL_CONTROLLER_BUTTON_LEFTSHOULDER, kPadLeftShoulder},
    {SDL_CONTROLLER_BUTTON_RIGHTSHOULDER, kPadRightShoulder},
    {SDL_CONTROLLER_BUTTON_A, kPadA},
    {SDL_CONTROLLER_BUTTON_B, kPadB},
    {SDL_CONTROLLER_BUTTON_X, kPadX},
    {SDL_CONTROLLER_BUTTON_Y, kPadY},
};

// The four places for pads. Who unplugs a pad leaves the others where they are, and finds the own
// place again with a pad of the same kind.
class Pads {
  public:
    Pads() { SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER); }
    Pads(const Pads&) = delete;
    Pads& operator=(const Pads&) = delete;
    ~Pads() {
        for (Place& place : places_) place.pad.reset();
        SDL_QuitSubSystem(SDL_INIT_GAMECONTROLLER);
    }

    PadState state(int index) {
        SDL_GameController* pad = places_[static_cast<std::size_t>(index)].pad.get();
        if (!pad) return {};
        PadState state;
        state.connected = true;
        for (const auto& [button, bit] : kPadButtons) {
            if (SDL_GameControllerGetButton(pad, button) != 0) state.buttons |= bit;
        }
        state.thumbLX = SDL_GameControllerGetAxis(pad, SDL_CONTROLLER_AXIS_LEFTX);
        // SDL counts downward; the complement is the negative that cannot overflow.
        state.thumbLY =
            static_cast<std::int16_t>(~SDL_GameControllerGetAxis(pad, SDL_CONTROLLER_AXIS_LEFTY));
        const int trigger = SDL_GameControllerGetAxis(pad, SDL_CONTROLLER_AXIS_TRIGGERRIGHT);
        state.rightTrigger = static_cast<std::uint8_t>(std::max(0, trigger) >> 7);
        return state;
    }

    // After one was plugged in or out.
    void findAll() {
        for (Place& place : places_) {
            if (place.pad && !SDL_GameControllerGetAttached(place.pad.get())) place.pad.reset();
        }
        for (int device = 0; device < SDL_NumJoysticks(); ++device) {
            const SDL_JoystickID id = SDL_JoystickGetDeviceInstanceID(device);
            if (!SDL_IsGameController(device) || SDL_GameControllerFromInstanceID(id)) continue;
            const SDL_JoystickGUID kind = SDL_JoystickGetDeviceGUID(device);
            if (Place* place = placeFor(kind)) {
                place->pad.reset(SDL_GameControllerOpen(device));
                if (place->pad) place->kind = kind;
            }
        }
    }

  private:
    struct Closer {
        void operator()(SDL_GameController* pad) const { SDL_GameControllerClose(pad); }
    };
    struct Place {
        std::unique_ptr<SDL_GameController, Closer> pad;
        SDL_JoystickGUID kind{};  // of the last pad; zero before the first
    };

    // Null when all are taken.
    Place* placeFor(const SDL_JoystickGUID& kind) {
        for (const SDL_JoystickGUID& wanted : {kind, SDL_JoystickGUID{}}) {
            for (Place& place : places_) {
                const bool fits = std::memcmp(&place.kind, &wanted, sizeof wanted) == 0;
                if (!place.pad && fits) return &place;
            }
        }
        const auto free = std::ranges::find_if(places_, [](const Place& p) { return !p.pad; });
        return free == places_.end() ? nullptr : &*free;
    }

    std::array<Place, kPadCount> places_;
};

class SdlInput {
  public:
    SdlInput() { SDL_AddEventWatch(watch, this); }
    SdlInput(const SdlInput&) = delete;
    SdlInput& operator=(const SdlInput&) = delete;
    ~SdlInput() { SDL_DelEventWatch(watch, this); }

    bool keyDown(int virtualKey) { return keyboard_.down(virtualKey); }
    PadState pad(int index) {
        // Looking for pads takes a moment, which players without them are spared.
        if (!pads_) pads_ = std::make_unique<Pads>();
        if (padsChanged_) pads_->findAll();
        padsChanged_ = false;
        return pads_->state(index);
    }

  private:
    static int SDLCALL watch(void* self, SDL_Event* event) {
        static_cast<SdlInput*>(self)->hear(*event);
        return 0;
    }

    void hear(const SDL_Event& event) {
        switch (event.type) {
            case SDL_KEYDOWN:
                if (event.key.repeat == 0) keyboard_.pressed(event.key.keysym.scancode);
                break;
            case SDL_KEYMAPCHANGED:
                keyboard_.readLayout();
                break;
            case SDL_WINDOWEVENT:
                if (event.window.event == SDL_WINDOWEVENT_FOCUS_LOST) keyboard_.forgetTaps();
                break;
            case SDL_CONTROLLERDEVICEADDED:
            case SDL_CONTROLLERDEVICEREMOVED:
                padsChanged_ = true;
                break;
            default:
                break;
        }
    }

    Keyboard keyboard_;
    std::unique_ptr<Pads> pads_;
    bool padsChanged_ = true;
};

}  // namespace

Input systemInput() {
    const auto devices = std::make_shared<SdlInput>();
    return {[devices](int virtualKey) { return devices->keyDown(virtualKey); },
            [devices](int pad) { return devices->pad(pad); }};
}

}  // namespace port::platform
