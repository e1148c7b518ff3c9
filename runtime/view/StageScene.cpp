#include "StageScene.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "BindingOrder.hpp"
#include "Pixels.hpp"

namespace port {
namespace {

// Depths without a stage.
constexpr int kDefaultZMin = 160;
constexpr int kDefaultZMax = 232;
// What the scenery keeps between itself and the depths that actors walk in.
constexpr int kPanelsBehind = 50;
constexpr int kFrontPanelsAhead = 50;
constexpr int kMostColumns = 256;
constexpr int kMostRows = 64;

// The first of a row of tiles, moved back by whole steps until it does not begin inside.
std::int64_t tileStart(std::int64_t start, std::int64_t step) {
    return start <= 0 ? start : start - (start + step - 1) / step * step;
}

int tileCount(int repeat, int without, int most) {
    return repeat > 0 ? std::min(repeat, most) : without;
}

}  // namespace

SpritePtr SpriteSource::load(const ShownFrame& shown) const {
    if (!shown.frame) return nullptr;
    return cache.load(renderer, dataRoot, shown.frame->sprite, shown.model, shown.palette);
}

int StageScene::zMin() const {
    return world_.stage.row ? pixel(world_.stage.row->zMin) : kDefaultZMin;
}

int StageScene::zMax() const {
    return world_.stage.row ? pixel(world_.stage.row->zMax) : kDefaultZMax;
}

float StageScene::renderCameraX() const {
    return world_.camera.x +
           static_cast<float>(world_.stage.row ? world_.stage.row->cameraOffsetX : 0);
}

// Of the ground, by the stage's camera and the shake of the pass.
int StageScene::offsetY() const {
    return pixel(world_.stage.row ? world_.stage.row->cameraOffsetY : 0) + world_.shake.rockY;
}

void StageScene::addScenery() {
    addBackground();
    for (const RuntimeStageLayer& layer : scenery_.backgroundLayers) {
        if (layer.kind == LayerKind::Background) list_.addBackdrop(layerTiles(layer));
    }
    addPanels();
    for (const auto* layers : {&scenery_.backgroundLayers, &scenery_.foregroundLayers}) {
        for (const RuntimeStageLayer& layer : *layers) addLayer(layer);
    }
}

void StageScene::addBackground() {
    const SpritePtr& image = scenery_.background;
    if (!image) return;
    const int left = pixel(scenery_.backgroundOffsetX) + world_.shake.rockX;
    const int top = pixel(scenery_.backgroundOffsetY) + offsetY();
    const StageRun& stage = world_.stage;
    if (!stage.verticalScroll) {
        const int moved = pixel(renderCameraX() * scenery_.backgroundRatioX);
        list_.addBackdrop(DrawImage{image, left - moved, top});
        return;
    }
    const int height = image->height;
    const double scrolled =
        static_cast<double>(stage.verticalStageScroll) * stage.verticalScrollSign;
    DrawTiles tiles{image, left};
    // From just above the canvas on, however far away the first one would be.
    tiles.y = tileStart((top - pixel(std::fmod(scrolled, height))) % height, height);
    tiles.stepY = height;
    tiles.rows = config_.logicalHeight / height + 2;
    list_.addBackdrop(std::move(tiles));
}

DrawTiles StageScene::layerTiles(const RuntimeStageLayer& layer) const {
    const generated::Layer& row = *layer.row;
    const double drift = static_cast<double>(world_.tick) * row.bgSpeedRatio / kTicksPerSecond;
    DrawTiles tiles{layer.image};
    tiles.stepX = std::max<std::int64_t>(1, std::int64_t{layer.image->width} + row.xSpacing);
    tiles.stepY = std::max<std::int64_t>(1, std::int64_t{layer.image->height} + row.zSpacing);
    tiles.columns = tileCount(row.xRepeat, kMostColumns, kMostColumns);
    tiles.rows = tileCount(row.zRepeat, 1, kMostRows);
    tiles.x = tileStart(std::int64_t{row.xOffset} - pixel(renderCameraX() * row.xRatio) +
                            roundedPixel(drift) + world_.shake.rockX,
                        tiles.stepX);
    tiles.y = std::int64_t{row.zOffset} + offsetY();
    if (tiles.rows > 1) tiles.y = tileStart(tiles.y, tiles.stepY);
    tiles.blend = row.alpha;
    return tiles;
}

void StageScene::addLayer(const RuntimeStageLayer& layer) {
    if (layer.kind == LayerKind::Background) return;
    if (layer.kind == LayerKind::FrontPanel) {
        list_.add(SceneKind::FrontPanel, zMax() + kFrontPanelsAhead, 0, layerTiles(layer));
    } else {
        list_.add(SceneKind::ForegroundLayer, layer.row->zOrder, 0, layerTiles(layer));
    }
}

void StageScene::addPanels() {
    std::int64_t x = std::int64_t{world_.shake.rockX} - pixel(renderCameraX());
    for (const SpritePtr& panel : scenery_.panels) {
        if (!panel) continue;
        if (x < config_.logicalWidth && x + panel->width > 0) {
            list_.add(SceneKind::Panel, zMin() - kPanelsBehind, 0,
                      DrawImage{panel, static_cast<int>(x), offsetY()});
        }
        x += panel->width;
    }
}

void StageScene::addActors(const SpriteSource& sprites) {
    const auto add = [&](const Actor& actor) {
        if (!actor.animation.frame()) return;
        addSprite(SceneKind::Actor, bindingSortId(world_, actor), actor.model, actor.place(),
                  actor.shown, sprites);
    };
    add(world_.player1);
    for (const RuntimeCoopPlayer& player : world_.coop) {
        if (player.model) add(player);
    }
    for (const RuntimeEntity& entity : world_.entities) {
        if (entity.visible && entity.model) add(entity);
    }
    for (const RuntimeProjectile& projectile : world_.projectiles) {
        if (!projectile.alive || !projectile.animation.frame()) continue;
        addSprite(SceneKind::Projectile, 0, projectile.model, projectile.place(), projectile.shown,
                  sprites);
    }
}

void StageScene::addSprite(SceneKind kind, int sortId, const generated::Character* model,
                           const ActorPlace& place, const ShownFrame& shown,
                           const SpriteSource& sprites) {
    SpritePtr image = sprites.load(shown);
    if (!image) return;
    const int layer = model ? model->setLayer : 0;
    const int z = layer != 0 ? zMin() + pixel(layer) : roundedPixel(place.z);
    list_.add(kind, z, sortId,
              DrawSprite{.image = std::move(image),
                         .frame = shown.frame,
                         .draw = shown.frame->draw,
                         .x = pixel(place.x - renderCameraX()) + world_.shake.rockX,
                         .y = pixel(place.z + place.altitude) + offsetY(),
                         .flip = place.facing < 0,
                         .alphaMode = model ? model->alphaMode : 0});
}

}  // namespace port
