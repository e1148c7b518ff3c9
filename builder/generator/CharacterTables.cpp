#include "generator/CharacterTables.hpp"

#include <string>
#include <string_view>

#include "generator/CharacterReports.hpp"
#include "generator/RuntimeEmission.hpp"
#include "generator/TableText.hpp"
#include "platform/FileStatus.hpp"
#include "platform/OutputFile.hpp"

namespace tindrel {
namespace {

using CharacterRow = Row<CharacterSpelling>;

constexpr std::string_view kFramePlaceholder =
    R"(  {"",1,0,0,false,{0,0,0,0},false,{0,0,0,0,0,0,0,0},false,{0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,-1,0},false,0.0f,-3,0,"","",0,0,0,{false,1,1,false,false,0,0,0,0,0,false},false,0.0f,"",""})";
// Short of the schema; a model without animations is dropped long before it comes here.
constexpr std::string_view kAnimationPlaceholder =
    R"(  {"",nullptr,0,false,0,-1,-1,0,0,0,-1,-1,70,2.0f,0.0f,0.0f,"","",-1,0,0,0,-1,-1,0,true,false,0.0f,75.0f,false,0.0f,0.0f,false,-1000.0f,1000.0f,nullptr,0,"",-1,0.0f,0.0f,0.0f,false,false,-1,-1,0,-1,0,0,"","","","",-1,0,-1,0})";

void appendFrame(std::string& out, const FrameDef& f) {
    const BoxDef& bbox = f.bbox;
    const PlatformBoxDef& platform = f.platform;
    const AttackBoxDef& attack = f.attack;
    const DrawMethodDef& draw = f.draw;
    CharacterRow(out, ", ")
        .fields(f.sprite, f.delay, f.offsetX, f.offsetY, f.hasBBox)
        .nested(",", bbox.x, bbox.y, bbox.w, bbox.h)
        .fields(f.hasPlatform)
        .nested(",", platform.x, platform.z, platform.lowerLeft, platform.upperLeft,
                platform.lowerRight, platform.upperRight, platform.depth, platform.altitude)
        .fields(f.hasAttack)
        .nested(",", attack.x, attack.y, attack.w, attack.h, attack.damage, attack.type,
                attack.fallForce, attack.penetration, attack.guardCost, attack.juggleCost,
                attack.pauseTime, attack.tag, attack.noFlash, attack.zDepth, attack.landingDamage,
                attack.landingMode, attack.landingType, attack.forceDirection)
        .fields(f.knockdown, f.dropVx, f.dropVy, f.pauseTime, f.sound, f.animationCommand, f.moveX,
                f.moveZ, f.moveA)
        .nested(", ", draw.enabled, draw.scaleX, draw.scaleY, draw.flipX, draw.flipY, draw.shiftX,
                draw.alphaMode, draw.remap, draw.fillColor, draw.tintMode, draw.tintColor,
                draw.rotate, draw.flipRotate)
        .fields(f.hasSetA, f.setA, f.hitFlash, f.blockFlash)
        .close();
}

// The arrays of one model, named by its index.
class ModelWriter {
  public:
    ModelWriter(OutputFile& out, const ModelDef& model, std::size_t index)
        : out_(out), model_(model), prefix_("c" + std::to_string(index) + "_") {}

    void writeArrays() {
        for (std::size_t j = 0; j < model_.animations.size(); ++j) {
            writeAnimationArrays(model_.animations[j], animationPrefix(j));
        }
        if (!model_.attackChain.empty()) {
            writeLine("int", "chain", model_.attackChain,
                      [&](std::int32_t link) { appendValue<CharacterSpelling>(text_, link); });
        }
        if (!model_.commands.empty()) {
            writeLine("Command", "commands", model_.commands, [&](const CommandDef& command) {
                CharacterRow(text_, ",").fields(command.sequence, command.targetAnimation).close();
            });
        }
        const auto appendName = [&](const std::string& name) {
            appendValue<CharacterSpelling>(text_, name);
        };
        if (model_.weapons.empty()) {
            out_ << "static const char* " << prefix_ << "weapons[] = {nullptr};\n";
        } else {
            writeLine("char*", "weapons", model_.weapons, appendName);
        }
        if (!model_.alternatePalettes.empty()) {
            writeLine("char*", "altpals", model_.alternatePalettes, appendName);
        }
        if (!model_.paletteRemaps.empty()) {
            writeLine("PaletteRemap", "remaps", model_.paletteRemaps,
                      [&](const PaletteRemapDef& remap) {
                          CharacterRow(text_, ",").fields(remap.source, remap.target).close();
                      });
        }
        if (!model_.defenses.empty()) {
            writeLine("Defense", "defenses", model_.defenses, [&](const DefenseDef& d) {
                CharacterRow(text_, ",")
                    .fields(d.type, d.factor, d.pain, d.knockdown, d.blockPower, d.blockThreshold,
                            d.blockRatio, d.blockRatioDefined, d.blockType, d.blockTypeDefined)
                    .close();
            });
        }
        writeAnimations();
    }

