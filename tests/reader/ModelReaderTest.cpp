#include "reader/ModelReader.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <string>
#include <vector>

#include "TempFolder.hpp"
#include "reader/ModelKeywords.hpp"

namespace tindrel {
namespace {

using Strings = std::vector<std::string>;
using M = ModelDef;

ModelDef parse(std::string text) {
    return parseModel(TextFile(std::move(text)), "stem");
}

// A file with these lines leaves this value in this field.
template <typename T>
struct Case {
    std::string lines;
    T ModelDef::*field;
    T expected;
};

template <typename T>
void expectFields(const std::vector<Case<T>>& cases) {
    for (const auto& [lines, field, expected] : cases) {
        EXPECT_EQ(parse(lines).*field, expected) << lines;
    }
}

// A keyword whose first argument goes to this field, or the fallback when it is no number.
template <typename T>
struct Plain {
    std::string keyword;
    T ModelDef::*field;
    T fallback;
};

TEST(ModelReader, ReadsNumbersOfAnySign) {
    const std::vector<Plain<std::int32_t>> numbers = {
        {"health", &M::health, 100},
        {"jumpheight", &M::jumpHeight, 4},
        {"jumpmove", &M::jumpMoveX, 0},
        {"jumpmove 1", &M::jumpMoveZ, 0},
        {"walkoffmove", &M::walkoffMoveX, 0},
        {"walkoffmove 1", &M::walkoffMoveZ, 0},
        {"jugglepoints", &M::jugglePoints, 4},
        {"blockodds", &M::blockOdds, -1},
        {"aggression", &M::aggression, 0},
        {"aiattack", &M::aiAttack, 0},
        {"grabforce", &M::grabForce, 0},
        {"grabresistance", &M::grabResistance, 0},
        {"grab_resistance", &M::grabResistance, 0},
        {"antigrab", &M::grabResistance, 0},
        {"makeinv", &M::makeInv, 0},
        {"setlayer", &M::setLayer, 0},
        {"facing", &M::facingAdjust, 0},
        {"gfxshadow", &M::gfxShadow, 0},
        {"riseinv", &M::riseInv, 0},
        {"risetime", &M::riseTime, 0},
        {"risetime 1", &M::riseAttackTime, -50},
        {"nodieblink", &M::noDieBlink, 0},
        {"fmap", &M::freezeMap, 0},
        {"remove", &M::removeConfig, 0},
        {"lifebarstatus 1 1", &M::lifeBarNoBorder, 0},
        {"lifebarstatus 1 1 1", &M::lifeBarType, 0},
        {"lifebarstatus 1 1 1 1", &M::lifeBarOrientation, 0},
        {"lifebarstatus 1 1 1 1 1", &M::lifeBarBorderLayer, 0},
        {"lifebarstatus 1 1 1 1 1 1", &M::lifeBarShadowLayer, 0},
        {"lifebarstatus 1 1 1 1 1 1 1", &M::lifeBarGraphLayer, 0},
        {"lifebarstatus 1 1 1 1 1 1 1 1", &M::lifeBarBackfillLayer, 0},
        {"lifeposition 1", &M::lifePositionY, -1},
        {"nameposition 1", &M::namePositionY, -1},
        {"iconposition 1", &M::iconPositionY, -1},
    };
    for (const auto& [keyword, field, fallback] : numbers) {
        expectFields<std::int32_t>({
            {keyword + " 7", field, 7},
            {keyword + " -7", field, -7},
            {keyword + " 7\n" + keyword + " x", field, fallback},
            {keyword + " 7\n" + keyword + " 9999999999999", field, fallback},
        });
    }
}

TEST(ModelReader, ReadsFractionsOfAnySign) {
    const std::vector<Plain<float>> numbers = {
        {"speedf", &M::speed, 1},
        {"jumpspeedf", &M::jumpSpeed, 0},
        {"runspeed", &M::runSpeed, 0},
        {"running 1", &M::runJumpHeight, 0},
        {"running 1 1", &M::runJumpLength, 0},
        {"knockdowncount", &M::knockdownCount, 0},
        {"throw", &M::throwDistance, 0},
        {"throw 1", &M::throwHeight, 0},
        {"throwdist", &M::throwDistance, 0},
        {"throwheight", &M::throwHeight, 0},
        {"child_follow_offset_x", &M::childFollowOffsetX, 0},
        {"child_follow_offset_y", &M::childFollowOffsetY, 0},
        {"child_follow_offset_z", &M::childFollowOffsetZ, 0},
        {"child_follow_range_base_min", &M::childFollowRangeXMin, -100},
        {"child_follow_range_x_min", &M::childFollowRangeXMin, -100},
        {"child_follow_range_y_max", &M::childFollowRangeYMax, 100},
        {"child_follow_range_y_min", &M::childFollowRangeYMin, -100},
        {"child_follow_range_z_max", &M::childFollowRangeZMax, 100},
        {"child_follow_range_z_min", &M::childFollowRangeZMin, -100},
        {"child_follow_range_recall_base_min", &M::childRecallRangeXMin, -300},
        {"child_follow_range_recall_x_min", &M::childRecallRangeXMin, -300},
        {"child_follow_range_recall_y_max", &M::childRecallRangeYMax, 300},
        {"child_follow_range_recall_y_min", &M::childRecallRangeYMin, -300},
        {"child_follow_range_recall_z_max", &M::childRecallRangeZMax, 300},
        {"child_follow_range_recall_z_min", &M::childRecallRangeZMin, -300},
        {"child_follow_recall_offset_x", &M::childRecallOffsetX, 0},
        {"child_follow_recall_offset_y", &M::childRecallOffsetY, 0},
        {"child_follow_recall_offset_z", &M::childRecallOffsetZ, 0},
    };
    for (const auto& [keyword, field, fallback] : numbers) {
        expectFields<float>({
            {keyword + " 2.5", field, 2.5F},
            {keyword + " -12", field, -12},
            {keyword + " 2.5\n" + keyword + " x", field, fallback},
        });
    }
}

// A number held between limits.
struct Limited {
    std::string keyword;
    std::int32_t ModelDef::*field;
    std::int32_t low, high, fallback;
};

TEST(ModelReader, HoldsNumbersWithinTheirLimits) {
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    const std::vector<Limited> numbers = {
        {"mp", &M::mp, 0, kMax, 0},
        {"weapnum", &M::weaponNumber, 0, kMax, 0},
        {"shootnum", &M::shootNum, 0, kMax, 0},
        {"reload", &M::reloadAmount, 0, kMax, 0},
        {"weaploss", &M::weaponLossFlag, 0, 3, 0},
        {"weaploss 1", &M::weaponLossIndex, 0, kMax, 0},
        {"weapon_loss_index", &M::weaponLossIndex, 0, kMax, 0},
        {"counter", &M::weaponDropCounter, 0, kMax, 3},
        {"summonkill", &M::summonKill, 0, 2, 0},
        {"combostyle", &M::comboStyle, 0, 2, 0},
        {"combodelay", &M::comboDelay, 1, kMax, 100},
        {"blockpain", &M::blockPain, 0, kMax, 0},
        {"thold", &M::blockThreshold, 0, kMax, 0},
        {"blockthreshold", &M::blockThreshold, 0, kMax, 0},
        {"guardpoints", &M::guardPoints, 0, kMax, 0},
        {"guardrate", &M::guardRate, 0, kMax, 2},
        {"stealth", &M::stealth, 0, kMax, 0},
        {"stealth 1", &M::perception, 0, kMax, 0},
        {"grabdistance", &M::grabDistance, 8, kMax, 30},
        {"grabin", &M::grabDistance, 8, kMax, 30},
        {"throwframewait", &M::throwFrameWait, 0, kMax, 0},
        {"throwdamage", &M::throwDamage, 0, kMax, 0},
        {"bounce", &M::bounce, 0, kMax, 0},
        {"alpha", &M::alphaMode, 0, 6, 0},
        {"gfxshadow 1", &M::gfxShadowBase, 0, 3, 0},
        {"riseattacktype", &M::riseAttackType, 0, 3, 0},
        {"offscreenkill", &M::offscreenKill, 0, kMax, 0},
        {"falldie", &M::fallDie, 0, 2, 0},
        {"death", &M::fallDie, 0, 2, 0},
        {"shadow", &M::shadow, 0, 6, 1},
        {"lifebarstatus", &M::lifeBarWidth, 1, kMax, 100},
        {"lifebarstatus 9", &M::lifeBarHeight, 1, kMax, 5},
    };
    for (const auto& [keyword, field, low, high, fallback] : numbers) {
        const std::string other = keyword + ' ' + std::to_string(low + 1) + '\n';
        expectFields<std::int32_t>({
            {other, field, low + 1},
            {other + keyword + " -2147483648", field, low},
            {other + keyword + " 2147483647", field, high},
            {other + keyword + " x", field, fallback},
        });
    }
}

TEST(ModelReader, ReadsNumbersWithRulesOfTheirOwn) {
    expectFields<std::int32_t>({
        {"cantgrab 2", &M::grabForce, -999999},
        {"cantgrab 2", &M::grabResistance, 0},
        {"notgrab 0", &M::grabResistance, 1},
        {"lifeposition 5", &M::lifePositionX, -1},
        {"lifeposition 5 6", &M::lifePositionX, 5},
        {"nameposition 5 6", &M::namePositionX, 5},
        {"iconposition 5 6", &M::iconPositionX, 5},
        {"child_follow_direction_adjust_config same", &M::childDirectionAdjust, 1},
        {"child_follow_direction_adjust_config Toward", &M::childDirectionAdjust, 6},
        {"child_follow_direction_adjust_config 12", &M::childDirectionAdjust, 12},
        {"modelflag no_basic No_Script", &M::modelCopyFlags, 5},
        {"modelflag 8 none -1 2", &M::modelCopyFlags, 10},
        {"modelflag 8\nmodelflag no_weapon", &M::modelCopyFlags, 2},
    });
    expectFields<float>({
        {"speed 12", &M::speed, 1.2F},
        {"speed 1.2", &M::speed, 1.2F},
        {"speed 30\nspeed x", &M::speed, 1},
        {"jumpspeed 15", &M::jumpSpeed, 1.5F},
        {"running 25", &M::runSpeed, 2.5F},
        {"runspeed 3\nrunning x", &M::runSpeed, 3},
        {"bouncefactor 2\nbouncefactor x", &M::bounceFactor, 0.5F},
        {"bouncefactor -1", &M::bounceFactor, 0},
        {"antigravity 50", &M::antigravity, 0.5F},
        {"antigravity 0.25", &M::antigravity, 0.25F},
        {"antigravity 1", &M::antigravity, 1},
        {"antigravity 1\nantigravity -40", &M::antigravity, 0},
        {"antigravity 300", &M::antigravity, 1},
        {"lifespan 2.5", &M::lifespanSeconds, 2.5F},
        {"lifespan 2.5\nlifespan -3", &M::lifespanSeconds, 0},
        {"child_follow_range_base_max -40", &M::childFollowRange, 40},
        {"child_follow_range_x_max 0", &M::childFollowRangeXMax, 1},
        {"child_follow_range_recall_x_max 50", &M::childRecallRange, 100},
        {"child_follow_range_x_max 30\nchild_follow_range_recall_base_max -50",
         &M::childRecallRangeXMax, 50},
    });
}

TEST(ModelReader, FlagsAreRaisedAndCleared) {
    const std::vector<Plain<bool>> flags = {
        {"noatflash", &M::noAttackFlash, false},
        {"toflip", &M::flipFlash, false},
        {"running 1 0 0", &M::runMoveZ, false},
        {"running 1 0 0 0", &M::runLand, false},
        {"blockback", &M::blockBack, false},
        {"typeshot", &M::typeShot, false},
        {"animal", &M::animalWeapon, false},
        {"nograb", &M::noGrab, false},
        {"grabback", &M::grabBack, false},
        {"grabfinish", &M::grabFinish, false},
        {"fastattack", &M::fastAttack, false},
        {"subject_to_gravity", &M::subjectToGravity, false},
        {"subjecttogravity", &M::subjectToGravity, false},
        {"subject_to_screen", &M::subjectToScreen, false},
        {"subject_to_obstacle", &M::subjectToObstacle, true},
        {"subject_to_platform", &M::subjectToPlatform, true},
        {"subject_to_minz", &M::subjectToMinZ, true},
        {"subject_to_maxz", &M::subjectToMaxZ, true},
        {"subject_to_hole", &M::subjectToHole, true},
        {"subject_to_wall", &M::subjectToWall, true},
        {"holdblock", &M::holdBlock, false},
        {"riseinv 1", &M::riseInvNoBlink, false},
        {"nopain", &M::noPain, false},
        {"nodrop", &M::noDrop, false},
        {"noquake", &M::noQuake, false},
        {"no_adjust_base", &M::noAdjustBase, false},
        {"icon a.gif", &M::iconUsesPalette, false},
        {"nolife", &M::noLife, false},
    };
    for (const auto& [keyword, field, fallback] : flags) {
        expectFields<bool>({
            {keyword + " -1", field, true},
            {keyword + " 1\n" + keyword + " 0", field, false},
            {keyword + " x", field, fallback},
        });
    }
    expectFields<bool>({
        {"nomove 1\nnomove 0 0", &M::noMove, true},
        {"nomove 0 1\nnomove 0 0", &M::noFlip, true},
        {"nomove 0 1", &M::noMove, false},
        {"icon a.gif 1\nicon b.gif", &M::iconUsesPalette, false},
        {"lifebarstatus 50", &M::lifeBarStatusDefined, true},
        {"weaploss 0", &M::weaponLossDefined, true},
        {"weapon_loss_index 0", &M::weaponLossDefined, true},
    });
}

TEST(ModelReader, ReadsTextsAndPaths) {
    expectFields<std::string>({
        {"name Axel # Stone", &M::name, "Axel"},
        {"type Player", &M::type, "Player"},
        {"subtype Biker", &M::subtype, "Biker"},
        {"branch Left", &M::branch, "Left"},
        {"flash F", &M::flashModel, "F"},
        {"bflash B", &M::blockFlashModel, "B"},
        {"knife K", &M::knifeModel, "K"},
        {"bomb B", &M::bombModel, "B"},
        {"project P", &M::projectModel, "P"},
        {"playshotno S", &M::playShotNo, "S"},
        {"subentity S", &M::subEntityModel, "S"},
        {"child_follow_recall_animation Follow1", &M::childRecallAnimation, "Follow1"},
        {"dust a", &M::dustLandModel, "a"},
        {"dust a b", &M::dustLandModel, "b"},
        {"dust a b c\ndust d", &M::dustJumpModel, ""},
        {"palette Data\\chars\\a.gif", &M::palettePath, "chars/a.gif"},
        {"diesound data/sounds/Die.wav", &M::dieSound, "sounds/Die.wav"},
        {"icon data/i.gif 1", &M::iconPath, "i.gif"},
        {"icondie data/d.gif", &M::iconDiePath, "d.gif"},
    });
}

TEST(ModelReader, ScriptPathsStayAsWritten) {
    // In the order of kModelScripts.
    const std::vector<Strings> keywords = {
        {"thinkscript"},
        {"updatescript", "script"},
        {"keyscript"},
        {"onmovexscript"},
        {"onmovezscript"},
        {"onblockascript"},
        {"onblockyscript"},
        {"onblockzscript"},
        {"onblocksscript"},
        {"onblockwscript"},
        {"onblockoscript"},
        {"onblockpscript"},
        {"didblockscript"},
        {"ondoattack", "ondoattackscript"},
        {"onkillscript", "onkill_script"},
        {"onentitycollision"},
        {"onmodelcopy"},
        {"animationscript"},
        {"takedamagescript", "takedamage_script"},
        {"didhitscript", "didhit_script"},
        {"ondrawscript", "ondraw_script"},
        {"onspawnscript", "onspawn_script"},
        {"ondeathscript", "ondeath_script"},
        {"onpainscript", "onpain_script"},
        {"onfallscript", "onfall_script"},
    };
    ASSERT_EQ(keywords.size(), std::size(kModelScripts));
    for (std::size_t i = 0; i < keywords.size(); ++i) {
        EXPECT_EQ(keywords[i].front(), kModelScripts[i].keyword);
        for (const std::string& keyword : keywords[i]) {
            EXPECT_EQ(parse(keyword + " data/U.c").*kModelScripts[i].path, "data/U.c") << keyword;
        }
    }
}

TEST(ModelReader, GathersListsOrReplacesThem) {
    const ModelDef model = parse(
        "weapons A b\nweapon c\n"
        "atchain 1 2 3\natchain 4 -1 x\n"
        "alternatepal data/a.gif\nalternatepal b.gif\n"
        "remap data/a.gif data/b.gif\nremap lonely.gif\n"
        "com d F  F a freespecial\ncmd a\n"
        "defense\ndefense all\ndefense Shock 0.5 2 x 4 5 0.25\ndefense all 1 1 1 0 0 0 1\n");
    EXPECT_EQ(model.weapons, (Strings{"A", "b", "c"}));
    EXPECT_EQ(model.attackChain, (std::vector<std::int32_t>{4, 0, 0}));
    EXPECT_EQ(model.alternatePalettes, (Strings{"a.gif", "b.gif"}));
    ASSERT_EQ(model.paletteRemaps.size(), 1U);
    EXPECT_EQ(model.paletteRemaps[0].source, "a.gif");
    EXPECT_EQ(model.paletteRemaps[0].target, "b.gif");
    ASSERT_EQ(model.commands.size(), 1U);
    EXPECT_EQ(model.commands[0].sequence, "d F F a");
    EXPECT_EQ(model.commands[0].targetAnimation, "freespecial");
    ASSERT_EQ(model.defenses.size(), 3U);
    EXPECT_FALSE(model.defenses[0].blockRatioDefined);
    const DefenseDef& shock = model.defenses[1];
    EXPECT_EQ(shock.type, "shock");
    EXPECT_EQ(shock.factor, 0.5F);
    EXPECT_EQ(shock.pain, 2);
    EXPECT_EQ(shock.knockdown, 1);
    EXPECT_EQ(shock.blockPower, 4);
    EXPECT_EQ(shock.blockThreshold, 5);
    EXPECT_EQ(shock.blockRatio, 0.25F);
    EXPECT_TRUE(shock.blockRatioDefined);
    EXPECT_FALSE(shock.blockTypeDefined);
    EXPECT_TRUE(model.defenses[2].blockTypeDefined);
    EXPECT_EQ(model.defenses[2].blockType, 1);
}

TEST(ModelReader, OrsNamedBits) {
    expectFields<std::int32_t>({
        {"aimove normal", &M::aiMove, 1},
        {"aimove Chase avoidz", &M::aiMove, 34},
        {"aimove 0x10 ignoreholes junk", &M::aiMove, 65552},
        {"candamage 6", &M::canDamageMask, 6},
        {"candamage 0x10", &M::canDamageMask, 16},
        {"candamage 6 enemy", &M::canDamageMask, 8},
        {"candamage 6x", &M::canDamageMask, 0},
        {"hostile Player npc", &M::hostileMask, 4100},
        {"projectile all enemy", &M::projectileHitMask, 16381},
        {"projectilehit all\nprojectilehit none", &M::projectileHitMask, 1},
    });
}

TEST(ModelReader, WeaponLossTakesTheFirstConditionThatApplies) {
    expectFields<std::int32_t>({
        {"weapon_loss_condition none", &M::weaponLossFlag, 3},
        {"weapon_loss_condition stage Land_Damage", &M::weaponLossFlag, 0},
        {"weapon_loss_condition none death fall", &M::weaponLossFlag, 1},
        {"weapon_loss_condition stage death", &M::weaponLossFlag, 2},
        {"weaploss 2\nweapon_loss_condition other", &M::weaponLossFlag, 2},
    });
    EXPECT_TRUE(parse("weapon_loss_condition other").weaponLossDefined);
}

TEST(ModelReader, PropertiesActAnywhereAndNeedTheirArgument) {
    const ModelDef model = parse("anim idle\nframe a.gif\nname Late\nspeed 20\nframe b.gif\n");
    EXPECT_EQ(model.name, "Late");
    EXPECT_EQ(model.speed, 2);
    EXPECT_EQ(model.animations.at(0).frames.size(), 2U);
    EXPECT_EQ(parse("name\nhealth\nanim\nunknown 1").name, "stem");
    EXPECT_TRUE(parse("anim\nframe a.gif").animations.empty());
}

TEST(ModelReader, NoKeywordIsListedTwice) {
    std::set<std::string_view> seen;
    for (const auto rows : {propertyKeywords(), animationKeywords(), frameKeywords()}) {
        for (const ModelKeyword& row : rows) {
            for (const std::string_view name : row.names) {
                EXPECT_TRUE(name.empty() || seen.insert(name).second) << name;
            }
        }
    }
}

class ModelRegistry : public ::testing::Test {
  protected:
    // "modelName|name|sourceFile" of every model.
    Strings read() {
        GameReader game(folder.path() / "data", folder.path());
        models = readModels(game);
        Strings out;
        for (const ModelDef& model : models) {
            out.push_back(model.modelName + '|' + model.name + '|' + model.sourceFile);
        }
        return out;
    }

