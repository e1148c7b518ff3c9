#include "Players.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "AnimationEnergy.hpp"
#include "AnimationLookup.hpp"
#include "Log.hpp"
#include "ModelFacts.hpp"
#include "PlayerSpawn.hpp"
#include "Weapons.hpp"

namespace port {
namespace {

constexpr std::uint64_t kGuardTicks = 60;

int baseLives(const generated::Stage& stage) {
    return stage.lives > 0 ? stage.lives : 1;
}

void place(World& world, PlayerActor& player, int slot, int logicalWidth) {
    const StagePlayerSpawn spawn = stagePlayerSpawn(world.stage.row, slot, world.camera.x,
                                                    logicalWidth, world.stage.scrollDir);
    player.worldX = spawn.x;
    player.z = spawn.z;
    player.altitude = spawn.altitude;
    player.facing = spawn.facing;
}

void fillVitals(PlayerActor& player) {
    player.health = player.maxHealth = std::max(1, player.model->health);
    player.mp = player.maxMp = std::max(0, player.model->mp);
    player.guardPoints = std::max(0, player.model->guardPoints);
}

// How scripts draw whoever has this handle outlasts a game.
void keepDrawMethod(PlayerActor& player, const PlayerActor& before) {
    player.hasScriptDraw = before.hasScriptDraw;
    player.scriptDraw = before.scriptDraw;
}

// So does what player 1's scripts have stored.
void startPlayer1(World& world, const RuntimeConfig& config, bool keepLooks) {
    Player1 player = freshPlayer<Player1>(0, kPlayer1Handle);
    Player1& before = world.player1;
    player.model = before.model;
    player.scriptCtx.local.merge(before.scriptCtx.local);
    keepDrawMethod(player, before);
    if (keepLooks) {
        player.paletteMap = before.paletteMap;
        player.score = before.score;
    }
    fillVitals(player);
    startIdle(player);
    before = std::move(player);
    placePlayer1(world, config.logicalWidth);
}

void buildCoopPlayers(World& world, const RuntimeConfig& config) {
    const auto before = std::exchange(world.coop, {});
    const auto models = selectableModels();
    if (models.empty()) return;
    for (int slot = 1; slot < std::min(kMostPlayers, config.maxPlayers); ++slot) {
        const PlayerSlot& place = world.slots[static_cast<std::size_t>(slot)];
        if (!place.joined) continue;
        const auto chosen = static_cast<std::size_t>(std::max(0, place.selectIndex));
        addCoopPlayer(world, config, slot, *models[chosen % models.size()]);
    }
    for (std::size_t i = 0; i < std::min(before.size(), world.coop.size()); ++i) {
        keepDrawMethod(world.coop[i], before[i]);
    }
}

// Takes a life, or a credit that buys a full set of them. The last life is the counter at 1.
bool takeRespawnResource(PlayerActor& owner, int base) {
    if (owner.livesRemaining > 1) {
        --owner.livesRemaining;
        return true;
    }
    if (owner.creditsRemaining <= 0) return false;
    --owner.creditsRemaining;
    owner.livesRemaining = base;
    return true;
}

void revive(PlayerActor& player) {
    player.alive = true;
    player.health = std::max(1, player.maxHealth);
    player.mp = std::max(0, player.maxMp);
    player.verticalVelocity = player.scriptVelocityX = player.scriptVelocityZ = 0;
    player.hitStun = player.attackTicks = player.attackCooldown = 0;
    player.jumping = player.runningJump = false;
    startIdle(player);
    player.lastFrame = kNoFrame;
}

void respawnPlayer1(Tick& tick) {
    Player1& player = tick.world.player1;
    if (!player.model) return;
    placePlayer1(tick.world, tick.config.logicalWidth);
    revive(player);
    player.jumpVelocityX = player.jumpVelocityZ = 0;
    player.fallTicks = player.recoveryTicks = 0;
    tick.scripts.runHook(player.model->onSpawnScript, player.scriptCtx, "player-respawn");
}

void respawnCoopPlayer(Tick& tick, RuntimeCoopPlayer& player) {
    placeCoopPlayer(tick.world, player, tick.config.logicalWidth);
    revive(player);
    player.knockdownAir = false;
    tick.scripts.runHook(player.model->onSpawnScript, player.scriptCtx, "coop-respawn");
}

}  // namespace

std::vector<const generated::Character*> selectableModels() {
    std::vector<const generated::Character*> models;
    const std::span all(generated::kCharacters, generated::kCharacterCount);
    for (const generated::Character& model : all) {
        if (openborTypeBit(&model) == kTypePlayer) models.push_back(&model);
    }
    if (models.empty() && !all.empty()) models.push_back(&all.front());
    return models;
}

void startIdle(Actor& actor) {
    actor.animation.setAnimation(findAnimation(actor.model, "idle"));
    if (!actor.animation.frame()) actor.animation.setAnimation(findAnimation(actor.model, "walk"));
}

void placePlayer1(World& world, int logicalWidth) {
    place(world, world.player1, 0, logicalWidth);
}

void placeCoopPlayer(World& world, RuntimeCoopPlayer& player, int logicalWidth) {
    place(world, player, player.playerSlot, logicalWidth);
}

void setPlayerVitals(Player1& player, bool keepHealth) {
    if (keepHealth) {
        player.health = std::clamp(player.health, 1, std::max(1, player.maxHealth));
    } else if (player.model) {
        fillVitals(player);
    }
}

int gamepadOfSlot(const RuntimeConfig& config, int slot) {
    const std::array<int, kMostPlayers> pads = {config.player1Gamepad, config.player2Gamepad,
                                                config.player3Gamepad, config.player4Gamepad};
    return pads[static_cast<std::size_t>(slot)];
}

RuntimeCoopPlayer& addCoopPlayer(World& world, const RuntimeConfig& config, int slot,
                                 const generated::Character& model) {
    auto player = freshPlayer<RuntimeCoopPlayer>(slot, kFirstCoopHandle + world.coop.size());
    player.model = &model;
    player.playerSlot = slot;
    player.gamepadId = gamepadOfSlot(config, slot);
    player.paletteMap = slot;
    fillVitals(player);
    startIdle(player);
    placeCoopPlayer(world, player, config.logicalWidth);
    return world.coop.emplace_back(std::move(player));
}

void furnishPlayer(Tick& tick, PlayerActor& player) {
    const generated::Stage& stage = *tick.world.stage.row;
    player.livesRemaining = baseLives(stage);
    player.creditsRemaining = std::max(0, stage.credits);
    if (stage.setWeapon > 0) setWeaponIndex(tick, player, stage.setWeapon);
}

void startPlayers(Tick& tick, bool keepLooks) {
    World& world = tick.world;
    startPlayer1(world, tick.config, keepLooks);
    buildCoopPlayers(world, tick.config);
    furnishPlayer(tick, world.player1);
    for (RuntimeCoopPlayer& player : world.coop) furnishPlayer(tick, player);
}

void runPlayerSpawnScripts(Tick& tick) {
    Player1& player1 = tick.world.player1;
    tick.scripts.runHook(player1.model->onSpawnScript, player1.scriptCtx, "player-onspawn");
    for (RuntimeCoopPlayer& player : tick.world.coop) {
        tick.scripts.runHook(player.model->onSpawnScript, player.scriptCtx, "coop-onspawn");
    }
}

void respawnDeadPlayers(Tick& tick) {
    World& world = tick.world;
    Player1& player1 = world.player1;
    const generated::Stage* stage = world.stage.row;
    const int base = stage ? baseLives(*stage) : 1;
    const auto log = [](int number, const PlayerActor& owner) {
        logLine("Respawn P", number, " lives=", owner.livesRemaining,
                " credits=", owner.creditsRemaining);
    };
    if (!player1.alive && takeRespawnResource(player1, base)) {
        respawnPlayer1(tick);
        log(1, player1);
    }
    for (RuntimeCoopPlayer& player : world.coop) {
        PlayerActor& owner = stage && stage->noShare > 0 ? static_cast<PlayerActor&>(player)
                                                         : static_cast<PlayerActor&>(player1);
        if (player.alive || !takeRespawnResource(owner, base)) continue;
        respawnCoopPlayer(tick, player);
        log(player.playerSlot + 1, owner);
    }
}

bool anyPlayerAlive(const World& world) {
    return world.player1.alive || std::ranges::any_of(world.coop, &RuntimeCoopPlayer::alive);
}

void regenerateGuard(World& world) {
    if (world.tick % kGuardTicks != 0) return;
    world.visitActors([](Actor& actor) {
        if (!actor.model || actor.model->guardPoints <= 0) return;
        const std::int64_t more =
            std::int64_t{actor.guardPoints} + std::max(1, actor.model->guardRate);
        actor.guardPoints =
            static_cast<int>(std::min<std::int64_t>(actor.model->guardPoints, more));
    });
}

}  // namespace port
