// What thrown and shot things hit.

#include <algorithm>

#include "CombatStages.hpp"
#include "Factions.hpp"
#include "Flash.hpp"
#include "Frames.hpp"
#include "Log.hpp"
#include "ModelFacts.hpp"
#include "Projectiles.hpp"

namespace port {
namespace {

// Hooks may add projectiles, so that one is known by its place only.
class ProjectileHits {
  public:
    ProjectileHits(Combat& combat, std::size_t place)
        : combat_(combat), tick_(combat.tick), place_(place), frame_(self().animation.frame()) {
        const RuntimeProjectile& projectile = self();
        const float y = projectile.z + projectile.altitude;
        const bool attacks = frame_ && frame_->hasAttack;
        box_ = attacks ? attackFor(frame_, projectile.worldX, y, projectile.facing)
                       : bboxFor(frame_, projectile.worldX, y, projectile.facing);
    }

    void run() {
        if (isIdle() || hitEntities()) return;
        World& world = tick_.world;
        if (hitPlayer(world.player1, combat_.player1Body)) return;
        for (RuntimeCoopPlayer& player : world.coop) {
            if (hitPlayer(player, bodyOf(player))) return;
        }
    }

  private:
    [[nodiscard]] RuntimeProjectile& self() { return tick_.world.projectiles[place_]; }
    [[nodiscard]] bool attacksOne() {
        const generated::Animation* animation = self().animation.animation();
        return animation && animation->attackOne;
    }
    [[nodiscard]] bool isIdle() {
        const RuntimeProjectile& projectile = self();
        return !projectile.alive || !frame_ || (projectile.exploded && !frame_->hasAttack) ||
               (projectile.attackSpent && attacksOne());
    }

    [[nodiscard]] bool canHit(const Actor& target, bool legacy) {
        const RuntimeProjectile& projectile = self();
        if (projectile.hitTargets.contains(target.handle)) return false;
        if (projectile.hitMask != 0) {
            return (projectile.hitMask & openborTypeBit(target.model)) != 0;
        }
        return modelCanDamage(projectile.model, target.model, legacy, projectile.ownerModel);
    }

    // A body that flies without an attack still hurts.
    [[nodiscard]] Hit hit() {
        const RuntimeProjectile& projectile = self();
        Hit hit;
        if (frame_->hasAttack) {
            Strike strike;
            strike.frame = frame_;
            hit = hitOf(strike);
            hit.damage = std::max(0, hit.damage);
        } else {
            hit.damage = 1;
        }
        hit.knockDirection = static_cast<float>(projectile.facing);
        return hit;
    }

    void announce(const Actor& target, const RectF& body) {
        queueAttackFlash(tick_.world, *frame_, target, false, box_, body);
        playHitFx(tick_.events, self().animation.animation());
    }

    // True when the projectile hits nobody else in this tick.
    bool touched(ActorHandle target) {
        RuntimeProjectile& projectile = self();
        projectile.hitTargets.insert(target);
        // Of this animation: what a bomb spent in its flight does not hold its explosion.
        const bool spent = attacksOne();
        if (spent) projectile.attackSpent = true;
        const bool exploded = projectileContact(tick_, projectile);
        return exploded || spent || !self().alive;
    }

    bool hitEntities() {
        const RuntimeProjectile& projectile = self();
        const int types = projectile.hitMask != 0 ? projectile.hitMask : Crowd::kEverybody;
        bool ended = false;
        combat_.crowd.visitTouching(box_, types, [&](RuntimeEntity& target) {
            ended = hitEntity(target);
            return !ended;
        });
        return ended;
    }

    bool hitEntity(RuntimeEntity& target) {
        const RuntimeProjectile& projectile = self();
        const int type = openborTypeBit(target.model);
        const bool twin = type == kTypeProjectile && target.model == projectile.model;
        const bool legacy = projectile.fromPlayer && (type == kTypeEnemy || type == kTypeObstacle);
        if (twin || !canHit(target, legacy)) return false;
        announce(target, bodyOf(target));
        Hit taken = hit();
        taken.attacker = projectile.fromPlayer ? kPlayer1Handle : kNobody;
        damageEnemy(tick_, target, taken);
        combat_.crowd.changed(target);
        const bool ended = touched(target.handle);
        logLine("Projectile hit ", target.model->name);
        return ended;
    }

    template <class Player>
    bool hitPlayer(Player& target, const RectF& body) {
        if (!target.alive || !target.model || !overlaps(box_, body) ||
            !canHit(target, !self().fromPlayer)) {
            return false;
        }
        announce(target, body);
        hurt(target, hit());
        const bool ended = touched(target.handle);
        const bool first = target.handle == kPlayer1Handle;
        logLine(first ? "Projectile hit player" : "Projectile hit coop player");
        return ended;
    }
    void hurt(Player1& /*the only one*/, const Hit& taken) { damagePlayer(tick_, taken); }
    void hurt(RuntimeCoopPlayer& target, const Hit& taken) {
        damageCoopPlayer(tick_, target, taken);
    }

    Combat& combat_;
    Tick& tick_;
    std::size_t place_;
    const generated::Frame* frame_;  // as it was when its turn came, like the box
    RectF box_;
};

}  // namespace

void hitWithProjectiles(Combat& combat) {
    for (std::size_t place = 0; place < combat.tick.world.projectiles.size(); ++place) {
        ProjectileHits(combat, place).run();
    }
}

}  // namespace port
