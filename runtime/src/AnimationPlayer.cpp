#include "AnimationPlayer.hpp"

#include <algorithm>
#include <limits>

namespace port {
namespace {

std::size_t clampedIndex(int index, std::size_t last) {
    return std::min(static_cast<std::size_t>(std::max(0, index)), last);
}

}  // namespace

void AnimationPlayer::setAnimation(const generated::Animation* animation) {
    animation_ = animation;
    frameIndex_ = 0;
    tick_ = 0;
    finished_ = false;
}

void AnimationPlayer::setFrame(std::size_t frameIndex) {
    if (!hasFrames()) return;
    frameIndex_ = std::min(frameIndex, animation_->frameCount - 1);
    tick_ = 0;
    finished_ = false;
}

void AnimationPlayer::update(int ticks) {
    if (!hasFrames() || finished_ || frame()->delay < 0) return;
    tick_ += std::clamp(ticks, 0, std::numeric_limits<int>::max() - tick_);
    int delay = std::max(1, frame()->delay);
    while (tick_ >= delay && !finished_) {
        tick_ -= delay;
        step();
        if (finished_ || frame()->delay < 0) {
            tick_ = 0;
            return;
        }
        delay = std::max(1, frame()->delay);
    }
}

void AnimationPlayer::step() {
    const std::size_t last = animation_->frameCount - 1;
    const std::size_t loopStart = clampedIndex(animation_->loopStart, last);
    const std::size_t loopEnd =
        animation_->loopEnd < 0 ? last : clampedIndex(animation_->loopEnd, last);
    if (animation_->loop && frameIndex_ >= loopEnd) {
        frameIndex_ = std::min(loopStart, loopEnd);
    } else if (frameIndex_ < last) {
        ++frameIndex_;
    } else {
        finished_ = true;
    }
}

const generated::Frame* AnimationPlayer::frame() const {
    return hasFrames() ? &animation_->frames[frameIndex_] : nullptr;
}

}  // namespace port
