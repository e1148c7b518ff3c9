// An SDL window. OpenGL shows the canvas where it runs, SDL's software renderer everywhere else and
// from the first frame on in which OpenGL fails.

#include <SDL.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "Log.hpp"
#include "PostProcessor.hpp"
#include "Presentation.hpp"

namespace port::platform {
namespace {

constexpr const char* kTitle = "Tindrel Port";
// No larger window can be made.
constexpr int kLargestWindow = 16384;

struct WindowSettings {
    bool fullscreen = false;
    PixelSize size;
    bool vsync = true;

    explicit WindowSettings(const RuntimeConfig& config)
        : fullscreen(config.fullscreen),
          size{std::clamp(config.width, 1, kLargestWindow),
               std::clamp(config.height, 1, kLargestWindow)},
          vsync(config.vsync) {}
};

template <auto Destroy>
struct SdlDeleter {
    template <class Object>
    void operator()(Object* object) const {
        Destroy(object);
    }
};
using WindowPtr = std::unique_ptr<SDL_Window, SdlDeleter<SDL_DestroyWindow>>;
using RendererPtr = std::unique_ptr<SDL_Renderer, SdlDeleter<SDL_DestroyRenderer>>;
using TexturePtr = std::unique_ptr<SDL_Texture, SdlDeleter<SDL_DestroyTexture>>;

PixelSize sizeOf(const SpriteImage& canvas) {
    return {canvas.width, canvas.height};
}

// The canvas by SDL's software renderer: scaled, without the shader's steps.
class SoftwareScreen {
  public:
    // Does nothing when the system gives no surface for the window.
    void draw(SDL_Window* window, const SpriteImage& canvas, const RuntimeConfig& config) {
        if (!start(window, sizeOf(canvas))) return;
        PixelSize size;
        SDL_GetRendererOutputSize(renderer_.get(), &size.width, &size.height);
        const ScreenLayout layout = screenLayout(config, canvasSize_, size);
        const PixelArea part = shownPart(layout, canvasSize_);
        const SDL_Rect source = {part.x, part.y, part.width, part.height};
        const PixelArea& area = layout.viewport;
        const SDL_Rect target = {area.x, area.y, area.width, area.height};
        SDL_SetTextureScaleMode(
            texture_.get(), showsSharpPixels(config) ? SDL_ScaleModeNearest : SDL_ScaleModeLinear);
        SDL_UpdateTexture(texture_.get(), nullptr, canvas.bgra.data(),
                          canvas.width * static_cast<int>(kPixelBytes));
        SDL_RenderClear(renderer_.get());
        SDL_RenderCopy(renderer_.get(), texture_.get(), &source, &target);
        SDL_RenderPresent(renderer_.get());
    }

  private:
    bool start(SDL_Window* window, PixelSize canvas) {
        if (texture_ && canvasSize_ == canvas) return true;
        if (failed_) return false;
        if (!renderer_) {
            // Else SDL may bring the surface to the window by the very driver that failed.
            SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
            renderer_.reset(SDL_CreateRenderer(window, -1, SDL_RENDERER_SOFTWARE));
        }
        if (renderer_) {
            SDL_SetRenderDrawColor(renderer_.get(), 0, 0, 0, SDL_ALPHA_OPAQUE);
            texture_.reset(SDL_CreateTexture(renderer_.get(), SDL_PIXELFORMAT_BGRA32,
                                             SDL_TEXTUREACCESS_STREAMING, canvas.width,
                                             canvas.height));
        }
        failed_ = !texture_;
        if (failed_) {
            warnLine("SDL software renderer failed: ", SDL_GetError());
            return false;
        }
        SDL_SetTextureBlendMode(texture_.get(), SDL_BLENDMODE_NONE);
        canvasSize_ = canvas;
        return true;
    }

    RendererPtr renderer_;
    TexturePtr texture_;
    PixelSize canvasSize_;
    bool failed_ = false;
};

class SdlPresentation {
  public:
    SdlPresentation() = default;
    SdlPresentation(const SdlPresentation&) = delete;
    SdlPresentation& operator=(const SdlPresentation&) = delete;
    ~SdlPresentation();

    bool open(const RuntimeConfig& config);
    [[nodiscard]] const char* backend() const { return backend_; }
    bool pumpEvents();
    void present(const SpriteImage& canvas, const RuntimeConfig& config);

  private:
    bool makeWindow(Uint32 flags);
    bool openGl(PixelSize canvas);
    void closeGl();
    void follow(const WindowSettings& settings);
    std::string presentByShader(const SpriteImage& canvas, const RuntimeConfig& config);

    WindowSettings settings_{RuntimeConfig()};
    bool sizeIsDue_ = false;  // it was set while the window filled the screen
    const char* backend_ = "headless";
    bool running_ = false;
    WindowPtr window_;
    SDL_GLContext context_ = nullptr;
    std::unique_ptr<PostProcessor> processor_;  // null from its first failure on
    SoftwareScreen software_;
};

SdlPresentation::~SdlPresentation() {
    closeGl();
    software_ = {};
    window_.reset();
    SDL_QuitSubSystem(SDL_INIT_VIDEO);
}

bool SdlPresentation::makeWindow(Uint32 flags) {
    flags |= SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI;
    // The desktop's own mode on the window's monitor: nothing else there moves.
    if (settings_.fullscreen) flags |= SDL_WINDOW_FULLSCREEN_DESKTOP;
    window_.reset(SDL_CreateWindow(kTitle, SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED,
                                   settings_.size.width, settings_.size.height, flags));
    return window_ != nullptr;
}

bool SdlPresentation::openGl(PixelSize canvas) {
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_FLAGS, SDL_GL_CONTEXT_FORWARD_COMPATIBLE_FLAG);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 0);
    std::string error;
    if (makeWindow(SDL_WINDOW_OPENGL)) context_ = SDL_GL_CreateContext(window_.get());
    if (context_) {
        processor_ = makePostProcessor(SDL_GL_GetProcAddress, canvas, error);
    } else {
        error = SDL_GetError();
    }
    if (!processor_) {
        warnLine("OpenGL: ", error);
        return false;
    }
    SDL_GL_SetSwapInterval(settings_.vsync ? 1 : 0);
    return true;
}

