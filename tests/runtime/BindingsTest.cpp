// Actors that scripts have bound to others.

#include "Bindings.hpp"

#include "EntityTrial.hpp"

namespace port {
namespace {

struct Bindings : EntityTrial {
    generated::Character& model = makeModel("npc", {"idle", "walk"});
    RuntimeEntity& first = add(model, 100);
    RuntimeEntity& second = add(model, 200);
    RuntimeEntity& third = add(model, 300);

    void bind(Actor& actor, const Actor& target, int x, unsigned bits) {
        actor.binding = {target.handle, x, 7, 5, 0, static_cast<int>(bits), -1};
    }
};

TEST_F(Bindings, TargetsArePlacedBeforeThoseBoundToThem) {
    bind(first, second, 10, kBindX);
    bind(second, third, 10, kBindX | kBindZ | kBindAltitude);
    bind(third, player, 10, kBindX | kBindXAt);
    player.facing = -1;
    third.facing = -1;
    applyEntityBindings(world);
    EXPECT_EQ(third.worldX, player.worldX - 10) << "before a player who looks to the left";
    EXPECT_EQ(second.worldX, player.worldX - 20);
    EXPECT_EQ(first.worldX, player.worldX - 10);
    EXPECT_EQ(second.z, 207);
    EXPECT_EQ(second.altitude, -5);
    EXPECT_EQ(first.z, 200);
    bind(first, second, 10, kBindXAt | kBindZAt | kBindAltitudeAt);
    applyEntityBindings(world);
    EXPECT_EQ(first.worldX, 10);
    EXPECT_EQ(first.z, 7);
    EXPECT_EQ(first.altitude, -5);
}

TEST_F(Bindings, EndWithTheirEndsAndInCircles) {
    bind(first, second, 0, kBindX);
    bind(second, third, 0, kBindX);
    bind(third, first, 0, kBindX);
    applyEntityBindings(world);
    EXPECT_EQ(third.binding.target, kNobody);
    EXPECT_EQ(first.binding.target, second.handle);
    EXPECT_EQ(first.worldX, 300);
    third.visible = false;
    player.alive = false;
    applyEntityBindings(world);
    EXPECT_EQ(second.binding.target, kNobody);
    bind(second, player, 0, kBindX);
    applyEntityBindings(world);
    EXPECT_EQ(second.binding.target, kNobody) << "a dead player";
    bind(first, first, 0, kBindX);
    applyEntityBindings(world);
    EXPECT_EQ(first.binding.target, kNobody);
}

TEST_F(Bindings, AnimationsMatchOrTheBindingEnds) {
    play(second, "walk");
    bind(first, second, 0, kBindAnimation);
    applyEntityBindings(world);
    EXPECT_EQ(playing(first), "walk");
    EXPECT_EQ(first.lastFrame, kNoFrame);
    third.model = &makeModel("npc", {"other"});
    play(third, "other");
    bind(first, third, 0, kBindAnimation);
    applyEntityBindings(world);
    EXPECT_EQ(first.binding.target, kNobody);
    EXPECT_TRUE(first.alive);
    bind(first, third, 0, kBindAnimation | kBindAnimationOrDie);
    applyEntityBindings(world);
    EXPECT_FALSE(first.alive);
    EXPECT_FALSE(first.visible);

    play(player, "idle");
    player.animation.setFrame(1);
    bind(second, player, 40, kBindFrame | kBindXAt);
    applyEntityBindings(world);
    EXPECT_EQ(second.worldX, 40) << "the frame it lacks does not hinder it";
    bind(second, player, 40, kBindFrame | kBindFrameOrDie);
    applyEntityBindings(world);
    EXPECT_FALSE(second.alive);
}

TEST_F(Bindings, FacingFollowsTheTarget) {
    bind(first, second, 0, 0);
    const auto facing = [&](int direction) {
        first.facing = second.facing = 1;
        first.binding.direction = direction;
        applyEntityBindings(world);
        return first.facing;
    };
    EXPECT_EQ(facing(1), 1);
    EXPECT_EQ(facing(-1), -1);
    EXPECT_EQ(facing(-2), -1);
    EXPECT_EQ(facing(3), 1);
    EXPECT_EQ(facing(4), -1);
    first.worldX = 200;
    EXPECT_EQ(facing(4), 1) << "in the same place there is no away";
}

}  // namespace
}  // namespace port
