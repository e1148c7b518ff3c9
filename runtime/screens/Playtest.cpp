#include "Playtest.hpp"

#include <algorithm>
#include <span>
#include <system_error>

#include "AssetPaths.hpp"
#include "PathEncoding.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

// The pictures of a stage that are named and not there.
void tallyScenery(const generated::Stage& row, const Scenery& scenery, Tally& missing) {
    const auto expect = [&missing](std::string_view name, bool there) {
        if (!name.empty() && !there) missing.add(name);
    };
    expect(row.background, scenery.background != nullptr);
    expect(row.waterPath, scenery.water != nullptr);
    for (std::size_t i = 0; i < row.panelCount && i < scenery.panels.size(); ++i) {
        expect(row.panels[i], scenery.panels[i] != nullptr);
    }
    for (const generated::Layer& layer : std::span(row.layers, row.layerCount)) {
        if (!layerKind(layer)) continue;
        const auto shows = [&layer](const RuntimeStageLayer& shown) { return shown.row == &layer; };
        expect(layer.path, std::ranges::any_of(scenery.backgroundLayers, shows) ||
                               std::ranges::any_of(scenery.foregroundLayers, shows));
    }
}

}  // namespace

void Tally::add(std::string_view bytes, std::uint64_t times) {
    const std::string text = PathEncoding::text(bytes);
    auto known = counts_.find(text);
    if (known == counts_.end()) {
        if (counts_.size() >= kMostTexts) {
            others_ += times;
            return;
        }
        known = counts_.emplace(text, 0).first;
    }
    known->second += times;
}

void Tally::add(const Tally& other) {
    for (const auto& [text, times] : other.counts_) add(text, times);
    others_ += other.others_;
}

void PlaytestFaults::add(const PlaytestFaults& other) {
    scriptErrors.add(other.scriptErrors);
    unsupported.add(other.unsupported);
    missingPictures.add(other.missingPictures);
    missingSounds.add(other.missingSounds);
}

PlaytestWatch::PlaytestWatch(Game& game) : game_(game) {
    game.scripts.watch([this](const Scripts::Run& run) {
        PlaytestStage* const stage = current();
        if (!stage) return;
        std::string text(run.event);
        text.append(" [").append(run.script).append("]");
        stage->hooks.add(text);
        if (!run.result.ok) stage->faults.scriptErrors.add(text + ": " + run.result.error);
        for (const std::string& name : run.result.unsupported.all()) {
            stage->faults.unsupported.add(name);
        }
    });
    game.sprites.watchMissing([this](std::string_view name) {
        if (PlaytestStage* const stage = current()) stage->faults.missingPictures.add(name);
    });
    game.effects.watchMissing([this](std::string_view name) {
        if (PlaytestStage* const stage = current()) stage->faults.missingSounds.add(name);
    });
}

PlaytestWatch::~PlaytestWatch() {
    game_.scripts.watch(nullptr);
    game_.sprites.watchMissing(nullptr);
    game_.effects.watchMissing(nullptr);
}

void PlaytestWatch::pass() {
    PlaytestStage* const stage = current();
    if (!stage) return;
    const World& world = game_.world;
    if (world.stage.row != row_) enterStage(*stage);
    ++stage->ticks;
    stage->spawned =
        static_cast<std::size_t>(std::ranges::count(world.stage.spawnState, FireState::Done));
    meet(*stage, world.player1);
    for (const RuntimeCoopPlayer& player : world.coop) meet(*stage, player);
    for (const RuntimeEntity& entity : world.entities) {
        if (entity.visible || !playing_.contains(entity.handle)) meet(*stage, entity);
    }
    // Those that left a hand in this tick have flown once.
    for (const RuntimeProjectile& projectile : world.projectiles) {
        if (projectile.model && projectile.life == game_.config.projectileLifetime - 1) {
            ++meet(*stage, *projectile.model).spawned;
        }
    }
}

void PlaytestWatch::close(const generated::Stage& row, int deaths, std::string_view result) {
    PlaytestStage& left = stage(row);
    left.deaths += deaths;
    left.result = result;
}

PlaytestStage& PlaytestWatch::stage(const generated::Stage& row) {
    const auto known = std::ranges::find(met_, &row, &PlaytestStage::row);
    if (known != met_.end()) return *known;
    met_.emplace_back().row = &row;
    return met_.back();
}

// What happens while a stage is being loaded belongs to it.
PlaytestStage* PlaytestWatch::current() {
    const generated::Stage* const row = game_.world.stage.row;
    return row ? &stage(*row) : nullptr;
}

void PlaytestWatch::enterStage(PlaytestStage& stage) {
    const generated::Stage& row = *stage.row;
    row_ = &row;
    playing_.clear();
    stage.result = "left";
    tallyScenery(row, game_.scenery, stage.faults.missingPictures);
    for (const std::string_view music : {row.music, row.bossMusic}) {
        std::error_code absent;
        if (!music.empty() &&
            !std::filesystem::exists(resolveAudioAsset(game_.dataRoot, music), absent)) {
            stage.faults.missingSounds.add(music);
        }
    }
}

void PlaytestWatch::meet(PlaytestStage& stage, const Actor& actor) {
    if (!actor.model) return;
    const generated::Animation* const animation = actor.animation.animation();
    const auto [known, isNew] = playing_.try_emplace(actor.handle, nullptr);
    if (!isNew && known->second == animation) return;
    known->second = animation;
    PlaytestModel& model = meet(stage, *actor.model);
    if (isNew) ++model.spawned;
    if (animation) ++model.animations[animation->name];
}

PlaytestModel& PlaytestWatch::meet(PlaytestStage& stage, const generated::Character& model) {
    PlaytestModel& met = stage.models[model.name];
    met.animationCount = model.animationCount;
    return met;
}

}  // namespace port
