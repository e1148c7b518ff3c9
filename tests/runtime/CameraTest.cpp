// Where the camera goes.

#include "CameraRules.hpp"

#include <gtest/gtest.h>

#include "StageRules.hpp"

namespace port {
namespace {

constexpr int kWidth = 320;  // the dead zone is 112 to 208

struct CameraTest : testing::Test {
    generated::Stage row = generated::kStages[2];
    StageRun stage;
    Camera camera;

    void open(const char* direction) {
        row.direction = direction;
        stage = freshStageRun(row);
        stage.length = 1000;
        camera = freshCamera(stage);
        camera.x = camera.maxX = cameraStart(stage, kWidth);
    }
    float follow(float focus) {
        camera = followedCamera(stage, camera, {true, focus}, kWidth);
        return camera.x;
    }
};

TEST_F(CameraTest, ToTheRightItFollowsOutsideTheDeadZoneAndNeverGoesBack) {
    open("right");
    EXPECT_EQ(follow(208), 0);
    EXPECT_EQ(follow(308), 100);
    EXPECT_EQ(follow(0), 100) << "never back";
    EXPECT_EQ(follow(5000), 680) << "no further than the stage";
    EXPECT_EQ(camera.maxX, 680);
    camera.x = camera.maxX = 100;
    EXPECT_EQ(follow(211.5F), 99.5F) << "less than a pixel is let be";
    camera = combatLockedCamera(camera, true);
    EXPECT_EQ(follow(5000), 100) << "a lock holds no place that was left behind";
    camera = combatLockedCamera(camera, false);
    camera = followedCamera(stage, camera, {}, kWidth);
    EXPECT_EQ(camera.x, 100) << "the dead draw nobody";
    row.scrollSpeed = 3;
    EXPECT_EQ(follow(5000), 103);
    stage.scrollBlocked = true;
    EXPECT_EQ(follow(5000), 103) << "a gate";
    stage.scrollBlocked = false;
    camera = combatLockedCamera(camera, true);
    EXPECT_EQ(follow(5000), 103) << "enemies";
    camera = combatLockedCamera(camera, false);
    EXPECT_EQ(follow(5000), 106);
    camera.fixed = true;
    EXPECT_EQ(follow(5000), 106);
}

TEST_F(CameraTest, ALockNearTheStartHoldsNothing) {
    open("right");
    camera.x = 1;
    EXPECT_FALSE(combatLockedCamera(camera, true).combatLocked);
    camera.x = 2;
    camera = combatLockedCamera(camera, true);
    EXPECT_EQ(camera.combatLockX, 2);
    camera.x = 50;
    EXPECT_EQ(combatLockedCamera(camera, true).combatLockX, 2) << "where it was locked";
}

TEST_F(CameraTest, EitherWayItGoesBackToTheBlockade) {
    open("both");
    EXPECT_EQ(follow(508), 300);
    camera.backtrackFloor = 200;
    EXPECT_EQ(follow(0), 200);
    stage.scrollBlocked = true;
    EXPECT_EQ(follow(900), 200);
    camera.backtrackFloor = 0;
    EXPECT_EQ(follow(212), 100) << "a gate is in front only";
    stage.scrollBlocked = false;
    camera = combatLockedCamera(camera, true);
    EXPECT_EQ(follow(900), 100) << "and so is a lock";
}

TEST_F(CameraTest, ToTheLeftALockHoldsItsLeftEdge) {
    for (const char* direction : {"in", "bothleft", "left"}) {
        open(direction);
        EXPECT_EQ(camera.x, 680) << direction;
    }
    EXPECT_EQ(follow(612), 500);
    EXPECT_EQ(follow(900), 692 - 12) << "back as far as the stage goes";
    camera = combatLockedCamera(camera, true);
    EXPECT_EQ(follow(612), 680);
}

TEST_F(CameraTest, AVerticalStageScrollsByItselfUntilAGate) {
    open("up");
    EXPECT_EQ(follow(5000), 0);
    for (int i = 0; i < 60; ++i) stage.verticalStageScroll = followedVerticalScroll(stage);
    EXPECT_NEAR(stage.verticalStageScroll, 100, 0.01);
    stage.scrollBlocked = true;
    EXPECT_EQ(followedVerticalScroll(stage), stage.verticalStageScroll);
}

}  // namespace
}  // namespace port
