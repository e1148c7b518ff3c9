// The world as a number, to compare runs by.

#include <algorithm>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "Engine.hpp"
#include "WorldHash.hpp"

namespace port {
namespace {

// Entities are named by their place, since their addresses differ from run to run.
class WorldWriter {
  public:
    explicit WorldWriter(const std::deque<RuntimeEntity>& entities) {
        for (std::size_t i = 0; i < entities.size(); ++i) {
            places_.emplace(reinterpret_cast<ActorHandle>(&entities[i]), kLastPlayerHandle + 1 + i);
        }
    }

    template <class... Values>
    void add(const Values&... values) {
        (addOne(values), ...);
    }
    [[nodiscard]] std::uint64_t value() const { return hash_.value(); }

  private:
    static constexpr ActorHandle kGone = static_cast<ActorHandle>(-1);
    struct Handle {
        ActorHandle value;
    };

    template <class Value>
    void addOne(const Value& value) {
        hash_.add(value);
    }
    void addOne(const generated::Character* model) { hash_.add(model ? model->name : ""); }
    void addOne(const AnimationPlayer& player) {
        hash_.add(player.animation() ? player.animation()->name : "", player.frameIndex(),
                  player.tick(), player.finished());
    }
    void addOne(const PendingEnergyCost& cost) { hash_.add(cost.cost, cost.mode, cost.hit); }
    // An entity of an earlier stage has no place any more.
    [[nodiscard]] ActorHandle placeOf(ActorHandle handle) const {
        if (handle <= kLastPlayerHandle) return handle;
        const auto known = places_.find(handle);
        return known == places_.end() ? kGone : known->second;
    }
    void addOne(const Handle& handle) { hash_.add(placeOf(handle.value)); }
    void addOne(const std::set<ActorHandle>& handles) {
        std::vector<ActorHandle> places;
        for (const ActorHandle handle : handles) places.push_back(placeOf(handle));
        std::ranges::sort(places);
        hash_.add(places.size());
        for (const ActorHandle place : places) hash_.add(place);
    }
    // Arrays may hold themselves: they count by their sizes.
    void addOne(const ScriptValue& value) {
        hash_.add(value.index());
        if (const auto* number = std::get_if<double>(&value)) hash_.add(*number);
        if (const auto* text = std::get_if<std::string>(&value)) hash_.add(*text);
        if (const auto* truth = std::get_if<bool>(&value)) hash_.add(*truth);
        if (const auto* handle = std::get_if<std::uintptr_t>(&value)) addOne(Handle{*handle});
        const auto* array = std::get_if<ScriptArrayPtr>(&value);
        if (array && *array) hash_.add((*array)->indexed.size(), (*array)->named.size());
    }
    void addOne(const std::unordered_map<std::string, ScriptValue>& variables) {
        std::vector<std::string_view> names;
        for (const auto& variable : variables) names.push_back(variable.first);
        std::ranges::sort(names);
        hash_.add(names.size());
        for (const std::string_view name : names) {
            hash_.add(name);
            addOne(variables.at(std::string(name)));
        }
    }
    void addOne(const EntityBinding& b) {
        add(Handle{b.target}, b.x, b.z, b.a, b.direction, b.config, b.sort);
    }
    template <class Value>
    void addOne(const std::unordered_map<ActorHandle, Value>& byActor) {
        std::map<ActorHandle, Value> inOrder;
        for (const auto& [handle, value] : byActor) inOrder.emplace(placeOf(handle), value);
        hash_.add(byActor.size());
        for (const auto& [place, value] : inOrder) add(place, value);
    }
    void addOne(const PendingChildSpawn& c) {
        add(c.animationEffect, c.effectSpawnType, c.model, c.worldX, c.z, c.altitude, c.facing,
            Handle{c.parent}, c.summon);
    }
    void addOne(const PendingWeaponDrop& d) {
        add(d.itemModel, d.worldX, d.z, d.altitude, d.facing, d.remainingDrops);
    }
    void addOne(const RuntimeCoopPlayer& p) {
        add(p.energyPending, p.model, p.animation, p.worldX, p.z, p.altitude, p.verticalVelocity,
            p.health, p.maxHealth, p.mp, p.maxMp, p.hitStun, p.attackTicks, p.attackCooldown,
            p.facing, p.playerSlot, p.livesRemaining, p.creditsRemaining, p.paletteMap, p.score,
            p.reactionType, p.landingDamage, p.landingMode, p.landingType, p.guardPoints,
            p.blockState, p.blocking, p.knockdownMeter, p.scriptVelocityX, p.scriptVelocityZ,
            p.alive, p.jumping, p.knockdownAir, p.runningJump, p.attackHasHit, p.projectileFired,
            p.invincibleTicks, p.attackHits, p.comboStep, p.comboBranch, p.comboWindow,
            p.equippedWeapon, p.weaponUses, p.weaponItemModel, p.weaponDropsRemaining, p.attackId,
            p.landingHitTargets, p.lastFrame, p.scriptCtx.local);
    }
    void addOne(const RuntimeEntity& e) {
        add(e.energyPending, e.animationEffect, e.effectSpawnType, e.model, e.animation, e.worldX,
            e.z, e.health, e.maxHealth, e.mp, e.maxMp, e.knockdownMeter, e.hitStun, e.attackTicks,
            e.attackCooldown, e.attackHits, e.attackHasHit, e.projectileFired, e.facing,
            e.fallTicks, e.landingDamage, e.landingMode, e.landingType, e.recoveryTicks,
            e.invincibleTicks, e.juggleRemaining, e.altitude, e.verticalVelocity,
            e.bouncesRemaining, e.grabbed, e.alive, e.visible, e.subjectToScreen, e.deathTicks,
            e.deathFollowDeath, e.freezeTicks, e.preFreezePaletteMap, e.lifeTicks, e.paletteMap,
            e.reactionType, e.guardPoints, e.blockState, e.blocking, e.scriptVelocityX,
            e.scriptVelocityZ, e.equippedWeapon, e.weaponUses, e.weaponItemModel,
            e.weaponDropsRemaining, Handle{e.parentHandle}, e.summonedChild, e.scriptVars,
            e.lastPlayerAttackId, e.landingHitTargets, e.lastFrame, e.scriptCtx.local);
    }
    void addOne(const RuntimeProjectile& p) {
        add(p.model, p.ownerModel, p.animation, p.worldX, p.z, p.altitude, p.vx, p.vy, p.vz,
            p.facing, p.life, p.bomb, p.exploded, p.attackSpent, p.hitTargets, p.fromPlayer,
            p.alive, p.subjectToGravity, p.bouncesLeft, p.bounceFactor, p.hitMask, p.hitId,
            p.lastFrame);
    }

