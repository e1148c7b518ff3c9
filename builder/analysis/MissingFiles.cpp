#include "analysis/MissingFiles.hpp"

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "PathEncoding.hpp"
#include "analysis/ClosestWord.hpp"
#include "platform/FileStatus.hpp"
#include "reader/LevelSets.hpp"
#include "reader/ModelReader.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

// Models that a missing name is held beside: more than real games have, so that only a list of
// nonsense is not looked through to its end.
constexpr std::size_t kMaxOfferedModels = 2000;

using Find = const NativePath* (AssetFinder::*)(std::string_view);

// The distinct names of one kind.
class Names {
  public:
    explicit Names(std::string_view title) { group_.title = title; }

    // `isMissing` is asked about the first mention of each spelling only.
    template <typename IsMissing>
    void mention(std::string_view text, std::string_view namedBy, IsMissing isMissing) {
        if (text.empty() || equalsFolded(text, "none")) return;
        const auto [entry, isNew] = states_.try_emplace(text, kPresent);
        if (isNew && isMissing(text)) entry->second = placeOf(text, namedBy);
        if (entry->second != kPresent) ++group_.names[entry->second].mentions;
    }

    // The most frequent first; only these are kept.
    [[nodiscard]] MissingGroup take() {
        group_.total = group_.names.size();
        std::ranges::stable_sort(group_.names, std::ranges::greater(), &MissingName::mentions);
        group_.names.resize(std::min(group_.names.size(), kMaxMissingNames));
        return std::move(group_);
    }

  private:
    static constexpr std::size_t kPresent = static_cast<std::size_t>(-1);

    std::size_t placeOf(std::string_view text, std::string_view namedBy) {
        const auto [place, isNew] = missing_.try_emplace(foldedPath(text), group_.names.size());
        if (isNew) group_.names.push_back({std::string(text), std::string(namedBy), 0, 0, {}});
        return place->second;
    }

    MissingGroup group_;
    std::unordered_map<std::string_view, std::size_t> states_;  // by spelling, as below
    std::unordered_map<std::string, std::size_t> missing_;      // index among all
};

std::string_view baseName(std::string_view text) {
    return text.substr(text.find_last_of("/\\") + 1);
}

// Where one model names another.
constexpr std::string ModelDef::*kModelNames[] = {
    &ModelDef::flashModel,    &ModelDef::blockFlashModel, &ModelDef::subEntityModel,
    &ModelDef::knifeModel,    &ModelDef::bombModel,       &ModelDef::projectModel,
    &ModelDef::dustFallModel, &ModelDef::dustLandModel,   &ModelDef::dustJumpModel,
};
constexpr std::string AnimationDef::*kAnimationNames[] = {
    &AnimationDef::custKnife,
    &AnimationDef::custBomb,
    &AnimationDef::custEntity,
    &AnimationDef::landDustModel,
};

class MissingFileSearch {
  public:
    MissingFileSearch(GameReader& game, AssetFinder& assets, const ProjectAnalysis& analysis)
        : game_(game), assets_(assets), analysis_(analysis) {}

    std::vector<MissingGroup> run() {
        searchRegistry();
        searchLevelSets();
        for (const ModelDef& model : game_.models()) searchModel(model);
        for (const StageDef& stage : game_.stages()) searchStage(stage);
        searchHelpers();
        std::vector<MissingGroup> groups;
        for (Names* const names : {&modelFiles_, &spawns_, &others_, &stageFiles_, &scenes_,
                                   &scripts_, &pictures_, &sounds_, &music_}) {
            MissingGroup group = names->take();
            if (names == &spawns_ || names == &others_) offerModels(group);
            if (group.total > 0) groups.push_back(std::move(group));
        }
        locate(groups);
        return groups;
    }

  private:
    void look(Names& names, Find find, std::string_view text, std::string_view namedBy) {
        names.mention(text, namedBy,
                      [&](std::string_view name) { return (assets_.*find)(name) == nullptr; });
    }

    void lookForModel(Names& names, std::string_view text, std::string_view namedBy) {
        names.mention(text, namedBy,
                      [&](std::string_view name) { return modelNames_.count(toLower(name)) == 0; });
    }

