#include "reader/ModelReader.hpp"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <variant>
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
    const char* lines;
    T ModelDef::*field;
    T expected;
};

template <typename T>
void expectFields(const std::vector<Case<T>>& cases) {
    for (const auto& [lines, field, expected] : cases) {
        EXPECT_EQ(parse(lines).*field, expected) << lines;
    }
}

TEST(ModelReader, ReadsWholeNumbersWithinTheirLimits) {
    expectFields<std::int32_t>({
        {"health -5", &M::health, -5},
        {"health x", &M::health, 100},
        {"mp -5", &M::mp, 0},
        {"MP 7", &M::mp, 7},
        {"jumpheight x", &M::jumpHeight, 4},
        {"jumpmove 1 2", &M::jumpMoveZ, 2},
        {"walkoffmove 1 2", &M::walkoffMoveX, 1},
        {"weapnum -1", &M::weaponNumber, 0},
        {"shootnum 6", &M::shootNum, 6},
        {"reload 7", &M::reloadAmount, 7},
        {"weaploss 9 -1", &M::weaponLossFlag, 3},
        {"weapon_loss_index 2\nweaploss 1", &M::weaponLossIndex, 2},
        {"counter x", &M::weaponDropCounter, 3},
        {"counter -2", &M::weaponDropCounter, 0},
        {"summonkill 3", &M::summonKill, 2},
        {"combostyle 3", &M::comboStyle, 2},
        {"combodelay 1", &M::comboDelay, 1},
        {"combodelay -9", &M::comboDelay, 1},
        {"jugglepoints x", &M::jugglePoints, 4},
        {"blockodds x", &M::blockOdds, -1},
        {"blockpain -1", &M::blockPain, 0},
        {"thold 5", &M::blockThreshold, 5},
        {"blockthreshold 6", &M::blockThreshold, 6},
        {"guardpoints 30", &M::guardPoints, 30},
        {"guardrate x", &M::guardRate, 2},
        {"aggression -300", &M::aggression, -300},
        {"stealth 3 4", &M::stealth, 3},
        {"stealth 3 4", &M::perception, 4},
        {"aiattack 2", &M::aiAttack, 2},
        {"cantgrab 2", &M::grabForce, -999999},
        {"cantgrab 2", &M::grabResistance, 0},
        {"notgrab 0", &M::grabResistance, 1},
        {"antigrab 4", &M::grabResistance, 4},
        {"grabforce -3", &M::grabForce, -3},
        {"grabdistance 8", &M::grabDistance, 8},
        {"grabin -20", &M::grabDistance, 8},
        {"grabin 36", &M::grabDistance, 36},
        {"makeinv -2", &M::makeInv, -2},
        {"throwframewait 2", &M::throwFrameWait, 2},
        {"throwdamage -2", &M::throwDamage, 0},
        {"bounce 3", &M::bounce, 3},
        {"setlayer 9999999999999", &M::setLayer, 0},
        {"facing 2", &M::facingAdjust, 2},
        {"alpha 9", &M::alphaMode, 6},
        {"gfxshadow 1 9", &M::gfxShadowBase, 3},
        {"riseinv 100 1", &M::riseInv, 100},
        {"risetime 20", &M::riseAttackTime, -50},
        {"risetime 20 30", &M::riseAttackTime, 30},
        {"riseattacktype 4", &M::riseAttackType, 3},
        {"nodieblink 3", &M::noDieBlink, 3},
        {"offscreenkill -1", &M::offscreenKill, 0},
        {"death 3", &M::fallDie, 2},
        {"falldie 1", &M::fallDie, 1},
        {"fmap 5", &M::freezeMap, 5},
        {"remove x", &M::removeConfig, 0},
        {"shadow x", &M::shadow, 1},
        {"shadow 7", &M::shadow, 6},
        {"lifebarstatus 1 0 1 2 3 4 5 6 7", &M::lifeBarHeight, 1},
        {"lifebarstatus 1 0 1 2 3 4 5 6 7", &M::lifeBarBackfillLayer, 7},
        {"lifebarstatus x", &M::lifeBarWidth, 100},
        {"lifeposition 5", &M::lifePositionX, -1},
        {"lifeposition 5 6", &M::lifePositionY, 6},
        {"nameposition 5 6", &M::namePositionX, 5},
        {"iconposition 5 6", &M::iconPositionY, 6},
        {"child_follow_direction_adjust_config Toward", &M::childDirectionAdjust, 6},
        {"child_follow_direction_adjust_config 12", &M::childDirectionAdjust, 12},
        {"modelflag no_basic No_Script", &M::modelCopyFlags, 5},
        {"modelflag 8 none -1 2", &M::modelCopyFlags, 10},
        {"modelflag 8\nmodelflag no_weapon", &M::modelCopyFlags, 2},
    });
}

