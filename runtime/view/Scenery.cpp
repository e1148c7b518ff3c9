#include "Scenery.hpp"

#include <algorithm>
#include <memory>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "AssetPaths.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

// The pictures of one stage by the names that it gives them.
class StagePictures {
  public:
    StagePictures(const Renderer& renderer, const std::filesystem::path& dataRoot)
        : renderer_(renderer), dataRoot_(dataRoot) {}

    // Null for a name that leads nowhere.
    SpritePtr load(std::string_view name) {
        const auto [known, isNew] = pictures_.try_emplace(name);
        const std::filesystem::path path = isNew ? normalizeDataPath(name) : "";
        if (path.empty()) return known->second;
        SpriteImage image;
        if (renderer_.loadSprite(runtimeCasePath(dataRoot_ / path), image) && image.width > 0) {
            known->second = std::make_shared<const SpriteImage>(std::move(image));
        }
        return known->second;
    }

  private:
    const Renderer& renderer_;
    const std::filesystem::path& dataRoot_;
    std::unordered_map<std::string_view, SpritePtr> pictures_;
};

void addLayer(Scenery& scenery, const generated::Layer& row, StagePictures& pictures) {
    if (equalsFolded(row.kind, "background")) {
        scenery.backgroundRatioX = row.xRatio;
        scenery.backgroundOffsetX = row.xOffset;
        scenery.backgroundOffsetY = row.zOffset;
        return;
    }
    const auto kind = layerKind(row);
    if (!kind) return;
    SpritePtr image = pictures.load(row.path);
    if (!image) return;
    const bool behind =
        *kind == LayerKind::Background || (*kind == LayerKind::ForegroundLayer && row.zOrder < 0);
    (behind ? scenery.backgroundLayers : scenery.foregroundLayers)
        .push_back({std::move(image), *kind, &row});
}

}  // namespace

std::optional<LayerKind> layerKind(const generated::Layer& row) {
    if (equalsFolded(row.kind, "bglayer")) return LayerKind::Background;
    if (equalsFolded(row.kind, "fglayer")) return LayerKind::ForegroundLayer;
    if (equalsFolded(row.kind, "frontpanel")) return LayerKind::FrontPanel;
    return std::nullopt;
}

SceneryExtent Scenery::extent() const {
    SceneryExtent extent;
    for (const SpritePtr& panel : panels) extent.panels += panel ? panel->width : 0;
    extent.background = background ? background->width : 0;
    for (const RuntimeStageLayer& layer : backgroundLayers) {
        extent.layers = std::max(
            extent.layers, std::int64_t{layer.image->width} + std::max(0, layer.row->xOffset));
    }
    return extent;
}

Scenery loadScenery(const generated::Stage& stage, const Renderer& renderer,
                    const std::filesystem::path& dataRoot) {
    StagePictures pictures(renderer, dataRoot);
    Scenery scenery;
    scenery.background = pictures.load(stage.background);
    scenery.water = pictures.load(stage.waterPath);
    for (const char* panel : std::span(stage.panels, stage.panelCount)) {
        scenery.panels.push_back(pictures.load(panel));
    }
    for (const generated::Layer& row : std::span(stage.layers, stage.layerCount)) {
        addLayer(scenery, row, pictures);
    }
    const auto zOrder = [](const RuntimeStageLayer& layer) { return layer.row->zOrder; };
    std::ranges::stable_sort(scenery.backgroundLayers, {}, zOrder);
    std::ranges::stable_sort(scenery.foregroundLayers, {}, zOrder);
    return scenery;
}

}  // namespace port
