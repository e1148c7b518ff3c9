#include "CameraRules.hpp"

#include <algorithm>

#include "StageRules.hpp"

namespace port {
namespace {

constexpr float kVerticalStep = 100.0F / 60;                    // pixels a tick
constexpr float kDeadZoneLeft = 0.35F, kDeadZoneRight = 0.65F;  // of the view
constexpr float kLeastLock = 1;                                 // a lock further left holds nothing

float leftwardTarget(const Camera& camera, float target, float last, bool locked) {
    target = std::clamp(target, 0.0F, last);
    return locked ? std::max(target, camera.combatLockX) : target;
}

float eitherWayTarget(const StageRun& stage, const Camera& camera, float target, float last,
                      bool locked) {
    target = std::clamp(target, std::clamp(camera.backtrackFloor, 0.0F, last), last);
    if (stage.scrollBlocked) target = std::min(target, camera.x);
    return locked ? std::min(target, camera.combatLockX) : target;
}

// The camera never goes back; a pixel of slack keeps it from trembling.
float rightwardTarget(const StageRun& stage, const Camera& camera, float target, float last,
                      bool locked) {
    const float scrollMax = stage.scrollBlocked ? std::min(last, camera.x) : last;
    target = std::clamp(target, 0.0F, std::max(0.0F, scrollMax));
    if (locked) target = std::min(target, std::max(camera.combatLockX, camera.maxX));
    return target < camera.maxX - 1 ? camera.maxX : target;
}

}  // namespace

float cameraDrawnTo(const Camera& camera, float focus, float view) {
    if (focus > camera.x + view * kDeadZoneRight) return focus - view * kDeadZoneRight;
    if (focus < camera.x + view * kDeadZoneLeft) return focus - view * kDeadZoneLeft;
    return camera.x;
}

Camera followedCamera(const StageRun& stage, const Camera& camera, CameraFocus focus,
                      int logicalWidth) {
    Camera next = camera;
    if (stage.verticalScroll) {
        next.x = next.maxX = 0;
        return next;
    }
    const auto view = static_cast<float>(stageView(logicalWidth));
    const float last = std::max(0.0F, static_cast<float>(stage.length) - view);
    if (camera.fixed) {
        next.x = std::clamp(camera.x, 0.0F, last);
    } else if (!focus.someoneLives) {
        return next;
    } else {
        const bool locked = camera.combatLocked && camera.combatLockX > kLeastLock;
        float target = cameraDrawnTo(camera, focus.x, view);
        if (stage.scrollDir < 0) {
            target = leftwardTarget(camera, target, last, locked);
        } else if (stage.allowBacktrack) {
            target = eitherWayTarget(stage, camera, target, last, locked);
        } else {
            target = rightwardTarget(stage, camera, target, last, locked);
        }
        if (stage.row->scrollSpeed > 0) {
            const auto step = static_cast<float>(stage.row->scrollSpeed);
            target = std::clamp(target, camera.x - step, camera.x + step);
        }
        next.x = target;
    }
    next.maxX = std::max(camera.maxX, next.x);
    return next;
}

float followedVerticalScroll(const StageRun& stage) {
    const bool scrolls = stage.verticalScroll && !stage.scrollBlocked;
    return stage.verticalStageScroll + (scrolls ? kVerticalStep : 0);
}

Camera combatLockedCamera(const Camera& camera, bool enemiesAreLeft) {
    Camera next = camera;
    if (enemiesAreLeft && !camera.combatLocked && camera.x > kLeastLock) {
        next.combatLocked = true;
        next.combatLockX = camera.x;
    } else if (!enemiesAreLeft) {
        next.combatLocked = false;
    }
    return next;
}

}  // namespace port
