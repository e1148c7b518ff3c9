#include "AnimationLookup.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>
#include <vector>

#include "TextFields.hpp"

namespace port {
namespace {

using generated::Animation;

struct Cast {
    std::vector<Animation> animations;
    generated::Character model{};

    explicit Cast(const std::vector<const char*>& names) {
        for (const char* name : names) {
            animations.push_back({});
            animations.back().name = name;
        }
        model.animations = animations.data();
        model.animationCount = animations.size();
    }
    Cast(const Cast&) = delete;
};

std::string nameOf(const Animation* animation) {
    return animation ? animation->name : "(none)";
}

TEST(AnimationLookup, FindsTheFirstCharacterOfEitherName) {
    ASSERT_GT(generated::kCharacterCount, 0U);
    for (std::size_t i = 0; i < generated::kCharacterCount; ++i) {
        const generated::Character& model = generated::kCharacters[i];
        for (std::string name : {model.modelName, model.name}) {
            for (char& c : name) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
            const generated::Character* found = findCharacter(name.c_str());
            ASSERT_NE(found, nullptr) << name;
            EXPECT_LE(found, &model) << name;
            EXPECT_TRUE(equalsFolded(found->modelName, name) || equalsFolded(found->name, name));
        }
    }
    EXPECT_EQ(findCharacter(nullptr), nullptr);
    EXPECT_EQ(findCharacter("nobody of this name"), nullptr);
}

TEST(AnimationLookup, FindsNamesThatHoldTheWantedOneElseTheFirst) {
    const Cast cast({"Idle", "JumpAttack", "attack", "ATTACK"});
    const auto found = [&](const char* name) { return nameOf(findAnimation(&cast.model, name)); };
    EXPECT_EQ(found("attack"), "JumpAttack") << "table order goes before the better match";
    EXPECT_EQ(found("jumpattacks"), "Idle");
    EXPECT_EQ(found(""), "Idle");
    EXPECT_EQ(nameOf(exactAnimation(&cast.model, "aTTack")), "attack");
    EXPECT_EQ(exactAnimation(&cast.model, "tack"), nullptr);
    EXPECT_EQ(findAnimation(nullptr, "idle"), nullptr);
    Cast nameless({"idle", ""});
    EXPECT_EQ(nameOf(findAnimation(&nameless.model, "")), "");
    nameless.model.animationCount = 0;
    EXPECT_EQ(findAnimation(&nameless.model, "idle"), nullptr);
}

TEST(AnimationLookup, AWeaponsOwnAnimationGoesBeforeTheActors) {
    const Cast actor({"walk", "attack"});
    Cast weapon({"attackfar", "Walk"});
    const auto found = [&](const char* name) {
        return findActionAnimation(&actor.model, &weapon.model, name);
    };
    weapon.model.modelCopyFlags = 2;
    EXPECT_EQ(found("walk"), &weapon.animations[1]);
    EXPECT_EQ(found("attack"), &actor.animations[1]) << "a weapon answers only to exact names";
    weapon.model.modelCopyFlags = INT_MIN | 3;
    EXPECT_EQ(found("attack"), nullptr);
    EXPECT_EQ(found("walk"), &weapon.animations[1]);
    EXPECT_EQ(findActionAnimation(&actor.model, nullptr, "attack"), &actor.animations[1]);
}

TEST(AnimationLookup, FollowsByNumber) {
    const Cast cast({"follow", "follow0", "follow12", "FOLLOW1"});
    Animation source{};
    const auto follow = [&](int number) {
        source.followAnim = number;
        return nameOf(followAnimationFor(&cast.model, &source));
    };
    EXPECT_EQ(follow(1), "FOLLOW1");
    for (const int number : {0, 2, INT_MAX, INT_MIN}) EXPECT_EQ(follow(number), "(none)");
}

TEST(AnimationLookup, ReactionsGoFromTheSpecialToThePlain) {
    const Cast all({"pain", "pain1", "pain2", "fall", "fall999", "fall1000", "spain", "shock",
                    "bpain", "burn", "bfell"});
    const Cast some({"painful", "fall", "bfell", "burn"}), few({"fall", "bfell"});
    const auto reaction = [](const Cast& cast, const char* base, int type) {
        return nameOf(reactionAnimation(&cast.model, base, type));
    };
    EXPECT_EQ(reaction(all, "pain", 1004), "spain");
    EXPECT_EQ(reaction(all, "fall", 1004), "shock");
    EXPECT_EQ(reaction(few, "fall", 1004), "fall");
    EXPECT_EQ(reaction(all, "pain", 1002), "bpain");
    EXPECT_EQ(reaction(some, "pain", 1002), "burn");
    EXPECT_EQ(reaction(some, "fall", 1002), "burn");
    EXPECT_EQ(reaction(few, "fall", 1002), "bfell");
    EXPECT_EQ(reaction(all, "rise", 1002), "(none)");
    EXPECT_EQ(reaction(all, "pain", 2), "pain2");
    EXPECT_EQ(reaction(all, "fall", 999), "fall999");
    EXPECT_EQ(reaction(all, "fall", 1000), "fall");
    EXPECT_EQ(reaction(all, "pain", 1), "pain");
    EXPECT_EQ(reaction(some, "pain", 2), "(none)") << "a name that only holds it is no match";
}

TEST(AnimationLookup, DurationsCoverOneRunUpToTenMinutes) {
    const auto duration = [](const std::vector<int>& delays, std::size_t first = 0) {
        std::vector<generated::Frame> frames(delays.size());
        for (std::size_t i = 0; i < delays.size(); ++i) frames[i].delay = delays[i];
        Animation animation{};
        animation.frames = frames.data();
        animation.frameCount = frames.size();
        return animationDuration(&animation, first);
    };
    EXPECT_EQ(duration({4, 0, 3}), 9);
    EXPECT_EQ(duration({-1, 0, 3}, 1), 5);
    EXPECT_EQ(duration({4}, 1), 1);
    EXPECT_EQ(duration({4}, SIZE_MAX), 1);
    EXPECT_EQ(duration({}), 1);
    EXPECT_EQ(duration({4, -1}), 36000);
    EXPECT_EQ(duration({35990, 8}), 35999);
    EXPECT_EQ(duration({35999, 0, 0}), 36000);
    EXPECT_EQ(duration({INT_MAX, INT_MAX, INT_MIN}), 36000);
    generated::Character model{};
    EXPECT_EQ(deathDuration(model, nullptr), 30);
    model.noDieBlink = 2;
    EXPECT_EQ(deathDuration(model, nullptr), 1);
}

TEST(TextFields, NamesCompareByTheirAsciiLettersAndWordsEndAtWhiteSpace) {
    EXPECT_TRUE(equalsFolded("aZ[9", "Az[9"));
    EXPECT_FALSE(equalsFolded("@", "`") || equalsFolded("[", "{"));
    EXPECT_FALSE(equalsFolded("\xC4", "\xE4")) << "no letters beyond ASCII";
    EXPECT_TRUE(containsFolded("aAb", "ab"));
    EXPECT_FALSE(containsFolded("special", "specials"));
    std::string_view line = "\t hud  12\v4 \r\n";
    for (const char* word : {"hud", "12", "4", "", ""}) EXPECT_EQ(takeWord(line), word);
}

}  // namespace
}  // namespace port
