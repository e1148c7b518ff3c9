#pragma once

// The pictures that a stage is made of.

#include <filesystem>
#include <optional>
#include <vector>

#include "GeneratedStages.hpp"
#include "Renderer.hpp"
#include "SpriteCache.hpp"
#include "StageRules.hpp"

namespace port {

enum class LayerKind { Background, ForegroundLayer, FrontPanel };

// Nothing for a layer that is not drawn.
[[nodiscard]] std::optional<LayerKind> layerKind(const generated::Layer& row);

struct RuntimeStageLayer {
    SpritePtr image;  // never null
    LayerKind kind = LayerKind::Background;
    const generated::Layer* row = nullptr;
};

struct Scenery {
    SpritePtr background, water;    // null where there is none
    std::vector<SpritePtr> panels;  // null for one that did not load
    // Both in the order of `zOrder`.
    std::vector<RuntimeStageLayer> backgroundLayers, foregroundLayers;
    float backgroundRatioX = 0.5F;  // how far the background moves with the camera
    int backgroundOffsetX = 0, backgroundOffsetY = 0;

    [[nodiscard]] SceneryExtent extent() const;
};

// What cannot be loaded is left out. A picture that stands in several places is loaded once.
[[nodiscard]] Scenery loadScenery(const generated::Stage& stage, const Renderer& renderer,
                                  const std::filesystem::path& dataRoot);

}  // namespace port
