#pragma once

// Everything that reaches the engine from outside its game's files. A test passes its own, and a
// run on the same values gives the same world.

#include "AudioOutput.hpp"
#include "Clock.hpp"
#include "Input.hpp"
#include "Presentation.hpp"
#include "TextFace.hpp"

namespace port::platform {

// By default only time goes by: nothing is seen, heard or held.
struct Devices {
    Clock clock = systemClock();
    Input input;
    Presentation presentation;
    TextFace fonts;
    AudioOutput audio;
};

// What the machine has. Where nobody sees the game nobody plays or hears it either, and its
// pictures are the same on all machines.
[[nodiscard]] inline Devices systemDevices() {
    Devices devices;
    devices.presentation = systemPresentation();
    if (devices.presentation.headless) return devices;
    devices.fonts = systemTextFace();
    devices.input = systemInput();
    devices.audio = systemAudioOutput();
    return devices;
}

}  // namespace port::platform