    test::TempFolder folder;
    std::vector<ModelDef> models;
};

TEST_F(ModelRegistry, LoadsAndKnowsInOrderWithoutDuplicates) {
    folder.write("data/models.txt",
                 "load Ryu data\\chars\\RYU.txt\n"
                 "know chars/ken.txt\n"
                 "load RYU DATA/chars/./ryu.txt\n"  // same name, same file
                 "load Clone chars/ryu.txt\n"
                 "load Empty chars/empty.txt\n"
                 "load Gone chars/gone.txt\n"
                 "load Out ../secret.txt\n"
                 "load Folder chars\n"
                 "load\n");
    folder.write("data/chars/ryu.txt", "name Ryu_H\nanim idle\n");
    folder.write("data/chars/ken.txt", "anim idle\n");
    folder.write("data/chars/empty.txt", "name Nobody\n");
    folder.write("secret.txt", "anim idle\n");
    EXPECT_EQ(read(), (Strings{"Ryu|Ryu_H|data/chars/ryu.txt", "ken|ken|data/chars/ken.txt",
                               "Clone|Ryu_H|data/chars/ryu.txt"}));
}

TEST_F(ModelRegistry, LoadSkipsLinks) {
    folder.write("data/models.txt", "load a a.txt\nload b b.txt\n");
    const auto real = folder.write("data/a.txt", "anim idle\n");
    std::error_code error;
    std::filesystem::create_symlink(real, folder.path() / "data" / "b.txt", error);
    if (error) GTEST_SKIP() << "no symbolic links here: " << error.message();
    EXPECT_EQ(read(), Strings{"a|a|data/a.txt"});
}

TEST_F(ModelRegistry, GlobalFlagsHoldForEveryModelWhereverTheyStand) {
    folder.write("data/models.txt",
                 "mpblock 1\nload a a.txt\nNoCost 1\nnochipdeath 1\nnochipdeath 0\nblockratio\n");
    folder.write("data/a.txt", "anim idle\n");
    ASSERT_EQ(read().size(), 1U);
    EXPECT_TRUE(models[0].globalNoCost);
    EXPECT_TRUE(models[0].globalMpBlock);
    EXPECT_FALSE(models[0].noChipDeath);
    EXPECT_FALSE(models[0].globalBlockRatio);
}

TEST_F(ModelRegistry, WithoutAUsableRegistryEveryEntityFileIsAModel) {
    EXPECT_TRUE(read().empty());  // no data folder at all
    folder.write("data/models.txt", "nocost 1\nload gone gone.txt\n");
    folder.write("data/levels.txt", "set a\nfile b\n");
    folder.write("data/chars/deep/a.TXT", "name Zed\nanim idle\n");
    folder.write("data/chars/deep/a.c", "anim idle\n");
    EXPECT_EQ(read(), Strings{"Zed|Zed|data/chars/deep/a.TXT"});
    EXPECT_FALSE(models[0].globalNoCost);
}

// What one line says for all that follow must not be multiplied without bound.
TEST(ModelReader, CopiesOfHostileTextStayBounded) {
    std::string text = "@script\n" + std::string(1U << 20U, 'x') + "\n@end_script\n";
    for (int i = 0; i < 200; ++i) text += "anim a\n";
    const ModelDef scripts = parseModel(TextFile(text), "m");
    ASSERT_EQ(scripts.animations.size(), 200U);
    EXPECT_TRUE(scripts.animations.back().inlineScript.empty());

    const std::string longName(2000, 'n');
    const ModelDef names =
        parseModel(TextFile("anim a\nhitflash fine\nblockflash fine\nhitflash " + longName +
                            "\nblockflash " + longName + "\nframe f\n"),
                   "m");
    EXPECT_EQ(names.animations[0].frames[0].hitFlash, "fine");
    EXPECT_EQ(names.animations[0].frames[0].blockFlash, "fine");
}

}  // namespace
}  // namespace tindrel
