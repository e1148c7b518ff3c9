#include "AttackChains.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace port {
namespace {

struct AttackChains : testing::Test {
    std::vector<generated::Animation> animations;
    std::vector<int> chain;
    generated::Character model{};
    int branch = -1;

    AttackChains() {
        for (const char* name : {"idle", "ATTACK1", "attack3", "attack12b", "attack2"}) {
            animations.push_back({});
            animations.back().name = name;
        }
        model.animations = animations.data();
        model.animationCount = animations.size();
    }
    void useChain(std::vector<int> attacks) {
        chain = std::move(attacks);
        model.attackChain = chain.data();
        model.attackChainCount = chain.size();
    }
    int next(int step, float dx) {
        return dynamicChainAttackNumber(&model, step, branch, {dx, 0, 0});
    }
};

TEST_F(AttackChains, WithoutAChainAllAttacksGoRound) {
    EXPECT_EQ(chainAttackNumber(&model, 2), 3) << "attack12b is no number";
    EXPECT_EQ(chainAttackNumber(&model, 3), 1);
    EXPECT_EQ(chainAttackNumber(&model, -4), 1);
    EXPECT_EQ(chainAttackNumber(nullptr, 4), 5);
    model.animationCount = 1;
    EXPECT_EQ(chainAttackNumber(&model, 7), 1);
}

TEST_F(AttackChains, BranchesEndAtZero) {
    useChain({1, 2, 0, 3, -1});
    const auto branches = comboBranches(&model);
    ASSERT_EQ(branches.size(), 2U) << "nothing follows the last end";
    EXPECT_EQ(branches[0].size(), 2U);
    EXPECT_EQ(branches[1].front(), 3);
    EXPECT_EQ(chainAttackNumber(&model, 2), 1) << "the first branch alone";
    useChain({0, 3});
    EXPECT_EQ(chainAttackNumber(&model, 5), 1);
}

TEST_F(AttackChains, TheDistanceChoosesTheBranchOnce) {
    useChain({1, 2, 0, 3, 2});
    animations[2].hasRangeX = true;  // attack3
    animations[2].rangeXMin = 200;
    animations[2].rangeXMax = 100;
    EXPECT_EQ(next(1, 150), 2) << "only where the model wants it";
    model.comboStyle = 1;
    EXPECT_EQ(next(0, 150), 1);
    EXPECT_EQ(next(1, -150), 3) << "too far for attack2";
    EXPECT_EQ(branch, 1);
    EXPECT_EQ(next(2, 10), 2) << "the branch stays; the first attack is not in it";
    EXPECT_EQ(next(3, 10), 1) << "past its end it begins again";
    EXPECT_EQ(branch, -1);
    EXPECT_EQ(next(1, 500), 2) << "the first branch where none is in range";
    EXPECT_EQ(branch, 0);
}

TEST_F(AttackChains, RangesHaveEndsOfTheirOwn) {
    const auto in = [&](float dx, float dz, float da) {
        return attackRangePass(&model, 2, {dx, dz, da});
    };
    model.grabDistance = 36;
    EXPECT_TRUE(in(-75, -12, -1000));
    EXPECT_FALSE(in(76, 0, 0));
    EXPECT_FALSE(in(0, 12.5F, 0));
    EXPECT_FALSE(in(0, 0, 1001));
    generated::Animation& attack = animations[4];
    attack.hasRangeZ = attack.hasRangeA = true;
    attack.rangeZMin = -20;
    attack.rangeZMax = 5;
    attack.rangeAMin = -10;
    EXPECT_TRUE(in(0, 15, -10));
    EXPECT_FALSE(in(0, 2, 0)) << "by the size of the ends";
    EXPECT_FALSE(in(0, 15, 10)) << "altitude keeps its sign";
    EXPECT_FALSE(attackRangePass(&model, 9, {0, 0, 0}));
    EXPECT_TRUE(attackRangePass(&model, -9, {0, 0, 0})) << "attack1";
}

TEST_F(AttackChains, WindowsAreParts) {
    EXPECT_EQ(comboWindowFor(model, 24), 24);
    model.comboDelay = 5;
    EXPECT_EQ(comboWindowFor(model, 24), 6);
    model.comboDelay = 45;
    EXPECT_EQ(comboWindowFor(model, 24), 14);
    animations[0].chargeTime = 1;
    EXPECT_EQ(chargeThreshold(animations[0]), 1);
    animations[0].chargeTime = 125;
    EXPECT_EQ(chargeThreshold(animations[0]), 75);
}

}  // namespace
}  // namespace port
