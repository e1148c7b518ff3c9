#include "reader/LevelSets.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "platform/FileStatus.hpp"
#include "reader/DataPaths.hpp"
#include "reader/RepeatedReads.hpp"
#include "reader/StageReader.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace {

using Args = std::span<const std::string_view>;

std::int32_t zeroOrOne(std::string_view token) {
    return parseIntOr(token, 0) > 0 ? 1 : 0;
}

struct LevelSetParser {
    std::vector<LevelSetDef> sets;
    // Of a line ahead of the first set; every set starts with them.
    std::int32_t completeBg = 0, noShare = 0;
    std::int32_t chapter = 0;
    std::string pendingBranch;
    std::vector<std::string> pendingScenes;

    // Scenes behind a stage belong to it; only those ahead of a set's first stage wait for one.
    void flushScenes() {
        if (sets.empty() || sets.back().stages.empty()) return;
        std::vector<std::string>& scenes = sets.back().stages.back().postScenes;
        scenes.insert(scenes.end(), std::make_move_iterator(pendingScenes.begin()),
                      std::make_move_iterator(pendingScenes.end()));
        pendingScenes.clear();
    }

    void startSet(Args args) {
        flushScenes();
        LevelSetDef set;
        set.name = args[0];
        set.order = static_cast<std::int32_t>(sets.size());
        set.completeBg = completeBg;
        set.noShare = noShare;
        sets.push_back(std::move(set));
        pendingBranch.clear();
        pendingScenes.clear();
        chapter = 0;
    }

    void setDepth(Args args) {
        DepthLimits& depth = sets.back().depth;
        depth.zMin = parseIntOr(args[0], 0);
        depth.zMax = parseIntOr(args[1], 0);
        if (args.size() > 2) depth.backgroundHeight = parseIntOr(args[2], 0);
    }

    void addStage(Args args) {
        flushScenes();
        StageEntry& stage = sets.back().stages.emplace_back();
        stage.file = normalizeDataPath(args[0]);
        stage.preScenes = std::exchange(pendingScenes, {});
        stage.chapter = chapter;
        stage.branchName = std::exchange(pendingBranch, {});
        stage.depth = sets.back().depth;
    }

    void endCampaign() {
        flushScenes();
        if (!sets.back().stages.empty()) sets.back().stages.back().campaignEnd = true;
    }
};

struct LevelKeyword {
    std::string_view name;
    std::size_t minArgs;
    bool needsSet;
    void (*action)(LevelSetParser&, Args);
};

constexpr LevelKeyword kLevelKeywords[] = {
    {"set", 1, false, [](LevelSetParser& p, Args a) { p.startSet(a); }},
    {"lives", 1, true,
     [](LevelSetParser& p, Args a) { p.sets.back().lives = parseNonNegative(a[0]); }},
    {"credits", 1, true,
     [](LevelSetParser& p, Args a) { p.sets.back().credits = parseNonNegative(a[0]); }},
    {"cansave", 1, true,
     [](LevelSetParser& p, Args a) {
         p.sets.back().canSave = std::clamp(parseIntOr(a[0], 0), 0, 2);
     }},
    {"skipselect", 1, true,
     [](LevelSetParser& p, Args a) { p.sets.back().skipSelect = zeroOrOne(a[0]); }},
    {"completebg", 1, false,
     [](LevelSetParser& p, Args a) {
         (p.sets.empty() ? p.completeBg : p.sets.back().completeBg) = zeroOrOne(a[0]);
     }},
    {"noshare", 1, false,
     [](LevelSetParser& p, Args a) {
         (p.sets.empty() ? p.noShare : p.sets.back().noShare) = zeroOrOne(a[0]);
     }},
    {"ifcomplete", 1, true,
     [](LevelSetParser& p, Args a) { p.sets.back().ifComplete = parseNonNegative(a[0]); }},
    {"z", 2, true, [](LevelSetParser& p, Args a) { p.setDepth(a); }},
    {"scene", 1, true,
     [](LevelSetParser& p, Args a) { p.pendingScenes.push_back(normalizeDataPath(a[0])); }},
    {"branch", 1, true, [](LevelSetParser& p, Args a) { p.pendingBranch = a[0]; }},
    {"file", 1, true, [](LevelSetParser& p, Args a) { p.addStage(a); }},
    {"next", 0, true,
     [](LevelSetParser& p, Args) {
         p.flushScenes();
         ++p.chapter;
     }},
    {"end", 0, true, [](LevelSetParser& p, Args) { p.endCampaign(); }},
    {"endlevel", 0, true, [](LevelSetParser& p, Args) { p.endCampaign(); }},
};

// Reads the scene files of one list, one after the other.
struct SceneParser {
    struct Music {
        std::string path;
        bool loop = false;
    };

    SceneList list;
    // What the next animation starts with. Not dropped at the end of a scene file: the player
    // hears the music go on into the next scene.
    std::optional<Music> pendingMusic = std::nullopt;
    bool pendingSilence = false;

