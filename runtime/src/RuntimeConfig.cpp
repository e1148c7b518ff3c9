#include "RuntimeConfig.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>

#include "FileBytes.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

using Config = RuntimeConfig;

constexpr double kNoLowest = std::numeric_limits<double>::lowest();
constexpr double kNoHighest = std::numeric_limits<double>::max();

constexpr RuntimeSetting setting(std::string_view section, std::string_view key,
                                 RuntimeSetting::Member member, double lowest = kNoLowest,
                                 double highest = kNoHighest) {
    return {section, key, member, lowest, highest};
}

constexpr auto kSettings = std::to_array<RuntimeSetting>({
    setting("video", "renderer", &Config::renderer),
    setting("video", "gpu_acceleration", &Config::gpuAcceleration),
    setting("video", "fullscreen", &Config::fullscreen),
    setting("video", "width", &Config::width),
    setting("video", "height", &Config::height),
    setting("video", "vsync", &Config::vsync),
    setting("video", "fps_limit", &Config::fpsLimit, 0),
    setting("video", "render_scale", &Config::renderScale),
    setting("video", "texture_filter", &Config::textureFilter),

    setting("graphics", "preset", &Config::graphicsPreset),
    setting("graphics", "upscale", &Config::upscaleMode),
    setting("graphics", "pixel_perfect", &Config::pixelPerfect),
    setting("graphics", "keep_aspect_4_3", &Config::keepAspect43),
    setting("graphics", "fill_16_9", &Config::fill169),
    setting("graphics", "integer_scale", &Config::integerScale, 0, 4),
    setting("graphics", "crt", &Config::crt),
    setting("graphics", "scanlines", &Config::scanlines),
    setting("graphics", "crt_curvature", &Config::crtCurvature),
    setting("graphics", "bloom", &Config::bloom),
    setting("graphics", "contrast", &Config::contrast, 0.5, 2.0),
    setting("graphics", "saturation", &Config::saturation, 0.0, 2.0),
    setting("graphics", "reduce_banding", &Config::reduceBanding),
    setting("graphics", "sharpen", &Config::sharpen, 0.0, 1.0),

    setting("gameplay", "logical_width", &Config::logicalWidth, 160),
    setting("gameplay", "logical_height", &Config::logicalHeight, 120),
    setting("gameplay", "gravity", &Config::gravity, 0.01),
    setting("gameplay", "jump_default", &Config::jumpDefault, 0.5),
    setting("gameplay", "run_multiplier", &Config::runMultiplier, 1.0),
    setting("gameplay", "dash_speed", &Config::dashSpeed, 1.0),
    setting("gameplay", "dash_ticks", &Config::dashTicks, 1),
    setting("gameplay", "projectile_lifetime", &Config::projectileLifetime, 30),

    setting("combat", "enemy_ai", &Config::enemyAI),
    setting("combat", "camera_lock_on_combat", &Config::cameraLockOnCombat),
    setting("combat", "knockback", &Config::knockback),
    setting("combat", "enemy_attack_range", &Config::enemyAttackRange),
    setting("combat", "combo_window", &Config::comboWindow),
    setting("combat", "max_combo", &Config::maxCombo, 1),
    setting("combat", "grab_range", &Config::grabRange, 8),
    setting("combat", "throw_damage", &Config::throwDamage, 1),
    setting("combat", "fall_ticks", &Config::fallTicks, 1),
    setting("combat", "recovery_ticks", &Config::recoveryTicks, 1),

    setting("audio", "master_volume", &Config::masterVolume, 0.0, 1.0),
    setting("audio", "music_volume", &Config::musicVolume, 0.0, 1.0),
    setting("audio", "effects_volume", &Config::effectsVolume, 0.0, 1.0),
    setting("audio", "openbor_bor_adpcm", &Config::openborBorAdpcm),
    setting("audio", "auto_preview_music", &Config::autoPreviewMusic),
    setting("audio", "preferred_music_format", &Config::preferredMusicFormat),

    setting("input", "max_players", &Config::maxPlayers, 1, 4),
    setting("input", "active_players", &Config::activePlayers, 1, 4),
    setting("input", "gamepad", &Config::gamepad),
    setting("input", "player1_gamepad", &Config::player1Gamepad, 0, 3),
    setting("input", "player2_gamepad", &Config::player2Gamepad, 0, 3),
    setting("input", "player3_gamepad", &Config::player3Gamepad, 0, 3),
    setting("input", "player4_gamepad", &Config::player4Gamepad, 0, 3),
    setting("input", "key_left", &Config::keyLeft, 1, 255),
    setting("input", "key_right", &Config::keyRight, 1, 255),
    setting("input", "key_up", &Config::keyUp, 1, 255),
    setting("input", "key_down", &Config::keyDown, 1, 255),
    setting("input", "key_attack", &Config::keyAttack, 1, 255),
    setting("input", "key_jump", &Config::keyJump, 1, 255),
    setting("input", "key_pickup", &Config::keyPickup, 1, 255),
    setting("input", "key_dash", &Config::keyDash, 1, 255),
    setting("input", "key_grab", &Config::keyGrab, 1, 255),
    setting("input", "key_throw", &Config::keyThrow, 1, 255),
    setting("input", "key_run", &Config::keyRun, 1, 255),
    setting("input", "pad_attack", &Config::padAttack),
    setting("input", "pad_jump", &Config::padJump),
    setting("input", "pad_pickup", &Config::padPickup),
    setting("input", "pad_grab", &Config::padGrab),
    setting("input", "pad_dash", &Config::padDash),
    setting("input", "pad_throw", &Config::padThrow),

    setting("debug", "show_bbox", &Config::showBBox),
    setting("debug", "show_attack_box", &Config::showAttackBox),

    setting("compatibility", "openbor_palette_index0_transparency",
            &Config::openborPaletteIndex0Transparency),
    setting("compatibility", "preserve_source_alpha", &Config::preserveSourceAlpha),

    setting("reading", "as_written", &Config::asWritten),
});

