// The settings that a player changes: rows that are stepped to the left and right, or switched.

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "MenuInput.hpp"
#include "MenuScreens.hpp"
#include "MenuText.hpp"
#include "Settings.hpp"

namespace port {
namespace {

struct OptionRow {
    std::string (*text)(const Game& game);
    void (*step)(Game& game, int direction) = nullptr;  // null for a row that leads elsewhere
    bool isLevel = false;                               // stepped only, never switched
};

constexpr float kLevelStep = 0.05F;

std::string onOff(const char* label, bool on) {
    return std::string(label) + (on ? "ON" : "OFF");
}

std::string percent(const char* label, float level) {
    return label + std::to_string(std::lround(level * 100)) + "%";
}

// The choice behind `current` in either direction; one that is not there counts as `fallback`.
template <class Value, std::size_t Count>
const Value& cycled(const std::array<Value, Count>& choices, const auto& current,
                    std::size_t fallback, int direction) {
    const auto found = std::ranges::find(choices, current);
    const std::size_t at =
        found == choices.end() ? fallback : static_cast<std::size_t>(found - choices.begin());
    return choices[static_cast<std::size_t>(
        wrapped(static_cast<int>(at), direction, static_cast<int>(Count)))];
}

// --- Options

using Size = std::pair<int, int>;
constexpr std::array<Size, 5> kSizes = {
    {{640, 480}, {960, 720}, {1280, 720}, {1920, 1080}, {2560, 1440}}};
constexpr std::size_t kUsualSize = 2;
constexpr std::array<int, 4> kFrameLimits = {60, 120, 144, 0};

template <bool RuntimeConfig::*Member>
void toggle(Game& game, int) {
    game.config.*Member = !(game.config.*Member);
}

void stepSize(Game& game, int direction) {
    RuntimeConfig& config = game.config;
    std::tie(config.width, config.height) =
        cycled(kSizes, Size(config.width, config.height), kUsualSize, direction);
}

void stepFrameLimit(Game& game, int direction) {
    game.config.fpsLimit = cycled(kFrameLimits, game.config.fpsLimit, 0, direction);
}

template <float (AudioSystem::*Get)() const, void (AudioSystem::*Set)(float)>
void stepVolume(Game& game, int direction) {
    (game.audio.*Set)((game.audio.*Get)() + kLevelStep * static_cast<float>(direction));
}

constexpr int kGraphicsRow = 4;
constexpr std::array<OptionRow, 11> kOptions = {{
    {[](const Game& game) { return onOff("FULLSCREEN: ", game.config.fullscreen); },
     toggle<&RuntimeConfig::fullscreen>},
    {[](const Game& game) {
         return "RESOLUTION: " + std::to_string(game.config.width) + "x" +
                std::to_string(game.config.height);
     },
     stepSize},
    {[](const Game& game) {
         const int limit = game.config.fpsLimit;
         return "FPS: " + (limit == 0 ? std::string("UNLIMITED") : std::to_string(limit));
     },
     stepFrameLimit},
    {[](const Game& game) { return onOff("V-SYNC: ", game.config.vsync); },
     toggle<&RuntimeConfig::vsync>},
    {[](const Game&) { return std::string("GRAPHICS..."); }},
    {[](const Game& game) { return percent("MASTER: ", game.audio.masterVolume()); },
     stepVolume<&AudioSystem::masterVolume, &AudioSystem::setMasterVolume>, true},
    {[](const Game& game) { return percent("MUSIC: ", game.audio.musicVolume()); },
     stepVolume<&AudioSystem::musicVolume, &AudioSystem::setMusicVolume>, true},
    {[](const Game& game) { return percent("SFX: ", game.audio.effectsVolume()); },
     stepVolume<&AudioSystem::effectsVolume, &AudioSystem::setEffectsVolume>, true},
    {[](const Game& game) { return onOff("SHOW BBOX: ", game.config.showBBox); },
     toggle<&RuntimeConfig::showBBox>},
    {[](const Game& game) { return onOff("ATTACK BOX: ", game.config.showAttackBox); },
     toggle<&RuntimeConfig::showAttackBox>},
    {[](const Game&) { return std::string("BACK"); }},
}};

// --- Graphics

constexpr std::array<std::string_view, 4> kPresets = {"original", "improved", "crt", "sharp"};
constexpr std::array<std::string_view, 4> kUpscales = {"original", "sharp-bilinear", "cas",
                                                       "xbrz-like"};
constexpr std::array<int, 4> kIntegerScales = {0, 2, 3, 4};

// A setting of its own makes the preset the player's.
template <void (*Step)(Game& game, int direction)>
void custom(Game& game, int direction) {
    Step(game, direction);
    game.config.graphicsPreset = "custom";
}

void stepPreset(Game& game, int direction) {
    applyGraphicsPreset(game.config, cycled(kPresets, game.config.graphicsPreset, 0, direction));
}

void stepUpscale(Game& game, int direction) {
    game.config.upscaleMode = cycled(kUpscales, game.config.upscaleMode, 0, direction);
}

void toggleKeepAspect(Game& game, int) {
    RuntimeConfig& config = game.config;
    config.keepAspect43 = !config.keepAspect43;
    if (config.keepAspect43) config.fill169 = false;
}

void toggleFill(Game& game, int) {
    RuntimeConfig& config = game.config;
    config.fill169 = !config.fill169;
    if (config.fill169) config.keepAspect43 = config.pixelPerfect = false;
}

void stepIntegerScale(Game& game, int direction) {
    game.config.integerScale = cycled(kIntegerScales, game.config.integerScale, 0, direction);
}

void toggleTexture(Game& game, int) {
    game.config.textureFilter = game.config.textureFilter == "nearest" ? "linear" : "nearest";
}

struct Range {
    float low, high;
};
constexpr Range kContrast{0.5F, 2}, kSaturation{0, 2}, kSharpen{0, 1};

template <float RuntimeConfig::*Member, const Range& Limits>
void stepLevel(Game& game, int direction) {
    float& level = game.config.*Member;
    level = std::clamp(level + kLevelStep * static_cast<float>(direction), Limits.low, Limits.high);
}

constexpr std::array<OptionRow, 15> kGraphics = {{
    {[](const Game& game) { return "PRESET: " + game.config.graphicsPreset; }, stepPreset},
    {[](const Game& game) { return "UPSCALE: " + game.config.upscaleMode; }, custom<stepUpscale>},
    {[](const Game& game) { return onOff("PIXEL PERFECT: ", game.config.pixelPerfect); },
     custom<toggle<&RuntimeConfig::pixelPerfect>>},
    {[](const Game& game) { return onOff("KEEP 4:3: ", game.config.keepAspect43); },
     custom<toggleKeepAspect>},
    {[](const Game& game) { return onOff("FILL 16:9: ", game.config.fill169); },
     custom<toggleFill>},
    {[](const Game& game) {
         const int scale = game.config.integerScale;
         return "INTEGER SCALE: " +
                (scale == 0 ? std::string("AUTO") : std::to_string(scale) + "x");
     },
     custom<stepIntegerScale>},
    {[](const Game& game) { return "TEXTURE: " + game.config.textureFilter; },
     custom<toggleTexture>},
    {[](const Game& game) { return onOff("CRT: ", game.config.crt); },
     custom<toggle<&RuntimeConfig::crt>>},
    {[](const Game& game) { return onOff("SCANLINES: ", game.config.scanlines); },
     custom<toggle<&RuntimeConfig::scanlines>>},
    {[](const Game& game) { return onOff("CURVATURE: ", game.config.crtCurvature); },
     custom<toggle<&RuntimeConfig::crtCurvature>>},
    {[](const Game& game) { return onOff("BLOOM: ", game.config.bloom); },
     custom<toggle<&RuntimeConfig::bloom>>},
    {[](const Game& game) { return percent("CONTRAST: ", game.config.contrast); },
     custom<stepLevel<&RuntimeConfig::contrast, kContrast>>, true},
    {[](const Game& game) { return percent("SATURATION: ", game.config.saturation); },
     custom<stepLevel<&RuntimeConfig::saturation, kSaturation>>, true},
    {[](const Game& game) { return onOff("REDUCE BANDING: ", game.config.reduceBanding); },
     custom<toggle<&RuntimeConfig::reduceBanding>>},
    {[](const Game& game) { return percent("SHARPEN: ", game.config.sharpen); },
     custom<stepLevel<&RuntimeConfig::sharpen, kSharpen>>, true},
}};

// --- Both

std::string textOf(std::span<const OptionRow> rows, const Game& game, int row) {
    return rows[static_cast<std::size_t>(row)].text(game);
}

// Steps or switches the row; whatever was pressed on it is kept at once.
void changeOption(Game& game, const OptionRow& row, const MenuInput& menu) {
    const int direction = menu.rightward();
    if (direction != 0 && row.step) row.step(game, direction);
    if (menu.accept && row.step && !row.isLevel) row.step(game, 1);
    if (menu.accept || (direction != 0 && row.step)) saveSettings(game);
}

class OptionsScreen final : public Screen {
  public:
    explicit OptionsScreen(Game& game) : game_(game) {}

