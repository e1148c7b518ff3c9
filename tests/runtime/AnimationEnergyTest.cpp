#include "AnimationEnergy.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>

namespace port {
namespace {

using generated::Animation;
using generated::Character;
using Means = std::pair<int, int>;  // health and MP

constexpr int kEither = 0, kMpOnly = 1, kHealthOnly = 2;

Character modelOf(const char* type) {
    Character model{};
    model.type = type;
    model.subtype = "";
    return model;
}

Animation moveOf(int cost, int mode) {
    Animation move{};
    move.energyCost = cost;
    move.energyMode = mode;
    return move;
}

TEST(AnimationEnergy, TypesOfModelsDecideWhoseMovesAreDisabled) {
    const auto disabledFor = [](int disable) {
        std::string types;
        for (const char* type : {"Player", "enemy", "NPC", "item", "panel", "players"}) {
            const Character model = modelOf(type);
            if (costDisabled(&model, disable)) types += std::string(type) + " ";
        }
        return types;
    };
    for (const int sign : {1, -1}) {
        EXPECT_EQ(disabledFor(1 * sign), "Player enemy NPC item panel players ");
        EXPECT_EQ(disabledFor(2 * sign), "enemy NPC ");
        EXPECT_EQ(disabledFor(3 * sign), "Player NPC ");
        EXPECT_EQ(disabledFor(4 * sign), "Player enemy ");
    }
    EXPECT_EQ(disabledFor(1 << 3), "enemy ");
    EXPECT_EQ(disabledFor(1 << 13), "panel ");
    for (const int disable : {0, 24, -8, INT_MIN}) EXPECT_EQ(disabledFor(disable), "") << disable;
    EXPECT_FALSE(costDisabled(nullptr, 2));
}

TEST(AnimationEnergy, MpPaysAtTheCostAndHealthAboveItDownToOne) {
    const Character model = modelOf("player");
    const auto affords = [&](int cost, int mode, Means means) {
        const Animation move = moveOf(cost, mode);
        return hasAnimationEnergy(&move, &model, means.first, means.second);
    };
    EXPECT_TRUE(affords(5, kMpOnly, {0, 5}));
    EXPECT_FALSE(affords(5, kMpOnly, {100, 4}));
    EXPECT_TRUE(affords(5, kHealthOnly, {6, 0}));
    EXPECT_FALSE(affords(5, kHealthOnly, {5, 100}));
    EXPECT_TRUE(affords(5, kEither, {0, 5}));
    EXPECT_TRUE(affords(5, kEither, {6, 4}));
    EXPECT_FALSE(affords(INT_MIN, kHealthOnly, {0, 0}));
    EXPECT_FALSE(hasAnimationEnergy(nullptr, &model, 100, 100));

    const auto after = [](int cost, int mode, Means means) {
        debitAnimationEnergy(cost, mode, means.first, means.second);
        return means;
    };
    EXPECT_EQ(after(5, kEither, {9, 5}), Means(9, 0));
    EXPECT_EQ(after(5, kEither, {9, 4}), Means(4, 4));
    EXPECT_EQ(after(5, kMpOnly, {9, 4}), Means(9, 4));
    EXPECT_EQ(after(5, kHealthOnly, {5, 50}), Means(1, 50));
    EXPECT_EQ(after(INT_MAX, kEither, {-5, 0}), Means(1, 0));
    EXPECT_EQ(after(0, kHealthOnly, {0, 0}), Means(0, 0));
    EXPECT_EQ(after(INT_MIN, kEither, {7, 7}), Means(7, 7));
}

struct Fighter {
    Character model = modelOf("player");
    Actor actor;

    Fighter() {
        actor.model = &model;
        actor.health = 50;
        actor.mp = 10;
    }
    bool begin(const Animation& move) { return beginEnergyAnimation(actor, &move); }
    [[nodiscard]] Means means() const { return {actor.health, actor.mp}; }
};

TEST(AnimationEnergy, AMoveBeyondTheMeansDoesNotStart) {
    Fighter fighter;
    const Animation punch = moveOf(6, kMpOnly), kick = moveOf(5, kMpOnly), jab = moveOf(4, kMpOnly);
    ASSERT_TRUE(fighter.begin(punch));
    EXPECT_EQ(fighter.means(), Means(50, 4));
    fighter.actor.energyPending = {&punch, 3, kMpOnly, true};
    EXPECT_FALSE(fighter.begin(kick));
    EXPECT_EQ(fighter.means(), Means(50, 4)) << "a refused move settles nothing";
    EXPECT_FALSE(fighter.begin(jab)) << "the cost that was pending spent the means";
    EXPECT_EQ(fighter.means(), Means(50, 1));
    EXPECT_EQ(fighter.actor.animation.animation(), &punch);
    Animation disabled = moveOf(0, kEither);
    disabled.energyDisable = 3;
    EXPECT_FALSE(fighter.begin(disabled));
}

TEST(AnimationEnergy, ModelsThatOweForHitsPayOnceTheMoveIsOver) {
    Fighter fighter;
    fighter.model.globalNoCost = true;
    generated::Frame frame{};
    Animation punch = moveOf(6, kHealthOnly);
    punch.frames = &frame;
    punch.frameCount = 1;
    for (const bool hit : {false, true}) {
        ASSERT_TRUE(fighter.begin(punch));
        if (hit) fighter.actor.energyPending.hit = true;
        settleAnimationEnergy(fighter.actor);
        EXPECT_EQ(fighter.means(), Means(50, 10)) << "it still runs";
        fighter.actor.animation.update();
        settleAnimationEnergy(fighter.actor);
        settleAnimationEnergy(fighter.actor);
        EXPECT_EQ(fighter.means(), Means(hit ? 44 : 50, 10));
    }
    ASSERT_TRUE(fighter.begin(punch));
    fighter.actor.energyPending.hit = true;
    fighter.actor.animation.setAnimation(nullptr);
    settleAnimationEnergy(fighter.actor);
    EXPECT_EQ(fighter.means(), Means(38, 10)) << "cut short";
}

}  // namespace
}  // namespace port