TEST(ModelReader, ReadsFractionsAndLegacyTenths) {
    expectFields<float>({
        {"speed 12", &M::speed, 1.2F},
        {"speed 1.2", &M::speed, 1.2F},
        {"speed x", &M::speed, 1},
        {"speedf 12", &M::speed, 12},
        {"jumpspeed 15", &M::jumpSpeed, 1.5F},
        {"jumpspeedf 15", &M::jumpSpeed, 15},
        {"runspeed 15", &M::runSpeed, 15},
        {"running 25 4 2.5", &M::runSpeed, 2.5F},
        {"runspeed 3\nrunning x", &M::runSpeed, 3},
        {"running 25 4 2.5", &M::runJumpLength, 2.5F},
        {"knockdowncount 2.5", &M::knockdownCount, 2.5F},
        {"throw 1.5 2", &M::throwHeight, 2},
        {"throwdist 5", &M::throwDistance, 5},
        {"bouncefactor x", &M::bounceFactor, 0.5F},
        {"bouncefactor -1", &M::bounceFactor, 0},
        {"antigravity 50", &M::antigravity, 0.5F},
        {"antigravity 0.25", &M::antigravity, 0.25F},
        {"antigravity -40", &M::antigravity, 0},
        {"antigravity 300", &M::antigravity, 1},
        {"lifespan -3", &M::lifespanSeconds, 0},
        {"child_follow_offset_y -4", &M::childFollowOffsetY, -4},
        {"child_follow_range_base_max -40", &M::childFollowRange, 40},
        {"child_follow_range_x_max 0", &M::childFollowRangeXMax, 1},
        {"child_follow_range_base_min x", &M::childFollowRangeXMin, -100},
        {"child_follow_range_z_max 8", &M::childFollowRangeZMax, 8},
        {"child_follow_range_recall_x_max 50", &M::childRecallRange, 100},
        {"child_follow_range_x_max 30\nchild_follow_range_recall_base_max -50",
         &M::childRecallRangeXMax, 50},
        {"child_follow_range_recall_y_min -9", &M::childRecallRangeYMin, -9},
        {"child_follow_recall_offset_z 3", &M::childRecallOffsetZ, 3},
    });
}

