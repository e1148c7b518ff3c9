#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "GameRun.hpp"
#include "RandomGame.hpp"
#include "Recording.hpp"
#include "Replay.hpp"

using namespace tindrel::fuzz;

// The text of a recording up to a NUL byte, and behind it the game that it is played on.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const FuzzPorts ports;
    constexpr int kMostPasses = 600;
    silence();
    const std::uint8_t* const end = std::find(data, data + size, 0);
    port::Recording recording;
    std::string error;
    std::istringstream in(std::string(data, end));
    if (!port::readRecording(in, recording, error)) return 0;
    Choices choices({end, data + size});
    choices.next();
    const RandomGame game(choices);
    playTwice(ports.root(false), kMostPasses,
              [&] { return std::make_unique<port::Replay>(recording); });
    return 0;
}
