#pragma once

// What is thrown and shot.

#include "Tick.hpp"

namespace port {

// A screen full of shots has hundreds. Models and scripts that shoot in every tick must not fill
// the memory or the time of a tick.
constexpr std::size_t kMostProjectiles = 1024;

struct Shot {
    const generated::Character* model = nullptr;
    float x = 0, z = 0, altitude = 0;
    int facing = 1;
    float vx = 0, vy = 0, vz = 0;  // ahead, up and toward the viewer
    bool bomb = false;
    bool fromPlayer = true;
    const generated::Character* owner = nullptr;  // whose side it fights on
};

// False without a model, or when there are too many already.
bool spawnProjectile(Tick& tick, const Shot& shot);

// Lets a running attack throw or shoot when its frame has come, once an attack. Uses up a shot of
// the weapon in hand.
void maybeSpawnProjectile(Tick& tick, Actor& actor, bool fromPlayer);

// Right after it: a weapon whose shots are used up goes.
void loseSpentWeapon(Tick& tick, Actor& actor);

// Moves them over flat ground, whatever the terrain, and forgets the dead.
void updateProjectiles(Tick& tick);

// What touching a target does to it. True when it went off.
bool projectileContact(Tick& tick, RuntimeProjectile& projectile);

}  // namespace port
