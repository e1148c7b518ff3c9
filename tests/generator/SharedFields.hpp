#pragma once

// The members that a record and its table row share under one name. Each function hands them to
// `visit(name, inRow, inRecord)`; lists are not among them.

namespace tindrel::test {

#define FIELD(name) visit(#name, row.name, record.name)

template <class Visit, class Row, class Record>
void visitBox(Visit& visit, Row& row, Record& record) {
    FIELD(x), FIELD(y), FIELD(w), FIELD(h);
}

template <class Visit, class Row, class Record>
void visitPlatformBox(Visit& visit, Row& row, Record& record) {
    FIELD(x), FIELD(z), FIELD(lowerLeft), FIELD(upperLeft), FIELD(lowerRight), FIELD(upperRight),
        FIELD(depth), FIELD(altitude);
}

template <class Visit, class Row, class Record>
void visitAttackBox(Visit& visit, Row& row, Record& record) {
    FIELD(x), FIELD(y), FIELD(w), FIELD(h), FIELD(damage), FIELD(type), FIELD(fallForce),
        FIELD(penetration), FIELD(guardCost), FIELD(juggleCost), FIELD(pauseTime), FIELD(tag),
        FIELD(noFlash), FIELD(zDepth), FIELD(landingDamage), FIELD(landingMode), FIELD(landingType),
        FIELD(forceDirection);
}

template <class Visit, class Row, class Record>
void visitPaletteRemap(Visit& visit, Row& row, Record& record) {
    FIELD(source), FIELD(target);
}

template <class Visit, class Row, class Record>
void visitCommand(Visit& visit, Row& row, Record& record) {
    FIELD(sequence), FIELD(targetAnimation);
}

template <class Visit, class Row, class Record>
void visitDefense(Visit& visit, Row& row, Record& record) {
    FIELD(type), FIELD(factor), FIELD(pain), FIELD(knockdown), FIELD(blockPower),
        FIELD(blockThreshold), FIELD(blockRatio), FIELD(blockRatioDefined), FIELD(blockType),
        FIELD(blockTypeDefined);
}

template <class Visit, class Row, class Record>
void visitCancel(Visit& visit, Row& row, Record& record) {
    FIELD(startFrame), FIELD(endFrame), FIELD(hits), FIELD(command), FIELD(targetAnimation);
}

template <class Visit, class Row, class Record>
void visitDrawMethod(Visit& visit, Row& row, Record& record) {
    FIELD(enabled), FIELD(scaleX), FIELD(scaleY), FIELD(flipX), FIELD(flipY), FIELD(shiftX),
        FIELD(alphaMode), FIELD(remap), FIELD(fillColor), FIELD(tintMode), FIELD(tintColor),
        FIELD(rotate), FIELD(flipRotate);
}

template <class Visit, class Row, class Record>
void visitFrame(Visit& visit, Row& row, Record& record) {
    FIELD(sprite), FIELD(delay), FIELD(offsetX), FIELD(offsetY), FIELD(hasBBox), FIELD(hasPlatform),
        FIELD(hasAttack), FIELD(knockdown), FIELD(dropVx), FIELD(dropVy), FIELD(pauseTime),
        FIELD(sound), FIELD(animationCommand), FIELD(moveX), FIELD(moveZ), FIELD(moveA),
        FIELD(hasSetA), FIELD(setA), FIELD(hitFlash), FIELD(blockFlash);
    visitBox(visit, row.bbox, record.bbox);
    visitPlatformBox(visit, row.platform, record.platform);
    visitAttackBox(visit, row.attack, record.attack);
    visitDrawMethod(visit, row.draw, record.draw);
}

template <class Visit, class Row, class Record>
void visitAnimation(Visit& visit, Row& row, Record& record) {
    FIELD(name), FIELD(loop), FIELD(loopStart), FIELD(loopEnd), FIELD(flipFrame), FIELD(jumpFrame),
        FIELD(jumpVelocityY), FIELD(jumpVelocityX), FIELD(jumpVelocityZ), FIELD(throwFrame),
        FIELD(tossFrame), FIELD(projectileOffsetY), FIELD(projectileVelocityX),
        FIELD(projectileVelocityY), FIELD(projectileVelocityZ), FIELD(custKnife), FIELD(custBomb),
        FIELD(weaponFrame), FIELD(weaponIndex), FIELD(followAnim), FIELD(followCond),
        FIELD(counterStart), FIELD(counterEnd), FIELD(counterCond), FIELD(counterTakesDamage),
        FIELD(hasRangeX), FIELD(rangeXMin), FIELD(rangeXMax), FIELD(hasRangeZ), FIELD(rangeZMin),
        FIELD(rangeZMax), FIELD(hasRangeA), FIELD(rangeAMin), FIELD(rangeAMax), FIELD(custEntity),
        FIELD(spawnFrame), FIELD(spawnOffsetX), FIELD(spawnOffsetZ), FIELD(spawnOffsetA),
        FIELD(spawnScreenRelative), FIELD(summonFrame), FIELD(unsummonFrame), FIELD(ignoreAttackId),
        FIELD(attackOne), FIELD(landFrame), FIELD(landDust), FIELD(quakeFrame), FIELD(quakeLoops),
        FIELD(quakeIntensity), FIELD(hitFx), FIELD(hitFlash), FIELD(inlineScript),
        FIELD(landDustModel), FIELD(energyCost), FIELD(energyMode), FIELD(energyDisable),
        FIELD(dropFrame), FIELD(chargeTime), FIELD(pBombFrame), FIELD(pBombDelay);
}

template <class Visit, class Row, class Record>
void visitCharacter(Visit& visit, Row& row, Record& record) {
    FIELD(modelName), FIELD(name), FIELD(type), FIELD(subtype), FIELD(branch), FIELD(health),
        FIELD(mp), FIELD(globalBlockRatio), FIELD(globalMpBlock), FIELD(noChipDeath),
        FIELD(knockdownCount), FIELD(speed), FIELD(runSpeed), FIELD(jumpSpeed), FIELD(walkoffMoveX),
        FIELD(walkoffMoveZ), FIELD(jumpHeight), FIELD(jumpMoveX), FIELD(jumpMoveZ),
        FIELD(jugglePoints), FIELD(grabDistance), FIELD(blockOdds), FIELD(blockPain),
        FIELD(blockThreshold), FIELD(guardPoints), FIELD(guardRate), FIELD(blockBack),
        FIELD(comboStyle), FIELD(comboDelay), FIELD(subEntityModel), FIELD(weaponNumber),
        FIELD(shootNum), FIELD(reloadAmount), FIELD(weaponLossDefined), FIELD(weaponLossFlag),
        FIELD(weaponLossIndex), FIELD(weaponDropCounter), FIELD(typeShot), FIELD(animalWeapon),
        FIELD(summonKill), FIELD(childFollowOffsetX), FIELD(childFollowOffsetY),
        FIELD(childFollowOffsetZ), FIELD(childFollowRange), FIELD(childRecallRange),
        FIELD(childFollowRangeXMin), FIELD(childFollowRangeXMax), FIELD(childFollowRangeYMin),
        FIELD(childFollowRangeYMax), FIELD(childFollowRangeZMin), FIELD(childFollowRangeZMax),
        FIELD(childRecallRangeXMin), FIELD(childRecallRangeXMax), FIELD(childRecallRangeYMin),
        FIELD(childRecallRangeYMax), FIELD(childRecallRangeZMin), FIELD(childRecallRangeZMax),
        FIELD(childRecallOffsetX), FIELD(childRecallOffsetY), FIELD(childRecallOffsetZ),
        FIELD(childRecallAnimation), FIELD(childDirectionAdjust), FIELD(modelCopyFlags),
        FIELD(aggression), FIELD(stealth), FIELD(perception), FIELD(aiAttack), FIELD(aiMove),
        FIELD(canDamageMask), FIELD(hostileMask), FIELD(projectileHitMask), FIELD(noGrab),
        FIELD(grabForce), FIELD(grabResistance), FIELD(throwDamage), FIELD(throwDistance),
        FIELD(throwHeight), FIELD(bounce), FIELD(bounceFactor), FIELD(subjectToGravity),
        FIELD(knifeModel), FIELD(bombModel), FIELD(projectModel), FIELD(palettePath),
        FIELD(thinkScript), FIELD(updateScript), FIELD(keyScript), FIELD(onMoveXScript),
        FIELD(onMoveZScript), FIELD(onBlockAScript), FIELD(onBlockYScript), FIELD(onBlockZScript),
        FIELD(onBlockSScript), FIELD(onBlockWScript), FIELD(onBlockOScript), FIELD(onBlockPScript),
        FIELD(didBlockScript), FIELD(onDoAttackScript), FIELD(onKillScript),
        FIELD(onEntityCollisionScript), FIELD(onModelCopyScript), FIELD(animationScript),
        FIELD(takeDamageScript), FIELD(didHitScript), FIELD(onDrawScript), FIELD(onSpawnScript),
        FIELD(onDeathScript), FIELD(onPainScript), FIELD(onFallScript), FIELD(shadow),
        FIELD(dieSound), FIELD(lifespanSeconds), FIELD(iconPath), FIELD(noLife),
        FIELD(lifeBarStatus), FIELD(lifePositionX), FIELD(lifePositionY), FIELD(namePositionX),
        FIELD(namePositionY), FIELD(iconPositionX), FIELD(iconPositionY), FIELD(antigravity),
        FIELD(noPain), FIELD(noDrop), FIELD(noDieBlink), FIELD(noQuake), FIELD(subjectToHole),
        FIELD(subjectToWall), FIELD(noMove), FIELD(noFlip), FIELD(noAdjustBase),
        FIELD(offscreenKill), FIELD(fallDie), FIELD(riseTime), FIELD(riseAttackTime),
        FIELD(riseAttackType), FIELD(freezeMap), FIELD(removeConfig), FIELD(throwConfig),
        FIELD(iconDiePath), FIELD(iconUsesPalette), FIELD(lifeBarStatusDefined),
        FIELD(lifeBarWidth), FIELD(lifeBarHeight), FIELD(lifeBarNoBorder), FIELD(lifeBarType),
        FIELD(lifeBarOrientation), FIELD(lifeBarBorderLayer), FIELD(lifeBarShadowLayer),
        FIELD(lifeBarGraphLayer), FIELD(lifeBarBackfillLayer), FIELD(flashModel),
        FIELD(blockFlashModel), FIELD(noAttackFlash), FIELD(flipFlash), FIELD(globalNoCost),
        FIELD(makeInv), FIELD(playShotNo), FIELD(grabBack), FIELD(grabFinish),
        FIELD(throwFrameWait), FIELD(fastAttack), FIELD(runJumpHeight), FIELD(runJumpLength),
        FIELD(runMoveZ), FIELD(runLand), FIELD(subjectToScreen), FIELD(subjectToObstacle),
        FIELD(subjectToPlatform), FIELD(subjectToMinZ), FIELD(subjectToMaxZ), FIELD(setLayer),
        FIELD(facingAdjust), FIELD(alphaMode), FIELD(gfxShadow), FIELD(gfxShadowBase),
        FIELD(dustFallModel), FIELD(dustLandModel), FIELD(dustJumpModel), FIELD(holdBlock),
        FIELD(riseInv), FIELD(riseInvNoBlink);
}

template <class Visit, class Row, class Record>
void visitSpawn(Visit& visit, Row& row, Record& record) {
    FIELD(id), FIELD(model), FIELD(alias), FIELD(item), FIELD(map), FIELD(spawnScript), FIELD(x),
        FIELD(z), FIELD(a), FIELD(y), FIELD(at), FIELD(health), FIELD(score), FIELD(spawnType),
        FIELD(boss), FIELD(flip), FIELD(hasAt);
}

template <class Visit, class Row, class Record>
void visitGeometry(Visit& visit, Row& row, Record& record) {
    FIELD(kind), FIELD(x), FIELD(z), FIELD(w), FIELD(h), FIELD(depth), FIELD(altitude),
        FIELD(openborShape);
}

template <class Visit, class Row, class Record>
void visitLayer(Visit& visit, Row& row, Record& record) {
    FIELD(kind), FIELD(path), FIELD(xRatio), FIELD(zRatio), FIELD(xOffset), FIELD(zOffset),
        FIELD(xSpacing), FIELD(zSpacing), FIELD(xRepeat), FIELD(zRepeat), FIELD(zOrder),
        FIELD(transparency), FIELD(alpha), FIELD(waterMode), FIELD(amplitude), FIELD(wavelength),
        FIELD(waveSpeed), FIELD(bgSpeedRatio);
}

template <class Visit, class Row, class Record>
void visitStageEvent(Visit& visit, Row& row, Record& record) {
    FIELD(id), FIELD(kind), FIELD(at), FIELD(value), FIELD(group), FIELD(hasAt), FIELD(text);
}

template <class Visit, class Row, class Record>
void visitStageInstruction(Visit& visit, Row& row, Record& record) {
    FIELD(sequence), FIELD(kind), FIELD(refId);
}

template <class Visit, class Row, class Record>
void visitCutsceneAnimation(Visit& visit, Row& row, Record& record) {
    FIELD(path), FIELD(x), FIELD(y), FIELD(skip), FIELD(noSkip), FIELD(durationTicks),
        FIELD(sceneIndex), FIELD(musicBefore), FIELD(musicLoop), FIELD(silenceBefore);
}

template <class Visit, class Row, class Record>
void visitStage(Visit& visit, Row& row, Record& record) {
    FIELD(sourceFile), FIELD(setName), FIELD(direction), FIELD(typeName), FIELD(background),
        FIELD(music), FIELD(musicLoop), FIELD(endLevel), FIELD(order), FIELD(setOrder),
        FIELD(lives), FIELD(credits), FIELD(canSave), FIELD(skipSelect), FIELD(completeBg),
        FIELD(noShare), FIELD(ifComplete), FIELD(cameraType), FIELD(scrollSpeed),
        FIELD(campaignEnd), FIELD(zMin), FIELD(zMax), FIELD(backgroundHeight), FIELD(playerStartX),
        FIELD(playerStartZ), FIELD(playerStartA), FIELD(player1SpawnDefined), FIELD(branchName),
        FIELD(nextStage), FIELD(branchStage), FIELD(levelScript), FIELD(bossMusic),
        FIELD(bossMusicOffset), FIELD(waterPath), FIELD(waterWarp), FIELD(rockMode),
        FIELD(preSceneFile), FIELD(sceneMusic), FIELD(sceneMusicLoop), FIELD(postSceneMusic),
        FIELD(postSceneMusicLoop), FIELD(chapter), FIELD(player2StartX), FIELD(player2StartZ),
        FIELD(player2StartA), FIELD(player3StartX), FIELD(player3StartZ), FIELD(player3StartA),
        FIELD(player4StartX), FIELD(player4StartZ), FIELD(player4StartA),
        FIELD(player2SpawnDefined), FIELD(player3SpawnDefined), FIELD(player4SpawnDefined),
        FIELD(setWeapon), FIELD(cameraOffsetX), FIELD(cameraOffsetY), FIELD(stageLightX),
        FIELD(stageLightY), FIELD(shadowColor), FIELD(shadowAlpha), FIELD(setTime), FIELD(noSlow),
        FIELD(noTime);
}

#undef FIELD

}  // namespace tindrel::test