    void writeRow() {
        const ModelDef& m = model_;
        const std::string chain = nameOrNull(m.attackChain, "chain");
        const std::string commands = nameOrNull(m.commands, "commands");
        const std::string weapons = prefix_ + "weapons";
        const std::string palettes = nameOrNull(m.alternatePalettes, "altpals");
        const std::string remaps = nameOrNull(m.paletteRemaps, "remaps");
        const std::string animations = prefix_ + "animations";
        const std::string defenses = nameOrNull(m.defenses, "defenses");
        beginRow();
        CharacterRow(text_, ", ")
            .fields(
                m.modelName, m.name, m.type, m.subtype, m.branch, m.health, m.mp,
                m.globalBlockRatio, m.globalMpBlock, m.noChipDeath, m.knockdownCount, m.speed,
                m.runSpeed, m.jumpSpeed, m.walkoffMoveX, m.walkoffMoveZ, m.jumpHeight, m.jumpMoveX,
                m.jumpMoveZ, m.jugglePoints, m.grabDistance, m.blockOdds, m.blockPain,
                m.blockThreshold, m.guardPoints, m.guardRate, m.blockBack, Verbatim{chain},
                m.attackChain.size(), m.comboStyle, m.comboDelay, m.subEntityModel, m.weaponNumber,
                m.shootNum, m.reloadAmount, Verbatim{commands}, m.commands.size(),
                m.weaponLossDefined, m.weaponLossFlag, m.weaponLossIndex, m.weaponDropCounter,
                m.typeShot, m.animalWeapon, m.summonKill, m.childFollowOffsetX,
                m.childFollowOffsetY, m.childFollowOffsetZ, m.childFollowRange, m.childRecallRange,
                m.childFollowRangeXMin, m.childFollowRangeXMax, m.childFollowRangeYMin,
                m.childFollowRangeYMax, m.childFollowRangeZMin, m.childFollowRangeZMax,
                m.childRecallRangeXMin, m.childRecallRangeXMax, m.childRecallRangeYMin,
                m.childRecallRangeYMax, m.childRecallRangeZMin, m.childRecallRangeZMax,
                m.childRecallOffsetX, m.childRecallOffsetY, m.childRecallOffsetZ,
                m.childRecallAnimation, m.childDirectionAdjust, m.modelCopyFlags, m.aggression,
                m.stealth, m.perception, m.aiAttack, m.aiMove, m.canDamageMask, m.hostileMask,
                m.projectileHitMask, m.noGrab, m.grabForce, m.grabResistance, m.throwDamage,
                m.throwDistance, m.throwHeight, m.bounce, m.bounceFactor, m.subjectToGravity,
                m.knifeModel, m.bombModel, m.projectModel, Verbatim{weapons}, m.weapons.size(),
                m.palettePath, Verbatim{palettes}, m.alternatePalettes.size(), Verbatim{remaps},
                m.paletteRemaps.size(), Verbatim{animations}, m.animations.size(), m.thinkScript,
                m.updateScript, m.keyScript, m.onMoveXScript, m.onMoveZScript, m.onBlockAScript,
                m.onBlockYScript, m.onBlockZScript, m.onBlockSScript, m.onBlockWScript,
                m.onBlockOScript, m.onBlockPScript, m.didBlockScript, m.onDoAttackScript,
                m.onKillScript, m.onEntityCollisionScript, m.onModelCopyScript, m.animationScript,
                m.takeDamageScript, m.didHitScript, m.onDrawScript, m.onSpawnScript,
                m.onDeathScript, m.onPainScript, m.onFallScript, m.shadow, m.dieSound,
                m.lifespanSeconds, Verbatim{defenses}, m.defenses.size(), m.iconPath, m.noLife,
                m.lifeBarStatus, m.lifePositionX, m.lifePositionY, m.namePositionX, m.namePositionY,
                m.iconPositionX, m.iconPositionY, m.antigravity, m.noPain, m.noDrop, m.noDieBlink,
                m.noQuake, m.subjectToHole, m.subjectToWall, m.noMove, m.noFlip, m.noAdjustBase,
                m.offscreenKill, m.fallDie, m.riseTime, m.riseAttackTime, m.riseAttackType,
                m.freezeMap, m.removeConfig, m.throwConfig, m.iconDiePath, m.iconUsesPalette,
                m.lifeBarStatusDefined, m.lifeBarWidth, m.lifeBarHeight, m.lifeBarNoBorder,
                m.lifeBarType, m.lifeBarOrientation, m.lifeBarBorderLayer, m.lifeBarShadowLayer,
                m.lifeBarGraphLayer, m.lifeBarBackfillLayer, m.flashModel, m.blockFlashModel,
                m.noAttackFlash, m.flipFlash, m.globalNoCost, m.makeInv, m.playShotNo, m.grabBack,
                m.grabFinish, m.throwFrameWait, m.fastAttack, m.runJumpHeight, m.runJumpLength,
                m.runMoveZ, m.runLand, m.subjectToScreen, m.subjectToObstacle, m.subjectToPlatform,
                m.subjectToMinZ, m.subjectToMaxZ, m.setLayer, m.facingAdjust, m.alphaMode,
                m.gfxShadow, m.gfxShadowBase, m.dustFallModel, m.dustLandModel, m.dustJumpModel,
                m.holdBlock, m.riseInv, m.riseInvNoBlink)
            .close();
        endRow();
    }

