#pragma once

// Pictures of a game that plays by itself, for whoever looks at the run afterwards.

#include <cstdint>
#include <filesystem>
#include <utility>

#include "SpriteImage.hpp"

namespace port {

class FrameCapture {
  public:
    static constexpr int kDefaultEvery = 30;

    // Does nothing.
    FrameCapture() = default;
    // Writes the canvas of each `every`-th pass into `folder`, made as needed; 0 or less counts
    // as 1.
    explicit FrameCapture(std::filesystem::path folder, int every = kDefaultEvery)
        : folder_(std::move(folder)), every_(every < 1 ? 1 : static_cast<unsigned>(every)) {}

    // To be called once for each pass of the game. The first failure is reported, the game goes on.
    void pass(const SpriteImage& canvas);

  private:
    std::filesystem::path folder_;
    unsigned every_ = kDefaultEvery;
    std::uint64_t passes_ = 0;
    bool reported_ = false;
};

}  // namespace port
