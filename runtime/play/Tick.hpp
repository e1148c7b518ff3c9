#pragma once

// What a step of a tick works with. A step changes the world, runs hooks, and leaves word of what
// is to be heard; it asks no device and no clock.

#include <string_view>
#include <vector>

#include "RuntimeConfig.hpp"
#include "Scripts.hpp"
#include "TickInput.hpp"
#include "World.hpp"

namespace port {

// A sound file as a table names it, and how the message begins if it cannot be played.
struct SoundCue {
    std::string_view name;  // lasts as long as the tables
    const char* diagnostic;
};

// The music of a boss, as a table names it, and where in the file it repeats from, in bytes.
struct BossMusicCue {
    std::string_view name;
    int loopOffset;
};

struct Events {
    std::vector<SoundCue> sounds;
    std::vector<BossMusicCue> bossMusic;
};

// Who moves the players: what the devices hold, also where a recording or a bot stands in for them;
// nobody, who walks on; or the script of a run that checks itself.
enum class PlayerDrive { Devices, Nobody, SelfCheck };

struct Tick {
    World& world;
    const PlayerDrive& drive;
    const TickInput& input;
    const RuntimeConfig& config;
    Scripts& scripts;
    Events& events;
};

}  // namespace port
