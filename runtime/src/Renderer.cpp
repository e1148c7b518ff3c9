#include "Renderer.hpp"

#include <algorithm>

#include "BitmapFont.hpp"
#include "DecodedImage.hpp"
#include "Log.hpp"
#include "PathEncoding.hpp"
#include "ScriptSurface.hpp"
#include "SpriteBlit.hpp"
#include "SpriteCompositor.hpp"
#include "SpriteLoading.hpp"
#include "SpriteTransform.hpp"

namespace port {
namespace {

void reportPicture(const std::filesystem::path& path, const std::string& error) {
    if (!error.empty()) warnLine("Picture ", PathEncoding::utf8(path), ": ", error);
}

struct Outline {
    std::int64_t baseX, baseY;
    int imageWidth;
    bool flipX;

    void draw(SpriteImage& canvas, int x, int y, int width, int height, int red, int green,
              int blue) const {
        const std::int64_t left =
            flipX ? std::int64_t{imageWidth} - x - width : static_cast<std::int64_t>(x);
        drawOutline(canvas, baseX + left, baseY + y, width, height, red, green, blue);
    }
};

}  // namespace

bool Renderer::initialize(const RuntimeConfig& config) {
    config_ = config;
    std::string error;
    if (!checkImageSize(static_cast<std::uint64_t>(std::max(0, config.logicalWidth)),
                        static_cast<std::uint64_t>(std::max(0, config.logicalHeight)), error)) {
        warnLine("Logical size: ", error);
        return false;
    }
    if (!presentation_.open(config_)) return false;
    opened_ = true;
    running_ = true;
    canvas_.width = config.logicalWidth;
    canvas_.height = config.logicalHeight;
    canvas_.bgra.resize(pixelOffset(canvas_, 0, canvas_.height));
    beginFrame();
    return true;
}

bool Renderer::pumpEvents() {
    if (running_) running_ = presentation_.pumpEvents();
    return running_;
}

bool Renderer::loadSprite(const std::filesystem::path& path, SpriteImage& out) const {
    std::string error;
    const bool loaded =
        port::loadSprite(path, config_.openborPaletteIndex0Transparency, out, error);
    reportPicture(path, error);
    return loaded;
}

bool Renderer::loadPalette(const std::filesystem::path& path, std::vector<ColorKey>& colors) const {
    std::string error;
    const bool loaded = port::loadPalette(path, colors, error);
    reportPicture(path, error);
    return loaded;
}

bool Renderer::loadAnimationFrames(const std::filesystem::path& path,
                                   std::vector<SpriteImage>& frames,
                                   std::vector<int>& delaysMs) const {
    std::string error;
    const bool loaded = port::loadAnimationFrames(path, frames, delaysMs, error);
    reportPicture(path, error);
    return loaded;
}

void Renderer::beginFrame() {
    fillCanvas(canvas_, colorKey(24, 24, 30));
}

void Renderer::drawImage(const SpriteImage& image, int x, int y) {
    port::drawImage(canvas_, image, x, y);
}

void Renderer::drawImageBlend(const SpriteImage& image, int x, int y, int mode) {
    port::drawImageBlend(canvas_, image, x, y, mode);
}

void Renderer::drawSolidRect(int x, int y, int width, int height, int red, int green, int blue) {
    port::drawSolidRect(canvas_, x, y, width, height, red, green, blue);
}

void Renderer::drawDot(int x, int y, ColorKey rgb) {
    port::drawDot(canvas_, x, y, rgb);
}

void Renderer::drawLine(int x1, int y1, int x2, int y2, ColorKey rgb) {
    port::drawLine(canvas_, x1, y1, x2, y2, rgb);
}

void Renderer::drawFrame(const SpriteImage& image, const generated::Frame& frame,
                         const generated::DrawMethod& draw, int originX, int originY,
                         const RuntimeConfig& config, bool flipX, int modelAlphaMode) {
    const SpriteTransform transform(image.width, image.height, draw, flipX);
    const SpriteAnchor anchor = transform.anchor(frame.offsetX, frame.offsetY);
    const int mode = isBlendMode(draw.alphaMode) ? draw.alphaMode : modelAlphaMode;
    drawTransformed(canvas_, image, transform, originX - anchor.x, originY - anchor.y, mode);

    const std::int64_t offsetX =
        flipX ? std::int64_t{image.width} - frame.offsetX : std::int64_t{frame.offsetX};
    const Outline outline = {originX - offsetX, std::int64_t{originY} - frame.offsetY, image.width,
                             flipX};
    if (config.showBBox && frame.hasBBox) {
        const generated::Box& box = frame.bbox;
        outline.draw(canvas_, box.x, box.y, box.w, box.h, 0, 255, 80);
    }
    if (config.showAttackBox && frame.hasAttack) {
        const generated::AttackBox& box = frame.attack;
        outline.draw(canvas_, box.x, box.y, box.w, box.h, 255, 60, 60);
    }
}

void Renderer::drawScriptImage(const SpriteImage& image, const generated::DrawMethod& draw, int x,
                               int y, int mode) {
    scriptSurfaceBlit(canvas_, image, draw, x, y, mode);
}

void Renderer::drawText(std::string_view text, int x, int y, int size, bool selected) {
    if (texts_.draw(canvas_, text, x, y, size, selected)) return;
    drawBitmapText(canvas_, text, x, y, size, selected);
}

void Renderer::drawWater(const SpriteImage& image, const WaterSurface& surface, std::int64_t x,
                         std::int64_t y) {
    port::drawWater(canvas_, image, surface, x, y);
}

}  // namespace port