// The saved file's order, which is not the table's: input comes before audio.
constexpr std::array<std::string_view, 8> kSavedSections = {
    "video", "graphics", "gameplay", "combat", "input", "audio", "debug", "compatibility"};

// Nothing reads these two; other tools of a port expect to find them.
constexpr std::string_view kEffectsSection = "[effects]\nparticles=high\nshadows=true\n";

void readValue(bool& value, std::string_view text, const RuntimeSetting&) {
    const std::string folded = foldAscii(text);
    if (folded == "true" || folded == "1" || folded == "yes" || folded == "on") value = true;
    if (folded == "false" || folded == "0" || folded == "no" || folded == "off") value = false;
}

void readValue(int& value, std::string_view text, const RuntimeSetting& row) {
    const std::optional<int> number = leadingInt(text);
    if (!number) return;
    value = static_cast<int>(std::clamp(static_cast<double>(*number),
                                        std::max(row.lowest, -2147483648.0),
                                        std::min(row.highest, 2147483647.0)));
}

void readValue(float& value, std::string_view text, const RuntimeSetting& row) {
    const std::optional<float> number = leadingFloat(text);
    if (!number) return;
    value = static_cast<float>(std::clamp(static_cast<double>(*number), row.lowest, row.highest));
}

void readValue(std::string& value, std::string_view text, const RuntimeSetting&) {
    value = foldAscii(text);
}

const RuntimeSetting* findSetting(std::string_view section, std::string_view key) {
    const auto found = std::ranges::find_if(kSettings, [&](const RuntimeSetting& row) {
        return row.section == section && row.key == key;
    });
    return found == kSettings.end() ? nullptr : &*found;
}

void writeConfig(std::ostream& out, const RuntimeConfig& config) {
    for (const std::string_view section : kSavedSections) {
        writeRuntimeSection(out, config, section);
        out << '\n';
    }
    out << kEffectsSection;
    // Follows from how the port was made, so that most files say nothing of it.
    if (config.asWritten) {
        out << '\n';
        writeRuntimeSection(out, config, "reading");
    }
}

struct Preset {
    std::array<std::string_view, 3> names;  // the first is the one that is stored
    std::string_view upscaleMode;
    std::string_view textureFilter;
    bool pixelPerfect = false;
    bool tube = false;  // CRT with its scanlines, curvature and bloom
    float contrast;
    float saturation;
    bool reduceBanding = true;
    float sharpen;
};

