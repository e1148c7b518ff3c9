#pragma once

// A stage as it is drawn in one pass: what the world is, put into a list. Nothing here changes the
// world.

#include <filesystem>

#include "DrawList.hpp"
#include "Renderer.hpp"
#include "RuntimeConfig.hpp"
#include "Scenery.hpp"
#include "SpriteCache.hpp"
#include "World.hpp"

namespace port {

// Where the pictures of frames come from.
struct SpriteSource {
    SpriteCache& cache;
    const Renderer& renderer;
    const std::filesystem::path& dataRoot;

    // Null for a frame that shows nothing.
    [[nodiscard]] SpritePtr load(const ShownFrame& shown) const;
};

class StageScene {
  public:
    StageScene(const World& world, const Scenery& scenery, const RuntimeConfig& config,
               DrawList& list)
        : world_(world), scenery_(scenery), config_(config), list_(list) {}

    // What stands still, before frames take effect: the camera of this moment counts.
    void addScenery();
    // Everybody where they are, when all frames of the pass have taken effect.
    void addActors(const SpriteSource& sprites);

  private:
    void addBackground();
    void addLayer(const RuntimeStageLayer& layer);
    void addPanels();
    void addSprite(SceneKind kind, int sortId, const generated::Character* model,
                   const ActorPlace& place, const ShownFrame& shown, const SpriteSource& sprites);
    [[nodiscard]] DrawTiles layerTiles(const RuntimeStageLayer& layer) const;
    [[nodiscard]] int zMin() const;
    [[nodiscard]] int zMax() const;
    [[nodiscard]] float renderCameraX() const;
    [[nodiscard]] int offsetY() const;

    const World& world_;
    const Scenery& scenery_;
    const RuntimeConfig& config_;
    DrawList& list_;
};

}  // namespace port
