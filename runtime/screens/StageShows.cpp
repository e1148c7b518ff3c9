#include "StageShows.hpp"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "AssetPaths.hpp"
#include "Log.hpp"
#include "MenuText.hpp"
#include "TimedShow.hpp"

namespace port {
namespace {

constexpr int kLoadingMilliseconds = 250;
constexpr int kCompleteMilliseconds = 90 * 16;

// Null where there is none.
SpritePtr loadPicture(const Game& game, std::string_view name) {
    SpriteImage image;
    if (!game.renderer.loadSprite(resolveSpriteAsset(game.dataRoot, name), image)) return nullptr;
    return std::make_shared<const SpriteImage>(std::move(image));
}

// An animated picture; never without frames once it is loaded.
class Film {
  public:
    static std::optional<Film> load(const Game& game, std::string_view name) {
        std::vector<SpriteImage> images;
        std::vector<int> delays;
        const auto file = resolveSpriteAsset(game.dataRoot, name);
        if (!game.renderer.loadAnimationFrames(file, images, delays) || images.empty()) return {};
        Film film;
        for (std::size_t i = 0; i < images.size(); ++i) {
            film.frames_.push_back(
                {std::make_shared<const SpriteImage>(std::move(images[i])),
                 i < delays.size() ? std::max(kLeastDelay, delays[i]) : kDefaultDelay});
            film.milliseconds_ += film.frames_.back().milliseconds;
        }
        return film;
    }

    // One run through all frames.
    [[nodiscard]] std::int64_t milliseconds() const { return milliseconds_; }
    // It begins again when it has ended.
    [[nodiscard]] const SpritePtr& at(std::int64_t elapsed) const {
        std::int64_t left = elapsed % milliseconds_;
        auto frame = frames_.begin();
        for (; left >= frame->milliseconds; ++frame) left -= frame->milliseconds;
        return frame->image;
    }

  private:
    static constexpr int kLeastDelay = 16, kDefaultDelay = 100;
    struct Frame {
        SpritePtr image;
        int milliseconds;
    };
    std::vector<Frame> frames_;
    std::int64_t milliseconds_ = 0;
};

void startSceneMusic(Game& game, const generated::CutsceneAnimation& step) {
    if (step.silenceBefore) game.audio.stopMusic();
    if (*step.musicBefore == '\0') return;
    const auto file = resolveAudioAsset(game.dataRoot, step.musicBefore);
    if (!game.audio.playMusic(file, step.musicLoop)) {
        warnLine("Cutscene music diagnostic: ", game.audio.lastError());
    }
}

ShowEnd playStep(Game& game, TimedShow& show, const generated::CutsceneAnimation& step) {
    constexpr std::int64_t kMillisecondsPerTick = 16;
    startSceneMusic(game, step);
    const auto film = Film::load(game, step.path);
    if (!film) return ShowEnd::Elapsed;
    const RuntimeConfig& config = game.config;
    const std::array<int, 8> keys = {config.keyAttack, config.keyJump, config.keyPickup,
                                     config.keyDash,   config.keyGrab, config.keyThrow,
                                     kKeyEnter,        kKeyEscape};
    ShowRule rule;
    rule.milliseconds =
        step.durationTicks > 0 ? step.durationTicks * kMillisecondsPerTick : film->milliseconds();
    if (step.noSkip == 0) rule.skipKeys = keys;
    return show.run(rule, [&](DrawList& list, std::int64_t elapsed) {
        list.addBackdrop(DrawImage{film->at(elapsed), step.x, step.y});
    });
}

}  // namespace

void showLoadingScreen(Game& game) {
    const SpritePtr image = loadPicture(game, "bgs/loading");
    TimedShow(game).run({kLoadingMilliseconds}, [&](DrawList& list, std::int64_t) {
        if (image) {
            list.addBackdrop(DrawImage{image});
        } else {
            addText(list, 92, 105, 18, "LOADING...", true);
        }
    });
}

void playStageCutscene(Game& game, bool post) {
    const generated::Stage& row = *game.world.stage.row;
    const std::span steps = post ? std::span(row.postSceneAnimations, row.postSceneAnimationCount)
                                 : std::span(row.sceneAnimations, row.sceneAnimationCount);
    if (steps.empty()) return;
    TimedShow show(game);
    std::optional<int> skippedScene;
    for (const generated::CutsceneAnimation& step : steps) {
        if (*step.path == '\0' || step.sceneIndex == skippedScene) continue;
        const ShowEnd end = playStep(game, show, step);
        if (end == ShowEnd::Closed) break;
        // A step may be passed over alone, or with the rest of its scene.
        if (end == ShowEnd::Skipped && step.skip == 0) skippedScene = step.sceneIndex;
    }
    game.audio.stopMusic();
}

void playStageCompleteScreen(Game& game) {
    if (game.world.stage.row->completeBg == 0) return;
    const SpritePtr image = loadPicture(game, "bgs/complete");
    const RuntimeConfig& config = game.config;
    const std::array<int, 4> keys = {config.keyAttack, config.keyJump, kKeyEnter, kKeyEscape};
    TimedShow(game).run({kCompleteMilliseconds, keys, true}, [&](DrawList& list, std::int64_t) {
        if (!image) {
            addText(list, std::max(8, config.logicalWidth / 2 - 70),
                    std::max(24, config.logicalHeight / 2 - 8), 14, "STAGE COMPLETE", true);
            return;
        }
        list.addBackdrop(DrawImage{image, (config.logicalWidth - image->width) / 2,
                                   (config.logicalHeight - image->height) / 2});
    });
}

}  // namespace port
