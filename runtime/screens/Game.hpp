#pragma once

// What the screens of a running game share: devices and settings, what scripts reach as well, the
// world, and how this run goes.

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Devices.hpp"
#include "DrawList.hpp"
#include "FrameCapture.hpp"
#include "Host.hpp"
#include "Hud.hpp"
#include "Recording.hpp"
#include "RuntimeConfig.hpp"
#include "SavedGame.hpp"
#include "Scenery.hpp"
#include "Scripts.hpp"
#include "SmokeRun.hpp"
#include "Tick.hpp"
#include "TickInput.hpp"
#include "World.hpp"
#include "WorldHash.hpp"

namespace port {

enum class FrontendState {
    MainMenu,
    LevelSetSelect,
    CharacterSelect,
    Loading,
    Options,
    GraphicsOptions,
    Controls,
    Playing,
    Paused,
    GameOver,
    Quit
};

// A set of stages that is played from its first one on.
struct Campaign {
    std::size_t firstStage = 0;
    std::string name;
    int requirement = 0;  // games to be finished before it opens
    bool operator==(const Campaign&) const = default;
};

struct Frontend {
    FrontendState state = FrontendState::MainMenu;
    // The rows that menus stand on; they outlast their screens.
    int menuIndex = 0, pauseIndex = 0, optionIndex = 0, graphicsOptionIndex = 0, controlsIndex = 0;
    int campaignIndex = 0;
    bool optionsFromPause = false;  // and back to it
    std::uint64_t tick = 0;         // passes outside play
    std::vector<Campaign> campaigns;
    int completionCount = 0;  // games finished
    std::unordered_map<std::string, std::string> legacyKeyLabels;
    std::set<std::string> legacyDisabledKeys;
    SpritePtr titleBackground, selectBackground;  // null where there is none
};

struct Game : HostServices {
    explicit Game(platform::Devices given);
    // Scripts hold addresses of what stands here.
    Game(const Game&) = delete;
    Game& operator=(const Game&) = delete;

    platform::Devices devices;
    RuntimeConfig config;
    Scripts scripts;
    Scenery scenery;
    DrawList drawing;
    FrameCapture capture;

    TickInput input;  // of this pass
    // Something was shown meanwhile that took the presses: the next pass begins without.
    bool pressesAreForShow = false;
    World world;
    Events events;

    Frontend frontend;
    HudSize hud;
    SmokeRun smoke;

    PlayerDrive drive = PlayerDrive::Devices;
    bool skipsMenus = false;  // nobody is there to choose: play goes on at once
    int extraLives = 0;       // that players of a new game have beyond the stage's
    Recorder recorder;
    Host host;  // of the scripts

    [[nodiscard]] Tick tick() { return {world, drive, input, config, scripts, events}; }
    [[nodiscard]] RunState runState() const;
    [[nodiscard]] std::uint64_t hash() const { return worldHash(runState()); }

    // What the devices hold now; no pads where the settings want none.
    [[nodiscard]] HeldInput heldInput() const;

    // Whether nobody is there to see and to wait: no time is spent on being looked at.
    [[nodiscard]] bool playsByItself() const {
        return drive == PlayerDrive::SelfCheck || renderer.headless();
    }
    // Whether what is reached in this run is the player's own, to be kept and to be lost.
    bool ownProgress = false;
    // The saved game that is continued, in place of the player's own; unset where that is meant.
    std::function<std::optional<SavedGame>()> findSave;
    bool keepsSettings = true;  // what is changed in menus is written down

    // Paints the list, on a fresh canvas or over what it shows.
    void compose(bool over = false);
    // The same, and brings the canvas to the window.
    void show(bool over = false);
    // Plays what the steps have left word of.
    void playSounds();
    // A line of the start-up log, in a run that checks itself.
    void trace(std::string_view message) const;
};

}  // namespace port