    FrontendState update(const TickInput& input) override {
        Frontend& frontend = game_.frontend;
        const MenuInput menu = menuInput(input, game_.config);
        int& row = frontend.optionIndex;
        row = wrapped(row, menu.downward(), static_cast<int>(kOptions.size()));
        changeOption(game_, kOptions[static_cast<std::size_t>(row)], menu);
        const bool leaves = menu.back || (menu.accept && row == kBackRow);
        if (leaves) {
            return frontend.optionsFromPause ? FrontendState::Paused : FrontendState::MainMenu;
        }
        if (!menu.accept || row != kGraphicsRow) return FrontendState::Options;
        frontend.graphicsOptionIndex = 0;
        return FrontendState::GraphicsOptions;
    }
    void draw(DrawList& list) const override {
        addText(list, 18, 44, 14, "OPTIONS", true);
        addRows(list, {22, 59, 14, 8}, static_cast<int>(kOptions.size()),
                game_.frontend.optionIndex,
                [this](int row) { return textOf(kOptions, game_, row); });
        addText(list, 20, 222, 7, "LEFT/RIGHT change");
    }

  private:
    static constexpr int kBackRow = static_cast<int>(kOptions.size()) - 1;

    Game& game_;
};

class GraphicsOptionsScreen final : public Screen {
  public:
    explicit GraphicsOptionsScreen(Game& game) : game_(game) {}

