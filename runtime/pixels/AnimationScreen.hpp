#pragma once

// How the frames of a picture that moves come together: each is laid over what the ones before it
// left.

#include <cstddef>
#include <string>

#include "DecodedImage.hpp"

namespace port {

// What becomes of a frame's place before the next one.
enum class Disposal { kStays, kCleared, kRestored };

struct AnimationFrame {
    DecodedImage picture;
    std::size_t left = 0;
    std::size_t top = 0;
    Disposal disposal = Disposal::kStays;
    int delayMs = 100;
};

class AnimationScreen {
  public:
    // The size that the file states. Some state none, or one that their first frame does not fit:
    // that frame then widens it.
    AnimationScreen(std::size_t width, std::size_t height) : width_(width), height_(height) {}

    // Appends what is seen from this frame on. False with `error` set when all frames together
    // become too much; `out` then stands as it was.
    [[nodiscard]] bool add(const AnimationFrame& frame, DecodedAnimation& out, std::string& error);

  private:
    std::size_t width_, height_;
    DecodedImage screen_;
    std::size_t pixels_ = 0;  // of all frames
};

// A picture that does not move, as one that does: a single frame of 100 ms.
[[nodiscard]] DecodedAnimation stillAnimation(DecodedImage picture);

}  // namespace port