    void offerModels(MissingGroup& group) const {
        for (MissingName& name : group.names) {
            const std::string written = toLower(name.text);
            ClosestWord closest(written);
            std::size_t offered = 0;
            for (const auto& [lowered, model] : modelNames_) {
                if (offered++ == kMaxOfferedModels) break;
                closest.offer(lowered);
            }
            if (!closest.found().empty()) name.meant = modelNames_.find(closest.found())->second;
        }
    }

    // The lines of a file of the data folder; null when it is not there.
    const TextFile* linesOf(std::string_view name) {
        const NativePath* const file = assets_.file(name);
        return file == nullptr ? nullptr : &game_.lines(*file);
    }

    void searchRegistry() {
        for (const ModelDef& model : game_.models()) {
            addModelName(model.modelName);
            addModelName(model.name);
        }
        const TextFile* const registry = linesOf("models.txt");
        if (registry == nullptr) return;
        const std::string source = game_.relativeToProject(*assets_.file("models.txt"));
        for (const TextLine& line : *registry) {
            const auto entry = registeredModel(line);
            if (!entry) continue;
            addModelName(line.args[0]);
            look(modelFiles_, &AssetFinder::file, entry->path, source);
        }
    }

    void addModelName(std::string_view name) { modelNames_.try_emplace(toLower(name), name); }

    void searchLevelSets() {
        const TextFile* const levels = linesOf("levels.txt");
        if (levels == nullptr) return;
        const std::string source = game_.relativeToProject(*assets_.file("levels.txt"));
        // Names are remembered by view, so the sets live as long as the search.
        levelSets_ = readLevelSets(*levels);
        const auto lookFor = [&](Names& names, std::string_view file) {
            look(names, &AssetFinder::file, file, source);
        };
        for (const LevelSetDef& set : levelSets_) {
            for (const StageEntry& stage : set.stages) {
                lookFor(stageFiles_, stage.file);
                for (const std::string& scene : stage.preScenes) lookFor(scenes_, scene);
            }
            for (const StageEntry& stage : set.stages) {
                for (const std::string& scene : stage.postScenes) lookFor(scenes_, scene);
            }
        }
    }

    void searchModel(const ModelDef& model) {
        const std::string_view source = model.sourceFile;
        const auto picture = [&](std::string_view text) {
            look(pictures_, &AssetFinder::picture, text, source);
        };
        const auto sound = [&](std::string_view text) {
            look(sounds_, &AssetFinder::sound, text, source);
        };
        picture(model.iconPath);
        picture(model.iconDiePath);
        picture(model.palettePath);
        for (const std::string& palette : model.alternatePalettes) picture(palette);
        for (const PaletteRemapDef& remap : model.paletteRemaps) {
            picture(remap.source);
            picture(remap.target);
        }
        for (const ModelScript& script : kModelScripts) {
            look(scripts_, &AssetFinder::script, model.*script.path, source);
        }
        helpersOfModels_.emplace(model.sourceFile, model.animationScript);
        sound(model.dieSound);
        const auto other = [&](std::string_view text) { lookForModel(others_, text, source); };
        for (const auto name : kModelNames) other(model.*name);
        for (const std::string& weapon : model.weapons) other(weapon);
        for (const AnimationDef& animation : model.animations) {
            sound(animation.hitFx);
            for (const auto name : kAnimationNames) other(animation.*name);
            for (const FrameDef& frame : animation.frames) {
                picture(frame.sprite);
                sound(frame.sound);
                other(frame.hitFlash);
                other(frame.blockFlash);
            }
        }
    }

    // A later helper of a model file hides an earlier one, on which animations rest all the same.
    void searchHelpers() {
        const SourceFile* file = nullptr;
        std::string_view helper;
        for (const AnimationCommandAudit& audit : analysis_.animationAudit) {
            if (audit.file == file && audit.helper == helper) continue;
            file = audit.file;
            helper = audit.helper;
            const std::string source = PathEncoding::utf8(file->relative);
            if (!helpersOfModels_.contains({source, helper})) {
                look(scripts_, &AssetFinder::script, helper, source);
            }
        }
    }

