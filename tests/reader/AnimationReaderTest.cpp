#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "reader/ModelReader.hpp"

namespace tindrel {
namespace {

using A = AnimationDef;

// The frames of an animation with these lines, which are taken to the letter.
std::vector<FrameDef> frames(const std::string& lines) {
    return parseModel(TextFile("anim a\n" + lines, true), "m").animations.at(0).frames;
}

// The frame that follows these lines.
FrameDef frame(const std::string& lines) {
    return frames(lines + "\nframe f.gif").back();
}

A animation(const std::string& lines) {
    return parseModel(TextFile("anim a\n" + lines, true), "m").animations.at(0);
}

// "x,y,w,h damage/type force,penetration,noflash,pause,depth", in brackets without a box to hit.
std::string showAttack(const FrameDef& frame) {
    const AttackBoxDef& a = frame.attack;
    const auto list = [](std::initializer_list<std::int32_t> values) {
        std::string out;
        for (const std::int32_t value : values) {
            out += (out.empty() ? "" : ",") + std::to_string(value);
        }
        return out;
    };
    const std::string text = list({a.x, a.y, a.w, a.h}) + ' ' + std::to_string(a.damage) + '/' +
                             std::to_string(a.type) + ' ' +
                             list({a.fallForce, a.penetration, a.noFlash, a.pauseTime, a.zDepth});
    return frame.hasAttack ? text : '[' + text + ']';
}

TEST(AnimationReader, FramesCopyTheTemplateUntilTheNextAnimation) {
    const ModelDef model = parseModel(TextFile("delay 9\nframe lost.gif\n"
                                               "anim One\ndelay 7\nmove 5\nsound a.wav\n"
                                               "@cmd dasher 1 2\n@cmd clearL\n"
                                               "frame Data/A.gif\nframe b.gif\n@cmd lost\n"
                                               "anim Two\nframe c.gif\nanim Three\n"),
                                      "m");
    ASSERT_EQ(model.animations.size(), 3U);
    EXPECT_EQ(model.animations[0].name, "One");
    ASSERT_EQ(model.animations[0].frames.size(), 2U);
    const FrameDef& first = model.animations[0].frames[0];
    const FrameDef& second = model.animations[0].frames[1];
    EXPECT_EQ(first.sprite, "Data/A.gif");
    EXPECT_EQ(first.sound, "a.wav");
    EXPECT_EQ(first.animationCommand, "dasher(1,2);\nclearL();");
    EXPECT_EQ(second.delay, 7);
    EXPECT_EQ(second.moveX, 5);
    EXPECT_EQ(second.sound, "");
    EXPECT_EQ(second.animationCommand, "");
    const FrameDef& fresh = model.animations[1].frames.at(0);
    EXPECT_EQ(fresh.delay, 1);
    EXPECT_EQ(fresh.moveX, 0);
    EXPECT_EQ(fresh.animationCommand, "");
    EXPECT_TRUE(model.animations[2].frames.empty());
}

TEST(AnimationReader, ScriptsOfTheHeaderGoAheadOfEveryAnimations) {
    const ModelDef model = parseModel(TextFile("@script\n  a;\n@end_script\n@script\nb;\n"
                                               "@end_script\nanim x\n@script\nc;\n@end_script\n"
                                               "frame f.gif\n@script\nd;\n@end_script\nanim y\n"),
                                      "m");
    EXPECT_EQ(model.animations.at(0).inlineScript, "  a;\nb;\nc;\nd;\n");
    EXPECT_EQ(model.animations.at(1).inlineScript, "  a;\nb;\n");
}

TEST(AnimationReader, DelayKnowsForever) {
    EXPECT_EQ(frame("delay INF").delay, -1);
    EXPECT_EQ(frame("delay infinite").delay, -1);
    EXPECT_EQ(frame("delay -3").delay, 0);
    EXPECT_EQ(frame("delay x").delay, 1);
}

TEST(AnimationReader, BodyBoxNeedsFourNumbersAndASize) {
    const FrameDef kept = frame("bbox 1 2 3 4\nbbox 9 9 9");
    EXPECT_TRUE(kept.hasBBox);
    EXPECT_EQ(kept.bbox.h, 4);
    EXPECT_FALSE(frame("bbox 1 2 0 4").hasBBox);
    const FrameDef none = frame("bbox 1 2 3 4\nbbox None");
    EXPECT_FALSE(none.hasBBox);
    EXPECT_EQ(none.bbox.x, 0);
    const FrameDef shortLine = frame("offset 3 4\noffset 7");
    EXPECT_EQ(shortLine.offsetX, 3);
    EXPECT_EQ(shortLine.offsetY, 4);
}

TEST(AnimationReader, AttackLinesFillTheBox) {
    EXPECT_EQ(showAttack(frame("attack 1 2 3 4 5 6 7 8 9 10")), "1,2,3,4 5/1 6,7,8,9,10");
    EXPECT_EQ(showAttack(frame("attack 1 2 3 4 5 -1 0 0 0 -3")), "1,2,3,4 5/1 -1,0,0,0,0");
    EXPECT_EQ(showAttack(frame("attack 0 0 0 0 5")), "[0,0,0,0 5/1 0,0,0,0,0]");
    EXPECT_EQ(showAttack(frame("blast 1 2 3 4 5 6 7 8 9")), "1,2,3,4 5/1001 1,6,7,8,9");
    EXPECT_EQ(showAttack(frame("blast 1 2 3 4 5 6 7 8 9 10")), "1,2,3,4 5/1001 6,7,8,9,10");
    EXPECT_EQ(showAttack(frame("blast 1 2 3 4 5 x 7 8 9 10")), "1,2,3,4 5/1001 1,7,8,9,10");
    EXPECT_EQ(showAttack(frame("burn 1 2 3 4 5")), "1,2,3,4 5/1002 0,0,0,0,0");
    EXPECT_EQ(showAttack(frame("shock 1 2 3 4 5")), "1,2,3,4 5/1004 0,0,0,0,0");
    EXPECT_EQ(showAttack(frame("Attack7 1 1 2 2 9")), "1,1,2,2 9/7 0,0,0,0,0");
    EXPECT_EQ(showAttack(frame("attack0 1 1 2 2 9")), "1,1,2,2 9/1 0,0,0,0,0");
    EXPECT_EQ(showAttack(frame("attack99999999999 1 1 2 2 9")), "1,1,2,2 9/1 0,0,0,0,0");
    // A number that is a special type's makes no special attack.
    EXPECT_EQ(frame("attack1001 1 1 2 2 9").dropVx, 0);

    const std::string before = "attack 1 2 3 4 5\n";
    for (const char* const ignored : {"attack", "attack 1 2 3", "attack none2", "attackx 9 9 9 9 9",
                                      "blast 0 0 0 1", "attack 0 0 0 0", "attack 00"}) {
        EXPECT_EQ(showAttack(frame(before + ignored)), "1,2,3,4 5/1 0,0,0,0,0") << ignored;
    }
}

TEST(AnimationReader, AttackLinesSetTheFall) {
    struct Case {
        const char* lines;
        bool knockdown;
        float dropVx;
        std::int32_t dropVy, pauseTime, landingMode;
    };
    const std::vector<Case> cases = {
        {"", false, 0, -3, 0, 0},
        {"attack 1 1 1 1 5", false, 0, 0, 0, 0},
        {"attack 1 1 1 1 5 1 0 0 12", true, 0, -3, 12, 0},
        {"attack 1 1 1 1 5 -1", false, 0, 0, 0, 0},
        {"blast 0 0 0 0 0", true, 2.5F, -3, 0, 1},
        {"blast 1 1 1 1 5 6 7 8 9\nburn 1 1 1 1 5", false, 0, 0, 0, 0},
        {"attack 1 1 1 1 5\nfall 2", true, 0, 0, 0, 0},
        {"attack 1 1 1 1 5 1\nfall 0", false, 0, -3, 0, 0},
        {"fall 2\nattack 1 1 1 1 5", false, 0, 0, 0, 0},
        {"fall -1", true, 0, -3, 0, 0},
        {"dropv 5 1.5", false, 1.5F, -5, 0, 0},
        {"dropv 5 1.5\ndropv -4", false, 1.5F, -4, 0, 0},
        {"dropv x", false, 0, -3, 0, 0},
        {"dropv -2147483648", false, 0, std::numeric_limits<std::int32_t>::min(), 0, 0},
        {"pausetime 4\nattack.reaction.pause.time 6", false, 0, -3, 6, 0},
    };
    for (const Case& c : cases) {
        const FrameDef actual = frame(c.lines);
        EXPECT_EQ(actual.knockdown, c.knockdown) << c.lines;
        EXPECT_EQ(actual.dropVx, c.dropVx) << c.lines;
        EXPECT_EQ(actual.dropVy, c.dropVy) << c.lines;
        EXPECT_EQ(actual.pauseTime, c.pauseTime) << c.lines;
        EXPECT_EQ(actual.attack.pauseTime, c.pauseTime) << c.lines;
        EXPECT_EQ(actual.attack.landingMode, c.landingMode) << c.lines;
    }
}

// The settings that an attack line takes back, and the one that it does not.
constexpr const char* kAttackSettings =
    "forcedirection -9\nguardcost 2\njugglecost 3\ntag 4\nnoblock 5\nnoflash 6\n"
    "damageonlanding 7 2 burn\n";

TEST(AnimationReader, AttackSettingsHoldUntilTheNextAttackLine) {
    const AttackBoxDef set = frame(kAttackSettings).attack;
    EXPECT_EQ(frame("jugglecost -3").attack.juggleCost, 0);
    EXPECT_EQ(set.forceDirection, -2);
    EXPECT_EQ(set.guardCost, 2);
    EXPECT_EQ(set.juggleCost, 3);
    EXPECT_EQ(set.tag, 4);
    EXPECT_EQ(set.penetration, 5);
    EXPECT_EQ(set.noFlash, 6);
    EXPECT_EQ(set.landingDamage, 7);
    EXPECT_EQ(set.landingMode, 2);
    EXPECT_EQ(set.landingType, kAttackBurn);

    for (const char* const line : {"attack 1 2 3 4 5", "attack None 1 2", "attack 0",
                                   "attack9 none", "blast 0 0 x 0", "blast none", "shock none"}) {
        const AttackBoxDef reset = frame(std::string(kAttackSettings) + line).attack;
        EXPECT_EQ(reset.forceDirection, -2) << line;
        EXPECT_EQ(reset.guardCost + reset.juggleCost + reset.tag + reset.penetration, 0) << line;
        EXPECT_EQ(reset.noFlash + reset.landingDamage + reset.landingMode, 0) << line;
        EXPECT_EQ(reset.landingType, -1) << line;
    }
}

TEST(AnimationReader, ClearingLinesRemoveTheAttackFromLaterFrames) {
    const auto all =
        frames("attack 1 2 3 4 5 1 0 0 8\ndropv 9 2\nframe f.gif\nattack none\nframe f.gif\n");
    EXPECT_TRUE(all.at(0).hasAttack);
    EXPECT_EQ(showAttack(all.at(1)), "[0,0,0,0 0/0 0,0,0,0,0]");
    EXPECT_FALSE(all[1].knockdown);
    EXPECT_EQ(all[1].dropVx, 0);
    EXPECT_EQ(all[1].dropVy, -3);
    EXPECT_EQ(all[1].pauseTime, 0);
}

TEST(AnimationReader, LandingTypesHaveNames) {
    struct Case {
        const char* word;
        std::int32_t type;
    };
    const std::vector<Case> cases = {
        {"Attack", 1},   {"normal1", 1},  {"attack5", 5},   {"NORMAL12", 12},
        {"attackx", -1}, {"blast", 1001}, {"freeze", 1003}, {"shock", 1004},
        {"steal", 1005}, {"7", 7},        {"junk", -1},     {"", -1},
    };
    for (const auto& [word, type] : cases) {
        EXPECT_EQ(frame(std::string("damageonlanding 1 2 ") + word).attack.landingType, type)
            << word;
    }
    EXPECT_EQ(frame("damageonlanding 1 2 burn\ndamageonlanding 3").attack.landingMode, 0);
}

TEST(AnimationReader, PlatformsComeInTwoForms) {
    const FrameDef full = frame("offset 50 60\nplatform 1 2 3 4 5 6 -7 8");
    EXPECT_TRUE(full.hasPlatform);
    EXPECT_EQ(full.platform.x, 1);
    EXPECT_EQ(full.platform.z, 2);
    EXPECT_EQ(full.platform.upperRight, 6);
    EXPECT_EQ(full.platform.depth, 7);
    EXPECT_EQ(full.platform.altitude, 8);
    const FrameDef brief = frame("offset 50 60\nplatform 1 2 3 4 5 6 7");
    EXPECT_TRUE(brief.hasPlatform);
    EXPECT_EQ(brief.platform.x, 50);
    EXPECT_EQ(brief.platform.z, 60);
    EXPECT_EQ(brief.platform.lowerLeft, 1);
    EXPECT_EQ(brief.platform.altitude, 6);
    EXPECT_FALSE(frame("platform 1 2 3 4 5 -6").hasPlatform);
    EXPECT_EQ(frame("platform 1 2 3 4 5 -6").platform.altitude, 0);
    EXPECT_FALSE(frame("platform 1 2 3 4 0 6").hasPlatform);
    EXPECT_FALSE(frame("platform 1 2 3 4 5").hasPlatform);
}

TEST(AnimationReader, DrawMethodsByNameOrByPosition) {
    EXPECT_FALSE(frame("drawmethod").draw.enabled);
    const DrawMethodDef scaled = frame("drawmethod Scale 2").draw;
    EXPECT_TRUE(scaled.enabled);
    EXPECT_EQ(scaled.scaleX, 2);
    EXPECT_EQ(scaled.scaleY, 2);
    EXPECT_EQ(frame("drawmethod scale 2 0.5").draw.scaleY, 0.5F);
    EXPECT_EQ(frame("drawmethod scale 2\ndrawmethod scale").draw.scaleY, 1);
    EXPECT_EQ(frame("drawmethod scalex 3").draw.scaleX, 3);
    EXPECT_EQ(frame("drawmethod scaley 3").draw.scaleY, 3);
    EXPECT_EQ(frame("drawmethod shiftx -3.5").draw.shiftX, -3.5F);
    EXPECT_FALSE(frame("drawmethod flipx 1\ndrawmethod flipx").draw.flipX);
    EXPECT_TRUE(frame("drawmethod flipy 1").draw.flipY);
    EXPECT_FALSE(frame("drawmethod flipy 1\ndrawmethod flipy 0").draw.flipY);
    EXPECT_TRUE(frame("drawmethod fliprotate 1").draw.flipRotate);
    EXPECT_FALSE(frame("drawmethod fliprotate 1\ndrawmethod fliprotate").draw.flipRotate);
    EXPECT_EQ(frame("drawmethod alpha 6").draw.alphaMode, 6);
    EXPECT_EQ(frame("drawmethod remap 3").draw.remap, 3);
    EXPECT_EQ(frame("drawmethod tintmode 9").draw.tintMode, 6);
    EXPECT_EQ(frame("drawmethod tintmode 2\ndrawmethod tintmode").draw.tintMode, 0);
    EXPECT_EQ(frame("drawmethod rotate -90").draw.rotate, 270);
    EXPECT_EQ(frame("drawmethod rotate 720").draw.rotate, 0);
    EXPECT_EQ(frame("drawmethod rotate -2147483648").draw.rotate, 232);

    const DrawMethodDef full =
        frame("drawmethod tintmode 2\ndrawmethod 512 128 1 1 64 6 2 5 -10 1").draw;
    EXPECT_EQ(full.scaleX, 2);
    EXPECT_EQ(full.scaleY, 0.5F);
    EXPECT_TRUE(full.flipX && full.flipY && full.flipRotate);
    EXPECT_EQ(full.shiftX, 0.25F);
    EXPECT_EQ(full.alphaMode, 6);
    EXPECT_EQ(full.remap, 2);
    EXPECT_EQ(full.fillColor, 5);
    EXPECT_EQ(full.rotate, 350);
    EXPECT_EQ(full.tintMode, 2);
    // A short line resets what it does not give.
    const DrawMethodDef brief = frame("drawmethod 512 128 1 1 64 6 2 5 -10 1\ndrawmethod x").draw;
    EXPECT_TRUE(brief.enabled);
    EXPECT_EQ(brief.scaleX, 1);
    EXPECT_EQ(brief.scaleY, 1);
    EXPECT_FALSE(brief.flipX || brief.flipY || brief.flipRotate);
    EXPECT_EQ(brief.alphaMode + brief.remap + brief.fillColor + brief.rotate, 0);
    const DrawMethodDef off = frame("drawmethod tintmode 2\nnodrawmethod").draw;
    EXPECT_FALSE(off.enabled);
    EXPECT_EQ(off.tintMode, 0);
}

TEST(AnimationReader, ColorsAreChannelsOrOneNumber) {
    struct Case {
        const char* token;
        std::int32_t color;
    };
    const std::vector<Case> cases = {
        {"255_128_1", 0xFF8001},
        {"300_-5_010", 0xFF000A},
        {"0_0_0", 0},
        {"1_x_3", 0},
        {"_2_3", 0},
        {"1_2_", 0},
        {"0xFF", 255},
        {"010", 8},
        {"12", 12},
        {"5__7", 5},
        {"5_7", 5},
        {"red", 0},
        {"", 0},
    };
    for (const auto& [token, color] : cases) {
        EXPECT_EQ(frame(std::string("drawmethod tintcolor 9\ndrawmethod tintcolor ") + token)
                      .draw.tintColor,
                  color)
            << token;
        EXPECT_EQ(frame(std::string("drawmethod fillcolor 9\ndrawmethod fillcolor ") + token)
                      .draw.fillColor,
                  color)
            << token;
    }
}

TEST(AnimationReader, FrameEffects) {
    const FrameDef set = frame(
        "move 1.5\nmovez -2\nmovea 3\nseta 0\nattack.effect.hit.flash.model H\n"
        "attack.effect.block.flash.model B");
    EXPECT_EQ(set.moveX, 1.5F);
    EXPECT_EQ(set.moveZ, -2);
    EXPECT_EQ(set.moveA, 3);
    EXPECT_TRUE(set.hasSetA);
    EXPECT_EQ(set.hitFlash, "H");
    EXPECT_EQ(set.blockFlash, "B");
    EXPECT_EQ(animation("hitflash H").hitFlash, "H");
    EXPECT_EQ(animation("hitfx data/sounds/h.wav").hitFx, "sounds/h.wav");
}

template <typename T>
struct Case {
    const char* lines;
    T AnimationDef::*field;
    T expected;
};

template <typename T>
void expectFields(const std::vector<Case<T>>& cases) {
    for (const auto& [lines, field, expected] : cases) {
        EXPECT_EQ(animation(lines).*field, expected) << lines;
    }
}

TEST(AnimationReader, ReadsAnimationNumbers) {
    expectFields<std::int32_t>({
        {"loop 1 -2 5", &A::loopStart, 0},
        {"loop 1 2 5\nloop 1", &A::loopEnd, 5},
        {"energycost -5 9", &A::energyCost, 0},
        {"energycost -5 9", &A::energyMode, 2},
        {"mpcost 5 1 1\nmpcost 6", &A::energyMode, 0},
        {"mpcost 5 1 1\nmpcost 6", &A::energyDisable, 0},
        {"mpcost 6", &A::energyCost, 6},
        {"mponly 1", &A::energyMode, 1},
        {"dropframe -7", &A::dropFrame, -1},
        {"chargetime 1.255", &A::chargeTime, 126},
        {"chargetime -1", &A::chargeTime, 0},
        {"chargetime 3e38", &A::chargeTime, std::numeric_limits<std::int32_t>::max()},
        {"pbombframe 3", &A::pBombFrame, 3},
        {"pbombframe 3", &A::tossFrame, 3},
        {"pbombframe 3 9\npbombframe -3", &A::pBombDelay, 70},
        {"pbombframe 3 9", &A::projectileOffsetY, 9},
        {"flipframe 2\nflipframe", &A::flipFrame, 0},
        {"quakeframe 3 -1 4", &A::quakeIntensity, 4},
        {"landframe 2 dust", &A::landDust, 0},
        {"jumpframe data/a.gif 3", &A::jumpFrame, -1},
        {"shootframe 2 40", &A::throwFrame, 2},
        {"pshotframe 2 40\nthrowframe 3", &A::projectileOffsetY, 40},
        {"tossframe 2", &A::tossFrame, 2},
        {"weaponframe 2 3", &A::weaponIndex, 3},
        {"followanim 2", &A::followAnim, 2},
        {"followanim -1", &A::followAnim, 0},
        {"followcond 2", &A::followCond, 2},
        {"followcond 2\nfollowcond -1", &A::followCond, 0},
        {"counterframe 4 1", &A::counterStart, -1},
        {"counterframe 4 1 0", &A::counterEnd, 4},
        {"counterrange 4 2 1 0", &A::counterEnd, 4},
        {"counterrange 4 x 1 0", &A::counterEnd, 4},
        {"counterrange 4 6 3 0", &A::counterCond, 3},
        {"spawnframe -4", &A::spawnFrame, 0},
        {"unsummonframe 4", &A::unsummonFrame, 4},
        {"unsummonframe -4", &A::unsummonFrame, 0},
    });
    expectFields<float>({
        {"range 80 20", &A::rangeXMin, 20},
        {"range 80 20", &A::rangeXMax, 80},
        {"range 5", &A::rangeXMin, 0},
        {"range 5 x", &A::rangeXMax, 75},
        {"rangez 3 -3", &A::rangeZMin, -3},
        {"rangea x x", &A::rangeAMin, -1000},
        {"jumpframe 1 2 3 4", &A::jumpVelocityY, 2},
        {"jumpframe 1 2 3 4", &A::jumpVelocityX, 3},
        {"jumpframe 1 2 3 4", &A::jumpVelocityZ, 4},
        {"projectile_velocity_x x", &A::projectileVelocityX, 2},
        {"projectile_velocity_z 4", &A::projectileVelocityZ, 4},
        {"spawnframe 1 2 3 4 1", &A::spawnOffsetZ, 3},
        {"spawnframe 1 2 3 4 1", &A::spawnOffsetA, 4},
    });
    expectFields<bool>({
        {"loop 1", &A::loop, true},
        {"loop 1\nloop 0", &A::loop, false},
        {"attackone 1", &A::attackOne, true},
        {"attackone 1\nattackone 0", &A::attackOne, false},
        {"counterframe 4 1 0", &A::counterTakesDamage, false},
        {"counterrange 1 2 0 x", &A::counterTakesDamage, true},
        {"rangea 1 2", &A::hasRangeA, true},
        {"rangez 1", &A::hasRangeZ, false},
        {"summonframe 1", &A::summonFrame, true},
        {"summonframe 1\nspawnframe 1 0 0 0 1", &A::summonFrame, false},
        {"spawnframe 1 0 0 0 1", &A::spawnScreenRelative, true},
        {"spawnframe 1 0 0 0 1\nspawnframe 1 0 0 0 0", &A::spawnScreenRelative, false},
    });
    expectFields<std::string>({
        {"landframe 2 Dust", &A::landDustModel, "Dust"},
        {"custknife K", &A::custKnife, "K"},
        {"custpbomb B", &A::custBomb, "B"},
        {"custentity E", &A::custEntity, "E"},
    });
}

TEST(AnimationReader, CancelsNeedFiveArguments) {
    const A set = animation("cancel 0 2 0 a\ncancel 3 1 -2 F D jump\ncancel 1 x 2 A attack1\n");
    ASSERT_EQ(set.cancels.size(), 2U);
    EXPECT_EQ(set.cancels[0].startFrame, 3);
    EXPECT_EQ(set.cancels[0].endFrame, 3);
    EXPECT_EQ(set.cancels[0].hits, 0);
    EXPECT_EQ(set.cancels[0].command, "F D");
    EXPECT_EQ(set.cancels[0].targetAnimation, "jump");
    EXPECT_EQ(set.cancels[1].endFrame, 1);
    EXPECT_EQ(set.cancels[1].hits, 2);
}

}  // namespace
}  // namespace tindrel
