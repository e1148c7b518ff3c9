#pragma once

// Steps through the frames of one animation of the generated tables.

#include <cstddef>

#include "GeneratedCharacters.hpp"

namespace port {

class AnimationPlayer {
  public:
    // Starts at frame 0. Null is allowed; the animation is not owned.
    void setAnimation(const generated::Animation* animation);
    // Clamped to the last frame; revives a finished animation. Nothing without frames.
    void setFrame(std::size_t frameIndex);
    // Lets `ticks` pass (60 to the second). A frame of negative delay holds for ever.
    void update(int ticks = 1);

    // Null without an animation or frames. A finished animation stays on its last frame.
    [[nodiscard]] const generated::Frame* frame() const;
    [[nodiscard]] const generated::Animation* animation() const { return animation_; }
    [[nodiscard]] std::size_t frameIndex() const { return frameIndex_; }
    // Ticks that the current frame has lasted.
    [[nodiscard]] int tick() const { return tick_; }
    [[nodiscard]] bool finished() const { return finished_; }

  private:
    [[nodiscard]] bool hasFrames() const { return animation_ && animation_->frameCount > 0; }
    void step();

    const generated::Animation* animation_ = nullptr;
    std::size_t frameIndex_ = 0;
    int tick_ = 0;
    bool finished_ = false;
};

}  // namespace port
