#pragma once

// Everyone on a stage. What player 1, co-op players and entities have in common is one record; what
// only one kind has, or has under other rules, stands with that kind.
//
// World coordinates: `worldX` counts stage pixels from the left end; `z` is the depth and the
// screen row of the ground; `altitude` is 0 on the ground and negative above it; `verticalVelocity`
// is added to it every tick. `facing` is 1 to the right and -1 to the left. All counters count
// ticks.

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>

#include "AnimationPlayer.hpp"
#include "Fields.hpp"
#include "GeneratedCharacters.hpp"
#include "GeneratedStages.hpp"
#include "ScriptHandles.hpp"
#include "ScriptVM.hpp"

namespace port {

constexpr int kTicksPerSecond = 60;

// How scripts, parents, attackers and targets name an actor: 0 nobody, 1 player 1, 2 to 4 the co-op
// player at index handle - 2, above that the serial number of an entity, which no other entity of
// the run ever gets. Co-op handles follow the place in the list, not `playerSlot`.
using ActorHandle = std::uintptr_t;
constexpr ActorHandle kNobody = 0;
constexpr ActorHandle kPlayer1Handle = 1;
constexpr ActorHandle kFirstCoopHandle = 2;
constexpr ActorHandle kLastPlayerHandle = 4;
constexpr ActorHandle kFirstEntityHandle = 5;
constexpr ActorHandle kEndOfEntityHandles = kFirstSpriteHandle;

// `lastFrame` of an actor whose current frame has not taken effect yet.
constexpr std::size_t kNoFrame = static_cast<std::size_t>(-1);

// Where an actor stands and which way it looks.
struct ActorPlace {
    float x = 0, z = 200, altitude = 0;
    int facing = 1;
};

// What an actor shows from the entry of a frame on. Null: nothing.
struct ShownFrame {
    const generated::Frame* frame = nullptr;
    const generated::Character* model = nullptr;  // whose palettes colour it
    int palette = 0;
    PORT_FIELDS(frame, model, palette)
};

// The cost of a running move that is due only if the move connects.
struct PendingEnergyCost {
    const generated::Animation* animation = nullptr;
    int cost = 0;
    int mode = 0;
    bool hit = false;
    PORT_FIELDS(animation, cost, mode, hit)
};

// One script binding of an actor to another, applied anew every tick. No target: none.
struct EntityBinding {
    ActorHandle target = kNobody;
    int x = 0, z = 0, a = 0, direction = 0, config = 0;
    int sort = -1;
    PORT_FIELDS(target, x, z, a, direction, config, sort)
};

// What holds an actor: of its model, unless a script has said otherwise.
enum Bound : unsigned {
    kBoundWalls = 1,
    kBoundHoles = 2,
    kBoundPlatforms = 4,
    kBoundMinZ = 8,
    kBoundMaxZ = 16
};

struct Actor {
    ActorHandle handle = kNobody;
    const generated::Character* model = nullptr;

    AnimationPlayer animation;
    std::size_t lastFrame = kNoFrame;
    ShownFrame shown;

    float worldX = 80, z = 200, altitude = 0, verticalVelocity = 0;
    float scriptVelocityX = 0, scriptVelocityZ = 0;
    int facing = 1;
    bool hasScriptAntigravity = false;  // a script's value instead of the model's
    float scriptAntigravity = 0;
    bool hasScriptDraw = false;  // a script's draw method instead of the frames'
    generated::DrawMethod scriptDraw{};
    EntityBinding binding;
    // Sets of Bound: what scripts have decided, and what of it holds.
    unsigned scriptedBounds = 0, heldBounds = 0;
    ActorHandle opponent = kNobody;  // whom it has struck or chosen to strike last

    int health = 100, maxHealth = 100, mp = 0, maxMp = 0;
    bool alive = true;
    int paletteMap = 0;
    std::int64_t score = 0;
    int guardPoints = 0, blockState = 0;
    bool blocking = false;
    float knockdownMeter = 0;

    int hitStun = 0, attackTicks = 0, attackCooldown = 0, attackHits = 0;
    bool attackHasHit = false, projectileFired = false;
    int invincibleTicks = 0;
    int reactionType = 0;  // the attack type of the last hit
    int landingDamage = 0, landingMode = 0, landingType = -1;
    std::set<ActorHandle> landingHitTargets;
    PendingEnergyCost energyPending;

    const generated::Character* equippedWeapon = nullptr;
    int weaponUses = 0;
    const generated::Character* weaponItemModel = nullptr;
    int weaponDropsRemaining = -1;

    ScriptContext scriptCtx;

    [[nodiscard]] ActorPlace place() const { return {worldX, z, altitude, facing}; }