    std::unordered_map<ActorHandle, ActorHandle> places_;
    WorldHash hash_;
};

}  // namespace

std::uint64_t Engine::worldHash() const {
    WorldWriter world(entities_);
    world.add(static_cast<int>(frontendState_), tickCounter_, scriptVm_.globals(),
              stageScriptCtx_.local);
    world.add(playerModel_, player_, playerWorldX_, playerZ_, playerAltitude_,
              playerVerticalVelocity_, playerJumpVelocityX_, playerJumpVelocityZ_, playerFacing_,
              playerScriptVelocityX_, playerScriptVelocityZ_, lastFrame_);
    world.add(playerHealth_, playerMaxHealth_, playerMp_, playerMaxMp_, playerAlive_,
              playerPaletteMap_, playerScore_, playerGuardPoints_, playerBlockState_,
              playerBlocking_, playerKnockdownMeter_, livesRemaining_, creditsRemaining_);
    world.add(playerHitStun_, playerAttackTicks_, playerAttackCooldown_, playerComboStep_,
              playerComboBranch_, playerComboWindow_, playerFallTicks_, playerRecoveryTicks_,
              playerInvincibleTicks_, playerDashTicks_, playerReactionType_, playerLandingDamage_,
              playerLandingMode_, playerLandingType_, playerQueuedAttack_, playerProjectileFired_,
              playerJumping_, playerRunningJump_, playerAnimJumpTriggered_, playerAttackHasHit_,
              playerAttackHits_, playerAttackId_, playerLandingHitTargets_, playerEnergyPending_,
              grabbedEntity_, grabHoldTicks_);
    world.add(equippedWeapon_, weaponUses_, weaponItemModel_, weaponDropsRemaining_,
              playerScriptCtx_.local);
    for (const auto& variables : playerScriptVars_) world.add(variables);
    world.add(stageIndex_, cameraX_, cameraMaxX_, stageLength_, verticalStageScroll_,
              verticalScroll_, scrollDir_, cameraFixed_, allowBacktrack_, scrollBlocked_, noJoin_,
              combatLocked_, groupRefillActive_, stageComplete_, bossMusicStarted_, combatLockX_,
              backtrackFloor_, groupMin_, groupMax_, nextSpawn_, nextInstruction_,
              pendingBranchTarget_, pendingBranchImmediate_, quakeTicks_, quakeIntensity_);
    world.add(verticalScrollSign_, scriptAntigravity_, entityBindings_);
    for (const PendingChildSpawn& child : pendingChildSpawns_) world.add(child);
    for (const PendingWeaponDrop& drop : pendingWeaponDrops_) world.add(drop);
    for (const std::uint8_t state : spawnState_) world.add(state);
    for (const std::uint8_t state : eventState_) world.add(state);
    world.add(coopPlayers_.size(), entities_.size(), projectiles_.size());
    for (const RuntimeCoopPlayer& player : coopPlayers_) world.add(player);
    for (const RuntimeEntity& entity : entities_) world.add(entity);
    for (const RuntimeProjectile& projectile : projectiles_) world.add(projectile);
    return world.value();
}

}  // namespace port