constexpr std::array<Preset, 4> kPresets = {
    Preset{.names = {"original"},
           .upscaleMode = "original",
           .textureFilter = "nearest",
           .pixelPerfect = true,
           .contrast = 1.0F,
           .saturation = 1.0F,
           .reduceBanding = false,
           .sharpen = 0.0F},
    Preset{.names = {"improved", "melhorado"},
           .upscaleMode = "sharp-bilinear",
           .textureFilter = "linear",
           .contrast = 1.05F,
           .saturation = 1.05F,
           .sharpen = 0.28F},
    Preset{.names = {"crt"},
           .upscaleMode = "sharp-bilinear",
           .textureFilter = "linear",
           .tube = true,
           .contrast = 1.06F,
           .saturation = 1.04F,
           .sharpen = 0.16F},
    Preset{.names = {"sharp", "nitido", "n\xC3\xADtido"},
           .upscaleMode = "cas",
           .textureFilter = "linear",
           .contrast = 1.03F,
           .saturation = 1.02F,
           .sharpen = 0.68F},
};

}  // namespace

std::span<const RuntimeSetting> runtimeSettings() {
    return kSettings;
}

void readRuntimeConfig(std::istream& in, RuntimeConfig& config) {
    std::string section;
    std::string line;
    for (bool first = true; std::getline(in, line); first = false) {
        std::string_view text = line;
        // Notepad puts a byte order mark in front of a file that a player edits.
        if (first && text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
        text = trimmed(text);
        if (text.empty() || text.front() == '#' || text.front() == ';') continue;
        if (const std::size_t end = text.find(']'); text.front() == '[' && end != text.npos) {
            section = foldAscii(trimmed(text.substr(1, end - 1)));
            continue;
        }
        const std::size_t equals = text.find('=');
        if (equals == text.npos) continue;
        const RuntimeSetting* row =
            findSetting(section, foldAscii(trimmed(text.substr(0, equals))));
        if (!row) continue;
        const std::string_view value = trimmed(text.substr(equals + 1));
        std::visit([&](auto member) { readValue(config.*member, value, *row); }, row->member);
    }
}

RuntimeConfig loadRuntimeConfig(const std::filesystem::path& iniPath) {
    RuntimeConfig config;
    std::istringstream in(readSmallText(iniPath).value_or(""));
    readRuntimeConfig(in, config);
    return config;
}

void writeRuntimeSection(std::ostream& out, const RuntimeConfig& config, std::string_view section) {
    // Imbuing flushes, and a stream that cannot be flushed throws at all that follows.
    if (out.getloc() != std::locale::classic()) out.imbue(std::locale::classic());
    out << std::boolalpha << '[' << section << "]\n";
    for (const RuntimeSetting& row : kSettings) {
        if (row.section != section) continue;
        out << row.key << '=';
        std::visit([&](auto member) { out << config.*member; }, row.member);
        out << '\n';
    }
}

bool saveRuntimeConfig(const std::filesystem::path& iniPath, const RuntimeConfig& config) {
    std::ostringstream out;
    writeConfig(out, config);
    return replaceFile(iniPath, out.view());
}

void applyGraphicsPreset(RuntimeConfig& config, std::string_view preset) {
    config.graphicsPreset = foldAscii(preset);
    if (config.graphicsPreset.empty()) return;
    for (const Preset& known : kPresets) {
        if (std::ranges::find(known.names, config.graphicsPreset) == known.names.end()) continue;
        config.graphicsPreset = known.names.front();
        config.upscaleMode = known.upscaleMode;
        config.textureFilter = known.textureFilter;
        config.pixelPerfect = known.pixelPerfect;
        config.crt = known.tube;
        config.scanlines = known.tube;
        config.crtCurvature = known.tube;
        config.bloom = known.tube;
        config.contrast = known.contrast;
        config.saturation = known.saturation;
        config.reduceBanding = known.reduceBanding;
        config.sharpen = known.sharpen;
        config.keepAspect43 = true;
        config.fill169 = false;
        return;
    }
}

}  // namespace port