    PORT_FIELDS(handle, model, animation, lastFrame, shown, worldX, z, altitude, verticalVelocity,
                scriptVelocityX, scriptVelocityZ, facing, hasScriptAntigravity, scriptAntigravity,
                hasScriptDraw, scriptDraw, binding, scriptedBounds, heldBounds, opponent, health,
                maxHealth, mp, maxMp, alive, paletteMap, score, guardPoints, blockState, blocking,
                knockdownMeter, hitStun, attackTicks, attackCooldown, attackHits, attackHasHit,
                projectileFired, invincibleTicks, reactionType, landingDamage, landingMode,
                landingType, landingHitTargets, energyPending, equippedWeapon, weaponUses,
                weaponItemModel, weaponDropsRemaining, scriptCtx)
};

// What all players have, whoever drives them.
struct PlayerActor : Actor {
    int comboStep = 0, comboBranch = -1, comboWindow = 0;
    unsigned attackId = 0;
    bool jumping = false, runningJump = false;
    // Player 1's are those that all players share, unless the stage says otherwise.
    int livesRemaining = 0, creditsRemaining = 0;

    PORT_DERIVED_FIELDS(Actor, comboStep, comboBranch, comboWindow, attackId, jumping, runningJump,
                        livesRemaining, creditsRemaining)
};

struct Player1 : PlayerActor {
    float jumpVelocityX = 0, jumpVelocityZ = 0;
    int fallTicks = 0, recoveryTicks = 0, dashTicks = 0;
    bool queuedAttack = false, animJumpTriggered = false;
    ActorHandle grabbedEntity = kNobody;
    int grabHoldTicks = 0;

    PORT_DERIVED_FIELDS(PlayerActor, jumpVelocityX, jumpVelocityZ, fallTicks, recoveryTicks,
                        dashTicks, queuedAttack, animJumpTriggered, grabbedEntity, grabHoldTicks)
};

// A player of that zero-based slot, not yet on a stage, with the standing variables of its scripts.
template <class Player>
[[nodiscard]] Player freshPlayer(int slot, ActorHandle handle) {
    Player player;
    player.handle = handle;
    player.scriptCtx.player = true;
    player.scriptCtx.playerIndex = slot;
    player.scriptCtx.local["self"] = static_cast<ActorHandle>(slot) + 1;
    player.scriptCtx.local["player"] = static_cast<double>(slot);
    return player;
}

struct RuntimeCoopPlayer : PlayerActor {
    int playerSlot = 1;  // zero-based, so that P2 is 1; kept through sparse joins
    int gamepadId = 0;
    bool knockdownAir = false;

    PORT_DERIVED_FIELDS(PlayerActor, playerSlot, gamepadId, knockdownAir)
};

// What scripts are told as `spawn_type`, and what an effect carries as `effectSpawnType`.
enum SpawnType {
    kChildSpawn = 2,
    kSummonSpawn = 3,
    kLandDust = 8,
    kAttackFlash = 9,
    kModelDust = 10
};

// Everyone whom no human drives.
struct RuntimeEntity : Actor {
    const generated::Spawn* spawn = nullptr;  // the stage's record that it came from
    bool animationEffect = false;             // plays its animation once and vanishes
    int effectSpawnType = kLandDust;
    ActorHandle parentHandle = kNobody;
    bool summonedChild = false;
    bool visible = true;  // gone from the stage when not
    bool grabbed = false;
    bool subjectToScreen = false;
    int fallTicks = 0, recoveryTicks = 0, bouncesRemaining = 0, juggleRemaining = 4;
    int deathTicks = 0;
    bool deathFollowDeath = false;
    int freezeTicks = 0, preFreezePaletteMap = -1;
    int lifeTicks = -1;  // negative: no lifespan
    unsigned lastPlayerAttackId = 0;
    ScriptVariables scriptVars;

    PORT_DERIVED_FIELDS(Actor, spawn, animationEffect, effectSpawnType, parentHandle, summonedChild,
                        visible, grabbed, subjectToScreen, fallTicks, recoveryTicks,
                        bouncesRemaining, juggleRemaining, deathTicks, deathFollowDeath,
                        freezeTicks, preFreezePaletteMap, lifeTicks, lastPlayerAttackId, scriptVars)
};

// The names under which the hooks of one kind of actor are reported.
struct ActorEvents {
    const char* animationFrame;
    const char* onModelCopy;
};
constexpr ActorEvents kPlayerEvents = {"player-animation-frame", "player-onmodelcopy"};
constexpr ActorEvents kCoopEvents = {"coop-animation-frame", "coop-onmodelcopy"};
constexpr ActorEvents kEntityEvents = {"entity-animation-frame", "entity-onmodelcopy"};

constexpr const ActorEvents& eventsOf(ActorHandle actor) {
    if (actor == kPlayer1Handle) return kPlayerEvents;
    return actor <= kLastPlayerHandle ? kCoopEvents : kEntityEvents;
}

}  // namespace port
