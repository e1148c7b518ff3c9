#include "RuntimeConfig.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "TempFolder.hpp"

namespace port {
namespace {

using tindrel::test::TempFolder;

const std::filesystem::path kDefaultFile =
    std::filesystem::path(TINDREL_SOURCE_DIR) / "config" / "graphics.ini";

RuntimeConfig loadText(const std::string& text) {
    const TempFolder folder;
    return loadRuntimeConfig(folder.write("graphics.ini", text));
}

// "section/key" of every line with a value, in order.
std::vector<std::string> keysOf(std::istream& in) {
    std::vector<std::string> keys;
    std::string section;
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with('[')) section = line.substr(1, line.size() - 2);
        if (const auto equals = line.find('='); equals != line.npos) {
            keys.push_back(section + "/" + line.substr(0, equals));
        }
    }
    return keys;
}

std::vector<std::string> tableKeys(const std::vector<std::string>& sections) {
    std::vector<std::string> keys;
    for (const std::string& section : sections) {
        for (const RuntimeSetting& row : runtimeSettings()) {
            if (row.section == section) keys.push_back(section + "/" + std::string(row.key));
        }
    }
    keys.insert(keys.end(), {"effects/particles", "effects/shadows"});
    return keys;
}

TEST(RuntimeConfig, TheDefaultFileSaysTheDefaultsInTheTablesOrder) {
    std::ifstream in(kDefaultFile);
    EXPECT_EQ(keysOf(in), tableKeys({"video", "graphics", "gameplay", "combat", "audio", "input",
                                     "debug", "compatibility"}));
    EXPECT_EQ(loadRuntimeConfig(kDefaultFile), RuntimeConfig{});
    EXPECT_EQ(loadRuntimeConfig("no/such/graphics.ini"), RuntimeConfig{});
}

TEST(RuntimeConfig, EveryKeyOfTheTableSetsASettingOfItsOwn) {
    std::vector<RuntimeConfig> seen = {RuntimeConfig{}};
    for (const RuntimeSetting& row : runtimeSettings()) {
        const RuntimeConfig defaults;
        const std::string value = std::visit(
            [&](auto member) -> std::string {
                using Value = std::decay_t<decltype(defaults.*member)>;
                if constexpr (std::is_same_v<Value, bool>) {
                    return defaults.*member ? "off" : "ON";
                } else if constexpr (std::is_same_v<Value, std::string>) {
                    return "Other";
                } else {
                    return defaults.*member != 1 ? "1" : std::is_same_v<Value, int> ? "3" : "0";
                }
            },
            row.member);
        const std::string line = std::string(row.key) + "=" + value + "\n";
        std::string file = "[";
        file.append(row.section).append("]\n").append(line);
        const RuntimeConfig config = loadText(file);
        for (const RuntimeConfig& other : seen) EXPECT_NE(config, other) << row.section << line;
        seen.push_back(config);
        EXPECT_EQ(loadText("[elsewhere]\n" + line), RuntimeConfig{}) << line;
        EXPECT_EQ(loadText(line), RuntimeConfig{}) << "before any section: " << line;
    }
}

TEST(RuntimeConfig, NumbersStayWithinTheirBounds) {
    const RuntimeConfig low = loadText(
        "[video]\nfps_limit=-5\nwidth=-5\n[graphics]\ninteger_scale=-1\ncontrast=0.1\nsharpen=-1\n"
        "[gameplay]\nlogical_width=100\nlogical_height=1\ngravity=0\n"
        "[input]\nmax_players=0\nplayer2_gamepad=-1\nkey_run=0\n");
    EXPECT_EQ(low.fpsLimit, 0);
    EXPECT_EQ(low.width, -5) << "no bound";
    EXPECT_EQ(low.integerScale, 0);
    EXPECT_FLOAT_EQ(low.contrast, 0.5F);
    EXPECT_FLOAT_EQ(low.sharpen, 0.0F);
    EXPECT_EQ(low.logicalWidth, 160);
    EXPECT_EQ(low.logicalHeight, 120);
    EXPECT_FLOAT_EQ(low.gravity, 0.01F);
    EXPECT_EQ(low.maxPlayers, 1);
    EXPECT_EQ(low.player2Gamepad, 0);
    EXPECT_EQ(low.keyRun, 1);

    const RuntimeConfig high = loadText(
        "[video]\nfps_limit=2147483647\n[graphics]\ninteger_scale=9\ncontrast=5\nsaturation=1e30\n"
        "[audio]\nmusic_volume=2\n[input]\nactive_players=5\nplayer4_gamepad=4\nkey_left=256\n");
    EXPECT_EQ(high.fpsLimit, 2147483647);
    EXPECT_EQ(high.integerScale, 4);
    EXPECT_FLOAT_EQ(high.contrast, 2.0F);
    EXPECT_FLOAT_EQ(high.saturation, 2.0F);
    EXPECT_FLOAT_EQ(high.musicVolume, 1.0F);
    EXPECT_EQ(high.activePlayers, 4);
    EXPECT_EQ(high.player4Gamepad, 3);
    EXPECT_EQ(high.keyLeft, 255);
}

