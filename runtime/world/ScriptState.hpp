#pragma once

// What the scripts of a game keep in the world beside their variables.

#include <string>
#include <vector>

#include "Fields.hpp"
#include "ScriptDrawing.hpp"
#include "ScriptFiles.hpp"

namespace port {

// What the next entity that a script spawns is to be.
struct ScriptSpawnEntry {
    std::string model, alias, item, map;
    float x = 0, z = 200, a = 0;
    int health = -1;
    bool boss = false;

    PORT_FIELDS(model, alias, item, map, x, z, a, health, boss)
};

struct ScriptState {
    ScriptSpawnEntry spawnEntry;
    std::vector<std::string> samples;  // loaded sounds by their numbers; empty where unloaded
    ScriptDrawing drawing;
    ScriptFiles files;

    PORT_FIELDS(spawnEntry, samples, drawing, files)
};

}  // namespace port
