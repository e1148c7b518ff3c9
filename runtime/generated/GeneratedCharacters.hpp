#pragma once

#include <cstddef>

namespace generated {

struct Box {
    int x, y, w, h;
};

struct PlatformBox {
    float x, z, lowerLeft, upperLeft, lowerRight, upperRight, depth, altitude;
};

struct AttackBox {
    int x, y, w, h, damage, type, fallForce, penetration, guardCost, juggleCost, pauseTime, tag,
        noFlash, zDepth, landingDamage, landingMode, landingType, forceDirection;
};

struct PaletteRemap {
    const char* source;
    const char* target;
};

struct Command {
    const char* sequence;
    const char* targetAnimation;
};

struct Defense {
    const char* type;
    float factor, pain, knockdown;
    int blockPower, blockThreshold;
    float blockRatio;
    bool blockRatioDefined;
    int blockType;
    bool blockTypeDefined;
};

struct Cancel {
    int startFrame, endFrame, hits;
    const char* command;
    const char* targetAnimation;
};

struct DrawMethod {
    bool enabled;
    float scaleX, scaleY;
    bool flipX, flipY;
    float shiftX;
    int alphaMode, remap, fillColor, tintMode, tintColor, rotate;
    bool flipRotate;
};

struct Frame {
    const char* sprite;
    int delay, offsetX, offsetY;
    bool hasBBox;
    Box bbox;
    bool hasPlatform;
    PlatformBox platform;
    bool hasAttack;
    AttackBox attack;
    bool knockdown;
    float dropVx;
    int dropVy, pauseTime;
    const char* sound;
    const char* animationCommand;
    float moveX, moveZ, moveA;
    DrawMethod draw;
    bool hasSetA;
    float setA;
    const char* hitFlash;
    const char* blockFlash;
};

struct Animation {
    const char* name;
    const Frame* frames;
    std::size_t frameCount;
    bool loop;
    int loopStart, loopEnd, flipFrame, jumpFrame;
    float jumpVelocityY, jumpVelocityX, jumpVelocityZ;
    int throwFrame, tossFrame, projectileOffsetY;
    float projectileVelocityX, projectileVelocityY, projectileVelocityZ;
    const char* custKnife;
    const char* custBomb;
    int weaponFrame, weaponIndex, followAnim, followCond, counterStart, counterEnd, counterCond;
    bool counterTakesDamage, hasRangeX;
    float rangeXMin, rangeXMax;
    bool hasRangeZ;
    float rangeZMin, rangeZMax;
    bool hasRangeA;
    float rangeAMin, rangeAMax;
    const Cancel* cancels;
    std::size_t cancelCount;
    const char* custEntity;
    int spawnFrame;
    float spawnOffsetX, spawnOffsetZ, spawnOffsetA;
    bool spawnScreenRelative, summonFrame;
    int unsummonFrame;
    bool ignoreAttackId, attackOne;
    int landFrame, landDust, quakeFrame, quakeLoops, quakeIntensity;
    const char* hitFx;
    const char* hitFlash;
    const char* inlineScript;
    const char* landDustModel;
    int energyCost, energyMode, energyDisable, dropFrame, chargeTime, pBombFrame, pBombDelay;
};

struct Character {
    const char* modelName;
    const char* name;
    const char* type;
    const char* subtype;
    const char* branch;
    int health, mp;
    bool globalBlockRatio, globalMpBlock, noChipDeath;
    float knockdownCount, speed, runSpeed, jumpSpeed;
    int walkoffMoveX, walkoffMoveZ, jumpHeight, jumpMoveX, jumpMoveZ, jugglePoints, grabDistance,
        blockOdds, blockPain, blockThreshold, guardPoints, guardRate;
    bool blockBack;
    const int* attackChain;
    std::size_t attackChainCount;
    int comboStyle, comboDelay;
    const char* subEntityModel;
    int weaponNumber, shootNum, reloadAmount;
    const Command* commands;
    std::size_t commandCount;
    bool weaponLossDefined;
    int weaponLossFlag, weaponLossIndex, weaponDropCounter;
    bool typeShot, animalWeapon;
    int summonKill;
    float childFollowOffsetX, childFollowOffsetY, childFollowOffsetZ, childFollowRange,
        childRecallRange, childFollowRangeXMin, childFollowRangeXMax, childFollowRangeYMin,
        childFollowRangeYMax, childFollowRangeZMin, childFollowRangeZMax, childRecallRangeXMin,
        childRecallRangeXMax, childRecallRangeYMin, childRecallRangeYMax, childRecallRangeZMin,
        childRecallRangeZMax, childRecallOffsetX, childRecallOffsetY, childRecallOffsetZ;
    const char* childRecallAnimation;
    int childDirectionAdjust, modelCopyFlags, aggression, stealth, perception, aiAttack, aiMove,
        canDamageMask, hostileMask, projectileHitMask;
    bool noGrab;
    int grabForce, grabResistance, throwDamage;
    float throwDistance, throwHeight;
    int bounce;
    float bounceFactor;
    bool subjectToGravity;
    const char* knifeModel;
    const char* bombModel;
    const char* projectModel;
    const char* const* weapons;
    std::size_t weaponCount;
    const char* palettePath;
    const char* const* alternatePalettes;
    std::size_t alternatePaletteCount;
    const PaletteRemap* paletteRemaps;
    std::size_t paletteRemapCount;
    const Animation* animations;
    std::size_t animationCount;
    const char* thinkScript;
    const char* updateScript;
    const char* keyScript;
    const char* onMoveXScript;
    const char* onMoveZScript;
    const char* onBlockAScript;
    const char* onBlockYScript;
    const char* onBlockZScript;
    const char* onBlockSScript;
    const char* onBlockWScript;
    const char* onBlockOScript;
    const char* onBlockPScript;
    const char* didBlockScript;
    const char* onDoAttackScript;
    const char* onKillScript;
    const char* onEntityCollisionScript;
    const char* onModelCopyScript;
    const char* animationScript;
    const char* takeDamageScript;
    const char* didHitScript;
    const char* onDrawScript;
    const char* onSpawnScript;
    const char* onDeathScript;
    const char* onPainScript;
    const char* onFallScript;
    int shadow;
    const char* dieSound;
    float lifespanSeconds;
    const Defense* defenses;
    std::size_t defenseCount;
    const char* iconPath;
    bool noLife;
    int lifeBarStatus, lifePositionX, lifePositionY, namePositionX, namePositionY, iconPositionX,
        iconPositionY;
    float antigravity;
    bool noPain, noDrop;
    int noDieBlink;
    bool noQuake, subjectToHole, subjectToWall, noMove, noFlip, noAdjustBase;
    int offscreenKill, fallDie, riseTime, riseAttackTime, riseAttackType, freezeMap, removeConfig,
        throwConfig;
    const char* iconDiePath;
    bool iconUsesPalette, lifeBarStatusDefined;
    int lifeBarWidth, lifeBarHeight, lifeBarNoBorder, lifeBarType, lifeBarOrientation,
        lifeBarBorderLayer, lifeBarShadowLayer, lifeBarGraphLayer, lifeBarBackfillLayer;
    const char* flashModel;
    const char* blockFlashModel;
    bool noAttackFlash, flipFlash, globalNoCost;
    int makeInv;
    const char* playShotNo;
    bool grabBack, grabFinish;
    int throwFrameWait;
    bool fastAttack;
    float runJumpHeight, runJumpLength;
    bool runMoveZ, runLand, subjectToScreen, subjectToObstacle, subjectToPlatform, subjectToMinZ,
        subjectToMaxZ;
    int setLayer, facingAdjust, alphaMode, gfxShadow, gfxShadowBase;
    const char* dustFallModel;
    const char* dustLandModel;
    const char* dustJumpModel;
    bool holdBlock;
    int riseInv;
    bool riseInvNoBlink;
};

extern const Character kCharacters[];
extern const std::size_t kCharacterCount;

}
