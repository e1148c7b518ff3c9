// The numbers of a hit.

#include "Defence.hpp"

#include <array>
#include <climits>

#include "Chip.hpp"
#include "Counter.hpp"
#include "FightTrial.hpp"
#include "Knockdown.hpp"

namespace port {
namespace {

struct Defence : FightTrial {
    Cast& enemy = cast("enemy", {"idle"});
    const generated::Character* model = &enemy.row;
};

TEST_F(Defence, TheEntryOfTheTypeComesBeforeTheGeneralOnes) {
    EXPECT_EQ(defenseFor(model, 0), nullptr);
    defend(enemy, {defense("ALL"), defense("normal"), defense("burn"), defense("Normal2"),
                   defense("normal1"), defense("land"), defense("normal")});
    const auto found = [&](int type) { return defenseFor(model, type) - enemy.defenses.data(); };
    EXPECT_EQ(found(kAttackBurn), 2);
    EXPECT_EQ(found(2), 3);
    EXPECT_EQ(found(0), 4) << "plain types begin at 1";
    EXPECT_EQ(found(1), 4);
    EXPECT_EQ(found(-7), 5);
    EXPECT_EQ(found(kAttackShock), 6) << "the last normal one stands for what has no entry";
    EXPECT_EQ(found(22), 6);
    enemy.row.defenseCount = 1;
    EXPECT_EQ(found(kAttackShock), 0);
}

TEST_F(Defence, DamageIsRoundedAsItsAuthorReadsIt) {
    EXPECT_EQ(effectiveDamage(model, 7, 0), 7);
    EXPECT_EQ(effectiveDamage(model, -7, 0), 0);
    defend(enemy, {defense("all")});
    const auto left = [&](int raw, float factor) {
        enemy.defenses[0].factor = factor;
        return effectiveDamage(model, raw, 0);
    };
    EXPECT_EQ(left(5, 0.5F), 3);
    EXPECT_EQ(left(5, 0.7F), 4) << "3.5 in floats, and less in doubles";
    EXPECT_EQ(left(5, -2), 0);
    EXPECT_EQ(left(INT_MAX, 3e30F), INT_MAX);
    enemy.defenses[0].pain = 5;
    EXPECT_FALSE(defenseAllowsPain(model, 4, 0));
    EXPECT_TRUE(defenseAllowsPain(model, 5, 0));
}

TEST_F(Defence, KnockdownsGatherUntilTheyFell) {
    float meter = 0;
    const auto felled = [&](bool requested, float power) {
        return resolveKnockdown(model, meter, requested, 0, power);
    };
    enemy.row.knockdownCount = 4;
    EXPECT_FALSE(felled(true, 3));
    EXPECT_FALSE(felled(false, 100));
    EXPECT_EQ(meter, 3);
    EXPECT_TRUE(felled(true, 3));
    EXPECT_EQ(meter, 0);
    EXPECT_FALSE(felled(true, 0)) << "counts for 1";
    EXPECT_EQ(meter, 1);
    meter = -100;
    EXPECT_TRUE(felled(true, 4)) << "enough by itself";

    defend(enemy, {defense("all")});
    enemy.defenses[0].knockdown = 0.5F;
    EXPECT_FALSE(felled(true, 7));
    enemy.defenses[0].knockdown = -1;
    EXPECT_FALSE(felled(true, 1000));
    enemy.row.knockdownCount = 0;
    EXPECT_FALSE(felled(true, 1)) << "what defends wholly against it is not felled by a threshold";
    enemy.row.knockdownCount = -1;
    EXPECT_TRUE(felled(false, 0));
    meter = 2;
    enemy.row.noMove = true;
    EXPECT_FALSE(felled(true, 100));
    EXPECT_EQ(meter, 0);
    EXPECT_TRUE(resolveKnockdown(nullptr, meter, true, 0, 1));
}

TEST_F(Defence, ABlockedHitIsPaidForByItsRoute) {
    generated::Defense own = defense("all");
    int hp = 10;
    int mp = 4;
    const auto chip = [&](int raw) {
        hp = 10, mp = 4;
        applyBlockedChip(hp, mp, *model, &own, raw);
        return std::array{hp, mp};
    };
    using Left = std::array<int, 2>;
    EXPECT_EQ(chip(20), (Left{10, 4})) << "a block is whole unless a ratio says otherwise";
    enemy.row.globalBlockRatio = true;
    EXPECT_EQ(chip(20), (Left{5, 4}));
    EXPECT_EQ(chip(-20), (Left{10, 4}));
    enemy.row.globalMpBlock = true;
    EXPECT_EQ(chip(20), (Left{9, 0})) << "MP first";
    own.blockTypeDefined = true;
    own.blockType = 2;
    EXPECT_EQ(chip(20), (Left{5, 0})) << "the whole from both";
    own.blockType = 3;
    EXPECT_EQ(chip(20), (Left{5, 4}));
    EXPECT_EQ(chip(INT_MAX), (Left{0, 4}));
    enemy.row.noChipDeath = true;
    EXPECT_EQ(chip(INT_MAX), (Left{1, 4}));
    for (const int before : {1, 0}) {
        hp = before;
        applyBlockedChip(hp, mp, *model, &own, 100);
        EXPECT_EQ(hp, 1);
    }
    own.blockRatioDefined = true;
    own.blockRatio = -1;
    EXPECT_EQ(chip(100), (Left{10, 4})) << "the defence's own ratio comes first";
}

TEST_F(Defence, CountersHaveTheirFramesAndConditions) {
    animate(enemy, "follow2");
    generated::Animation& stance = enemy.animations[0];
    stance.followAnim = 2;
    stance.counterStart = stance.counterEnd = 0;
    stance.counterTakesDamage = true;
    AnimationPlayer current;
    current.setAnimation(&stance);
    const auto answers = [&](int condition, const Attempt& attempt) {
        stance.counterCond = condition;
        return counterFor(model, current, attempt, 10).animation != nullptr;
    };
    const Attempt open = {.hostile = true, .unblockable = false, .fromFront = true, .damage = 10};
    Attempt behind = open;
    behind.fromFront = false;
    Attempt unblockable = open;
    unblockable.unblockable = true;
    Attempt friendly = open;
    friendly.hostile = false;
    for (const int condition : {1, 2, 3, 4}) EXPECT_TRUE(answers(condition, open)) << condition;
    for (const int condition : {0, 5}) EXPECT_FALSE(answers(condition, open)) << condition;
    EXPECT_TRUE(answers(2, behind));
    for (const Attempt& attempt : {behind, unblockable, friendly}) {
        EXPECT_FALSE(answers(3, attempt));
    }
    EXPECT_FALSE(answers(2, friendly));
    EXPECT_TRUE(answers(1, friendly));

    EXPECT_FALSE(counterFor(model, current, open, 10).rage);
    EXPECT_TRUE(counterFor(model, current, open, 10).takesDamage);
    stance.counterCond = 4;
    EXPECT_FALSE(counterFor(model, current, open, 10).takesDamage) << "rage survives";
    EXPECT_TRUE(counterFor(model, current, open, 11).takesDamage);
    stance.counterStart = 1;
    EXPECT_FALSE(answers(1, open)) << "not yet";

    const HitOutcome hit = {
        .blocked = false, .hostile = true, .lethal = false, .targetNoGrab = true};
    const auto passing = [](const HitOutcome& outcome) {
        std::string passed;
        for (int condition = 0; condition <= 6; ++condition) {
            if (followConditionPass(condition, outcome))
                passed += static_cast<char>('0' + condition);
        }
        return passed;
    };
    EXPECT_EQ(passing(hit), "1235");
    EXPECT_EQ(passing({.hostile = true}), "12345");
    EXPECT_EQ(passing({.blocked = true, .hostile = true}), "12");
    EXPECT_EQ(passing({.hostile = true, .lethal = true}), "12");
    EXPECT_EQ(passing({}), "1");
}

}  // namespace
}  // namespace port