TEST(RuntimeConfig, ForgivesWhateverAPlayerWrites) {
    const RuntimeConfig config = loadText(
        "\xEF\xBB\xBF[ VIDEO ]\r\n"
        "  WIDTH = 800 \r\n"
        "# height=1\n; height=2\nheight\n=3\nheight=\nheight=x9\n"
        "vsync=maybe\nfullscreen= YES \ngpu_acceleration=Off\n"
        "Renderer=GDI\n"
        "fps_limit=99999999999999999999\nfps_limit=+50fps\n"
        "render_scale=nan\nrender_scale=inf\nrender_scale=1e99\n"
        "[gameplay]\ngravity=abc\ngravity=0.5x\njump_default=0x20\nrun_multiplier=1.9\n"
        "run_multiplier=2.5 # fast\n"
        "[gameplay\nvideo]\ndash_ticks=-\ndash_ticks=30\n");
    EXPECT_EQ(config.width, 800);
    EXPECT_EQ(config.height, 720);
    EXPECT_TRUE(config.vsync);
    EXPECT_TRUE(config.fullscreen);
    EXPECT_FALSE(config.gpuAcceleration);
    EXPECT_EQ(config.renderer, "gdi");
    EXPECT_EQ(config.fpsLimit, 50);
    EXPECT_FLOAT_EQ(config.renderScale, 1.0F);
    EXPECT_FLOAT_EQ(config.gravity, 0.5F);
    EXPECT_FLOAT_EQ(config.jumpDefault, 0.5F) << "0 raised to the bound: no hexadecimal";
    EXPECT_FLOAT_EQ(config.runMultiplier, 2.5F);
    EXPECT_EQ(config.dashTicks, 30) << "an unclosed header is no header";

    std::string noise("[video]\n");
    for (int i = 0; i < 4096; ++i) noise += static_cast<char>(i * 37 % 256);
    EXPECT_EQ(loadText(noise + std::string(1 << 16, '=') + "\nheight=99\n").height, 99);
}

TEST(RuntimeConfig, SavesWhatItLoads) {
    const TempFolder folder;
    const auto file = folder.write("graphics.ini", "something older and longer");
    RuntimeConfig config;
    config.renderer = "gdi";
    config.fullscreen = true;
    config.vsync = false;
    config.gravity = 0.425F;
    config.padGrab = 77;
    config.preferredMusicFormat = "";
    ASSERT_TRUE(saveRuntimeConfig(file, config));
    EXPECT_EQ(loadRuntimeConfig(file), config);

    const std::string text = folder.read("graphics.ini");
    EXPECT_TRUE(text.starts_with("[video]\nrenderer=gdi\ngpu_acceleration=true\nfullscreen=true\n"))
        << text;
    EXPECT_NE(text.find("\nrender_scale=1\ntexture_filter=nearest\n\n[graphics]\n"), text.npos);
    EXPECT_TRUE(text.ends_with("\n\n[effects]\nparticles=high\nshadows=true\n")) << text;
    std::istringstream in(text);
    EXPECT_EQ(keysOf(in), tableKeys({"video", "graphics", "gameplay", "combat", "input", "audio",
                                     "debug", "compatibility"}));
}

TEST(RuntimeConfig, SavesHowTheGameIsReadOnlyWhereThatIsAsWritten) {
    const TempFolder folder;
    const auto file = folder.write("graphics.ini", "[reading]\nas_written=true\n");
    const RuntimeConfig config = loadRuntimeConfig(file);
    EXPECT_TRUE(config.asWritten);
    ASSERT_TRUE(saveRuntimeConfig(file, config));
    EXPECT_TRUE(folder.read("graphics.ini").ends_with("\n\n[reading]\nas_written=true\n"));
    EXPECT_EQ(loadRuntimeConfig(file), config);
    ASSERT_TRUE(saveRuntimeConfig(file, {}));
    EXPECT_EQ(folder.read("graphics.ini").find("reading"), std::string::npos);
}

TEST(RuntimeConfig, AFailedSaveSaysSoAndLeavesNothingBehind) {
    const TempFolder folder;
    EXPECT_FALSE(saveRuntimeConfig(folder.path() / "missing" / "graphics.ini", {}));
    folder.write("graphics.ini/file", "");
    EXPECT_FALSE(saveRuntimeConfig(folder.path() / "graphics.ini", {}));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "graphics.ini.tmp"));
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "graphics.ini" / "file"));
}

TEST(RuntimeConfig, PresetsSetTheWholePictureAndNothingElse) {
    RuntimeConfig expected;
    expected.graphicsPreset = "sharp";
    expected.upscaleMode = "cas";
    expected.textureFilter = "linear";
    expected.pixelPerfect = false;
    expected.contrast = 1.03F;
    expected.saturation = 1.02F;
    expected.reduceBanding = true;
    expected.sharpen = 0.68F;
    for (const char* name : {"Sharp", "NITIDO", "n\xC3\xADtido"}) {
        RuntimeConfig config;
        config.keepAspect43 = false;
        config.fill169 = true;
        config.crt = true;
        applyGraphicsPreset(config, name);
        EXPECT_EQ(config, expected) << name;
    }

    RuntimeConfig config = expected;
    applyGraphicsPreset(config, "CRT");
    EXPECT_TRUE(config.crt && config.scanlines && config.crtCurvature && config.bloom);
    EXPECT_EQ(config.upscaleMode, "sharp-bilinear");
    EXPECT_FLOAT_EQ(config.sharpen, 0.16F);
    applyGraphicsPreset(config, "Melhorado");
    EXPECT_EQ(config.graphicsPreset, "improved");
    EXPECT_FALSE(config.crt || config.scanlines || config.crtCurvature || config.bloom);
    EXPECT_FLOAT_EQ(config.contrast, 1.05F);
    applyGraphicsPreset(config, "original");
    EXPECT_EQ(config, RuntimeConfig{});

    for (const char* unknown : {"Custom", ""}) {
        config = expected;
        applyGraphicsPreset(config, unknown);
        EXPECT_EQ(config.upscaleMode, "cas");
        EXPECT_EQ(config.graphicsPreset, *unknown ? "custom" : "");
    }
}

}  // namespace
}  // namespace port
