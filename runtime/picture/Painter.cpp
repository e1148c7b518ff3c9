#include "Painter.hpp"

#include <algorithm>
#include <cstdint>
#include <variant>

namespace port {
namespace {

// What lies that far before a canvas is not seen on it.
int onCanvasScale(std::int64_t position) {
    constexpr std::int64_t kFarBefore = -(std::int64_t{1} << 24U);
    return static_cast<int>(std::max(position, kFarBefore));
}

class Painter {
  public:
    Painter(Renderer& renderer, const RuntimeConfig& config)
        : renderer_(renderer), config_(config) {}

    void operator()(const DrawImage& image) {
        renderer_.drawImageBlend(*image.image, image.x, image.y, image.blend);
    }

    void operator()(const DrawTiles& tiles) {
        const SpriteImage& canvas = renderer_.canvas();
        std::int64_t y = tiles.y;
        for (int row = 0; row < tiles.rows && y < canvas.height; ++row, y += tiles.stepY) {
            std::int64_t x = tiles.x;
            for (int column = 0; column < tiles.columns && x < canvas.width;
                 ++column, x += tiles.stepX) {
                renderer_.drawImageBlend(*tiles.image, onCanvasScale(x), onCanvasScale(y),
                                         tiles.blend);
            }
        }
    }

    void operator()(const DrawWater& water) {
        renderer_.drawWater(*water.image, water.surface, water.x, water.y);
    }

    void operator()(const DrawSprite& sprite) {
        renderer_.drawFrame(*sprite.image, *sprite.frame, sprite.draw, sprite.x, sprite.y, config_,
                            sprite.flip, sprite.alphaMode);
    }

    void operator()(const DrawRectangle& rectangle) {
        const auto channel = [&](unsigned c) {
            return static_cast<int>(colorChannel(rectangle.color, c));
        };
        renderer_.drawSolidRect(rectangle.x, rectangle.y, rectangle.width, rectangle.height,
                                channel(2), channel(1), channel(0));
    }

    void operator()(const DrawDot& dot) { renderer_.drawDot(dot.x, dot.y, dot.color); }

    void operator()(const DrawLine& line) {
        renderer_.drawLine(line.x1, line.y1, line.x2, line.y2, line.color);
    }

    void operator()(const DrawTextLine& line) {
        renderer_.drawText(line.text, line.x, line.y, line.size, line.selected);
    }

    void operator()(const DrawScriptImage& sprite) {
        renderer_.drawScriptImage(*sprite.image, sprite.draw, sprite.x, sprite.y, sprite.blend);
    }

    void operator()(const DrawScriptScreen& shown) {
        renderer_.drawScriptImage(shown.screen->image, shown.draw, shown.x, shown.y, shown.blend);
        for (const ScriptScreenText& line : shown.screen->text) {
            renderer_.drawText(line.text, shown.x + line.x, shown.y + line.y,
                               scriptTextSize(line.font), false);
        }
    }

  private:
    Renderer& renderer_;
    const RuntimeConfig& config_;
};

}  // namespace

void paint(const DrawList& list, Renderer& renderer, const RuntimeConfig& config) {
    renderer.beginFrame();
    Painter painter(renderer, config);
    for (const DrawShape& shape : list.backdrop()) std::visit(painter, shape);
    for (const DrawCommand& command : list.scene()) std::visit(painter, list.shape(command));
}

}  // namespace port
