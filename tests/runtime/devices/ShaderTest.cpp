#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#ifdef _WIN32
#include "D3d11Target.hpp"
#else
#include "GlWindow.hpp"
#endif
#include "PostProcessor.hpp"
#include "ShaderReferee.hpp"

namespace port {
namespace {

constexpr PixelSize kWindow = {99, 74};

// Coarse and fine detail and gradients. The noise leaves out the extremes, at which the coarse
// weights of a driver's linear filter alone come to more than the judged two steps of colour.
SpriteImage testPicture() {
    SpriteImage picture{23, 17, {}};
    std::mt19937 random(7);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const bool noisy = x < 8;
            const bool bright = (x / 3 + y / 4) % 2 == 0;
            for (int channel = 0; channel < 3; ++channel) {
                const unsigned noise = 40 + random() % 176;
                const int slope = (x * (channel + 1) * 5 + y * 3) % 256;
                picture.bgra.push_back(static_cast<std::uint8_t>(noisy    ? noise
                                                                 : bright ? 255 - slope / 4
                                                                          : slope));
            }
            picture.bgra.push_back(255);
        }
    }
    return picture;
}

struct ShaderTrial : testing::Test {
    const SpriteImage picture = testPicture();
    const PixelSize size{picture.width, picture.height};
#ifdef _WIN32
    test::D3d11Target window{kWindow};
#else
    test::GlWindow window{kWindow};
#endif
    std::unique_ptr<platform::PostProcessor> processor;

    void SetUp() override {
        if (!window.context) GTEST_SKIP() << "no such graphics here";
        std::string error;
        processor = window.makeProcessor(size, error);
        ASSERT_TRUE(processor) << error;
    }

    // The window's pixels, red, green, blue, alpha, from the top.
    std::vector<std::uint8_t> drawn(const ScreenLayout& layout, const ShaderParams& params,
                                    bool sharp) {
        EXPECT_EQ(processor->draw(picture, kWindow, layout, params, sharp), "");
        return window.pixels();
    }

    // How far a pixel is from what it should be, in the worst of its channels. Where a sampling
    // place falls between two pixels of the canvas, or two edges are equally strong, either is
    // right.
    static double distance(const ShaderReferee& referee, double u, double v, int x,
                           const std::uint8_t* pixel) {
        constexpr double kPlace = 2e-5, kEdge = 0.01;
        double least = 255;
        for (const double bias : {0.0, -kEdge, kEdge}) {
            for (const double du : {0.0, -kPlace, kPlace}) {
                for (const double dv : {0.0, -kPlace, kPlace}) {
                    const auto wanted = referee.pixel(u + du, v + dv, x, bias);
                    double most = 0;
                    for (std::size_t i = 0; i < 3; ++i) {
                        most = std::max(most, std::abs(wanted[i] * 255 - pixel[i]));
                    }
                    least = std::min(least, most);
                    if (least <= 2) return least;
                }
            }
        }
        return least;
    }

    void compare(const RuntimeConfig& config, const std::string& name) {
        const ScreenLayout layout = screenLayout(config, size, kWindow);
        const ShaderParams params = shaderParams(config, layout, size, 4321);
        const bool sharp = showsSharpPixels(config);
        const ShaderReferee referee(picture, params, sharp);
        const std::vector<std::uint8_t> pixels = drawn(layout, params, sharp);
        const PixelArea& area = layout.viewport;
        int wrong = 0;
        for (int y = 0; y < kWindow.height; ++y) {
            for (int x = 0; x < kWindow.width; ++x) {
                const std::uint8_t* pixel =
                    &pixels[static_cast<std::size_t>(y * kWindow.width + x) * 4];
                ASSERT_EQ(pixel[3], 255);
                const double u = (x - area.x + 0.5) / area.width;
                const double v = (y - area.y + 0.5) / area.height;
                if (u < 0 || u > 1 || v < 0 || v > 1) {
                    ASSERT_EQ(pixel[0] + pixel[1] + pixel[2], 0) << name << " beside the picture";
                    continue;
                }
                const double off = distance(referee, u, v, x, pixel);
                if (off > 2 && ++wrong == 1) {
                    ADD_FAILURE() << name << " at " << x << "," << y << " is off by " << off;
                }
            }
        }
        EXPECT_EQ(wrong, 0) << name;
    }
};

RuntimeConfig filtered(const char* filter) {
    RuntimeConfig config;
    config.textureFilter = filter;
    return config;
}

TEST_F(ShaderTrial, EveryModeAndSwitchDrawsWhatItsStepsSay) {
    for (const char* filter : {"nearest", "linear"}) {
        for (const char* mode : {"original", "sharp-bilinear", "cas", "xbr"}) {
            for (unsigned switches = 0; switches < 32; ++switches) {
                RuntimeConfig config = filtered(filter);
                config.upscaleMode = mode;
                config.bloom = (switches & 1U) != 0;
                config.scanlines = (switches & 2U) != 0;
                config.crtCurvature = (switches & 4U) != 0;
                config.crt = (switches & 8U) != 0;
                if ((switches & 16U) != 0) {
                    config.sharpen = 0.6F;
                    config.contrast = 1.1F;
                    config.saturation = 0.3F;
                }
                compare(config, std::string(filter) + " " + mode + " " + std::to_string(switches));
            }
        }
    }
}

TEST_F(ShaderTrial, ThePictureLiesWhereTheLayoutPutsIt) {
    for (const char* filter : {"nearest", "linear"}) {
        RuntimeConfig config = filtered(filter);
        config.integerScale = 2;
        compare(config, "small");
        config.integerScale = 7;
        compare(config, "overflowing");
        config.fill169 = true;
        compare(config, "filling");
        config.fill169 = config.pixelPerfect = false;
        config.integerScale = 0;
        compare(config, "of the aspect");
        config.keepAspect43 = false;
        compare(config, "stretched");
    }
}

TEST_F(ShaderTrial, NoiseStaysBelowAStepOfColorAndMovesWithTime) {
    RuntimeConfig config;
    const ScreenLayout layout = screenLayout(config, size, kWindow);
    const auto smooth = drawn(layout, shaderParams(config, layout, size, 0), true);
    config.reduceBanding = true;
    // Half steps of colour show up as noise between the two whole ones.
    config.contrast = 0.995F;
    const auto noisy = drawn(layout, shaderParams(config, layout, size, 0), true);
    const auto later = drawn(layout, shaderParams(config, layout, size, 500), true);
    int moved = 0;
    for (std::size_t i = 0; i < smooth.size(); ++i) {
        ASSERT_LE(std::abs(smooth[i] - noisy[i]), 2) << i;
        if (noisy[i] != later[i]) ++moved;
    }
    EXPECT_GT(moved, 500);
}

TEST_F(ShaderTrial, ACanvasBeyondAllTexturesIsRefused) {
    std::string error;
    EXPECT_FALSE(window.makeProcessor({1 << 20, 8}, error));
    EXPECT_NE(error.find("start failed"), error.npos) << error;
}

#ifndef _WIN32
TEST_F(ShaderTrial, AFailingDriverIsReported) {
    const auto enable = reinterpret_cast<void (*)(unsigned)>(SDL_GL_GetProcAddress("glEnable"));
    enable(0xFFFF);
    EXPECT_EQ(processor->draw(picture, kWindow, {}, {}, true), "OpenGL frame failed error=0x500");
}
#endif

}  // namespace
}  // namespace port
