#include "RandomGame.hpp"

#include <algorithm>
#include <string_view>

#include "GameTables.hpp"

namespace tindrel::fuzz {
namespace {

using generated::Animation;
using generated::Character;
using generated::Frame;
using generated::Stage;

constexpr const char* kModelNames[kMostModels] = {"Hero", "brute", "mate",  "club",
                                                  "puff", "crate", "ghost", "exit"};
constexpr const char* kTypes[] = {"enemy",    "enemy",  "enemy",    "enemy",      "enemy",
                                  "Enemy",    "npc",    "item",     "none",       "obstacle",
                                  "obstacle", "player", "endlevel", "projectile", "shot",
                                  "trap",     "",       "steamer",  "text"};
constexpr const char* kSubtypes[] = {"", "", "", "follow", "weapon", "both", "projectile", "chase"};
// Every actor of a real game has these.
constexpr const char* kUsualAnimations[] = {"idle", "walk",  "attack1", "pain",    "fall",
                                            "rise", "death", "jump",    "attack2", "jumpattack"};
constexpr const char* kFurtherAnimations[] = {
    "attack3",  "attack4", "runattack",  "run",     "spawn",       "block",    "grab",
    "throw1",   "shoot1",  "grabattack", "special", "freespecial", "dodge",    "follow1",
    "follow2",  "follow3", "land",       "charge",  "blockpain",   "bdeath",   "guardbreak",
    "pickup",   "get",     "spain",      "shock",   "burn",        "bpain",    "pain2",
    "fall2",    "rise2",   "death2",     "up",      "down",        "backwalk", "throw",
    "thrown",   "respawn", "select",     "dash",    "grabwalk",    "upper",    "custom",
    "attack99", ""};
constexpr std::string_view kAttackNames[] = {"attack", "special", "follow", "shoot", "fall"};
constexpr const char* kCommandSequences[] = {"a",
                                             "f f",
                                             "d f a",
                                             "a + j",
                                             "f +[4] a",
                                             "u",
                                             "j",
                                             "a a",
                                             "b[3][20] a",
                                             "*a",
                                             "~a",
                                             "d :[20] a | j",
                                             "s",
                                             "a2",
                                             "r[2147483648",
                                             "a[-1]] :[0] :[",
                                             "",
                                             "+ | +",
                                             "x y z"};
constexpr const char* kDefenceTypes[] = {"normal", "normal1", "all",     "blast", "burn",
                                         "freeze", "shock",   "steal",   "land",  "normal9",
                                         "",       "NORMAL2", "normal-1"};
constexpr const char* kFrameCommands[] = {"",
                                          "",
                                          "",
                                          "",
                                          "setglobalvar(\"n\", 1);",
                                          "int x = rand(); setlocalvar(\"x\", x);",
                                          "void main() { setlocalvar(\"y\", 2); }",
                                          "@cmd nothing 1",
                                          "}{"};
constexpr const char* kDirections[] = {"right", "both", "left", "up", "down", "in", "", "bothleft"};
constexpr const char* kSpawnScripts[] = {"", "", "", "scripts/ok.c", "scripts/bad.c", "none"};
constexpr const char* kEventKinds[] = {"wait",    "group", "blockade", "nojoin",
                                       "canjoin", "Wait",  "settime",  ""};
constexpr const char* kGeometryKinds[] = {"wall", "hole", "Wall", "platform"};
constexpr const char* kLayerKinds[] = {"background", "bglayer", "fglayer", "frontpanel", "x"};
constexpr const char* kStageNames[kMostStages] = {"data/levels/a.txt", "data/levels/b.txt",
                                                  "levels/a.txt", ""};
constexpr const char* kNextStages[] = {"", "", "", "b.txt", "data/levels/a.txt", "nowhere", "/"};
constexpr const char* kBranches[] = {"", "", "east", "EAST", "west"};
constexpr const char* kScripts[] = {"scripts/ok.c",   "scripts/count.c", "scripts/bad.c",
                                    "scripts/rand.c", "scripts/loop.c",  "scripts/missing.c"};

constexpr const char* kPictures[] = {"", "bgs/tile.bmp", "bgs/tile.bmp", "bgs/absent.bmp"};

// Frames at which something happens; none in most animations.
constexpr int Animation::*kFrameNumbers[] = {
    &Animation::flipFrame,  &Animation::jumpFrame,   &Animation::throwFrame,
    &Animation::tossFrame,  &Animation::weaponFrame, &Animation::counterStart,
    &Animation::counterEnd, &Animation::spawnFrame,  &Animation::unsummonFrame,
    &Animation::landFrame,  &Animation::quakeFrame,  &Animation::dropFrame,
    &Animation::pBombFrame, &Animation::loopStart,   &Animation::loopEnd,
    &Animation::followAnim};
constexpr const char* Animation::*kModelsOfAnimation[] = {
    &Animation::custKnife, &Animation::custBomb, &Animation::custEntity, &Animation::hitFlash,
    &Animation::landDustModel};
constexpr const char* Character::*kModelsOfCharacter[] = {
    &Character::knifeModel,    &Character::bombModel,      &Character::projectModel,
    &Character::flashModel,    &Character::subEntityModel, &Character::blockFlashModel,
    &Character::dustFallModel, &Character::dustLandModel,  &Character::dustJumpModel};
constexpr const char* Character::*kScriptsOfCharacter[] = {
    &Character::thinkScript,       &Character::updateScript,    &Character::keyScript,
    &Character::onMoveXScript,     &Character::onMoveZScript,   &Character::onBlockSScript,
    &Character::onBlockWScript,    &Character::onBlockZScript,  &Character::didBlockScript,
    &Character::onDoAttackScript,  &Character::onKillScript,    &Character::onEntityCollisionScript,
    &Character::onModelCopyScript, &Character::animationScript, &Character::takeDamageScript,
    &Character::didHitScript,      &Character::onDrawScript,    &Character::onSpawnScript,
    &Character::onDeathScript,     &Character::onPainScript,    &Character::onFallScript};
// What would keep most actors from taking part, or make all of them do the same.
constexpr int Character::*kRareNumbers[] = {
    &Character::canDamageMask, &Character::hostileMask,    &Character::projectileHitMask,
    &Character::offscreenKill, &Character::aiAttack,       &Character::aiMove,
    &Character::stealth,       &Character::modelCopyFlags, &Character::freezeMap,
    &Character::noDieBlink,    &Character::fallDie};
constexpr bool Character::*kRareTruths[] = {&Character::noMove, &Character::noPain,
                                            &Character::noGrab, &Character::noFlip};

const char* rareModel(Dice& dice) {
    if (dice.odd()) return dice.word();
    return dice.once(3) ? dice.pick(kModelNames) : "";
}

const char* rareScript(Dice& dice) {
    return dice.once(6) ? dice.pick(kScripts) : "";
}

Frame frame(Dice& dice, bool attacks) {
    auto row = dice.value<Frame>();
    row.sprite = dice.once(4) ? dice.pick(kPictures) : "";
    row.delay = dice.number(1, 9);
    row.offsetX = dice.number(20, 30);
    row.offsetY = dice.number(70, 90);
    row.hasBBox = !dice.once(8);
    row.bbox = {dice.number(0, 20), dice.number(0, 20), dice.number(20, 50), dice.number(40, 90)};
    row.hasAttack = attacks ? !dice.once(4) : dice.once(16);
    generated::AttackBox& attack = row.attack;
    attack.x = dice.number(-10, 60);
    attack.y = dice.number(-10, 30);
    attack.w = dice.number(20, 90);
    attack.h = dice.number(20, 120);
    attack.damage = dice.number(0, 20);
    attack.type = dice.once(4) ? dice.number(998, 1006) : dice.number(0, 3);
    attack.zDepth = dice.number(0, 20);
    row.dropVy = dice.number(-6, 0);
    row.hasPlatform = dice.once(32);
    row.platform = {dice.fraction(-50, 0), dice.fraction(-10, 10), dice.fraction(-60, 0),
                    dice.fraction(-60, 0), dice.fraction(0, 60),   dice.fraction(0, 60),
                    dice.fraction(0, 30),  dice.fraction(0, 50)};
    row.animationCommand = dice.once(16) ? dice.pick(kFrameCommands) : "";
    row.hasSetA = dice.once(24);
    row.hitFlash = rareModel(dice);
    row.blockFlash = rareModel(dice);
    if (!dice.once(8)) row.moveX = row.moveZ = row.moveA = 0;
    return row;
}

generated::Defense defence(Dice& dice) {
    auto row = dice.value<generated::Defense>();
    row.type = dice.pick(kDefenceTypes);
    row.factor = dice.fraction(0, 2);
    row.blockRatio = dice.fraction(0, 1);
    return row;
}

generated::Cancel cancel(Dice& dice) {
    auto row = dice.value<generated::Cancel>();
    row.endFrame = dice.number(0, 5);
    row.command = dice.pick(kCommandSequences);
    row.targetAnimation = dice.pick(kFurtherAnimations);
    return row;
}

generated::Spawn spawn(Dice& dice, std::size_t index, std::size_t models) {
    auto row = dice.value<generated::Spawn>();
    row.id = dice.number(static_cast<int>(index), static_cast<int>(index));
    row.model =
        dice.odd() ? dice.word() : kModelNames[dice.roll(static_cast<std::uint32_t>(models))];
    row.spawnScript = dice.pick(kSpawnScripts);
    row.x = dice.once(2) ? dice.number(-20, 120) : dice.number(-40, 400);
    row.z = dice.number(175, 205);
    row.a = dice.once(4) ? dice.number(0, 100) : 0;
    row.at = dice.once(2) ? 0 : dice.number(0, 200);
    row.health = dice.once(2) ? dice.number(-1, 50) : -1;
    return row;
}

generated::StageEvent event(Dice& dice, std::size_t index) {
    auto row = dice.value<generated::StageEvent>();
    row.id = dice.number(static_cast<int>(index), static_cast<int>(index));
    row.kind = dice.pick(kEventKinds);
    row.at = dice.number(0, 300);
    return row;
}

generated::Geometry geometry(Dice& dice) {
    generated::Geometry row{};
    row.openborShape = dice.once(2);
    row.kind = dice.pick(kGeometryKinds);
    row.x = dice.number(0, 500);
    row.z = dice.number(160, 230);
    row.w = dice.number(0, 100);
    row.h = dice.number(0, 100);
    row.depth = dice.number(0, 40);
    row.altitude = dice.number(0, 60);
    for (float& value : row.shape) value = dice.fraction(0, 100);
    row.shape[0] = dice.fraction(0, 500);
    row.shape[1] = dice.fraction(160, 230);
    return row;
}

}  // namespace

std::span<const char* const> RandomGame::scriptNames() {
    return kScripts;
}

Animation RandomGame::animation(Dice& dice, const char* name) {
    auto row = dice.value<Animation>();
    row.name = name;
    const bool attacks = std::ranges::any_of(kAttackNames, [name](std::string_view part) {
        return std::string_view(name).find(part) != std::string_view::npos;
    });
    row.frameCount = dice.once(16) ? 0 : 1 + dice.roll(3);
    row.frames = rows<Frame>(row.frameCount, [&](std::size_t) { return frame(dice, attacks); });
    row.loop = dice.once(2);
    for (const auto member : kFrameNumbers) row.*member = dice.once(7) ? dice.number(0, 3) : -1;
    for (const auto member : kModelsOfAnimation) row.*member = rareModel(dice);
    row.cancelCount = dice.once(6) ? 1 + dice.roll(2) : 0;
    row.cancels =
        row.cancelCount == 0
            ? nullptr
            : rows<generated::Cancel>(row.cancelCount, [&](std::size_t) { return cancel(dice); });
    row.inlineScript = dice.once(24) ? dice.pick(kFrameCommands) : "";
    row.energyCost = dice.once(6) ? dice.number(1, 10) : 0;
    row.energyMode = dice.number(0, 3);
    if (dice.once(4)) row.followAnim = dice.number(1, 3);
    row.followCond = dice.number(0, 5);
    if (dice.once(6)) {
        row.counterStart = 0;
        row.counterEnd = dice.number(0, 3);
        row.counterCond = dice.number(0, 5);
        row.followAnim = 1;
    }
    return row;
}

Character RandomGame::model(Dice dice, std::size_t index) {
    auto row = dice.value<Character>();
    row.modelName = row.name = dice.odd() ? dice.word() : kModelNames[index];
    row.type = index == 0 ? "player" : dice.pick(kTypes);
    if (dice.odd()) row.type = dice.word();
    row.subtype = dice.pick(kSubtypes);
    row.branch = dice.pick(kBranches);
    row.health = dice.number(1, 60);
    row.mp = dice.number(0, 20);
    row.speed = dice.fraction(0, 3);
    row.runSpeed = dice.fraction(0, 5);
    row.subjectToGravity = !dice.once(4);
    row.comboStyle = dice.number(0, 3);
    row.bounce = dice.once(3) ? dice.number(1, 3) : 0;
    row.jugglePoints = dice.number(0, 4);
    row.blockOdds = dice.number(-1, 4);
    row.aggression = dice.number(-100, 100);
    row.perception = dice.number(0, 20);
    row.subjectToMinZ = row.subjectToMaxZ = !dice.once(4);
    row.weaponNumber = dice.number(0, 2);
    row.weaponDropCounter = dice.number(0, 2);
    if (!dice.once(6)) row.lifespanSeconds = 0;
    for (const auto member : kRareNumbers) {
        if (!dice.once(6)) row.*member = 0;
    }
    for (const auto member : kRareTruths) row.*member = dice.once(8);
    for (const auto member : kModelsOfCharacter) row.*member = rareModel(dice);
    for (const auto member : kScriptsOfCharacter) row.*member = rareScript(dice);

    row.attackChainCount = dice.roll(6);
    if (row.attackChainCount > 0) {
        row.attackChain = rows<int>(row.attackChainCount, [&](std::size_t) {
            return dice.once(5) ? 0 : dice.number(1, 2);
        });
    }
    row.commandCount = dice.roll(3);
    if (row.commandCount > 0) {
        row.commands = rows<generated::Command>(row.commandCount, [&](std::size_t) {
            return generated::Command{dice.pick(kCommandSequences), dice.pick(kFurtherAnimations)};
        });
    }
    row.weaponCount = dice.once(3) ? 1 + dice.roll(2) : 0;
    row.weapons =
        rows<const char*>(row.weaponCount, [&](std::size_t) { return dice.pick(kModelNames); });
    row.defenseCount = dice.roll(3);
    if (row.defenseCount > 0) {
        row.defenses =
            rows<generated::Defense>(row.defenseCount, [&](std::size_t) { return defence(dice); });
    }
    // The builder writes none here without, and so a null.
    row.alternatePaletteCount = row.paletteRemapCount = 0;

    std::vector<const char*> names;
    for (const char* name : kUsualAnimations) {
        if (!dice.once(12)) names.push_back(name);
    }
    for (const char* name : kFurtherAnimations) {
        if (dice.once(4)) names.push_back(name);
    }
    row.animationCount = names.size();
    row.animations =
        rows<Animation>(names.size(), [&](std::size_t i) { return animation(dice, names[i]); });
    return row;
}

Stage RandomGame::stage(Dice dice, std::size_t index) {
    auto row = dice.value<Stage>();
    row.sourceFile = kStageNames[index];
    row.setName = dice.once(4) ? "Second" : "First";
    row.direction = dice.pick(kDirections);
    row.setOrder = dice.number(0, 1);
    row.lives = dice.number(0, 4);
    row.credits = dice.number(0, 2);
    row.cameraType = dice.once(6) ? dice.number(0, 2) : 0;
    row.scrollSpeed = dice.once(4) ? dice.number(0, 4) : 0;
    row.campaignEnd = dice.once(6);
    row.completeBg = 0;
    row.zMin = dice.number(160, 180);
    row.zMax = dice.number(190, 220);
    row.playerStartX = dice.number(0, 120);
    row.playerStartZ = dice.number(175, 205);
    row.nextStage = dice.pick(kNextStages);
    row.branchName = dice.pick(kBranches);
    row.levelScript = rareScript(dice);
    row.background = dice.pick(kPictures);
    row.waterPath = dice.once(3) ? dice.pick(kPictures) : "";
    row.setWeapon = dice.once(6) ? dice.number(0, 3) : 0;

    row.panelCount = dice.roll(2);
    row.panels =
        rows<const char*>(row.panelCount, [&](std::size_t) { return dice.pick(kPictures); });
    row.layerCount = dice.roll(3);
    row.layers = rows<generated::Layer>(row.layerCount, [&](std::size_t) {
        auto layer = dice.value<generated::Layer>();
        layer.kind = dice.pick(kLayerKinds);
        layer.path = dice.pick(kPictures);
        return layer;
    });
    row.spawnCount = dice.roll(10);
    row.spawns = rows<generated::Spawn>(row.spawnCount,
                                        [&](std::size_t i) { return spawn(dice, i, models_); });
    row.geometryCount = dice.roll(3);
    row.geometry =
        rows<generated::Geometry>(row.geometryCount, [&](std::size_t) { return geometry(dice); });
    row.eventCount = dice.roll(4);
    row.events =
        rows<generated::StageEvent>(row.eventCount, [&](std::size_t i) { return event(dice, i); });
    row.instructionCount = dice.once(3) ? 0 : row.spawnCount + row.eventCount;
    row.instructions = rows<generated::StageInstruction>(row.instructionCount, [&](std::size_t i) {
        const bool isEvent = i >= row.spawnCount;
        const int refId = static_cast<int>(isEvent ? i - row.spawnCount : i);
        return generated::StageInstruction{static_cast<int>(i), dice.once(16) ? 1 : int{isEvent},
                                           dice.number(refId, refId)};
    });
    const auto scene = [&](std::size_t) {
        auto step = dice.value<generated::CutsceneAnimation>();
        step.path = "scenes/absent";
        return step;
    };
    row.sceneAnimationCount = dice.once(8) ? 1 : 0;
    row.sceneAnimations = rows<generated::CutsceneAnimation>(row.sceneAnimationCount, scene);
    row.postSceneAnimationCount = dice.once(8) ? 1 : 0;
    row.postSceneAnimations =
        rows<generated::CutsceneAnimation>(row.postSceneAnimationCount, scene);
    return row;
}

RandomGame::RandomGame(Choices& choices) {
    std::vector<Character> models;
    std::vector<Stage> stages;
    const unsigned shape = choices.next();
    const std::size_t stageCount = 1 + (shape & 1U) + (shape >> 1U & 1U);
    models_ = 1 + (shape >> 2U) % kMostModels;
    for (std::size_t i = 0; i < models_; ++i) models.push_back(model(choices.dice(), i));
    for (std::size_t i = 0; i < stageCount; ++i) stages.push_back(stage(choices.dice(), i));
    setTables(models, stages);
}

}  // namespace tindrel::fuzz
