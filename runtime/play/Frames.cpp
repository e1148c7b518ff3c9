#include "Frames.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "AnimationEnergy.hpp"
#include "AnimationLookup.hpp"
#include "Pixels.hpp"
#include "Spawning.hpp"
#include "Weapons.hpp"

namespace port {
namespace {

constexpr int kQuakeIntensity = 2;
constexpr int kQuakeTicks = 4;
constexpr int kQuakeTicksPerLoop = 2;

bool fires(int wanted, std::size_t frame) {
    return wanted >= 0 && static_cast<std::size_t>(wanted) == frame;
}

// The weapon while one of its own animations runs, else the actor's model.
const generated::Character* frameOwner(const Actor& actor, const generated::Animation& animation) {
    const generated::Character* weapon = actor.equippedWeapon;
    return weapon && exactAnimation(weapon, animation.name) == &animation ? weapon : actor.model;
}

// A displacement of the moment: neither the edges of the stage nor its terrain hold it.
void applyFrameMovement(Actor& actor, const generated::Frame& frame) {
    actor.worldX += frame.moveX * static_cast<float>(actor.facing);
    actor.z += frame.moveZ;
    actor.altitude = frame.hasSetA ? -frame.setA : actor.altitude - frame.moveA;
}

void triggerQuake(Shake& shake, const generated::Character* model,
                  const generated::Animation& animation, std::size_t frame) {
    if (!model || model->noQuake || !fires(animation.quakeFrame, frame)) return;
    const int intensity = animation.quakeIntensity > 0 ? animation.quakeIntensity : kQuakeIntensity;
    // Half the range of int is enough for a quake of a year.
    const int loops = std::min(animation.quakeLoops, INT32_MAX / kQuakeTicksPerLoop);
    const int ticks = loops > 0 ? loops * kQuakeTicksPerLoop : kQuakeTicks;
    shake.quakeIntensity = std::max(shake.quakeIntensity, intensity);
    shake.quakeTicks = std::max(shake.quakeTicks, ticks);
}

// A bare name or number is no file.
void playFrameSound(Events& events, const generated::Frame& frame) {
    const std::string_view sound = frame.sound;
    if (sound.find_first_of("/\\.") == sound.npos) return;
    events.sounds.push_back({sound, "Frame sound diagnostic: "});
}

void runFrameCommand(Tick& tick, Actor& actor, const generated::Animation& animation,
                     std::size_t index) {
    if (!actor.model) return;
    const generated::Frame& frame = animation.frames[index];
    tick.scripts.runFrameCommand({.event = eventsOf(actor.handle).animationFrame,
                                  .model = actor.model->name,
                                  .helper = actor.model->animationScript,
                                  .animation = animation.name,
                                  .frame = index,
                                  .sprite = frame.sprite,
                                  .inlineScript = animation.inlineScript,
                                  .command = frame.animationCommand},
                                 actor.scriptCtx);
}

void enterFrame(Tick& tick, Actor& actor) {
    const generated::Frame* frame = actor.animation.frame();
    const std::size_t index = actor.animation.frameIndex();
    if (!frame || actor.lastFrame == index) return;
    actor.lastFrame = index;
    // A script may set another animation: all of this frame still takes effect and is shown, and
    // the new one's takes effect in the next pass.
    const generated::Animation& animation = *actor.animation.animation();
    actor.scriptCtx.local["frame"] = static_cast<double>(index);
    runFrameCommand(tick, actor, animation, index);
    triggerQuake(tick.world.shake, actor.model, animation, index);
    if (fires(animation.flipFrame, index)) actor.facing = -actor.facing;
    if (fires(animation.weaponFrame, index)) setWeaponIndex(tick, actor, animation.weaponIndex);
    queueChildSpawn(tick.world, frameOwner(actor, animation), animation, index, actor.place(),
                    actor.handle);
    if (fires(animation.unsummonFrame, index)) unsummonChildren(tick, actor.handle, false);
    applyFrameMovement(actor, *frame);
    playFrameSound(tick.events, *frame);
    const int palette = frame->draw.remap > 0 ? frame->draw.remap : actor.paletteMap;
    actor.shown = {frame, actor.model, palette};
}

// Projectiles run no scripts and take no movement from their frames.
void enterFrame(Tick& tick, RuntimeProjectile& projectile) {
    const generated::Frame* frame = projectile.animation.frame();
    const std::size_t index = projectile.animation.frameIndex();
    if (!frame || projectile.lastFrame == index) return;
    projectile.lastFrame = index;
    const generated::Animation& animation = *projectile.animation.animation();
    triggerQuake(tick.world.shake, projectile.model, animation, index);
    if (fires(animation.flipFrame, index)) projectile.facing = -projectile.facing;
    queueChildSpawn(tick.world, projectile.model, animation, index, projectile.place(), kNobody);
    playFrameSound(tick.events, *frame);
    projectile.shown = {frame, projectile.model, frame->draw.remap};
}

void enterEntityFrame(Tick& tick, RuntimeEntity& entity) {
    if (!entity.visible || !entity.model) return;
    tick.scripts.runHook(entity.model->onDrawScript, entity.scriptCtx, "entity-ondraw");
    enterFrame(tick, entity);
}

}  // namespace

void enterFrames(Tick& tick) {
    World& world = tick.world;
    Player1& player1 = world.player1;
    if (player1.animation.frame()) {
        if (player1.model) {
            tick.scripts.runHook(player1.model->onDrawScript, player1.scriptCtx, "player-ondraw");
        }
        // The others settle theirs in their update.
        settleAnimationEnergy(player1);
        enterFrame(tick, player1);
    }
    for (RuntimeCoopPlayer& player : world.coop) {
        if (player.model) enterFrame(tick, player);
    }
    world.entities.visit([&](RuntimeEntity& entity) { enterEntityFrame(tick, entity); });
    for (RuntimeProjectile& projectile : world.projectiles) {
        if (projectile.alive) enterFrame(tick, projectile);
    }
}

void applyLandFrame(World& world, AnimationPlayer& player, const ActorPlace& place,
                    ActorHandle parent) {
    const generated::Animation* animation = player.animation();
    if (!animation || animation->landFrame < 0) return;
    const auto landFrame = static_cast<std::size_t>(animation->landFrame);
    if (landFrame >= animation->frameCount || player.frameIndex() >= landFrame) return;
    player.setFrame(landFrame);
    queueEffect(world, animation->landDustModel, kLandDust, place, parent);
}

void applyDropFrameOnApex(AnimationPlayer& player, float before, float after) {
    const generated::Animation* animation = player.animation();
    if (!animation || animation->dropFrame < 0 || before >= 0 || after < 0) return;
    const auto dropFrame = static_cast<std::size_t>(animation->dropFrame);
    if (player.frameIndex() < dropFrame) player.setFrame(dropFrame);
}

void playHitFx(Events& events, const generated::Animation* animation) {
    if (animation) events.sounds.push_back({animation->hitFx, "hitfx diagnostic: "});
}

void playDieSound(Events& events, const generated::Character* model) {
    if (model) events.sounds.push_back({model->dieSound, "diesound diagnostic: "});
}

void shakeScreen(World& world) {
    Shake& shake = world.shake;
    shake.rockX = shake.rockY = 0;
    const auto tick = static_cast<double>(world.tick);
    if (shake.quakeTicks > 0) {
        const double strength = std::max(1, shake.quakeIntensity);
        shake.rockX = roundedPixel(std::sin(tick * 2.13) * strength);
        shake.rockY = roundedPixel(std::cos(tick * 1.71) * strength);
        if (--shake.quakeTicks == 0) shake.quakeIntensity = 0;
    }
    const double t = tick / kTicksPerSecond;
    switch (world.stage.row ? world.stage.row->rockMode : 0) {
        case 1:
            shake.rockY = roundedPixel(std::sin(t * 1.8) * 2);
            break;
        case 2: {
            const double cycle = std::fmod(t, 2.2);
            if (cycle <= 1.55) break;
            const double q = (cycle - 1.55) * 24;
            shake.rockX = roundedPixel(std::sin(q) * 3);
            shake.rockY = roundedPixel(std::cos(q * 0.75) * 2);
            break;
        }
        case 3:
            shake.rockX = roundedPixel(std::sin(t * 17) * 1.5 + std::sin(t * 3.7));
            shake.rockY = roundedPixel(std::cos(t * 13) * 1.2 + std::sin(t * 2.1) * 0.8);
            break;
        default:
            break;
    }
}

}  // namespace port
