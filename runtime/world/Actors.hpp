#pragma once

// The records of everything that moves on a stage, except player 1, whom the engine holds itself.
//
// World coordinates: `worldX` counts stage pixels from the left end; `z` is the depth and the
// screen row of the ground; `altitude` is 0 on the ground and negative above it; `verticalVelocity`
// is added to it every tick. `facing` is 1 to the right and -1 to the left. All counters count
// ticks, 60 to the second.

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>

#include "AnimationPlayer.hpp"
#include "GeneratedCharacters.hpp"
#include "GeneratedStages.hpp"
#include "ScriptVM.hpp"
#include "SpriteCache.hpp"

namespace port {

// How scripts, parents, attackers and targets name an actor: 0 nobody, 1 player 1, 2 to 4 the co-op
// player at index handle - 2, above that the address of a RuntimeEntity. Co-op handles follow the
// place in the list, not `playerSlot`.
using ActorHandle = std::uintptr_t;
constexpr ActorHandle kNobody = 0;
constexpr ActorHandle kPlayer1Handle = 1;
constexpr ActorHandle kFirstCoopHandle = 2;
constexpr ActorHandle kLastPlayerHandle = 4;

// `lastFrame` of an actor whose current frame has not taken effect yet.
constexpr std::size_t kNoFrame = static_cast<std::size_t>(-1);

// The cost of a running move that is due only if the move connects.
struct PendingEnergyCost {
    const generated::Animation* animation = nullptr;
    int cost = 0;
    int mode = 0;
    bool hit = false;
};

struct RuntimeCoopPlayer {
    PendingEnergyCost energyPending;
    const generated::Character* model = nullptr;
    AnimationPlayer animation;
    float worldX = 80, z = 200, altitude = 0, verticalVelocity = 0;
    int health = 100, maxHealth = 100, mp = 0, maxMp = 0;
    int hitStun = 0, attackTicks = 0, attackCooldown = 0, facing = 1;
    int playerSlot = 1;  // zero-based, so that P2 is 1; kept through sparse joins
    int livesRemaining = 0, creditsRemaining = 0;
    int paletteMap = 0;
    int freezeTicks = 0, preFreezePaletteMap = -1, deathTicks = 0;
    bool deathFollowDeath = false;
    std::int64_t score = 0;
    int reactionType = 0;
    int landingDamage = 0, landingMode = 0, landingType = -1;
    int guardPoints = 0, blockState = 0;
    bool blocking = false;
    float knockdownMeter = 0;
    float scriptVelocityX = 0, scriptVelocityZ = 0;
    bool alive = true;
    bool jumping = false, knockdownAir = false, runningJump = false;
    bool attackHasHit = false, projectileFired = false;
    int invincibleTicks = 0, attackHits = 0;
    int comboStep = 0, comboBranch = -1, comboWindow = 0;
    const generated::Character* equippedWeapon = nullptr;
    int weaponUses = 0;
    const generated::Character* weaponItemModel = nullptr;
    int weaponDropsRemaining = -1;
    unsigned attackId = 0;
    int gamepadId = 0;
    std::set<ActorHandle> landingHitTargets;
    std::size_t lastFrame = kNoFrame;
    SpritePtr sprite;
    ScriptContext scriptCtx;
};

// What scripts are told as `spawn_type`, and what an effect carries as `effectSpawnType`.
enum SpawnType {
    kChildSpawn = 2,
    kSummonSpawn = 3,
    kLandDust = 8,
    kAttackFlash = 9,
    kModelDust = 10
};

struct RuntimeEntity {
    PendingEnergyCost energyPending;
    bool animationEffect = false;  // plays its animation once and vanishes
    int effectSpawnType = kLandDust;
    const generated::Spawn* spawn = nullptr;  // the stage's record that it came from
    const generated::Character* model = nullptr;
    AnimationPlayer animation;
    float worldX = 0, z = 200;
    int health = 100, maxHealth = 100, mp = 0, maxMp = 0;
    float knockdownMeter = 0;
    int hitStun = 0, attackTicks = 0, attackCooldown = 0, attackHits = 0;
    bool attackHasHit = false, projectileFired = false;
    int facing = -1;
    int fallTicks = 0;
    int landingDamage = 0, landingMode = 0, landingType = -1;
    int recoveryTicks = 0, invincibleTicks = 0, juggleRemaining = 4;
    float altitude = 0, verticalVelocity = 0;
    int bouncesRemaining = 0;
    bool grabbed = false;
    bool alive = true, visible = true;  // dead; gone from the stage
    bool subjectToScreen = false;
    int deathTicks = 0;
    bool deathFollowDeath = false;
    int freezeTicks = 0, preFreezePaletteMap = -1;
    int lifeTicks = -1;  // negative: no lifespan
    int paletteMap = 0;
    std::int64_t score = 0;
    int reactionType = 0;
    int guardPoints = 0, blockState = 0;
    bool blocking = false;
    float scriptVelocityX = 0, scriptVelocityZ = 0;
    const generated::Character* equippedWeapon = nullptr;
    int weaponUses = 0;
    const generated::Character* weaponItemModel = nullptr;
    int weaponDropsRemaining = -1;
    ActorHandle parentHandle = kNobody;
    bool summonedChild = false;
    std::unordered_map<std::string, ScriptValue> scriptVars;
    unsigned lastPlayerAttackId = 0;
    std::set<ActorHandle> landingHitTargets;
    std::size_t lastFrame = kNoFrame;
    SpritePtr sprite;
    ScriptContext scriptCtx;
};

struct RuntimeProjectile {
    const generated::Character* model = nullptr;
    const generated::Character* ownerModel = nullptr;  // whose side it fights on
    AnimationPlayer animation;
    float worldX = 0, z = 200, altitude = 0;
    float vx = 0, vy = 0, vz = 0;
    int facing = 1, life = 0;
    bool bomb = false, exploded = false;
    bool attackSpent = false;  // the first collision used its attack up
    std::set<ActorHandle> hitTargets;
    bool fromPlayer = true, alive = true, subjectToGravity = false;
    int bouncesLeft = 0;
    float bounceFactor = 0.5F;
    int hitMask = 0, hitId = 0;
    std::size_t lastFrame = kNoFrame;
    SpritePtr sprite;
};

// Where an actor stands and which way it looks.
struct ActorPlace {
    float x = 0, z = 200, altitude = 0;
    int facing = 1;
};

// An entity that a frame or a landing asked for; it enters the stage at the end of the draw pass.
struct PendingChildSpawn {
    bool animationEffect = false;
    int effectSpawnType = kLandDust;
    const generated::Character* model = nullptr;
    float worldX = 0, z = 200, altitude = 0;
    int facing = 1;
    ActorHandle parent = kNobody;
    bool summon = false;
};

// A weapon item that an actor lost; it enters the stage after combat.
struct PendingWeaponDrop {
    const generated::Character* itemModel = nullptr;
    float worldX = 0, z = 200, altitude = 0;
    int facing = 1;
    int remainingDrops = -1;
};

// One script binding of an actor to another, applied anew every tick.
struct EntityBinding {
    ActorHandle target = kNobody;
    int x = 0, z = 0, a = 0, direction = 0, config = 0;
    int sort = -1;
};

// The events under which the hooks of one kind of actor are reported.
struct ActorEvents {
    const char* animationFrame;
    const char* onModelCopy;
    const char* onSpawn;
};
constexpr ActorEvents kPlayerEvents = {"player-animation-frame", "player-onmodelcopy",
                                       "player-onspawn"};
constexpr ActorEvents kCoopEvents = {"coop-animation-frame", "coop-onmodelcopy", "coop-onspawn"};
constexpr ActorEvents kEntityEvents = {"entity-animation-frame", "entity-onmodelcopy",
                                       "entity-onspawn"};

// What the three kinds of actor have in common, wherever each keeps it. Lives for one step only.
struct ActorView {
    ActorHandle handle;
    const ActorEvents& events;
    const generated::Character* model;
    AnimationPlayer& animation;
    float& worldX;
    float& z;
    float& altitude;
    int& facing;
    int& paletteMap;
    const generated::Character*& equippedWeapon;
    int& weaponUses;
    std::size_t& lastFrame;
    SpritePtr& sprite;
    ScriptContext& context;

    [[nodiscard]] ActorPlace place() const { return {worldX, z, altitude, facing}; }
};

}  // namespace port
