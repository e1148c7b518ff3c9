#pragma once

// One model of the game: the header of an entity file and its animations. Fields carry the names
// of the generated table that they feed; the defaults are those of a fresh record.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "reader/AnimationDef.hpp"

namespace tindrel {

struct DefenseDef {
    std::string type = "all";
    float factor = 1, pain = 1, knockdown = 1;
    std::int32_t blockPower = 0, blockThreshold = 0;
    float blockRatio = 0;
    bool blockRatioDefined = false;
    std::int32_t blockType = 0;
    bool blockTypeDefined = false;
};

struct CommandDef {
    std::string sequence, targetAnimation;
};

struct PaletteRemapDef {
    std::string source, target;  // data paths
};

struct ModelDef {
    std::string sourceFile;  // relative to the project root, generic form
    std::string modelName;   // registry name of models.txt
    std::string name;        // display name; the file's stem when the file gives none
    std::string type = "none";
    std::string subtype, branch, flashModel, blockFlashModel;
    bool noAttackFlash = false, flipFlash = false;
    std::int32_t health = 100, mp = 0;
    bool globalNoCost = false, globalBlockRatio = false, globalMpBlock = false, noChipDeath = false;
    float knockdownCount = 0;
    float speed = 1, runSpeed = 0, jumpSpeed = 0;
    std::int32_t walkoffMoveX = 0, walkoffMoveZ = 0;
    float runJumpHeight = 0, runJumpLength = 0;
    bool runMoveZ = false, runLand = false;
    std::int32_t jumpHeight = 4, jumpMoveX = 0, jumpMoveZ = 0;
    std::int32_t jugglePoints = 4, grabDistance = 30, blockOdds = -1;
    std::int32_t blockPain = 0, blockThreshold = 0, guardPoints = 0, guardRate = 2;
    bool blockBack = false;
    std::vector<std::int32_t> attackChain;
    std::int32_t comboStyle = 0, comboDelay = 100;
    std::string subEntityModel;
    std::int32_t weaponNumber = 0, shootNum = 0, reloadAmount = 0;
    std::vector<CommandDef> commands;
    bool weaponLossDefined = false;
    std::int32_t weaponLossFlag = 0;  // 0 on hit, 1 on fall, 2 on death, 3 on stage end
    std::int32_t weaponLossIndex = 0, weaponDropCounter = 3;
    bool typeShot = false, animalWeapon = false;
    std::int32_t summonKill = 0;
    float childFollowOffsetX = 0, childFollowOffsetY = 0, childFollowOffsetZ = 0;
    float childFollowRange = 100, childRecallRange = 300;
    float childFollowRangeXMin = -100, childFollowRangeXMax = 100;
    float childFollowRangeYMin = -100, childFollowRangeYMax = 100;
    float childFollowRangeZMin = -100, childFollowRangeZMax = 100;
    float childRecallRangeXMin = -300, childRecallRangeXMax = 300;
    float childRecallRangeYMin = -300, childRecallRangeYMax = 300;
    float childRecallRangeZMin = -300, childRecallRangeZMax = 300;
    float childRecallOffsetX = 0, childRecallOffsetY = 0, childRecallOffsetZ = 0;
    std::string childRecallAnimation = "respawn";
    std::int32_t childDirectionAdjust = 0, modelCopyFlags = 0;
    std::int32_t aggression = 0, stealth = 0, perception = 0, aiAttack = 0, aiMove = 1;
    std::int32_t canDamageMask = 0, hostileMask = 0, projectileHitMask = 0;
    bool noGrab = false;
    std::int32_t grabForce = 0, grabResistance = 0, makeInv = 0;
    std::string playShotNo;
    bool grabBack = false, grabFinish = false;
    std::int32_t throwFrameWait = 0;
    bool fastAttack = false;
    std::int32_t throwDamage = 0;
    float throwDistance = 0, throwHeight = 0;
    std::int32_t bounce = 0;
    float bounceFactor = 0.5F;
    bool subjectToGravity = false, subjectToScreen = false;
    bool subjectToObstacle = true, subjectToPlatform = true;
    bool subjectToMinZ = true, subjectToMaxZ = true;
    std::int32_t setLayer = 0, facingAdjust = 0, alphaMode = 0, gfxShadow = 0, gfxShadowBase = 0;
    std::string dustFallModel, dustLandModel, dustJumpModel;
    bool holdBlock = false;
    std::int32_t riseInv = 0;
    bool riseInvNoBlink = false;
    float antigravity = 0;  // 0 to 1
    bool noPain = false, noDrop = false;
    std::int32_t noDieBlink = 0;
    bool noQuake = false;
    bool subjectToHole = true, subjectToWall = true;
    bool noMove = false, noFlip = false, noAdjustBase = false;
    std::int32_t offscreenKill = 0, fallDie = 0;
    std::int32_t riseTime = 0, riseAttackTime = -50, riseAttackType = 0;
    std::int32_t freezeMap = 0, removeConfig = 1;
    std::int32_t throwConfig = 0;  // no keyword sets it
    std::int32_t shadow = 1;
    std::string dieSound;  // data path
    float lifespanSeconds = 0;
    std::vector<DefenseDef> defenses;
    std::string iconPath, iconDiePath;  // data paths
    bool iconUsesPalette = false, noLife = false;
    std::int32_t lifeBarStatus = 1;
    bool lifeBarStatusDefined = false;
    std::int32_t lifeBarWidth = 100, lifeBarHeight = 5, lifeBarNoBorder = 0, lifeBarType = 0;
    std::int32_t lifeBarOrientation = 0, lifeBarBorderLayer = 0, lifeBarShadowLayer = 0;
    std::int32_t lifeBarGraphLayer = 0, lifeBarBackfillLayer = 0;
    std::int32_t lifePositionX = -1, lifePositionY = -1;
    std::int32_t namePositionX = -1, namePositionY = -1;
    std::int32_t iconPositionX = -1, iconPositionY = -1;
    std::string knifeModel, bombModel, projectModel;
    std::vector<std::string> weapons;
    std::string palettePath;                     // data path
    std::vector<std::string> alternatePalettes;  // data paths
    std::vector<PaletteRemapDef> paletteRemaps;
    std::vector<AnimationDef> animations;

