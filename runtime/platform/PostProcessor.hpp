#pragma once

// The canvas on the screen in one pass through a pixel shader. Everything here goes to the graphics
// context that is current on the calling thread.

#include <memory>
#include <string>

#include "ScreenLayout.hpp"
#include "ShaderParams.hpp"
#include "SpriteImage.hpp"

namespace port::platform {

class PostProcessor {
  public:
    virtual ~PostProcessor() = default;
    // Clears the bound framebuffer, which is as large as `window`, to black and draws the canvas.
    // Empty, or what failed; the frame then may show anything.
    [[nodiscard]] virtual std::string draw(const SpriteImage& canvas, PixelSize window,
                                           const ScreenLayout& layout, const ShaderParams& params,
                                           bool sharpPixels) = 0;
};

// By `entryPoint` a function of the graphics library is found by its name; null for none. Null when
// the shader does not run here or the canvas is too large, with the reason in `error`.
[[nodiscard]] std::unique_ptr<PostProcessor> makePostProcessor(
    void* (*entryPoint)(const char* name), PixelSize canvas, std::string& error);

}  // namespace port::platform