void SdlPresentation::closeGl() {
    processor_.reset();
    if (context_) SDL_GL_DeleteContext(context_);
    context_ = nullptr;
}

bool SdlPresentation::open(const RuntimeConfig& config) {
    settings_ = WindowSettings(config);
    // The settings name the best back end of another system by its own name.
    const bool wantsGpu =
        config.gpuAcceleration && (config.renderer == "d3d11" || config.renderer == "opengl");
    if (wantsGpu && openGl({config.logicalWidth, config.logicalHeight})) {
        backend_ = "opengl-postprocess";
    } else {
        closeGl();
        if (!makeWindow(0)) {
            warnLine("Window: ", SDL_GetError());
            return false;
        }
        backend_ = "sdl-fallback";
    }
    SDL_ShowCursor(SDL_DISABLE);
    // An input method would take keys from the game.
    SDL_StopTextInput();
    running_ = true;
    return true;
}

bool SdlPresentation::pumpEvents() {
    for (SDL_Event event; SDL_PollEvent(&event) != 0;) {
        if (event.type == SDL_QUIT) running_ = false;
    }
    return running_;
}

void SdlPresentation::follow(const WindowSettings& settings) {
    const WindowSettings before = std::exchange(settings_, settings);
    if (settings.fullscreen != before.fullscreen) {
        SDL_SetWindowFullscreen(window_.get(),
                                settings.fullscreen ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0);
    }
    // A player may have drawn the window to another size, which stays until the setting changes.
    // Window managers forget what is asked of a window that fills the screen.
    sizeIsDue_ = sizeIsDue_ || settings.size != before.size;
    if (sizeIsDue_ && !settings.fullscreen) {
        if ((SDL_GetWindowFlags(window_.get()) & SDL_WINDOW_MAXIMIZED) != 0) {
            SDL_RestoreWindow(window_.get());
        }
        SDL_SetWindowSize(window_.get(), settings.size.width, settings.size.height);
        sizeIsDue_ = false;
    }
    if (processor_ && settings.vsync != before.vsync) {
        SDL_GL_SetSwapInterval(settings.vsync ? 1 : 0);
    }
}

std::string SdlPresentation::presentByShader(const SpriteImage& canvas,
                                             const RuntimeConfig& config) {
    PixelSize window;
    SDL_GL_GetDrawableSize(window_.get(), &window.width, &window.height);
    const PixelSize size = sizeOf(canvas);
    const ScreenLayout layout = screenLayout(config, size, window);
    const ShaderParams params = shaderParams(config, layout, size, SDL_GetTicks64());
    std::string failure =
        processor_->draw(canvas, window, layout, params, showsSharpPixels(config));
    if (failure.empty()) SDL_GL_SwapWindow(window_.get());
    return failure;
}

void SdlPresentation::present(const SpriteImage& canvas, const RuntimeConfig& config) {
    follow(WindowSettings(config));
    if ((SDL_GetWindowFlags(window_.get()) & SDL_WINDOW_MINIMIZED) != 0) {
        // No screen waits for a frame then, and a game without a limit of its own would race.
        constexpr Uint32 kUnseenFrame = 16;  // milliseconds
        if (config.vsync && config.fpsLimit == 0) SDL_Delay(kUnseenFrame);
        return;
    }
    if (processor_) {
        const std::string failure = presentByShader(canvas, config);
        if (failure.empty()) return;
        warnLine(failure);
        warnLine("OpenGL runtime failure; switching permanently to SDL software fallback.");
        processor_.reset();
        context_ = nullptr;  // left alone: a driver that failed may fail again when it cleans up
        backend_ = "sdl-recovered";
    }
    software_.draw(window_.get(), canvas, config);
}

// Windows are for desktops: a console or a picture that nobody sees is taken only when the player
// names it in SDL_VIDEODRIVER.
bool startVideo() {
    SDL_SetHintWithPriority(SDL_HINT_VIDEODRIVER, "x11,wayland,cocoa", SDL_HINT_DEFAULT);
    // By these names desktops group windows.
    SDL_setenv("SDL_VIDEO_X11_WMCLASS", "TindrelPort", 0);
    SDL_setenv("SDL_VIDEO_WAYLAND_WMCLASS", "TindrelPort", 0);
    return SDL_InitSubSystem(SDL_INIT_VIDEO) == 0;
}

}  // namespace

Presentation systemPresentation() {
    if (!startVideo()) return {};
    const auto screen = std::make_shared<SdlPresentation>();
    Presentation presentation;
    presentation.headless = false;
    presentation.open = [screen](const RuntimeConfig& config) { return screen->open(config); };
    presentation.backend = [screen] { return screen->backend(); };
    presentation.pumpEvents = [screen] { return screen->pumpEvents(); };
    presentation.present = [screen](const SpriteImage& canvas, const RuntimeConfig& config) {
        screen->present(canvas, config);
    };
    return presentation;
}

}  // namespace port::platform
