#pragma once

// A stage as it is drawn in one pass: what the world is, put into a list. Nothing here changes the
// world.

#include <filesystem>

#include "DrawList.hpp"
#include "Renderer.hpp"
#include "RuntimeConfig.hpp"
#include "Scenery.hpp"
#include "ScriptPictures.hpp"
#include "SpriteCache.hpp"
#include "World.hpp"

namespace port {

// Depths without a stage.
inline constexpr int kDefaultZMin = 160;
inline constexpr int kDefaultZMax = 232;

// Where the pictures of frames come from.
struct SpriteSource {
    SpriteCache& cache;
    const Renderer& renderer;
    const std::filesystem::path& dataRoot;

    // Null for a frame that shows nothing.
    [[nodiscard]] SpritePtr load(const ShownFrame& shown) const;
    // In its own colours; null for what cannot be loaded.
    [[nodiscard]] SpritePtr load(const char* name) const;
};

class StageScene {
  public:
    // The camera of this moment counts for all that is added.
    StageScene(const World& world, const Scenery& scenery, const RuntimeConfig& config,
               const SpriteSource& sprites, DrawList& list);

    // What stands still, and the shadows on the ground, before frames take effect.
    void addScenery();
    // Everybody where they are, when all frames of the pass have taken effect.
    void addActors();
    // What scripts want drawn, wherever it stands in depth.
    void addScriptDrawing(const ScriptPictures& pictures);

  private:
    void add(SceneKind kind, int z, int sortId, DrawShape shape);
    void addBackground();
    void addWater();
    void addPanels();
    void addLayer(const RuntimeStageLayer& layer);
    [[nodiscard]] DrawTiles layerTiles(const RuntimeStageLayer& layer) const;
    void addShadow(const Actor& actor);
    void addActor(const Actor& actor);
    void addProjectile(const RuntimeProjectile& projectile);
    [[nodiscard]] DrawSprite sprite(SpritePtr image, const ShownFrame& shown,
                                    const generated::Character* model,
                                    const ActorPlace& place) const;
    [[nodiscard]] int depth(const generated::Character* model, float z) const;

    const World& world_;
    const Scenery& scenery_;
    const RuntimeConfig& config_;
    const SpriteSource sprites_;
    DrawList& list_;

    const generated::Stage* row_;
    int zMin_, zMax_;
    float cameraX_;    // with the stage's offset
    int cameraY_;      // the stage's offset
    int groundY_ = 0;  // the same, with the shake of the pass
};

}  // namespace port
