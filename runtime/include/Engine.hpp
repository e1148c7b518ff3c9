#pragma once

// The loop over the screens of a port, and who plays in it.

#include <filesystem>
#include <memory>

#include "FrontendScreens.hpp"
#include "Game.hpp"
#include "Pilot.hpp"

namespace port {

class Engine {
  public:
    explicit Engine(platform::Devices devices = {}) : game_(std::move(devices)) {}

    // Reads settings and tables and brings up the services. False when there is nothing to draw on;
    // missing sound only warns. Without a window a game begins at once.
    [[nodiscard]] bool initialize(const std::filesystem::path& portRoot);

    // Before initialize(). Writes the run into the file; false when it cannot be written.
    [[nodiscard]] bool record(const std::filesystem::path& file) {
        return game_.recorder.open(file);
    }
    // Before initialize(). A game then begins at once, is played by the pilot and ends when the
    // pilot says so; the settings are not saved.
    void setPilot(std::unique_ptr<Pilot> pilot) {
        pilot_ = std::move(pilot);
        game_.keepsSettings = false;
    }

    // Keeps pictures of the gameplay passes to come.
    void setCapture(FrameCapture capture) { game_.capture = std::move(capture); }

    // The loop, one tick and one drawn frame a pass. 0, or 70 when a window closed within three
    // passes. Without a window it ends by itself after 900 passes. With a pilot, the pilot's
    // result.
    int run();

    // Plays by itself for 60 to 3600 frames. 0, or 72 when a game could not start, 73 when it ended
    // early, 74 when gameplay did not go on.
    int runSmokeGame(int frames = SmokeRun::kUsualFrames);

    // To look at and to set up; the loop is not running.
    [[nodiscard]] Game& game() { return game_; }

  private:
    [[nodiscard]] TickInput deviceInput();
    bool runPass();
    void runFrontendPass();
    void logHeadlessProgress() const;
    void pace() const;
    int endRun(int passes);

    Game game_;
    FrontendState screenState_ = FrontendState::Playing;  // whose screen_ is up
    std::unique_ptr<Screen> screen_;
    std::unique_ptr<Pilot> pilot_;  // null where devices play
};

}  // namespace port
