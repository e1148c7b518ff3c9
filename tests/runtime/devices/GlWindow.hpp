#pragma once

// A window with a graphics context that nobody sees, drawn into by the processor's software.

#include <SDL.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Environment.hpp"
#include "PostProcessor.hpp"
#include "ScreenLayout.hpp"

namespace port::test {

// What the current context has drawn: red, green, blue, alpha, from the top.
inline std::vector<std::uint8_t> drawnPixels(PixelSize size) {
    constexpr unsigned kRgba = 0x1908, kUnsignedByte = 0x1401;
    const auto readPixels =
        reinterpret_cast<void (*)(int, int, int, int, unsigned, unsigned, void*)>(
            SDL_GL_GetProcAddress("glReadPixels"));
    const std::size_t row = static_cast<std::size_t>(size.width) * 4;
    std::vector<std::uint8_t> pixels(row * static_cast<std::size_t>(size.height));
    readPixels(0, 0, size.width, size.height, kRgba, kUnsignedByte, pixels.data());
    for (std::size_t top = 0, low = pixels.size() - row; top < low; top += row, low -= row) {
        std::swap_ranges(&pixels[top], &pixels[top] + row, &pixels[low]);
    }
    return pixels;
}

class GlWindow {
  public:
    explicit GlWindow(PixelSize size) : size_(size) {
        SDL_InitSubSystem(SDL_INIT_VIDEO);
        SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
        SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
        SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
        window_ = SDL_CreateWindow("trial", 0, 0, size.width, size.height, SDL_WINDOW_OPENGL);
        if (window_) context = SDL_GL_CreateContext(window_);
    }
    GlWindow(const GlWindow&) = delete;
    GlWindow& operator=(const GlWindow&) = delete;
    ~GlWindow() {
        if (context) SDL_GL_DeleteContext(context);
        if (window_) SDL_DestroyWindow(window_);
        SDL_QuitSubSystem(SDL_INIT_VIDEO);
    }

    [[nodiscard]] std::unique_ptr<platform::PostProcessor> makeProcessor(PixelSize canvas,
                                                                         std::string& error) const {
        return platform::makePostProcessor(SDL_GL_GetProcAddress, canvas, error);
    }
    [[nodiscard]] std::vector<std::uint8_t> pixels() const { return drawnPixels(size_); }

    SDL_GLContext context = nullptr;  // null where there is no such graphics

  private:
    tindrel::test::Environment offscreen_{"SDL_VIDEODRIVER", "offscreen"};
    PixelSize size_;
    SDL_Window* window_ = nullptr;
};

}  // namespace port::test
