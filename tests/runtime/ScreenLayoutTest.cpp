#include "ScreenLayout.hpp"

#include <gtest/gtest.h>

#include "ShaderParams.hpp"

namespace port {
namespace {

constexpr PixelSize kCanvas = {320, 240};

RuntimeConfig plain() {
    RuntimeConfig config;
    config.pixelPerfect = config.keepAspect43 = config.fill169 = false;
    config.integerScale = 0;
    return config;
}

RuntimeConfig with(bool RuntimeConfig::*rule, RuntimeConfig config = plain()) {
    config.*rule = true;
    return config;
}

RuntimeConfig scaled(int factor, RuntimeConfig config = plain()) {
    config.integerScale = factor;
    return config;
}

PixelArea viewport(const RuntimeConfig& config, PixelSize window, PixelSize canvas = kCanvas) {
    return screenLayout(config, canvas, window).viewport;
}

TEST(ScreenLayout, RulesHoldInTheirOrder) {
    const RuntimeConfig aspect = with(&RuntimeConfig::keepAspect43);
    const RuntimeConfig sharp = with(&RuntimeConfig::pixelPerfect, aspect);
    const PixelSize fullHd = {1920, 1080};
    EXPECT_EQ(viewport(plain(), fullHd), (PixelArea{0, 0, 1920, 1080})) << "stretched";
    EXPECT_EQ(viewport(aspect, fullHd), (PixelArea{240, 0, 1440, 1080}));
    EXPECT_EQ(viewport(aspect, {1080, 1920}), (PixelArea{0, 555, 1080, 810}));
    EXPECT_EQ(viewport(sharp, fullHd), (PixelArea{320, 60, 1280, 960})) << "fourfold";
    EXPECT_EQ(viewport(scaled(3, sharp), fullHd), (PixelArea{480, 180, 960, 720}));
    EXPECT_EQ(viewport(scaled(3), fullHd), (PixelArea{480, 180, 960, 720}));
    EXPECT_EQ(viewport(with(&RuntimeConfig::fill169, scaled(3, sharp)), fullHd),
              (PixelArea{0, 0, 1920, 1080}));
}

TEST(ScreenLayout, FillingCropsAndKeepsProportions) {
    const RuntimeConfig fill = with(&RuntimeConfig::fill169);
    const ScreenLayout wide = screenLayout(fill, kCanvas, {1920, 1080});
    EXPECT_FLOAT_EQ(wide.uvScaleY, 0.75F);
    EXPECT_FLOAT_EQ(wide.uvOffsetY, 0.125F);
    EXPECT_FLOAT_EQ(wide.uvScaleX, 1.0F);
    EXPECT_EQ(shownPart(wide, kCanvas), (PixelArea{0, 30, 320, 180}));
    const ScreenLayout high = screenLayout(fill, kCanvas, {480, 720});
    EXPECT_FLOAT_EQ(high.uvScaleX, 0.5F);
    EXPECT_EQ(shownPart(high, kCanvas), (PixelArea{80, 0, 160, 240}));
}

TEST(ScreenLayout, AnyWindowHasAPicture) {
    const RuntimeConfig sharp = with(&RuntimeConfig::pixelPerfect);
    EXPECT_EQ(viewport(sharp, {200, 100}), (PixelArea{-60, -70, 320, 240})) << "it overflows";
    const RuntimeConfig fill = with(&RuntimeConfig::fill169);
    for (const RuntimeConfig& config : {plain(), with(&RuntimeConfig::keepAspect43), sharp, fill}) {
        for (const PixelSize window : {PixelSize{0, 0}, PixelSize{1, 16384}, PixelSize{16384, 1}}) {
            const ScreenLayout layout = screenLayout(config, kCanvas, window);
            EXPECT_GE(layout.viewport.width, 1);
            EXPECT_GE(layout.viewport.height, 1);
            const PixelArea part = shownPart(layout, kCanvas);
            EXPECT_TRUE(part.x >= 0 && part.width >= 1 && part.x + part.width <= 320);
            EXPECT_TRUE(part.y >= 0 && part.height >= 1 && part.y + part.height <= 240);
        }
    }
}

TEST(ShaderParams, SayWhatTheSettingsSwitchOn) {
    RuntimeConfig config;
    const ShaderParams off = shaderParams(config, {}, kCanvas, 123'456);
    EXPECT_FLOAT_EQ(off.time, 23.456F);
    ShaderParams neutral;
    neutral.texelX = 1.0F / 320.0F;
    neutral.texelY = 1.0F / 240.0F;
    neutral.time = off.time;
    EXPECT_EQ(off, neutral);

    applyGraphicsPreset(config, "crt");
    const ShaderParams crt = shaderParams(config, {}, kCanvas, 0);
    const float shown[] = {crt.bloom,   crt.scanline, crt.curvature,
                           crt.banding, crt.unused,   crt.mode};
    const float wanted[] = {0.28F, 0.55F, 1.0F, 1.0F, 1.0F, 1.0F};
    for (std::size_t i = 0; i < std::size(wanted); ++i) EXPECT_FLOAT_EQ(shown[i], wanted[i]) << i;
    config.scanlines = false;
    EXPECT_FLOAT_EQ(shaderParams(config, {}, kCanvas, 0).scanline, 0.55F) << "a CRT has them";
    config.crt = false;
    EXPECT_FLOAT_EQ(shaderParams(config, {}, kCanvas, 0).scanline, 0.0F);

    for (const auto& [name, mode] :
         {std::pair("original", 0.0F), std::pair("sharp-bilinear", 1.0F), std::pair("cas", 2.0F),
          std::pair("xbr", 3.0F), std::pair("xbrz-like", 3.0F), std::pair("hq4x", 0.0F)}) {
        config.upscaleMode = name;
        EXPECT_FLOAT_EQ(shaderParams(config, {}, kCanvas, 0).mode, mode) << name;
    }
}

}  // namespace
}  // namespace port
