#include "AnimationPlayer.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

namespace port {
namespace {

using generated::Animation;
using generated::Frame;

struct Reel {
    std::vector<Frame> frames;
    Animation animation{};

    explicit Reel(const std::vector<int>& delays) {
        for (const int delay : delays) {
            frames.push_back({});
            frames.back().delay = delay;
        }
        animation.name = "reel";
        animation.frames = frames.data();
        animation.frameCount = frames.size();
        animation.loopEnd = -1;
    }

    void loop(int start, int end) {
        animation.loop = true;
        animation.loopStart = start;
        animation.loopEnd = end;
    }
};

// The frame shown at each of the first ticks.
std::vector<std::size_t> shown(AnimationPlayer& player, int ticks) {
    std::vector<std::size_t> indexes;
    for (int i = 0; i < ticks; ++i) {
        indexes.push_back(player.frameIndex());
        player.update();
    }
    return indexes;
}

using Indexes = std::vector<std::size_t>;

TEST(AnimationPlayer, ShowsEachFrameForItsDelayAndStopsOnTheLast) {
    Reel reel({2, 0, 1});
    reel.animation.loopEnd = 1;  // means nothing without a loop
    AnimationPlayer player;
    player.setAnimation(&reel.animation);
    EXPECT_EQ(shown(player, 6), (Indexes{0, 0, 1, 2, 2, 2}));
    EXPECT_TRUE(player.finished());
    EXPECT_EQ(player.frame(), &reel.frames[2]);

    player.setFrame(99);
    EXPECT_EQ(player.frameIndex(), 2U);
    EXPECT_FALSE(player.finished());
    player.setAnimation(&reel.animation);
    player.update(3);
    EXPECT_EQ(player.frameIndex(), 2U) << "several ticks at once pass several frames";
}

TEST(AnimationPlayer, LoopsWithinItsWindow) {
    Reel reel({1, 1, 1, 1, 1});
    AnimationPlayer player;
    const auto run = [&](int start, int end) {
        reel.loop(start, end);
        player.setAnimation(&reel.animation);
        return shown(player, 8);
    };
    EXPECT_EQ(run(1, 2), (Indexes{0, 1, 2, 1, 2, 1, 2, 1}));
    EXPECT_EQ(run(3, -1), (Indexes{0, 1, 2, 3, 4, 3, 4, 3}));
    EXPECT_EQ(run(99, 99), (Indexes{0, 1, 2, 3, 4, 4, 4, 4}));
    EXPECT_EQ(run(4, 1), (Indexes{0, 1, 1, 1, 1, 1, 1, 1})) << "a start behind the end is the end";
    EXPECT_EQ(run(-3, 1), (Indexes{0, 1, 0, 1, 0, 1, 0, 1}));
    EXPECT_FALSE(player.finished());
}

TEST(AnimationPlayer, ANegativeDelayHoldsForEver) {
    Reel reel({1, -1, 1});
    AnimationPlayer player;
    player.setAnimation(&reel.animation);
    player.update(1000);
    EXPECT_EQ(player.frameIndex(), 1U);
    EXPECT_FALSE(player.finished());
    player.setFrame(2);
    player.update();
    EXPECT_TRUE(player.finished()) << "ticks on the held frame were not saved up";
}

TEST(AnimationPlayer, TheLongestDelaysAndStepsDoNotOverflow) {
    Reel reel({INT_MAX, INT_MIN});
    AnimationPlayer player;
    player.setAnimation(&reel.animation);
    player.update(INT_MIN);
    player.update();
    EXPECT_EQ(player.frameIndex(), 0U);
    player.update(INT_MAX);
    EXPECT_EQ(player.frameIndex(), 1U);
}

TEST(AnimationPlayer, NothingToShowIsNoFrame) {
    Reel empty({});
    AnimationPlayer player;
    for (const Animation* animation : {static_cast<const Animation*>(nullptr),
                                       static_cast<const Animation*>(&empty.animation)}) {
        player.setAnimation(animation);
        player.setFrame(3);
        player.update();
        EXPECT_EQ(player.frame(), nullptr);
        EXPECT_EQ(player.frameIndex(), 0U);
        EXPECT_FALSE(player.finished());
    }
}

}  // namespace
}  // namespace port
