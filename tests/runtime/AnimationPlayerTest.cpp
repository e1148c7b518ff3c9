#include "AnimationPlayer.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "AnimationLookup.hpp"

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

TEST(AnimationLookup, FindsExactlyOrByWhateverHoldsTheName) {
    const generated::Character& hero = generated::kCharacters[1];  // JumpAttack Walk attack Idle
    const auto exact = [&](const char* name) {
        const Animation* found = exactAnimation(&hero, name);
        return std::string(found ? found->name : "none");
    };
    const auto found = [&](const char* name) {
        return std::string(findAnimation(&hero, name)->name);
    };
    EXPECT_EQ(exact("ATTACK"), "attack");
    EXPECT_EQ(exact("att"), "none");
    EXPECT_EQ(found("attack"), "JumpAttack") << "it stands first and holds the name";
    EXPECT_EQ(found("idle"), "Idle");
    EXPECT_EQ(found("pain"), "JumpAttack") << "the first animation stands in";
    EXPECT_EQ(found(""), "JumpAttack");
    EXPECT_EQ(findAnimation(nullptr, "idle"), nullptr);
    generated::Character bare = hero;
    bare.animationCount = 0;
    EXPECT_EQ(findAnimation(&bare, "idle"), nullptr);
}

}  // namespace
}  // namespace port
