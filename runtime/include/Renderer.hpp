#pragma once

// What the game draws with and the window that shows it. Without a window it runs headless.

#include <string>

#include "RuntimeConfig.hpp"

namespace port {

class Renderer {
  public:
    // False when there is nothing to draw on; the port then cannot start.
    [[nodiscard]] bool initialize(const RuntimeConfig& config);
    void setConfig(const RuntimeConfig& config) { config_ = config; }

    // False from the closing of the window on.
    [[nodiscard]] bool isRunning() const { return running_; }
    // Handles what the window was sent; false when that ends the program.
    [[nodiscard]] bool pumpEvents() { return running_; }

    // The presentation in use: "headless" before initialize, "headless-preview" without a window.
    [[nodiscard]] const std::string& backend() const { return backend_; }
    // True without a window, and so without a player: the engine then plays by itself for a while.
    [[nodiscard]] bool headless() const { return backend_.starts_with("headless"); }

  private:
    RuntimeConfig config_;
    bool running_ = false;
    std::string backend_ = "headless";
};

}  // namespace port
