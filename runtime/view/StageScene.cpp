#include "StageScene.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

#include "BindingOrder.hpp"
#include "Pixels.hpp"
#include "Shadows.hpp"

namespace port {
namespace {

// What the scenery keeps between itself and the depths that actors walk in.
constexpr int kPanelsBehind = 50;
constexpr int kShadowsBehind = 47;
constexpr int kFrontPanelsAhead = 50;
constexpr int kFloatingStage = 1;  // of the rock modes
constexpr int kMostWarp = 15;
constexpr int kMostColumns = 256;
constexpr int kMostRows = 64;

// The first of a row of tiles, moved back by whole steps until it does not begin inside.
std::int64_t tileStart(std::int64_t start, std::int64_t step) {
    return start <= 0 ? start : start - (start + step - 1) / step * step;
}

int tileCount(int repeat, int without, int most) {
    return repeat > 0 ? std::min(repeat, most) : without;
}

// Without a picture, a patch of the ground.
constexpr int kPatchWidth = 16;
constexpr int kPatchHeight = 3;
constexpr int kPatchAbove = 2;
constexpr ColorKey kPatchColor = colorKey(35, 35, 35);
constexpr const char* kShadowSprites[] = {"sprites/shadow1", "sprites/shadow2", "sprites/shadow3",
                                          "sprites/shadow4", "sprites/shadow5", "sprites/shadow6"};

// None where what it shows is gone.
std::optional<DrawShape> shapeOf(const ScriptDrawCommand& command, const ScriptPictures& pictures) {
    const int x = command.x;
    const int y = command.y;
    switch (command.kind) {
        case ScriptDrawKind::Text:
            return DrawTextLine{x, y, scriptTextSize(command.font), command.text};
        case ScriptDrawKind::Box:
            return DrawRectangle{x, y, command.w, command.h, command.color};
        case ScriptDrawKind::Line:
            return DrawLine{x, y, command.x2, command.y2, command.color};
        case ScriptDrawKind::Dot:
            return DrawDot{x, y, command.color};
        case ScriptDrawKind::Sprite: {
            const int blend = command.draw.enabled ? command.draw.alphaMode : 0;
            SpritePtr image = pictures.sprite(command.sprite);
            if (image) return DrawScriptImage{std::move(image), command.draw, x, y, blend};
            break;
        }
        case ScriptDrawKind::Screen: {
            auto screen = pictures.screen(command.screen);
            if (screen) return DrawScriptScreen{screen, command.draw, x, y, command.blend};
            break;
        }
    }
    return std::nullopt;
}

}  // namespace

SpritePtr SpriteSource::load(const ShownFrame& shown) const {
    if (!shown.frame) return nullptr;
    return cache.load(renderer, dataRoot, shown.frame->sprite, shown.model, shown.palette);
}

SpritePtr SpriteSource::load(const char* name) const {
    return cache.load(renderer, dataRoot, name, nullptr, 0);
}

StageScene::StageScene(const World& world, const Scenery& scenery, const RuntimeConfig& config,
                       const SpriteSource& sprites, DrawList& list)
    : world_(world),
      scenery_(scenery),
      config_(config),
      sprites_(sprites),
      list_(list),
      row_(world.stage.row),
      zMin_(row_ ? pixel(row_->zMin) : kDefaultZMin),
      zMax_(row_ ? pixel(row_->zMax) : kDefaultZMax),
      cameraX_(world.camera.x + static_cast<float>(row_ ? row_->cameraOffsetX : 0)),
      cameraY_(row_ ? pixel(row_->cameraOffsetY) : 0),
      groundY_(cameraY_ + world.shake.rockY) {}

void StageScene::addScenery() {
    addBackground();
    for (const RuntimeStageLayer& layer : scenery_.backgroundLayers) {
        if (layer.kind == LayerKind::Background) list_.addBackdrop(layerTiles(layer));
    }
    addWater();
    addPanels();
    for (const auto* layers : {&scenery_.backgroundLayers, &scenery_.foregroundLayers}) {
        for (const RuntimeStageLayer& layer : *layers) addLayer(layer);
    }
    if (world_.player1.alive) addShadow(world_.player1);
    for (const RuntimeCoopPlayer& player : world_.coop) {
        if (player.alive) addShadow(player);
    }
    for (const RuntimeEntity& entity : world_.entities) {
        if (entity.alive && entity.visible) addShadow(entity);
    }
}

void StageScene::addBackground() {
    const SpritePtr& image = scenery_.background;
    if (!image) return;
    const int left = pixel(scenery_.backgroundOffsetX) + world_.shake.rockX;
    const int top = pixel(scenery_.backgroundOffsetY) + groundY_;
    const StageRun& stage = world_.stage;
    if (!stage.verticalScroll) {
        const int moved = pixel(cameraX_ * scenery_.backgroundRatioX);
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

// Where the background ends. It heaves under a floating stage, which is all that such a stage's
// shake is; any other leaves it level.
void StageScene::addWater() {
    const SpritePtr& image = scenery_.water;
    if (!image || !row_) return;
    int y = pixel(row_->backgroundHeight) + cameraY_;
    if (row_->rockMode == kFloatingStage) y += world_.shake.rockY;
    const int warp = std::clamp(row_->waterWarp, 0, kMostWarp);
    list_.addBackdrop(DrawWater{image, world_.shake.rockX - image->width, y,
                                legacyWaterSurface(warp, row_->rockMode, world_.tick)});
}

DrawTiles StageScene::layerTiles(const RuntimeStageLayer& layer) const {
    const generated::Layer& row = *layer.row;
    const double drift = static_cast<double>(world_.tick) * row.bgSpeedRatio / kTicksPerSecond;
    DrawTiles tiles{layer.image};
    tiles.stepX = std::max<std::int64_t>(1, std::int64_t{layer.image->width} + row.xSpacing);
    tiles.stepY = std::max<std::int64_t>(1, std::int64_t{layer.image->height} + row.zSpacing);
    tiles.columns = tileCount(row.xRepeat, kMostColumns, kMostColumns);
    tiles.rows = tileCount(row.zRepeat, 1, kMostRows);
    tiles.x = tileStart(std::int64_t{row.xOffset} - pixel(cameraX_ * row.xRatio) +
                            roundedPixel(drift) + world_.shake.rockX,
                        tiles.stepX);
    tiles.y = std::int64_t{row.zOffset} + groundY_;
    if (tiles.rows > 1) tiles.y = tileStart(tiles.y, tiles.stepY);
    tiles.blend = row.alpha;
    return tiles;
}

void StageScene::addLayer(const RuntimeStageLayer& layer) {
    if (layer.kind == LayerKind::Background) return;
    if (layer.kind == LayerKind::FrontPanel) {
        add(SceneKind::FrontPanel, zMax_ + kFrontPanelsAhead, 0, layerTiles(layer));
    } else {
        add(SceneKind::ForegroundLayer, layer.row->zOrder, 0, layerTiles(layer));
    }
}

void StageScene::addPanels() {
    std::int64_t x = std::int64_t{world_.shake.rockX} - pixel(cameraX_);
    for (const SpritePtr& panel : scenery_.panels) {
        if (!panel) continue;
        if (x < config_.logicalWidth && x + panel->width > 0) {
            add(SceneKind::Panel, zMin_ - kPanelsBehind, 0,
                DrawImage{panel, static_cast<int>(x), groundY_});
        }
        x += panel->width;
    }
}

void StageScene::addShadow(const Actor& actor) {
    const int size = shadowSprite(actor.model, actor.altitude);
    if (size == 0) return;
    // A shake leaves it where it is.
    const int x = pixel(actor.worldX - cameraX_);
    const int y = pixel(actor.z) + cameraY_;
    const int z = zMin_ - kShadowsBehind;
    const int sortId = bindingSortId(world_, actor);
    if (SpritePtr image = sprites_.load(kShadowSprites[size - 1])) {
        const int left = x - image->width / 2;
        const int top = y - image->height / 2;
        add(SceneKind::Shadow, z, sortId, DrawImage{std::move(image), left, top});
    } else {
        add(SceneKind::Shadow, z, sortId,
            DrawRectangle{x - kPatchWidth / 2, y - kPatchAbove, kPatchWidth, kPatchHeight,
                          kPatchColor});
    }
}

void StageScene::addActors() {
    addActor(world_.player1);
    for (const RuntimeCoopPlayer& player : world_.coop) {
        if (player.model) addActor(player);
    }
    for (const RuntimeEntity& entity : world_.entities) {
        if (entity.visible && entity.model) addActor(entity);
    }
    for (const RuntimeProjectile& projectile : world_.projectiles) {
        if (projectile.alive) addProjectile(projectile);
    }
}

void StageScene::addActor(const Actor& actor) {
    if (!actor.animation.frame()) return;
    SpritePtr image = sprites_.load(actor.shown);
    if (!image) return;
    const int sortId = bindingSortId(world_, actor);
    DrawSprite shown = sprite(std::move(image), actor.shown, actor.model, actor.place());
    if (actor.hasScriptDraw) shown.draw = actor.scriptDraw;
    if (castsProjectedShadow(actor.model, row_)) {
        DrawSprite shadow = shown;
        shadow.draw = projectedShadowMethod(shown.draw, row_);
        shadow.y = pixel(projectedShadowRow(world_, actor)) + groundY_;
        add(SceneKind::Shadow, zMin_ - kShadowsBehind, sortId, std::move(shadow));
    }
    add(SceneKind::Actor, depth(actor.model, actor.z), sortId, std::move(shown));
}

void StageScene::addProjectile(const RuntimeProjectile& projectile) {
    if (!projectile.animation.frame()) return;
    SpritePtr image = sprites_.load(projectile.shown);
    if (!image) return;
    add(SceneKind::Projectile, depth(projectile.model, projectile.z), 0,
        sprite(std::move(image), projectile.shown, projectile.model, projectile.place()));
}

void StageScene::addScriptDrawing(const ScriptPictures& pictures) {
    const ScriptDrawing& drawing = world_.scripted.drawing;
    for (const auto* queue : {&drawing.flushedQueue, &drawing.queue}) {
        for (const ScriptDrawCommand& command : *queue) {
            if (auto shape = shapeOf(command, pictures)) {
                list_.add(SceneKind::ScriptDrawing, command.z, command.sortId, command.sequence,
                          std::move(*shape));
            }
        }
    }
}

// What the scripts of the pass have drawn so far lies behind.
void StageScene::add(SceneKind kind, int z, int sortId, DrawShape shape) {
    list_.add(kind, z, sortId, world_.scripted.drawing.sequence, std::move(shape));
}

DrawSprite StageScene::sprite(SpritePtr image, const ShownFrame& shown,
                              const generated::Character* model, const ActorPlace& place) const {
    return {.image = std::move(image),
            .frame = shown.frame,
            .draw = shown.frame->draw,
            .x = pixel(place.x - cameraX_) + world_.shake.rockX,
            .y = pixel(place.z + place.altitude) + groundY_,
            .flip = place.facing < 0,
            .alphaMode = model ? model->alphaMode : 0};
}

int StageScene::depth(const generated::Character* model, float z) const {
    const int layer = model ? model->setLayer : 0;
    return layer != 0 ? zMin_ + pixel(layer) : roundedPixel(z);
}

}  // namespace port