TEST(ModelReader, ReadsFlags) {
    expectFields<bool>({
        {"noatflash 1", &M::noAttackFlash, true},
        {"toflip -1", &M::flipFlash, true},
        {"running 1 0 0 1 0", &M::runMoveZ, true},
        {"running 1 0 0 0 1", &M::runLand, true},
        {"blockback 1", &M::blockBack, true},
        {"typeshot 1", &M::typeShot, true},
        {"animal 1", &M::animalWeapon, true},
        {"nograb 1", &M::noGrab, true},
        {"grabback 1", &M::grabBack, true},
        {"grabfinish 1", &M::grabFinish, true},
        {"fastattack 1", &M::fastAttack, true},
        {"subjecttogravity 1", &M::subjectToGravity, true},
        {"subject_to_screen 1", &M::subjectToScreen, true},
        {"subject_to_obstacle x", &M::subjectToObstacle, true},
        {"subject_to_platform 0", &M::subjectToPlatform, false},
        {"subject_to_minz 0", &M::subjectToMinZ, false},
        {"subject_to_maxz 0", &M::subjectToMaxZ, false},
        {"subject_to_hole 0", &M::subjectToHole, false},
        {"subject_to_wall 0", &M::subjectToWall, false},
        {"holdblock 1", &M::holdBlock, true},
        {"riseinv 1 1", &M::riseInvNoBlink, true},
        {"nopain 1", &M::noPain, true},
        {"nodrop 1", &M::noDrop, true},
        {"noquake 1", &M::noQuake, true},
        {"nomove 1 1\nnomove 0 0", &M::noMove, true},
        {"nomove 0 1", &M::noFlip, true},
        {"nomove 0 1", &M::noMove, false},
        {"no_adjust_base 1", &M::noAdjustBase, true},
        {"icon a.gif 1\nicon b.gif", &M::iconUsesPalette, false},
        {"nolife 1", &M::noLife, true},
        {"lifebarstatus 50", &M::lifeBarStatusDefined, true},
        {"weaploss 0", &M::weaponLossDefined, true},
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
        {"script data/scripts/u.c", &M::updateScript, "data/scripts/u.c"},
        {"updatescript u.c", &M::updateScript, "u.c"},
        {"onmovezscript z.c", &M::onMoveZScript, "z.c"},
        {"onblockoscript o.c", &M::onBlockOScript, "o.c"},
        {"onblockpscript p.c", &M::onBlockPScript, "p.c"},
        {"ondoattack d.c", &M::onDoAttackScript, "d.c"},
        {"takedamage_script t.c", &M::takeDamageScript, "t.c"},
        {"didhit_script h.c", &M::didHitScript, "h.c"},
        {"onpainscript p.c", &M::onPainScript, "p.c"},
        {"onfall_script f.c", &M::onFallScript, "f.c"},
    });
}

TEST(ModelReader, GathersListsOrReplacesThem) {
    const ModelDef model = parse(
        "weapons A b\nweapon c\n"
        "atchain 1 2 3\natchain 4 -1 x\n"
        "alternatepal data/a.gif\nalternatepal b.gif\n"
        "remap data/a.gif data/b.gif\nremap lonely.gif\n"
        "com d F  F a freespecial\ncmd a\n"
        "defense\ndefense Shock 0.5 2 x 4 5 0.25\ndefense all 1 1 1 0 0 0 1\n");
    EXPECT_EQ(model.weapons, (Strings{"A", "b", "c"}));
    EXPECT_EQ(model.attackChain, (std::vector<std::int32_t>{4, 0, 0}));
    EXPECT_EQ(model.alternatePalettes, (Strings{"a.gif", "b.gif"}));
    ASSERT_EQ(model.paletteRemaps.size(), 1U);
    EXPECT_EQ(model.paletteRemaps[0].source, "a.gif");
    EXPECT_EQ(model.paletteRemaps[0].target, "b.gif");
    ASSERT_EQ(model.commands.size(), 1U);
    EXPECT_EQ(model.commands[0].sequence, "d F F a");
    EXPECT_EQ(model.commands[0].targetAnimation, "freespecial");
    ASSERT_EQ(model.defenses.size(), 2U);
    const DefenseDef& shock = model.defenses[0];
    EXPECT_EQ(shock.type, "shock");
    EXPECT_EQ(shock.factor, 0.5F);
    EXPECT_EQ(shock.pain, 2);
    EXPECT_EQ(shock.knockdown, 1);
    EXPECT_EQ(shock.blockPower, 4);
    EXPECT_EQ(shock.blockThreshold, 5);
    EXPECT_EQ(shock.blockRatio, 0.25F);
    EXPECT_TRUE(shock.blockRatioDefined);
    EXPECT_FALSE(shock.blockTypeDefined);
    EXPECT_TRUE(model.defenses[1].blockTypeDefined);
    EXPECT_EQ(model.defenses[1].blockType, 1);
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

}  // namespace
}  // namespace tindrel