  private:
    [[nodiscard]] std::string animationPrefix(std::size_t j) const {
        return prefix_ + "a" + std::to_string(j) + "_";
    }

    template <class List>
    [[nodiscard]] std::string nameOrNull(const List& list, std::string_view name) const {
        return list.empty() ? "nullptr" : prefix_ + std::string(name);
    }

    void beginRow() { text_ = "  "; }
    void endRow() {
        text_ += ",\n";
        out_ << text_;
    }

    // A whole array on one line.
    template <class List, class Append>
    void writeLine(std::string_view type, std::string_view name, const List& list,
                   Append appendElement) {
        text_.clear();
        appendList(text_, list, appendElement);
        out_ << "static const " << type << ' ' << prefix_ << name << "[] = {" << text_ << "};\n";
    }

    void writeAnimationArrays(const AnimationDef& animation, const std::string& prefix) {
        out_ << "static const Frame " << prefix << "frames[] = {\n";
        if (animation.frames.empty()) out_ << kFramePlaceholder << '\n';
        for (const FrameDef& frame : animation.frames) {
            beginRow();
            appendFrame(text_, frame);
            endRow();
        }
        out_ << "};\n";
        if (animation.cancels.empty()) return;
        text_.clear();
        appendList(text_, animation.cancels, [&](const CancelDef& c) {
            CharacterRow(text_, ",")
                .fields(c.startFrame, c.endFrame, c.hits, c.command, c.targetAnimation)
                .close();
        });
        out_ << "static const Cancel " << prefix << "cancels[] = {" << text_ << "};\n";
    }

    void writeAnimations() {
        out_ << "static const Animation " << prefix_ << "animations[] = {\n";
        if (model_.animations.empty()) out_ << kAnimationPlaceholder << '\n';
        for (std::size_t j = 0; j < model_.animations.size(); ++j) {
            const AnimationDef& a = model_.animations[j];
            const std::string frames = animationPrefix(j) + "frames";
            const std::string cancels =
                a.cancels.empty() ? "nullptr" : animationPrefix(j) + "cancels";
            beginRow();
            CharacterRow(text_, ", ")
                .fields(a.name, Verbatim{frames}, a.frames.size(), a.loop, a.loopStart, a.loopEnd,
                        a.flipFrame, a.jumpFrame, a.jumpVelocityY, a.jumpVelocityX, a.jumpVelocityZ,
                        a.throwFrame, a.tossFrame, a.projectileOffsetY, a.projectileVelocityX,
                        a.projectileVelocityY, a.projectileVelocityZ, a.custKnife, a.custBomb,
                        a.weaponFrame, a.weaponIndex, a.followAnim, a.followCond, a.counterStart,
                        a.counterEnd, a.counterCond, a.counterTakesDamage, a.hasRangeX, a.rangeXMin,
                        a.rangeXMax, a.hasRangeZ, a.rangeZMin, a.rangeZMax, a.hasRangeA,
                        a.rangeAMin, a.rangeAMax, Verbatim{cancels}, a.cancels.size(), a.custEntity,
                        a.spawnFrame, a.spawnOffsetX, a.spawnOffsetZ, a.spawnOffsetA,
                        a.spawnScreenRelative, a.summonFrame, a.unsummonFrame, a.ignoreAttackId,
                        a.attackOne, a.landFrame, a.landDust, a.quakeFrame, a.quakeLoops,
                        a.quakeIntensity, a.hitFx, a.hitFlash, a.inlineScript, a.landDustModel,
                        a.energyCost, a.energyMode, a.energyDisable, a.dropFrame, a.chargeTime,
                        a.pBombFrame, a.pBombDelay)
                .close();
            endRow();
        }
        out_ << "};\n";
    }

    OutputFile& out_;
    const ModelDef& model_;
    std::string prefix_;
    std::string text_;  // the row at work
};

}  // namespace

void writeGeneratedCharacters(const std::vector<ModelDef>& models,
                              const std::filesystem::path& outputFolder) {
    const std::filesystem::path folder = outputFolder / "runtime" / "generated";
    createDirectories(folder);

    OutputFile header(folder / "GeneratedCharacters.hpp");
    header << schemaHeader("GeneratedCharacters.hpp");
    header.close();

    OutputFile out(folder / "GeneratedCharacters.cpp");
    out << "#include \"GeneratedCharacters.hpp\"\nnamespace generated {\n";
    for (std::size_t i = 0; i < models.size(); ++i) ModelWriter(out, models[i], i).writeArrays();
    out << "const Character kCharacters[] = {\n";
    if (models.empty()) out << "  {},\n";
    for (std::size_t i = 0; i < models.size(); ++i) ModelWriter(out, models[i], i).writeRow();
    out << "};\nconst std::size_t kCharacterCount = " << models.size() << ";\n}\n";
    out.close();

    writeRenderingReport(models, outputFolder);
    writeGameplayData(models, outputFolder);
}

}  // namespace tindrel
