#pragma once

// All settings of a port, kept in config/graphics.ini.

#include <filesystem>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace port {

// Key codes are Windows virtual key codes, pad values XInput button masks, on every system.
struct RuntimeConfig {
    std::string renderer = "d3d11";
    bool gpuAcceleration = true;
    bool fullscreen = false;
    int width = 1280;
    int height = 720;
    bool vsync = true;
    int fpsLimit = 60;  // 0: unlimited
    float renderScale = 1.0F;
    std::string textureFilter = "nearest";

    std::string graphicsPreset = "original";
    std::string upscaleMode = "original";
    bool pixelPerfect = true;
    bool keepAspect43 = true;
    bool fill169 = false;
    int integerScale = 0;  // 0: automatic
    bool crt = false;
    bool scanlines = false;
    bool crtCurvature = false;
    bool bloom = false;
    float contrast = 1.0F;
    float saturation = 1.0F;
    bool reduceBanding = false;
    float sharpen = 0.0F;

    int logicalWidth = 320;
    int logicalHeight = 240;
    float gravity = 0.35F;
    float jumpDefault = 4.0F;
    float runMultiplier = 1.65F;
    float dashSpeed = 6.0F;
    int dashTicks = 12;
    int projectileLifetime = 360;

    bool enemyAI = true;
    bool cameraLockOnCombat = true;
    int knockback = 12;
    int enemyAttackRange = 28;
    int comboWindow = 24;
    int maxCombo = 3;
    int grabRange = 30;
    int throwDamage = 24;
    int fallTicks = 28;
    int recoveryTicks = 18;

    float masterVolume = 1.0F;
    float musicVolume = 0.80F;
    float effectsVolume = 0.90F;
    bool openborBorAdpcm = true;
    bool autoPreviewMusic = true;
    std::string preferredMusicFormat = "auto";

    int maxPlayers = 4;
    int activePlayers = 1;
    bool gamepad = true;
    int player1Gamepad = 0;
    int player2Gamepad = 1;
    int player3Gamepad = 2;
    int player4Gamepad = 3;
    int keyLeft = 37;
    int keyRight = 39;
    int keyUp = 38;
    int keyDown = 40;
    int keyAttack = 74;
    int keyJump = 32;
    int keyPickup = 69;
    int keyDash = 76;
    int keyGrab = 71;
    int keyThrow = 72;
    int keyRun = 16;
    int padAttack = 4096;
    int padJump = 8192;
    int padPickup = 16384;
    int padGrab = 32768;
    int padDash = 256;
    int padThrow = 512;

    bool showBBox = true;
    bool showAttackBox = true;

    bool openborPaletteIndex0Transparency = true;
    bool preserveSourceAlpha = true;

    // The game is taken to the letter, also where its authors plainly meant something else.
    bool asWritten = false;

    bool operator==(const RuntimeConfig&) const = default;
};

// One row of the table of settings, which loading and saving both walk.
struct RuntimeSetting {
    using Member = std::variant<bool RuntimeConfig::*, int RuntimeConfig::*, float RuntimeConfig::*,
                                std::string RuntimeConfig::*>;
    std::string_view section;
    std::string_view key;
    Member member;
    double lowest;  // numbers are clamped to lowest..highest on loading
    double highest;
};

// The table in the default file's order; rows of one section stand together.
[[nodiscard]] std::span<const RuntimeSetting> runtimeSettings();

// The defaults, changed by whatever the file says that can be read. Never fails.
[[nodiscard]] RuntimeConfig loadRuntimeConfig(const std::filesystem::path& iniPath);

// The same for a stream: changes what its lines say.
void readRuntimeConfig(std::istream& in, RuntimeConfig& config);
// The lines of one section, with its head; numbers with the digits that the stream is set to.
void writeRuntimeSection(std::ostream& out, const RuntimeConfig& config, std::string_view section);

// Replaces the file whole. False when it cannot be written; the old file then stands.
[[nodiscard]] bool saveRuntimeConfig(const std::filesystem::path& iniPath,
                                     const RuntimeConfig& config);

// Stores the folded name and sets what a known preset stands for; other names set nothing else.
void applyGraphicsPreset(RuntimeConfig& config, std::string_view preset);

}  // namespace port