    // Script paths as written.
    std::string thinkScript, updateScript, keyScript, onMoveXScript, onMoveZScript;
    std::string onBlockAScript, onBlockYScript, onBlockZScript, onBlockSScript, onBlockWScript;
    std::string onBlockOScript, onBlockPScript, didBlockScript, onDoAttackScript, onKillScript;
    std::string onEntityCollisionScript, onModelCopyScript, animationScript, takeDamageScript;
    std::string didHitScript, onDrawScript, onSpawnScript, onDeathScript, onPainScript;
    std::string onFallScript;
};

// All script paths of a model, with the keyword that sets each.
struct ModelScript {
    std::string_view keyword;
    std::string ModelDef::*path;
};
inline constexpr ModelScript kModelScripts[] = {
    {"thinkscript", &ModelDef::thinkScript},
    {"updatescript", &ModelDef::updateScript},
    {"keyscript", &ModelDef::keyScript},
    {"onmovexscript", &ModelDef::onMoveXScript},
    {"onmovezscript", &ModelDef::onMoveZScript},
    {"onblockascript", &ModelDef::onBlockAScript},
    {"onblockyscript", &ModelDef::onBlockYScript},
    {"onblockzscript", &ModelDef::onBlockZScript},
    {"onblocksscript", &ModelDef::onBlockSScript},
    {"onblockwscript", &ModelDef::onBlockWScript},
    {"onblockoscript", &ModelDef::onBlockOScript},
    {"onblockpscript", &ModelDef::onBlockPScript},
    {"didblockscript", &ModelDef::didBlockScript},
    {"ondoattack", &ModelDef::onDoAttackScript},
    {"onkillscript", &ModelDef::onKillScript},
    {"onentitycollision", &ModelDef::onEntityCollisionScript},
    {"onmodelcopy", &ModelDef::onModelCopyScript},
    {"animationscript", &ModelDef::animationScript},
    {"takedamagescript", &ModelDef::takeDamageScript},
    {"didhitscript", &ModelDef::didHitScript},
    {"ondrawscript", &ModelDef::onDrawScript},
    {"onspawnscript", &ModelDef::onSpawnScript},
    {"ondeathscript", &ModelDef::onDeathScript},
    {"onpainscript", &ModelDef::onPainScript},
    {"onfallscript", &ModelDef::onFallScript},
};

}  // namespace tindrel
