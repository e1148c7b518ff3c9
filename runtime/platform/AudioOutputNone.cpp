#include "AudioOutput.hpp"

namespace port::platform {

AudioOutput systemAudioOutput() {
    return {};
}

}  // namespace port::platform
