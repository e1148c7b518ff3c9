#include "Projectiles.hpp"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "AnimationLookup.hpp"
#include "Frames.hpp"
#include "Log.hpp"
#include "Spawning.hpp"
#include "StageRules.hpp"
#include "Weapons.hpp"

namespace port {
namespace {

constexpr float kStillFalling = 0.05F;  // pixels a tick; a slower fall no longer bounces

// What the animation itself names comes before this. Empty where the model has nothing of the kind.
std::string_view projectileNameOf(const generated::Character& model, bool bomb) {
    if (bomb) return model.bombModel;
    return *model.projectModel != '\0' ? model.projectModel : model.knifeModel;
}

std::string_view projectileName(const Actor& actor, const generated::Animation& animation,
                                bool bomb) {
    std::string_view name = bomb ? animation.custBomb : animation.custKnife;
    if (name.empty() && actor.equippedWeapon) name = projectileNameOf(*actor.equippedWeapon, bomb);
    if (name.empty()) name = projectileNameOf(*actor.model, bomb);
    return name;
}

// False, with nothing changed, unless it is a bomb that can go off in this way.
bool detonateProjectile(Tick& tick, RuntimeProjectile& projectile, bool contact) {
    if (!projectile.bomb || projectile.exploded) return false;
    const auto* explosion = exactAnimation(projectile.model, contact ? "attack2" : "attack1");
    if (!explosion) {
        if (contact && projectile.model->removeConfig != 0) projectile.alive = false;
        return false;
    }
    projectile.exploded = true;
    projectile.vx = projectile.vy = projectile.vz = 0;
    projectile.subjectToGravity = false;
    projectile.animation.setAnimation(explosion);
    projectile.lastFrame = kNoFrame;
    projectile.hitTargets.clear();
    projectile.life = animationDuration(explosion);
    playDieSound(tick.events, projectile.model);
    return true;
}

void hitGround(Tick& tick, RuntimeProjectile& projectile) {
    if (projectile.bouncesLeft > 0 && std::abs(projectile.vy) > kStillFalling) {
        projectile.altitude = -0.1F;
        projectile.vy = -std::abs(projectile.vy) * std::max(0.0F, projectile.bounceFactor);
        --projectile.bouncesLeft;
        logLine("Projectile bounce: ", projectile.model->name, " left=", projectile.bouncesLeft);
    } else if (projectile.bomb) {
        projectile.altitude = 0;
        projectile.alive = detonateProjectile(tick, projectile, false);
    } else {
        projectile.alive = false;
    }
}

void updateProjectile(Tick& tick, RuntimeProjectile& projectile) {
    projectile.alive = --projectile.life > 0;
    if (!projectile.alive) return;
    projectile.worldX += projectile.vx;
    projectile.altitude += projectile.vy;
    projectile.z += projectile.vz;
    if (projectile.subjectToGravity && !projectile.exploded) {
        const float before = projectile.vy;
        projectile.vy += tick.config.gravity * (1 - projectile.model->antigravity);
        applyDropFrameOnApex(projectile.animation, before, projectile.vy);
        if (projectile.altitude >= 0) hitGround(tick, projectile);
    }
    projectile.animation.update(1);
    const int width = tick.config.logicalWidth;
    const int half = stageView(width) / 2;
    const auto margin = static_cast<float>(half);
    const float onScreen = projectile.worldX - tick.world.camera.x;
    if (onScreen < -margin || onScreen > static_cast<float>(width) + margin) {
        projectile.alive = false;
    }
}

}  // namespace

bool spawnProjectile(Tick& tick, const Shot& shot) {
    auto& projectiles = tick.world.projectiles;
    if (!shot.model || projectiles.size() >= kMostProjectiles) return false;
    const generated::Character& model = *shot.model;
    RuntimeProjectile projectile;
    projectile.model = &model;
    projectile.ownerModel = shot.owner;
    projectile.worldX = shot.x;
    projectile.z = shot.z;
    projectile.altitude = shot.altitude;
    projectile.vx = shot.vx * static_cast<float>(shot.facing);
    projectile.vy = -shot.vy;
    projectile.vz = shot.vz;
    projectile.facing = shot.facing;
    projectile.life = tick.config.projectileLifetime;
    projectile.bomb = shot.bomb;
    projectile.fromPlayer = shot.fromPlayer;
    projectile.subjectToGravity = shot.bomb || model.subjectToGravity;
    projectile.bouncesLeft = std::max(0, model.bounce);
    if (model.bounceFactor > 0) projectile.bounceFactor = model.bounceFactor;
    projectile.hitMask = model.projectileHitMask;
    startFirstOf(projectile.animation, model, {"idle", "attack1"});
    projectiles.push_back(projectile);
    logLine("Projectile spawned: ", model.name, " kind=", shot.bomb ? "bomb" : "knife",
            " vx=", projectile.vx, " vy=", projectile.vy);
    return true;
}

void maybeSpawnProjectile(Tick& tick, Actor& actor, bool fromPlayer) {
    constexpr float kNoThrow = 0.001F;
    const generated::Animation* animation = actor.animation.animation();
    if (!actor.model || !animation || actor.projectileFired) return;
    const bool bomb = animation->throwFrame < 0;
    const int trigger = bomb ? animation->tossFrame : animation->throwFrame;
    if (trigger < 0 || actor.animation.frameIndex() < static_cast<std::size_t>(trigger)) return;

    actor.projectileFired = true;
    const std::string_view name = projectileName(actor, *animation, bomb);
    const generated::Character* model = name.empty() ? nullptr : findCharacter(name.data());
    if (!model) {
        if (!name.empty()) warnLine("Projectile model missing: ", name);
        return;
    }
    Shot shot{model, actor.worldX, actor.z, actor.altitude, actor.facing};
    shot.altitude -= static_cast<float>(animation->projectileOffsetY);
    shot.vx = animation->projectileVelocityX;
    shot.vy = animation->projectileVelocityY;
    shot.vz = animation->projectileVelocityZ;
    if (bomb && std::abs(shot.vy) < kNoThrow) {
        shot.vy = static_cast<float>(std::max(1, model->jumpHeight));
    }
    shot.bomb = bomb;
    shot.fromPlayer = fromPlayer;
    shot.owner = actor.model;
    spawnProjectile(tick, shot);
    const generated::Character* weapon = actor.equippedWeapon;
    if (weapon && weapon->shootNum > 0 && actor.weaponUses > 0) --actor.weaponUses;
}

void loseSpentWeapon(Tick& tick, Actor& actor) {
    const generated::Character* weapon = actor.equippedWeapon;
    if (!weapon || weapon->shootNum <= 0 || actor.weaponUses > 0) return;
    if (weapon->typeShot && actor.weaponItemModel) {
        dropWeapon(tick, actor, false);
    } else {
        setWeaponIndex(tick, actor, 0);
    }
}

void updateProjectiles(Tick& tick) {
    auto& projectiles = tick.world.projectiles;
    for (RuntimeProjectile& projectile : projectiles) {
        if (projectile.alive) updateProjectile(tick, projectile);
    }
    std::erase_if(projectiles, [](const RuntimeProjectile& each) { return !each.alive; });
}

bool projectileContact(Tick& tick, RuntimeProjectile& projectile) {
    if (projectile.bomb) return detonateProjectile(tick, projectile, true);
    if (projectile.model->removeConfig != 0) projectile.alive = false;
    return false;
}

}  // namespace port