    FrontendState update(const TickInput& input) override {
        const MenuInput menu = menuInput(input, game_.config);
        int& row = game_.frontend.graphicsOptionIndex;
        row = wrapped(row, menu.downward(), static_cast<int>(kGraphics.size()));
        changeOption(game_, kGraphics[static_cast<std::size_t>(row)], menu);
        if (!menu.back) return FrontendState::GraphicsOptions;
        saveSettings(game_);
        return FrontendState::Options;
    }
    void draw(DrawList& list) const override {
        addText(list, 12, 42, 13, "OPTIONS > GRAPHICS", true);
        addRows(list, {.x = 14, .y = 65, .step = 16, .size = 8, .most = 9, .ahead = 4},
                static_cast<int>(kGraphics.size()), game_.frontend.graphicsOptionIndex,
                [this](int row) { return textOf(kGraphics, game_, row); });
        addText(list, 14, 220, 7, "ESC back  LEFT/RIGHT change");
    }

  private:
    Game& game_;
};

}  // namespace

std::unique_ptr<Screen> optionsScreen(Game& game) {
    return std::make_unique<OptionsScreen>(game);
}

std::unique_ptr<Screen> graphicsOptionsScreen(Game& game) {
    return std::make_unique<GraphicsOptionsScreen>(game);
}

}  // namespace port
