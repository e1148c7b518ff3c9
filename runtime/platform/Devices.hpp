#pragma once

// Everything that reaches the engine from outside its game's files. A test passes its own, and a
// run on the same values gives the same world.

#include "AudioOutput.hpp"
#include "Clock.hpp"
#include "Input.hpp"
#include "Presentation.hpp"

namespace port::platform {

struct Devices {
    Clock clock = systemClock();
    Input input = systemInput();
    Presentation presentation = systemPresentation();
    AudioOutput audio = systemAudioOutput();
};

}  // namespace port::platform
