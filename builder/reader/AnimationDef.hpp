#pragma once

// Animations and frames as a model file writes them. Fields carry the names of the generated
// tables that they feed; the defaults are those of a fresh record.

#include <cstdint>
#include <string>
#include <vector>

namespace tindrel {

// Attack types: 1 the plain attack, n the numbered "attackN", and the special ones below.
enum AttackType : std::int32_t {
    kAttackBlast = 1001,
    kAttackBurn = 1002,
    kAttackFreeze = 1003,
    kAttackShock = 1004,
    kAttackSteal = 1005,
};

struct BoxDef {
    std::int32_t x = 0, y = 0, w = 0, h = 0;
};

struct PlatformBoxDef {
    float x = 0, z = 0, lowerLeft = 0, upperLeft = 0, lowerRight = 0, upperRight = 0;
    float depth = 0, altitude = 0;
};

struct AttackBoxDef {
    std::int32_t x = 0, y = 0, w = 0, h = 0;
    std::int32_t damage = 0, type = 0, fallForce = 0, penetration = 0;
    std::int32_t guardCost = 0, juggleCost = 0, pauseTime = 0, tag = 0, noFlash = 0, zDepth = 0;
    std::int32_t landingDamage = 0, landingMode = 0, landingType = -1, forceDirection = 0;
};

struct DrawMethodDef {
    bool enabled = false;
    float scaleX = 1, scaleY = 1;
    bool flipX = false, flipY = false;
    float shiftX = 0;
    std::int32_t alphaMode = 0, remap = 0, fillColor = 0, tintMode = 0, tintColor = 0, rotate = 0;
    bool flipRotate = false;
};

struct FrameDef {
    std::string sprite;
    std::int32_t delay = 1;  // ticks; -1 for ever
    std::int32_t offsetX = 0, offsetY = 0;
    bool hasBBox = false;
    BoxDef bbox;
    bool hasPlatform = false;
    PlatformBoxDef platform;
    bool hasAttack = false;
    AttackBoxDef attack;
    bool knockdown = false;
    float dropVx = 0;
    std::int32_t dropVy = -3;
    std::int32_t pauseTime = 0;
    std::string sound;
    std::string hitFlash, blockFlash;
    std::string animationCommand;  // text of the "@cmd" lines ahead of this frame
    float moveX = 0, moveZ = 0, moveA = 0;
    DrawMethodDef draw;
    bool hasSetA = false;
    float setA = 0;
};

struct CancelDef {
    std::int32_t startFrame = 0, endFrame = 0, hits = 0;
    std::string command, targetAnimation;
};

struct AnimationDef {
    std::string name;
    std::int32_t energyCost = 0, energyMode = 0, energyDisable = 0;
    std::string inlineScript;
    std::vector<FrameDef> frames;
    bool loop = false;
    std::int32_t loopStart = 0, loopEnd = -1;
    std::int32_t flipFrame = -1, dropFrame = -1;
    std::int32_t chargeTime = 0;  // hundredths of a second
    std::int32_t pBombFrame = -1, pBombDelay = 0;
    bool ignoreAttackId = false, attackOne = false;
    std::int32_t landFrame = -1, landDust = 0;
    std::string landDustModel;
    std::int32_t jumpFrame = -1;
    float jumpVelocityY = 0, jumpVelocityX = 0, jumpVelocityZ = 0;
    std::int32_t throwFrame = -1, tossFrame = -1, projectileOffsetY = 70;
    float projectileVelocityX = 2, projectileVelocityY = 0, projectileVelocityZ = 0;
    std::string custKnife, custBomb;
    std::int32_t weaponFrame = -1, weaponIndex = 0;
    std::int32_t followAnim = 0, followCond = 0;
    std::int32_t counterStart = -1, counterEnd = -1, counterCond = 0;
    bool counterTakesDamage = true;
    bool hasRangeX = false;
    float rangeXMin = 0, rangeXMax = 75;
    bool hasRangeZ = false;
    float rangeZMin = 0, rangeZMax = 0;
    bool hasRangeA = false;
    float rangeAMin = -1000, rangeAMax = 1000;
    std::vector<CancelDef> cancels;
    std::string custEntity;
    std::int32_t spawnFrame = -1;
    float spawnOffsetX = 0, spawnOffsetZ = 0, spawnOffsetA = 0;
    bool spawnScreenRelative = false, summonFrame = false;
    std::int32_t unsummonFrame = -1;
    std::int32_t quakeFrame = -1, quakeLoops = 0, quakeIntensity = 0;
    std::string hitFx, hitFlash;
};

}  // namespace tindrel