    void setMusic(Args args) {
        pendingMusic = {normalizeDataPath(args[0]), args.size() > 1 && parseIntOr(args[1], 0) != 0};
    }

    // The list's music is the first that sounds; the later ones sound from their animation on.
    void offerListMusic() {
        if (!list.music.empty() || !pendingMusic) return;
        list.music = pendingMusic->path;
        list.musicLoop = pendingMusic->loop;
    }

    void addAnimation(Args args, std::int32_t sceneIndex) {
        const auto number = [&](std::size_t i) {
            return i < args.size() ? parseIntOr(args[i], 0) : 0;
        };
        CutsceneAnimationDef animation;
        animation.path = normalizeDataPath(args[0]);
        animation.x = number(1);
        animation.y = number(2);
        animation.skip = number(3);
        animation.noSkip = number(4);
        if (args.size() > 5) animation.durationTicks = std::max(number(5), 1);
        animation.sceneIndex = sceneIndex;
        offerListMusic();
        if (pendingMusic) {
            animation.musicBefore = std::move(pendingMusic->path);
            animation.musicLoop = pendingMusic->loop;
            pendingMusic.reset();
        }
        animation.silenceBefore = std::exchange(pendingSilence, false);
        list.animations.push_back(std::move(animation));
    }

    void parse(const TextFile& file, std::int32_t sceneIndex) {
        for (const TextLine& line : file) {
            if (line.key == "silence") pendingSilence = true;
            if (line.args.empty()) continue;
            if (line.key == "stop") return;  // the scene ends here
            if (line.key == "music") setMusic(line.args);
            if (line.key == "animation") addAnimation(line.args, sceneIndex);
        }
    }
};

SceneList readScenes(GameReader& game, const std::vector<std::string>& sceneFiles,
                     RepeatedReads& reads) {
    SceneParser parser;
    for (std::size_t i = 0; i < sceneFiles.size(); ++i) {
        const std::filesystem::path file = game.resolve(sceneFiles[i]);
        if (file.empty() || !tindrel::exists(file)) continue;
        const TextFile& lines = game.lines(file);
        if (reads.admit(file, lines)) parser.parse(lines, static_cast<std::int32_t>(i));
    }
    parser.offerListMusic();
    return std::move(parser.list);
}

StageDef readStage(GameReader& game, const std::filesystem::path& file, const LevelSetDef& set,
                   StageEntry entry, RepeatedReads& reads) {
    Reading reading = game.newReading();
    StageDef stage = parseStage(game.lines(file), set, entry.depth, reading);
    game.collect(file, reading.lines());
    stage.sourceFile = game.relativeToProject(file);
    stage.branchName = std::move(entry.branchName);
    stage.chapter = entry.chapter;
    stage.campaignEnd = entry.campaignEnd;
    if (!entry.preScenes.empty()) stage.preSceneFile = entry.preScenes.front();
    stage.preScenes = std::move(entry.preScenes);
    stage.postScenes = std::move(entry.postScenes);
    SceneList pre = readScenes(game, stage.preScenes, reads);
    stage.sceneAnimations = std::move(pre.animations);
    stage.sceneMusic = std::move(pre.music);
    stage.sceneMusicLoop = pre.musicLoop;
    SceneList post = readScenes(game, stage.postScenes, reads);
    stage.postSceneAnimations = std::move(post.animations);
    stage.postSceneMusic = std::move(post.music);
    stage.postSceneMusicLoop = post.musicLoop;
    return stage;
}

}  // namespace

std::vector<LevelSetDef> readLevelSets(const TextFile& file) {
    LevelSetParser parser;
    for (const TextLine& line : file) {
        const auto* const keyword =
            std::find_if(std::begin(kLevelKeywords), std::end(kLevelKeywords),
                         [&](const LevelKeyword& row) { return row.name == line.key; });
        if (keyword == std::end(kLevelKeywords) || line.args.size() < keyword->minArgs) continue;
        if (keyword->needsSet && parser.sets.empty()) continue;
        keyword->action(parser, line.args);
    }
    parser.flushScenes();
    return std::move(parser.sets);
}

std::vector<StageDef> readStages(GameReader& game) {
    std::vector<StageDef> stages;
    const std::filesystem::path levels = game.resolve("levels.txt");
    if (levels.empty() || !tindrel::exists(levels)) return stages;
    RepeatedReads reads;
    for (LevelSetDef& set : readLevelSets(game.lines(levels))) {
        for (StageEntry& entry : set.stages) {
            const std::filesystem::path file = game.resolve(entry.file);
            if (file.empty() || !tindrel::exists(file)) continue;
            if (!reads.admit(file, game.lines(file))) continue;
            stages.push_back(readStage(game, file, set, std::move(entry), reads));
            stages.back().order = static_cast<std::int32_t>(stages.size() - 1);
        }
    }
    return stages;
}

SceneList readScenes(GameReader& game, const std::vector<std::string>& sceneFiles) {
    RepeatedReads reads;
    return readScenes(game, sceneFiles, reads);
}

}  // namespace tindrel
