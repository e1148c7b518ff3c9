#pragma once

// What the game draws with and the window that shows it. Without a window it runs headless.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "GeneratedCharacters.hpp"
#include "Presentation.hpp"
#include "RuntimeConfig.hpp"
#include "SpriteImage.hpp"
#include "TextRuns.hpp"
#include "WaterSurface.hpp"

namespace port {

class Renderer {
  public:
    explicit Renderer(platform::Presentation presentation = {}, platform::TextFace fonts = {})
        : presentation_(std::move(presentation)), texts_(std::move(fonts)) {}

    // False when there is nothing to draw on; the port then cannot start.
    [[nodiscard]] bool initialize(const RuntimeConfig& config);
    // Sprites that are loaded already keep their transparency, and the canvas its size.
    void setConfig(const RuntimeConfig& config) { config_ = config; }

    // False from the closing of the window on.
    [[nodiscard]] bool isRunning() const { return running_; }
    // Handles what the window was sent; false when that ends the program.
    [[nodiscard]] bool pumpEvents();

    // The presentation in use at this moment; "headless" before initialize.
    [[nodiscard]] std::string backend() const {
        return opened_ ? presentation_.backend() : "headless";
    }
    // True when nobody sees the game or plays it: the engine then plays by itself for a while.
    [[nodiscard]] bool headless() const { return presentation_.headless; }

    // Pictures. False when the file is not there or cannot be decoded; the latter is reported.
    [[nodiscard]] bool loadSprite(const std::filesystem::path& path, SpriteImage& out) const;
    // False also for a picture without a palette.
    [[nodiscard]] bool loadPalette(const std::filesystem::path& path,
                                   std::vector<ColorKey>& colors) const;
    [[nodiscard]] bool loadAnimationFrames(const std::filesystem::path& path,
                                           std::vector<SpriteImage>& frames,
                                           std::vector<int>& delaysMs) const;

    // Drawing, on a canvas of the logical size. What lies outside is cut off.
    void beginFrame();
    // Shows the canvas.
    void endFrame() { presentation_.present(canvas_, config_); }
    void drawImage(const SpriteImage& image, int x, int y);
    // Alpha modes 1 to 6; any other draws source-over.
    void drawImageBlend(const SpriteImage& image, int x, int y, int mode);
    void drawSolidRect(int x, int y, int width, int height, int red, int green, int blue);
    void drawDot(int x, int y, ColorKey rgb);
    void drawLine(int x1, int y1, int x2, int y2, ColorKey rgb);
    // The image by its frame's draw method, the frame's offset on the origin, and the debug boxes
    // that the configuration asks for. `modelAlphaMode` holds where the frame names no alpha mode.
    void drawFrame(const SpriteImage& image, const generated::Frame& frame, int originX,
                   int originY, const RuntimeConfig& config, bool flipX, int modelAlphaMode) {
        drawFrame(image, frame, frame.draw, originX, originY, config, flipX, modelAlphaMode);
    }
    // The same with another draw method in place of the frame's.
    void drawFrame(const SpriteImage& image, const generated::Frame& frame,
                   const generated::DrawMethod& draw, int originX, int originY,
                   const RuntimeConfig& config, bool flipX, int modelAlphaMode);
    // The image by a script's draw method, with its top left corner at (x, y).
    void drawScriptImage(const SpriteImage& image, const generated::DrawMethod& draw, int x, int y,
                         int mode);
    // One line, cut off at the canvas's right side, in the system's font or else the built-in one.
    // `size` is the height of its letters about.
    void drawText(std::string_view text, int x, int y, int size, bool selected);
    // Side by side from (x, y) to where the canvas ends.
    void drawWater(const SpriteImage& image, const WaterSurface& surface, std::int64_t x,
                   std::int64_t y);

    [[nodiscard]] const SpriteImage& canvas() const { return canvas_; }

  private:
    platform::Presentation presentation_;
    RuntimeConfig config_;
    bool opened_ = false;
    bool running_ = false;
    SpriteImage canvas_;
    TextRuns texts_;
};

}  // namespace port
