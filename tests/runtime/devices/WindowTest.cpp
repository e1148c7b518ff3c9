#include <SDL.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "Environment.hpp"
#include "Presentation.hpp"

namespace port {
namespace {

using tindrel::test::Environment;

// Four pixels: red and green above blue and white.
SpriteImage fourColors() {
    return {2, 2, {0, 0, 255, 255, 0, 255, 0, 255, 255, 0, 0, 255, 255, 255, 255, 255}};
}

RuntimeConfig smallWindow() {
    RuntimeConfig config;
    config.logicalWidth = config.logicalHeight = 2;
    config.width = 10;
    config.height = 8;
    return config;
}

// The window of a presentation, as its player sees it.
struct WindowTrial : testing::Test {
    Environment offscreen{"SDL_VIDEODRIVER", "offscreen"};
    platform::Presentation screen = platform::systemPresentation();
    RuntimeConfig config = smallWindow();

    // The first window of a program has the number 1, the next one 2 and so on.
    static SDL_Window* window() {
        SDL_Window* found = nullptr;
        for (Uint32 id = 1; id < 100 && !found; ++id) found = SDL_GetWindowFromID(id);
        return found;
    }
    bool open() {
        testing::internal::CaptureStderr();
        const bool opened = screen.open(config);
        said = testing::internal::GetCapturedStderr();
        return opened;
    }
    void show() { screen.present(fourColors(), config); }
    std::string said;
};

// Red, green, blue of a pixel of what the software renderer has left in the window.
unsigned surfaceColor(SDL_Window* window, int x, int y) {
    const SDL_Surface* surface = SDL_GetWindowSurface(window);
    if (!surface) return ~0U;
    const auto* row = static_cast<const std::uint8_t*>(surface->pixels) + y * surface->pitch;
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, row + x * surface->format->BytesPerPixel, sizeof pixel);
    std::uint8_t red = 0, green = 0, blue = 0;
    SDL_GetRGB(pixel, surface->format, &red, &green, &blue);
    return static_cast<unsigned>(red << 16 | green << 8 | blue);
}

void expectFourColors(SDL_Window* window) {
    // Fourfold, 8 by 8 pixels in the middle of 10 by 8.
    EXPECT_EQ(surfaceColor(window, 0, 4), 0x000000U);
    EXPECT_EQ(surfaceColor(window, 1, 0), 0xFF0000U);
    EXPECT_EQ(surfaceColor(window, 4, 3), 0xFF0000U);
    EXPECT_EQ(surfaceColor(window, 5, 3), 0x00FF00U);
    EXPECT_EQ(surfaceColor(window, 1, 4), 0x0000FFU);
    EXPECT_EQ(surfaceColor(window, 8, 7), 0xFFFFFFU);
    EXPECT_EQ(surfaceColor(window, 9, 7), 0x000000U);
}

TEST_F(WindowTrial, FallsBackWhereThereIsNoGraphicsProcessorToUse) {
    struct Case {
        const char* driver;
        const char* renderer;
        bool acceleration;
    };
    for (const auto& [driver, renderer, acceleration] :
         {Case{"offscreen", "gdi", true}, Case{"offscreen", "d3d11", false},
          Case{"dummy", "d3d11", true}}) {
        SCOPED_TRACE(driver);
        screen = {};
        const Environment video("SDL_VIDEODRIVER", driver);
        screen = platform::systemPresentation();
        config.renderer = renderer;
        config.gpuAcceleration = acceleration;
        ASSERT_TRUE(open());
        EXPECT_FALSE(screen.headless);
        EXPECT_EQ(screen.backend(), "sdl-fallback");
        show();
        EXPECT_STREQ(SDL_GetWindowTitle(window()), "Tindrel Port");
        expectFourColors(window());
        config.fill169 = true;
        show();
        EXPECT_EQ(surfaceColor(window(), 0, 0), 0xFF0000U);
        EXPECT_EQ(surfaceColor(window(), 9, 7), 0xFFFFFFU);
        config.fill169 = false;
    }
}

TEST_F(WindowTrial, AFailingDriverIsLeftForGood) {
    ASSERT_TRUE(open());
    if (screen.backend() != "opengl-postprocess") GTEST_SKIP() << "no OpenGL 3.3 here: " << said;
    show();
    EXPECT_EQ(screen.backend(), "opengl-postprocess");
    const auto enable = reinterpret_cast<void (*)(unsigned)>(SDL_GL_GetProcAddress("glEnable"));
    enable(0xFFFF);
    testing::internal::CaptureStderr();
    show();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "OpenGL frame failed error=0x500\n"
              "OpenGL runtime failure; switching permanently to SDL software fallback.\n");
    EXPECT_EQ(screen.backend(), "sdl-recovered");
    expectFourColors(window());
    show();
    EXPECT_EQ(screen.backend(), "sdl-recovered");
}

TEST_F(WindowTrial, FollowsItsSettingsAndEndsWhenItCloses) {
    ASSERT_TRUE(open());
    show();
    config.width = 30;
    config.height = 20;
    show();
    int width = 0, height = 0;
    SDL_GetWindowSize(window(), &width, &height);
    EXPECT_EQ(width, 30);
    EXPECT_EQ(height, 20);
    config.fullscreen = true;
    show();
    EXPECT_NE(SDL_GetWindowFlags(window()) & SDL_WINDOW_FULLSCREEN_DESKTOP, 0U);
    config.fullscreen = false;
    config.width = -1;
    config.height = 1'000'000;
    show();
    EXPECT_EQ(SDL_GetWindowFlags(window()) & SDL_WINDOW_FULLSCREEN_DESKTOP, 0U);

    EXPECT_TRUE(screen.pumpEvents());
    SDL_Event close{};
    close.type = SDL_QUIT;
    SDL_PushEvent(&close);
    EXPECT_FALSE(screen.pumpEvents());
    EXPECT_FALSE(screen.pumpEvents());
}

TEST(Window, IsMissingWhereThereIsNoScreen) {
    const Environment none("SDL_VIDEODRIVER", "none");
    EXPECT_TRUE(platform::systemPresentation().headless);
}

}  // namespace
}  // namespace port
