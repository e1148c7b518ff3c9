// One drawn frame of play. Frames take effect while they are drawn, in the order player 1, co-op
// players, entities, projectiles; what stands at a depth waits in the scene's queue for its turn.

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "Engine.hpp"

namespace port {
namespace {

constexpr double kTicksPerSecond = 60;
// Depths without a stage.
constexpr int kDefaultZMin = 160;
constexpr int kDefaultZMax = 232;
// What the scenery keeps between itself and the depths that actors walk in.
constexpr int kPanelsBehind = 50;
constexpr int kFrontPanelsAhead = 50;
constexpr int kHudAhead = 10000;
constexpr int kMostColumns = 256;
constexpr int kMostRows = 64;

// Positions that no canvas reaches stay within this, whatever a game's numbers say.
constexpr double kFarAway = 1 << 24;

int pixel(double position) {
    return std::isnan(position) ? 0 : static_cast<int>(std::clamp(position, -kFarAway, kFarAway));
}

int roundedPixel(double position) {
    return pixel(std::round(position));
}

// The first of a row of tiles, moved back by whole steps until it does not begin inside.
std::int64_t tileStart(std::int64_t start, std::int64_t step) {
    return start <= 0 ? start : start - (start + step - 1) / step * step;
}

int tileCount(int repeat, int without, int most) {
    return repeat > 0 ? std::min(repeat, most) : without;
}

}  // namespace

void Engine::drawStage() {
    renderer_.beginFrame();
    scene_.clear();
    drawnActors_.clear();
    shakeScreen();
    drawBackground();
    for (const RuntimeStageLayer& layer : backgroundLayers_) {
        if (layer.kind == "bglayer") drawLayer(layer);
    }
    queueScenery();
    queueActors();
    queueProjectiles();
    addToScene(SceneKind::Hud, sceneZMax() + kFrontPanelsAhead + kHudAhead, [this] { drawHud(); });
    scene_.play(lastSceneQueueTrace_);
    flushChildSpawns();
    renderer_.endFrame();
}

int Engine::sceneZMin() const {
    return stage_ ? pixel(stage_->zMin) : kDefaultZMin;
}

int Engine::sceneZMax() const {
    return stage_ ? pixel(stage_->zMax) : kDefaultZMax;
}

float Engine::renderCameraX() const {
    return cameraX_ + static_cast<float>(stage_ ? stage_->cameraOffsetX : 0);
}

int Engine::renderOffsetY() const {
    return pixel(stage_ ? stage_->cameraOffsetY : 0);
}

template <class Draw>
void Engine::addToScene(SceneKind kind, int z, Draw draw) {
    scene_.add(kind, z, 0, scriptDrawSequence_++, draw);
}

// A quake that a frame set off, or the stage's own rocking. The former runs out here, in the draw
// pass, and so also while the game is paused.
void Engine::shakeScreen() {
    rockX_ = rockY_ = 0;
    const auto tick = static_cast<double>(tickCounter_);
    if (quakeTicks_ > 0) {
        const double strength = std::max(1, quakeIntensity_);
        rockX_ = roundedPixel(std::sin(tick * 2.13) * strength);
        rockY_ = roundedPixel(std::cos(tick * 1.71) * strength);
        if (--quakeTicks_ == 0) quakeIntensity_ = 0;
    }
    const double t = tick / kTicksPerSecond;
    switch (stage_ ? stage_->rockMode : 0) {
        case 1:
            rockY_ = roundedPixel(std::sin(t * 1.8) * 2);
            break;
        case 2: {
            const double cycle = std::fmod(t, 2.2);
            if (cycle <= 1.55) break;
            const double q = (cycle - 1.55) * 24;
            rockX_ = roundedPixel(std::sin(q) * 3);
            rockY_ = roundedPixel(std::cos(q * 0.75) * 2);
            break;
        }
        case 3:
            rockX_ = roundedPixel(std::sin(t * 17) * 1.5 + std::sin(t * 3.7));
            rockY_ = roundedPixel(std::cos(t * 13) * 1.2 + std::sin(t * 2.1) * 0.8);
            break;
        default:
            break;
    }
}

void Engine::drawBackground() {
    if (background_.bgra.empty()) return;
    const int top = pixel(backgroundOffsetY_) + renderOffsetY() + rockY_;
    if (!verticalScroll_) {
        const int left = pixel(backgroundOffsetX_) - pixel(renderCameraX() * backgroundRatioX_);
        renderer_.drawImage(background_, left + rockX_, top);
        return;
    }
    const int height = background_.height;
    const double scrolled = static_cast<double>(verticalStageScroll_) * verticalScrollSign_;
    // From just above the canvas on, however far away the first one would be.
    std::int64_t y = tileStart((top - pixel(std::fmod(scrolled, height))) % height, height);
    for (; y < config_.logicalHeight; y += height) {
        renderer_.drawImage(background_, pixel(backgroundOffsetX_) + rockX_, static_cast<int>(y));
    }
}

void Engine::drawLayer(const RuntimeStageLayer& layer) {
    const SpriteImage& image = *layer.image;
    const std::int64_t stepX =
        std::max<std::int64_t>(1, std::int64_t{image.width} + layer.xSpacing);
    const std::int64_t stepY =
        std::max<std::int64_t>(1, std::int64_t{image.height} + layer.zSpacing);
    const double drift = static_cast<double>(tickCounter_) * layer.bgSpeedRatio / kTicksPerSecond;
    const int columns = tileCount(layer.xRepeat, kMostColumns, kMostColumns);
    const int rows = tileCount(layer.zRepeat, 1, kMostRows);
    const std::int64_t left =
        tileStart(std::int64_t{layer.xOffset} - pixel(renderCameraX() * layer.xRatio) +
                      roundedPixel(drift) + rockX_,
                  stepX);
    std::int64_t y = std::int64_t{layer.zOffset} + renderOffsetY() + rockY_;
    if (rows > 1) y = tileStart(y, stepY);
    for (int row = 0; row < rows && y < config_.logicalHeight; ++row, y += stepY) {
        std::int64_t x = left;
        for (int column = 0; column < columns && x < config_.logicalWidth; ++column, x += stepX) {
            renderer_.drawImageBlend(image, pixel(static_cast<double>(x)),
                                     pixel(static_cast<double>(y)), layer.alpha);
        }
    }
}

void Engine::queueScenery() {
    std::int64_t x = std::int64_t{rockX_} - pixel(renderCameraX());
    for (const SpritePtr& panel : panels_) {
        if (!panel) continue;
        if (x < config_.logicalWidth && x + panel->width > 0) {
            const int left = static_cast<int>(x);
            addToScene(SceneKind::Panel, sceneZMin() - kPanelsBehind,
                       [this, image = panel.get(), left] {
                           renderer_.drawImage(*image, left, renderOffsetY() + rockY_);
                       });
        }
        x += panel->width;
    }
    for (const auto* layers : {&backgroundLayers_, &foregroundLayers_}) {
        for (const RuntimeStageLayer& layer : *layers) {
            if (layer.kind == "bglayer") continue;
            const bool front = layer.kind == "frontpanel";
            addToScene(front ? SceneKind::FrontPanel : SceneKind::ForegroundLayer,
                       front ? sceneZMax() + kFrontPanelsAhead : layer.zOrder,
                       [this, &layer] { drawLayer(layer); });
        }
    }
}

void Engine::queueActors() {
    if (player_.frame()) {
        if (playerModel_) {
            runModelScript(playerModel_->onDrawScript, playerScriptCtx_, "player-ondraw");
        }
        loadCurrentPlayerSprite();
        queueActor(player1View());
    }
    for (std::size_t i = 0; i < coopPlayers_.size(); ++i) {
        if (!coopPlayers_[i].model || !coopPlayers_[i].animation.frame()) continue;
        loadCoopSprite(i);
        queueActor(coopView(i));
    }
    eachEntity([this](RuntimeEntity& entity) { queueEntity(entity); });
}

void Engine::queueEntity(RuntimeEntity& entity) {
    if (!entity.visible || !entity.model) return;
    runModelScript(entity.model->onDrawScript, entity.scriptCtx, "entity-ondraw");
    if (!entity.animation.frame()) return;
    loadEntitySprite(entity);
    queueActor(entityView(entity));
}

void Engine::queueActor(const ActorView& actor) {
    queueSprite(SceneKind::Actor, actor.place(), actor.sprite, actor.animation.frame(),
                actor.model);
}

void Engine::queueProjectiles() {
    for (RuntimeProjectile& projectile : projectiles_) {
        if (!projectile.alive || !projectile.animation.frame()) continue;
        loadProjectileSprite(projectile);
        queueSprite(SceneKind::Projectile,
                    {projectile.worldX, projectile.z, projectile.altitude, projectile.facing},
                    projectile.sprite, projectile.animation.frame(), projectile.model);
    }
}

// What an actor looks like now: by the time it is drawn, scripts may have moved it on.
void Engine::queueSprite(SceneKind kind, const ActorPlace& place, const SpritePtr& sprite,
                         const generated::Frame* frame, const generated::Character* model) {
    if (!sprite || !frame) return;
    const int layer = model ? model->setLayer : 0;
    const int z = layer != 0 ? sceneZMin() + pixel(layer) : roundedPixel(place.z);
    DrawnActor drawn;
    drawn.image = sprite;
    drawn.frame = frame;
    drawn.x = pixel(place.x - renderCameraX()) + rockX_;
    drawn.y = pixel(place.z + place.altitude) + renderOffsetY() + rockY_;
    drawn.flip = place.facing < 0;
    drawn.alphaMode = model ? model->alphaMode : 0;
    drawnActors_.push_back(drawn);
    const std::size_t at = drawnActors_.size() - 1;
    addToScene(kind, z, [this, at] {
        const DrawnActor& actor = drawnActors_[at];
        renderer_.drawFrame(*actor.image, *actor.frame, actor.x, actor.y, config_, actor.flip,
                            actor.alphaMode);
    });
}

// Nothing is shown over the stage yet.
void Engine::drawHud() {}

}  // namespace port
