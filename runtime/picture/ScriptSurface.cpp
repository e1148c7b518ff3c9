#include "ScriptSurface.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

#include "SpriteBlit.hpp"
#include "SpriteCompositor.hpp"

namespace port {

namespace {

constexpr int kRun = 256;

// Opaque pixels of one colour, as many of them as are asked for.
std::array<std::uint8_t, kRun * kPixelBytes> pixelRun(ColorKey color, int count) {
    std::array<std::uint8_t, kRun * kPixelBytes> run;
    const std::array<std::uint8_t, kPixelBytes> pixel = {
        static_cast<std::uint8_t>(colorChannel(color, 0)),
        static_cast<std::uint8_t>(colorChannel(color, 1)),
        static_cast<std::uint8_t>(colorChannel(color, 2)), 255};
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        std::ranges::copy(pixel, run.begin() + static_cast<std::ptrdiff_t>(i * kPixelBytes));
    }
    return run;
}

}  // namespace

void scriptSurfacePixel(SpriteImage& surface, int x, int y, ColorKey color, int blend) {
    scriptSurfaceBox(surface, x, y, 1, 1, color, blend);
}

void scriptSurfaceBox(SpriteImage& surface, int x, int y, int width, int height, ColorKey color,
                      int blend) {
    const auto channel = [color](unsigned c) { return static_cast<int>(colorChannel(color, c)); };
    if (!isBlendMode(blend)) {
        drawSolidRect(surface, x, y, width, height, channel(2), channel(1), channel(0));
        return;
    }
    if (width <= 0 || height <= 0) return;
    const VisibleArea area = visibleArea(surface, x, y, width, height);
    const auto run = pixelRun(color, std::min(kRun, area.width));
    for (int row = 0; row < area.height; ++row) {
        for (int done = 0; done < area.width; done += kRun) {
            const std::size_t at = pixelOffset(surface, area.canvasX + done, area.canvasY + row);
            compositeRow(blend, surface.bgra.data() + at, run.data(),
                         std::min(kRun, area.width - done));
        }
    }
}

void scriptSurfaceLine(SpriteImage& surface, int x1, int y1, int x2, int y2, ColorKey color,
                       int blend) {
    visitLine(surface, x1, y1, x2, y2,
              [&](int x, int y) { scriptSurfacePixel(surface, x, y, color, blend); });
}

SpriteTransform scriptTransformImage(const SpriteImage& image, const generated::DrawMethod& draw) {
    return {image.width, image.height, draw.enabled ? draw : generated::DrawMethod{}, false};
}

void scriptSurfaceBlit(SpriteImage& surface, const SpriteImage& image,
                       const generated::DrawMethod& draw, int x, int y, int blend) {
    drawTransformed(surface, image, scriptTransformImage(image, draw), x, y, blend);
}

}  // namespace port
