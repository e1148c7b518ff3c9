#include "reader/ModelKeywords.hpp"

#include <cmath>
#include <utility>

namespace tindrel {
namespace {

using namespace field;
using Args = KeywordArgs;
using M = ModelDef;

constexpr NamedValue kAiMoves[] = {
    {"chase", 2},           {"chasez", 4},
    {"chasex", 8},          {"avoid", 16},
    {"avoidz", 32},         {"avoidx", 64},
    {"wander", 128},        {"biker", 256},
    {"arrow", 512},         {"star", 1024},
    {"bomb", 2048},         {"nomove", 4096},
    {"ignoreholes", 65536}, {"notargetidle", 131072},
};
constexpr std::int32_t kAiMoveNormal = 1;

constexpr NamedValue kEntityTypes[] = {
    {"none", 1},        {"player", 4},    {"enemy", 8},    {"item", 16},  {"obstacle", 32},
    {"projectile", 64}, {"steamer", 128}, {"shot", 256},   {"trap", 512}, {"textbox", 1024},
    {"endlevel", 2048}, {"npc", 4096},    {"panel", 8192},
};
constexpr std::int32_t kAllEntityTypes = 16381;

// Values of ModelDef::weaponLossFlag: the lowest that a line names wins.
constexpr NamedValue kWeaponLossConditions[] = {
    {"damage", 0},  {"pain", 0}, {"grabbed", 0}, {"grabbing", 0}, {"land_damage", 0},
    {"default", 0}, {"fall", 1}, {"death", 2},   {"stage", 3},    {"none", 3},
};

constexpr NamedValue kDirectionAdjustments[] = {
    {"same", 1}, {"opposite", 2}, {"left", 3}, {"right", 4}, {"away", 5}, {"toward", 6},
};

constexpr NamedValue kModelCopyFlags[] = {
    {"none", 0},
    {"no_basic", 1},
    {"no_weapon", 2},
    {"no_script", 4},
};

// Any value of a "cantgrab" line but this makes the model hard to grab instead.
constexpr std::int32_t kCannotGrabOthers = 2;
constexpr std::int32_t kNoGrabForce = -999999;

std::int32_t entityTypeMask(Args args) {
    if (args.size() == 1) {
        if (const auto mask = parseAutoBase(args[0], true)) return *mask;
    }
    std::int32_t mask = 0;
    for (const std::string_view arg : args) {
        if (equalsFolded(arg, "all")) {
            mask = kAllEntityTypes;
        } else if (const NamedValue* const type = findNamed(kEntityTypes, arg)) {
            mask |= type->value;
        }
    }
    return mask;
}

template <auto Member>
void setEntityTypes(ModelParser& parser, Args args) {
    of(parser, Member) = entityTypeMask(args);
}

void setAiMove(ModelParser& parser, Args args) {
    std::int32_t move = 0;
    for (const std::string_view arg : args) {
        const NamedValue* const named = findNamed(kAiMoves, arg);
        move |= named != nullptr ? named->value : parseAutoBase(arg).value_or(0);
    }
    parser.model.aiMove = move == 0 ? kAiMoveNormal : move;
}

void setModelCopyFlags(ModelParser& parser, Args args) {
    std::int32_t flags = 0;
    for (const std::string_view arg : args) {
        const NamedValue* const named = findNamed(kModelCopyFlags, arg);
        flags |= named != nullptr ? named->value : std::max(parseIntOr(arg, 0), 0);
    }
    parser.model.modelCopyFlags = flags;
}

void setWeaponLossCondition(ModelParser& parser, Args args) {
    parser.model.weaponLossDefined = true;
    const NamedValue* lowest = nullptr;
    for (const std::string_view arg : args) {
        const NamedValue* const condition = findNamed(kWeaponLossConditions, arg);
        if (condition == nullptr) continue;
        if (lowest == nullptr || condition->value < lowest->value) lowest = condition;
    }
    if (lowest != nullptr) parser.model.weaponLossFlag = lowest->value;
}

void setDirectionAdjust(ModelParser& parser, Args args) {
    const NamedValue* const named = findNamed(kDirectionAdjustments, args[0]);
    parser.model.childDirectionAdjust = named != nullptr ? named->value : parseIntOr(args[0], 0);
}

void setFollowRange(ModelParser& parser, Args args) {
    const float range = std::max(std::fabs(parseFloatOr(args[0], 100)), 1.0F);
    parser.model.childFollowRange = parser.model.childFollowRangeXMax = range;
}

void setRecallRange(ModelParser& parser, Args args) {
    const float range =
        std::max(std::fabs(parseFloatOr(args[0], 300)), parser.model.childFollowRange);
    parser.model.childRecallRange = parser.model.childRecallRangeXMax = range;
}

void setRunning(ModelParser& parser, Args args) {
    parser.model.runSpeed = parseTenthsOr(args[0], parser.model.runSpeed);
    setFields<Float<&M::runJumpHeight>, Float<&M::runJumpLength>, Flag<&M::runMoveZ>,
              Flag<&M::runLand>>(parser, args.subspan(1));
}

void addWeapons(ModelParser& parser, Args args) {
    parser.model.weapons.insert(parser.model.weapons.end(), args.begin(), args.end());
}

void addCommand(ModelParser& parser, Args args) {
    const std::size_t last = args.size() - 1;
    parser.model.commands.push_back({joinTokens(args, 0, last), std::string(args[last])});
}

void setAttackChain(ModelParser& parser, Args args) {
    parser.model.attackChain.clear();
    for (const std::string_view arg : args) {
        parser.model.attackChain.push_back(std::max(parseIntOr(arg, 0), 0));
    }
}

void addAlternatePalette(ModelParser& parser, Args args) {
    parser.model.alternatePalettes.push_back(normalizeDataPath(args[0]));
}

void addPaletteRemap(ModelParser& parser, Args args) {
    parser.model.paletteRemaps.push_back({normalizeDataPath(args[0]), normalizeDataPath(args[1])});
}

void setCantGrab(ModelParser& parser, Args args) {
    if (parseIntOr(args[0], 0) == kCannotGrabOthers) {
        parser.model.grabForce = kNoGrabForce;
    } else {
        parser.model.grabResistance = 1;
    }
}

void setDust(ModelParser& parser, Args args) {
    parser.model.dustFallModel = args[0];
    parser.model.dustLandModel = args.size() > 1 ? args[1] : args[0];
    parser.model.dustJumpModel = args.size() > 2 ? args[2] : std::string_view{};
}

// Values beyond 1 are percentages.
void setAntigravity(ModelParser& parser, Args args) {
    const float value = parseFloatOr(args[0], 0);
    parser.model.antigravity = std::clamp(std::fabs(value) > 1 ? value / 100 : value, 0.0F, 1.0F);
}

void addDefense(ModelParser& parser, Args args) {
    DefenseDef& defense = parser.model.defenses.emplace_back();
    const auto readFloat = [&](std::size_t i, float& value) {
        if (i < args.size()) value = parseFloatOr(args[i], value);
    };
    const auto readInt = [&](std::size_t i, std::int32_t& value) {
        if (i < args.size()) value = parseIntOr(args[i], value);
    };
    defense.type = toLower(args[0]);
    readFloat(1, defense.factor);
    readFloat(2, defense.pain);
    readFloat(3, defense.knockdown);
    readInt(4, defense.blockPower);
    readInt(5, defense.blockThreshold);
    readFloat(6, defense.blockRatio);
    defense.blockRatioDefined = args.size() > 6;
    readInt(7, defense.blockType);
    defense.blockTypeDefined = args.size() > 7;
}

void setLifeBarStatus(ModelParser& parser, Args args) {
    parser.model.lifeBarStatus = 1;
    parser.model.lifeBarStatusDefined = true;
    setFields<Int<&M::lifeBarWidth, 100, kPositive>, Int<&M::lifeBarHeight, 5, kPositive>,
              Int<&M::lifeBarNoBorder>, Int<&M::lifeBarType>, Int<&M::lifeBarOrientation>,
              Int<&M::lifeBarBorderLayer>, Int<&M::lifeBarShadowLayer>, Int<&M::lifeBarGraphLayer>,
              Int<&M::lifeBarBackfillLayer>>(parser, args);
}

void startAnimation(ModelParser& parser, Args args) {
    parser.endAnimation();
    parser.model.animations.emplace_back().name = args[0];
    parser.frame = {};
    parser.pendingCommand.clear();
}

// clang-format off
constexpr ModelKeyword kPropertyKeywords[] = {
    {{"anim"}, 1, startAnimation},

    {{"name"}, 1, setFields<Text<&M::name>>},
    {{"type"}, 1, setFields<Text<&M::type>>},
    {{"subtype"}, 1, setFields<Text<&M::subtype>>},
    {{"branch"}, 1, setFields<Text<&M::branch>>},
    {{"flash"}, 1, setFields<Text<&M::flashModel>>},
    {{"bflash"}, 1, setFields<Text<&M::blockFlashModel>>},
    {{"noatflash"}, 1, setFields<Flag<&M::noAttackFlash>>},
    {{"toflip"}, 1, setFields<Flag<&M::flipFlash>>},
    {{"health"}, 1, setFields<Int<&M::health, 100>>},
    {{"mp"}, 1, setFields<Int<&M::mp, 0, kNotNegative>>},
    {{"knockdowncount"}, 1, setFields<Float<&M::knockdownCount>>},

    // Movement.
    {{"speed"}, 1, setFields<Tenths<&M::speed, 1>>},
    {{"speedf"}, 1, setFields<Float<&M::speed, 1>>},
    {{"runspeed"}, 1, setFields<Float<&M::runSpeed>>},
    {{"running"}, 1, setRunning},
    {{"walkoffmove"}, 1, setFields<Int<&M::walkoffMoveX>, Int<&M::walkoffMoveZ>>},
    {{"jumpspeed"}, 1, setFields<Tenths<&M::jumpSpeed>>},
    {{"jumpspeedf"}, 1, setFields<Float<&M::jumpSpeed>>},
    {{"jumpheight"}, 1, setFields<Int<&M::jumpHeight, 4>>},
    {{"jumpmove"}, 1, setFields<Int<&M::jumpMoveX>, Int<&M::jumpMoveZ>>},
    {{"antigravity"}, 1, setAntigravity},
    {{"bounce"}, 1, setFields<Int<&M::bounce, 0, kNotNegative>>},
    {{"bouncefactor"}, 1, [](ModelParser& p, Args a) { p.model.bounceFactor = std::max(parseFloatOr(a[0], 0.5F), 0.0F); }},
    {{"nomove"}, 1, setFields<Raise<&M::noMove>, Raise<&M::noFlip>>},
    {{"no_adjust_base"}, 1, setFields<Flag<&M::noAdjustBase>>},
    {{"facing"}, 1, setFields<Int<&M::facingAdjust>>},
    {{"subject_to_gravity", "subjecttogravity"}, 1, setFields<Flag<&M::subjectToGravity>>},
    {{"subject_to_screen"}, 1, setFields<Flag<&M::subjectToScreen>>},
    {{"subject_to_obstacle"}, 1, setFields<Flag<&M::subjectToObstacle, 1>>},
    {{"subject_to_platform"}, 1, setFields<Flag<&M::subjectToPlatform, 1>>},
    {{"subject_to_minz"}, 1, setFields<Flag<&M::subjectToMinZ, 1>>},
    {{"subject_to_maxz"}, 1, setFields<Flag<&M::subjectToMaxZ, 1>>},
    {{"subject_to_hole"}, 1, setFields<Flag<&M::subjectToHole, 1>>},
    {{"subject_to_wall"}, 1, setFields<Flag<&M::subjectToWall, 1>>},

    // Attacking.
    {{"com", "cmd"}, 2, addCommand},
    {{"atchain"}, 0, setAttackChain},
    {{"combostyle"}, 1, setFields<Int<&M::comboStyle, 0, Range{0, 2}>>},
    {{"combodelay"}, 1, setFields<Int<&M::comboDelay, 100, kPositive>>},
    {{"fastattack"}, 1, setFields<Flag<&M::fastAttack>>},
    {{"candamage"}, 0, setEntityTypes<&M::canDamageMask>},
    {{"hostile"}, 0, setEntityTypes<&M::hostileMask>},
    {{"projectilehit", "projectile"}, 0, setEntityTypes<&M::projectileHitMask>},

    // Blocking and damage.
    {{"blockodds"}, 1, setFields<Int<&M::blockOdds, -1>>},
    {{"blockpain"}, 1, setFields<Int<&M::blockPain, 0, kNotNegative>>},
    {{"blockthreshold", "thold"}, 1, setFields<Int<&M::blockThreshold, 0, kNotNegative>>},
    {{"guardpoints"}, 1, setFields<Int<&M::guardPoints, 0, kNotNegative>>},
    {{"guardrate"}, 1, setFields<Int<&M::guardRate, 2, kNotNegative>>},
    {{"blockback"}, 1, setFields<Flag<&M::blockBack>>},
    {{"holdblock"}, 1, setFields<Flag<&M::holdBlock>>},
    {{"defense"}, 1, addDefense},
    {{"jugglepoints"}, 1, setFields<Int<&M::jugglePoints, 4>>},
    {{"nopain"}, 1, setFields<Flag<&M::noPain>>},
    {{"nodrop"}, 1, setFields<Flag<&M::noDrop>>},
    {{"makeinv"}, 1, setFields<Int<&M::makeInv>>},
    {{"riseinv"}, 1, setFields<Int<&M::riseInv>, Flag<&M::riseInvNoBlink>>},
    {{"risetime"}, 1, setFields<Int<&M::riseTime>, Int<&M::riseAttackTime, -50>>},
    {{"riseattacktype"}, 1, setFields<Int<&M::riseAttackType, 0, Range{0, 3}>>},
    {{"fmap"}, 1, setFields<Int<&M::freezeMap>>},
    {{"falldie", "death"}, 1, setFields<Int<&M::fallDie, 0, Range{0, 2}>>},
    {{"nodieblink"}, 1, setFields<Int<&M::noDieBlink>>},
    {{"diesound"}, 1, setFields<Path<&M::dieSound>>},
    {{"lifespan"}, 1, [](ModelParser& p, Args a) { p.model.lifespanSeconds = std::max(parseFloatOr(a[0], 0), 0.0F); }},
    {{"offscreenkill"}, 1, setFields<Int<&M::offscreenKill, 0, kNotNegative>>},

    // Grabbing and throwing.
    {{"nograb"}, 1, setFields<Flag<&M::noGrab>>},
    {{"cantgrab", "notgrab"}, 1, setCantGrab},
    {{"grabforce"}, 1, setFields<Int<&M::grabForce>>},
    {{"grabresistance", "grab_resistance", "antigrab"}, 1, setFields<Int<&M::grabResistance>>},
    {{"grabdistance", "grabin"}, 1, setFields<Int<&M::grabDistance, 30, Range{8}>>},
    {{"grabback"}, 1, setFields<Flag<&M::grabBack>>},
    {{"grabfinish"}, 1, setFields<Flag<&M::grabFinish>>},
    {{"throw"}, 1, setFields<Float<&M::throwDistance>, Float<&M::throwHeight>>},
    {{"throwdist"}, 1, setFields<Float<&M::throwDistance>>},
    {{"throwheight"}, 1, setFields<Float<&M::throwHeight>>},
    {{"throwdamage"}, 1, setFields<Int<&M::throwDamage, 0, kNotNegative>>},
    {{"throwframewait"}, 1, setFields<Int<&M::throwFrameWait, 0, kNotNegative>>},

    // Weapons and projectiles.
    {{"weapons", "weapon"}, 1, addWeapons},
    {{"weapnum"}, 1, setFields<Int<&M::weaponNumber, 0, kNotNegative>>},
    {{"shootnum"}, 1, setFields<Int<&M::shootNum, 0, kNotNegative>>},
    {{"reload"}, 1, setFields<Int<&M::reloadAmount, 0, kNotNegative>>},
    {{"weaploss"}, 1, setFields<Each<Mark<&M::weaponLossDefined>, Int<&M::weaponLossFlag, 0, Range{0, 3}>>, Int<&M::weaponLossIndex, 0, kNotNegative>>},
    {{"weapon_loss_index"}, 1, setFields<Each<Mark<&M::weaponLossDefined>, Int<&M::weaponLossIndex, 0, kNotNegative>>>},
    {{"weapon_loss_condition"}, 0, setWeaponLossCondition},
    {{"counter"}, 1, setFields<Int<&M::weaponDropCounter, 3, kNotNegative>>},
    {{"typeshot"}, 1, setFields<Flag<&M::typeShot>>},
    {{"animal"}, 1, setFields<Flag<&M::animalWeapon>>},
    {{"knife"}, 1, setFields<Text<&M::knifeModel>>},
    {{"bomb"}, 1, setFields<Text<&M::bombModel>>},
    {{"project"}, 1, setFields<Text<&M::projectModel>>},
    {{"playshotno"}, 1, setFields<Text<&M::playShotNo>>},
    {{"remove"}, 1, setFields<Int<&M::removeConfig>>},
    {{"modelflag"}, 0, setModelCopyFlags},

    // Behaviour of entities and of summoned children.
    {{"aggression"}, 1, setFields<Int<&M::aggression>>},
    {{"stealth"}, 1, setFields<Int<&M::stealth, 0, kNotNegative>, Int<&M::perception, 0, kNotNegative>>},
    {{"aiattack"}, 1, setFields<Int<&M::aiAttack>>},
    {{"aimove"}, 0, setAiMove},
    {{"subentity"}, 1, setFields<Text<&M::subEntityModel>>},
    {{"summonkill"}, 1, setFields<Int<&M::summonKill, 0, Range{0, 2}>>},
    {{"child_follow_offset_x"}, 1, setFields<Float<&M::childFollowOffsetX>>},
    {{"child_follow_offset_y"}, 1, setFields<Float<&M::childFollowOffsetY>>},
    {{"child_follow_offset_z"}, 1, setFields<Float<&M::childFollowOffsetZ>>},
    {{"child_follow_range_base_max", "child_follow_range_x_max"}, 1, setFollowRange},
    {{"child_follow_range_base_min", "child_follow_range_x_min"}, 1, setFields<Float<&M::childFollowRangeXMin, -100>>},
    {{"child_follow_range_y_max"}, 1, setFields<Float<&M::childFollowRangeYMax, 100>>},
    {{"child_follow_range_y_min"}, 1, setFields<Float<&M::childFollowRangeYMin, -100>>},
    {{"child_follow_range_z_max"}, 1, setFields<Float<&M::childFollowRangeZMax, 100>>},
    {{"child_follow_range_z_min"}, 1, setFields<Float<&M::childFollowRangeZMin, -100>>},
    {{"child_follow_range_recall_base_max", "child_follow_range_recall_x_max"}, 1, setRecallRange},
    {{"child_follow_range_recall_base_min", "child_follow_range_recall_x_min"}, 1, setFields<Float<&M::childRecallRangeXMin, -300>>},
    {{"child_follow_range_recall_y_max"}, 1, setFields<Float<&M::childRecallRangeYMax, 300>>},
    {{"child_follow_range_recall_y_min"}, 1, setFields<Float<&M::childRecallRangeYMin, -300>>},
    {{"child_follow_range_recall_z_max"}, 1, setFields<Float<&M::childRecallRangeZMax, 300>>},
    {{"child_follow_range_recall_z_min"}, 1, setFields<Float<&M::childRecallRangeZMin, -300>>},
    {{"child_follow_recall_offset_x"}, 1, setFields<Float<&M::childRecallOffsetX>>},
    {{"child_follow_recall_offset_y"}, 1, setFields<Float<&M::childRecallOffsetY>>},
    {{"child_follow_recall_offset_z"}, 1, setFields<Float<&M::childRecallOffsetZ>>},
    {{"child_follow_recall_animation"}, 1, setFields<Text<&M::childRecallAnimation>>},
    {{"child_follow_direction_adjust_config"}, 1, setDirectionAdjust},

    // Looks.
    {{"palette"}, 1, setFields<Path<&M::palettePath>>},
    {{"alternatepal"}, 1, addAlternatePalette},
    {{"remap"}, 2, addPaletteRemap},
    {{"setlayer"}, 1, setFields<Int<&M::setLayer>>},
    {{"alpha"}, 1, setFields<Int<&M::alphaMode, 0, Range{0, 6}>>},
    {{"shadow"}, 1, setFields<Int<&M::shadow, 1, Range{0, 6}>>},
    {{"gfxshadow"}, 1, setFields<Int<&M::gfxShadow>, Int<&M::gfxShadowBase, 0, Range{0, 3}>>},
    {{"dust"}, 1, setDust},
    {{"noquake"}, 1, setFields<Flag<&M::noQuake>>},
    {{"icon"}, 1, setAllFields<Path<&M::iconPath>, Flag<&M::iconUsesPalette>>},
    {{"icondie"}, 1, setFields<Path<&M::iconDiePath>>},
    {{"nolife"}, 1, setFields<Flag<&M::noLife>>},
    {{"lifebarstatus"}, 1, setLifeBarStatus},
    {{"lifeposition"}, 2, setFields<Int<&M::lifePositionX, -1>, Int<&M::lifePositionY, -1>>},
    {{"nameposition"}, 2, setFields<Int<&M::namePositionX, -1>, Int<&M::namePositionY, -1>>},
    {{"iconposition"}, 2, setFields<Int<&M::iconPositionX, -1>, Int<&M::iconPositionY, -1>>},

    // Script files.
    {{"thinkscript"}, 1, setFields<Text<&M::thinkScript>>},
    {{"updatescript", "script"}, 1, setFields<Text<&M::updateScript>>},
    {{"keyscript"}, 1, setFields<Text<&M::keyScript>>},
    {{"onmovexscript"}, 1, setFields<Text<&M::onMoveXScript>>},
    {{"onmovezscript"}, 1, setFields<Text<&M::onMoveZScript>>},
    {{"onblockascript"}, 1, setFields<Text<&M::onBlockAScript>>},
    {{"onblockyscript"}, 1, setFields<Text<&M::onBlockYScript>>},
    {{"onblockzscript"}, 1, setFields<Text<&M::onBlockZScript>>},
    {{"onblocksscript"}, 1, setFields<Text<&M::onBlockSScript>>},
    {{"onblockwscript"}, 1, setFields<Text<&M::onBlockWScript>>},
    {{"onblockoscript"}, 1, setFields<Text<&M::onBlockOScript>>},
    {{"onblockpscript"}, 1, setFields<Text<&M::onBlockPScript>>},
    {{"didblockscript"}, 1, setFields<Text<&M::didBlockScript>>},
    {{"ondoattack", "ondoattackscript"}, 1, setFields<Text<&M::onDoAttackScript>>},
    {{"onkillscript", "onkill_script"}, 1, setFields<Text<&M::onKillScript>>},
    {{"onentitycollision"}, 1, setFields<Text<&M::onEntityCollisionScript>>},
    {{"onmodelcopy"}, 1, setFields<Text<&M::onModelCopyScript>>},
    {{"animationscript"}, 1, setFields<Text<&M::animationScript>>},
    {{"takedamagescript", "takedamage_script"}, 1, setFields<Text<&M::takeDamageScript>>},
    {{"didhitscript", "didhit_script"}, 1, setFields<Text<&M::didHitScript>>},
    {{"ondrawscript", "ondraw_script"}, 1, setFields<Text<&M::onDrawScript>>},
    {{"onspawnscript", "onspawn_script"}, 1, setFields<Text<&M::onSpawnScript>>},
    {{"ondeathscript", "ondeath_script"}, 1, setFields<Text<&M::onDeathScript>>},
    {{"onpainscript", "onpain_script"}, 1, setFields<Text<&M::onPainScript>>},
    {{"onfallscript", "onfall_script"}, 1, setFields<Text<&M::onFallScript>>},
};
// clang-format on

}  // namespace

std::span<const ModelKeyword> propertyKeywords() {
    return kPropertyKeywords;
}

}  // namespace tindrel
