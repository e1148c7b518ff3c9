// What happens when an actor enters a frame. Entry is noticed in the draw pass, by an index that
// differs from the last one: only the frame that is current there takes effect.

#include <algorithm>

#include "AnimationEnergy.hpp"
#include "AnimationLookup.hpp"
#include "Engine.hpp"

namespace port {
namespace {

constexpr int kQuakeIntensity = 2;
constexpr int kQuakeTicks = 4;
constexpr int kQuakeTicksPerLoop = 2;

bool fires(int wanted, std::size_t frame) {
    return wanted >= 0 && static_cast<std::size_t>(wanted) == frame;
}

// The weapon while one of its own animations runs, else the actor's model.
const generated::Character* frameOwner(const ActorView& actor,
                                       const generated::Animation& animation) {
    const generated::Character* weapon = actor.equippedWeapon;
    return weapon && exactAnimation(weapon, animation.name) == &animation ? weapon : actor.model;
}

// A displacement of the moment: neither the edges of the stage nor its terrain hold it.
void applyFrameMovement(const ActorView& actor, const generated::Frame& frame) {
    actor.worldX += frame.moveX * static_cast<float>(actor.facing);
    actor.z += frame.moveZ;
    actor.altitude = frame.hasSetA ? -frame.setA : actor.altitude - frame.moveA;
}

}  // namespace

void Engine::loadCurrentPlayerSprite() {
    settleAnimationEnergy(playerEnergyPending_, player_, playerHealth_, playerMp_);
    enterFrame(player1View());
}

void Engine::loadCoopSprite(std::size_t index) {
    if (coopPlayers_[index].model) enterFrame(coopView(index));
}

void Engine::loadEntitySprite(RuntimeEntity& entity) {
    enterFrame(entityView(entity));
}

void Engine::enterFrame(const ActorView& actor) {
    const generated::Frame* frame = actor.animation.frame();
    const std::size_t index = actor.animation.frameIndex();
    if (!frame || actor.lastFrame == index) return;
    actor.lastFrame = index;
    // Scripts may set another animation, which then takes effect in the next draw pass.
    const generated::Animation& animation = *actor.animation.animation();
    actor.context.local["frame"] = static_cast<double>(index);
    runAnimationCommand(actor, *frame, animation);
    triggerQuake(actor.model, &animation, index);
    if (fires(animation.flipFrame, index)) actor.facing = -actor.facing;
    if (fires(animation.weaponFrame, index)) setWeaponIndex(actor, animation.weaponIndex);
    queueChildSpawn(frameOwner(actor, animation), animation, index, actor.place(), actor.handle);
    if (fires(animation.unsummonFrame, index)) unsummonChildren(actor.handle, false);
    applyFrameMovement(actor, *frame);
    playFrameSound(*frame);
    const int palette = frame->draw.remap > 0 ? frame->draw.remap : actor.paletteMap;
    actor.sprite = sprites_.load(renderer_, dataRoot(), frame->sprite, actor.model, palette);
}

// Projectiles run no scripts and take no movement from their frames.
void Engine::loadProjectileSprite(RuntimeProjectile& projectile) {
    const generated::Frame* frame = projectile.animation.frame();
    const std::size_t index = projectile.animation.frameIndex();
    if (!frame || projectile.lastFrame == index) return;
    projectile.lastFrame = index;
    const generated::Animation& animation = *projectile.animation.animation();
    triggerQuake(projectile.model, &animation, index);
    if (fires(animation.flipFrame, index)) projectile.facing = -projectile.facing;
    queueChildSpawn(projectile.model, animation, index,
                    {projectile.worldX, projectile.z, projectile.altitude, projectile.facing},
                    kNobody);
    playFrameSound(*frame);
    projectile.sprite =
        sprites_.load(renderer_, dataRoot(), frame->sprite, projectile.model, frame->draw.remap);
}

void Engine::triggerQuake(const generated::Character* model, const generated::Animation* animation,
                          std::size_t frame) {
    if (!model || !animation || model->noQuake || !fires(animation->quakeFrame, frame)) return;
    const int intensity =
        animation->quakeIntensity > 0 ? animation->quakeIntensity : kQuakeIntensity;
    // Half the range of int is enough for a quake of a year.
    const int loops = std::min(animation->quakeLoops, INT32_MAX / kQuakeTicksPerLoop);
    const int ticks = loops > 0 ? loops * kQuakeTicksPerLoop : kQuakeTicks;
    quakeIntensity_ = std::max(quakeIntensity_, intensity);
    quakeTicks_ = std::max(quakeTicks_, ticks);
}

void Engine::applyLandFrame(AnimationPlayer& player, const ActorPlace& place, ActorHandle parent) {
    const generated::Animation* animation = player.animation();
    if (!animation || animation->landFrame < 0) return;
    const auto landFrame = static_cast<std::size_t>(animation->landFrame);
    if (landFrame >= animation->frameCount || player.frameIndex() >= landFrame) return;
    player.setFrame(landFrame);
    const char* dust = animation->landDustModel;
    const generated::Character* model = *dust == '\0' ? nullptr : findCharacter(dust);
    if (!model) return;
    PendingChildSpawn effect;
    effect.animationEffect = true;
    effect.model = model;
    effect.worldX = place.x;
    effect.z = place.z;
    effect.facing = place.facing;
    effect.parent = parent;
    pendingChildSpawns_.push_back(effect);
}

void Engine::applyDropFrameOnApex(AnimationPlayer& player, float before, float after) {
    const generated::Animation* animation = player.animation();
    if (!animation || animation->dropFrame < 0 || before >= 0 || after < 0) return;
    const auto dropFrame = static_cast<std::size_t>(animation->dropFrame);
    if (player.frameIndex() < dropFrame) player.setFrame(dropFrame);
}

}  // namespace port
