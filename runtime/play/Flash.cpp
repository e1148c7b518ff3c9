#include "Flash.hpp"

#include "AnimationLookup.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

const generated::Character* flashCalled(const char* name) {
    return *name == '\0' || equalsFolded(name, "none") ? nullptr : findCharacter(name);
}

const generated::Character* flashFor(const generated::Frame& frame,
                                     const generated::Character& target, bool blocked) {
    const auto* own =
        target.noAttackFlash ? nullptr : flashCalled(blocked ? frame.blockFlash : frame.hitFlash);
    return own ? own : flashCalled(blocked ? target.blockFlashModel : target.flashModel);
}

}  // namespace

void queueAttackFlash(World& world, const generated::Frame& frame, const Actor& target,
                      bool blocked, const RectF& attack, const RectF& body) {
    if (frame.attack.noFlash != 0 || !overlaps(attack, body) || !target.model) return;
    PendingChildSpawn flash;
    flash.model = flashFor(frame, *target.model, blocked);
    if (!flash.model) return;
    flash.animationEffect = true;
    flash.effectSpawnType = kAttackFlash;
    const PointF place = middleOf(attack, body);
    flash.worldX = place.x;
    flash.z = target.z;
    flash.altitude = place.y - target.z;
    const int outward = flash.worldX > target.worldX ? 1 : -1;
    flash.facing = flash.model->flipFlash ? outward : target.facing;
    world.pendingChildSpawns.push_back(flash);
}

}  // namespace port
