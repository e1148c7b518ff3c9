#pragma once

// Everything that a game has become by playing it, as plain data. Two runs on the same inputs have
// the same world; pictures, sounds and settings are no part of it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "Actor.hpp"
#include "EntityList.hpp"
#include "Projectile.hpp"
#include "ScriptState.hpp"
#include "StageRun.hpp"

namespace port {

constexpr int kMostPlayers = 4;

// An entity that a frame or a landing asked for; it enters the stage at the end of the draw pass.
struct PendingChildSpawn {
    bool animationEffect = false;
    int effectSpawnType = kLandDust;
    const generated::Character* model = nullptr;
    float worldX = 0, z = 200, altitude = 0;
    int facing = 1;
    ActorHandle parent = kNobody;
    bool summon = false;

    PORT_FIELDS(animationEffect, effectSpawnType, model, worldX, z, altitude, facing, parent,
                summon)
};

// A weapon item that an actor lost; it enters the stage after combat.
struct PendingWeaponDrop {
    const generated::Character* itemModel = nullptr;
    float worldX = 0, z = 200, altitude = 0;
    int facing = 1;
    int remainingDrops = -1;

    PORT_FIELDS(itemModel, worldX, z, altitude, facing, remainingDrops)
};

// What the game logic saw of a player's keys in one tick, as bits of ScriptKeyBits.
struct InputHistoryEntry {
    unsigned held = 0, newKeys = 0, released = 0;

    PORT_FIELDS(held, newKeys, released)
};

// One of the four places for a human, taken or not. Keys are bits of ScriptKeyBits.
struct PlayerSlot {
    static constexpr std::size_t kLongestHistory = 128;

    bool joined = false;
    int selectIndex = 0;  // among the models that can be selected
    unsigned keys = 0;    // held now
    unsigned newKeys = 0, releasedKeys = 0;
    unsigned playKeys = 0;                        // what the game logic may see of those held
    unsigned disabledKeys = 0;                    // masked out before everything else
    std::vector<InputHistoryEntry> inputHistory;  // the oldest first, kLongestHistory at most
    ScriptVariables scriptVars;

    PORT_FIELDS(joined, selectIndex, keys, newKeys, releasedKeys, playKeys, disabledKeys,
                inputHistory, scriptVars)
};

// Who stood on the stage when entities last took their turns, so that nobody walks over the dead of
// a whole stage. Those that came since are the entities from `next` on.
struct Roster {
    std::vector<ActorHandle> present;   // visible, in the order of their coming
    std::vector<ActorHandle> carriers;  // those of them that may carry a platform
    std::vector<ActorHandle> weapons;   // those that entities may take up
    ActorHandle next = kFirstEntityHandle;

    PORT_FIELDS(present, carriers, weapons, next)
};

// Where the last attack of all met somebody, in the middle of both boxes.
struct LastHit {
    float x = 0, z = 0, altitude = 0;
    int type = 0;

    PORT_FIELDS(x, z, altitude, type)
};

struct World {
    std::uint64_t tick = 0;
    Player1 player1;
    std::vector<RuntimeCoopPlayer> coop;  // in the order of their slots
    EntityList entities;
    Roster roster;
    std::vector<RuntimeProjectile> projectiles;
    std::vector<PendingChildSpawn> pendingChildSpawns;
    std::vector<PendingWeaponDrop> pendingWeaponDrops;
    std::array<PlayerSlot, kMostPlayers> slots;
    StageRun stage;
    Camera camera;
    PendingBranch branch;
    Shake shake;
    LastHit lastHit;
    ScriptContext stageScriptCtx;  // of global and level scripts
    ScriptState scripted;
    std::mt19937 blockRandom{0xB10C2026};

    // Null for a handle that names nobody.
    [[nodiscard]] const Actor* find(ActorHandle handle) const;
    [[nodiscard]] Actor* find(ActorHandle handle);
    // Null for a slot without a co-op player.
    [[nodiscard]] RuntimeCoopPlayer* coopOfSlot(int playerSlot);

    // Player 1, the co-op players, then the entities, also those that the visits add.
    template <class Visit>
    void visitActors(Visit visit) {
        visit(player1);
        for (RuntimeCoopPlayer& player : coop) visit(player);
        entities.visit(visit);
    }

    PORT_FIELDS(tick, player1, coop, entities, roster, projectiles, pendingChildSpawns,
                pendingWeaponDrops, slots, stage, camera, branch, shake, lastHit, stageScriptCtx,
                scripted, blockRandom)
};

}  // namespace port