    void searchStage(const StageDef& stage) {
        const std::string_view source = stage.sourceFile;
        const auto picture = [&](std::string_view text) {
            look(pictures_, &AssetFinder::picture, text, source);
        };
        const auto music = [&](std::string_view text, std::string_view namedBy) {
            look(music_, &AssetFinder::sound, text, namedBy);
        };
        const auto script = [&](std::string_view text) {
            look(scripts_, &AssetFinder::script, text, source);
        };
        picture(stage.background);
        for (const std::string& panel : stage.panels) picture(panel);
        for (const LayerDef& layer : stage.layers) picture(layer.path);
        picture(stage.waterPath);
        music(stage.music, source);
        music(stage.bossMusic, source);
        script(stage.levelScript);
        for (const SpawnDef& spawn : stage.spawns) {
            script(spawn.spawnScript);
            for (const std::string* const model : {&spawn.model, &spawn.item}) {
                lookForModel(spawns_, *model, source);
            }
        }
        searchScenes(stage.sceneAnimations, stage.sceneMusic, stage.preScenes);
        searchScenes(stage.postSceneAnimations, stage.postSceneMusic, stage.postScenes);
    }

    // Which file of the list named its music is not recorded; the first one stands for it.
    void searchScenes(const std::vector<CutsceneAnimationDef>& animations,
                      const std::string& listMusic, const std::vector<std::string>& files) {
        if (files.empty()) return;
        const auto sourceOf = [&](std::size_t index) {
            const NativePath* const file = assets_.file(files[index < files.size() ? index : 0]);
            return file == nullptr ? std::string() : game_.relativeToProject(*file);
        };
        if (!listMusic.empty()) look(music_, &AssetFinder::sound, listMusic, sourceOf(0));
        for (const CutsceneAnimationDef& animation : animations) {
            const std::string source = sourceOf(static_cast<std::size_t>(animation.sceneIndex));
            look(pictures_, &AssetFinder::picture, animation.path, source);
            look(music_, &AssetFinder::sound, animation.musicBefore, source);
        }
    }

    // Finds the line of each name in the file that names it, one reading per file.
    void locate(std::vector<MissingGroup>& groups) {
        std::map<std::string_view, std::unordered_multimap<std::string, MissingName*>> byFile;
        for (MissingGroup& group : groups) {
            for (MissingName& name : group.names) {
                byFile[name.namedBy].emplace(toLower(baseName(name.text)), &name);
            }
        }
        for (auto& [source, wanted] : byFile) {
            if (source.empty()) continue;
            const fs::path path = game_.projectRoot() / PathEncoding::path(source);
            for (const TextLine& line : game_.lines(path)) {
                for (const std::string_view token : line.args) markLine(wanted, token, line.line);
            }
            game_.release(path);
        }
    }

    static void markLine(std::unordered_multimap<std::string, MissingName*>& wanted,
                         std::string_view token, std::uint64_t line) {
        const auto [first, last] = wanted.equal_range(toLower(baseName(token)));
        for (auto it = first; it != last; ++it) {
            MissingName& name = *it->second;
            if (name.line == 0 &&
                equalsFolded(normalizeDataPath(token), toLower(normalizeDataPath(name.text)))) {
                name.line = line;
            }
        }
    }

    GameReader& game_;
    AssetFinder& assets_;
    const ProjectAnalysis& analysis_;
    std::vector<LevelSetDef> levelSets_;
    std::map<std::string, std::string, std::less<>> modelNames_;  // as written, by the lower case
    std::set<std::pair<std::string_view, std::string_view>> helpersOfModels_;  // by source file
    Names modelFiles_{"Model files"};
    Names spawns_{"Spawned names that no model has"};
    Names others_{"Effects, weapons and children that no model has"};
    Names stageFiles_{"Stage files"};
    Names scenes_{"Scene files"};
    Names scripts_{"Scripts"};
    Names pictures_{"Pictures"};
    Names sounds_{"Sounds"};
    Names music_{"Music"};
};

}  // namespace

std::vector<MissingGroup> findMissingFiles(GameReader& game, AssetFinder& assets,
                                           const ProjectAnalysis& analysis) {
    return MissingFileSearch(game, assets, analysis).run();
}

}  // namespace tindrel
