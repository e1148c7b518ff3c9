#include "AnimationScreen.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

namespace port {
namespace {

// Calls `change(screenPixel, framePixel)` for every pixel of the frame that lies on the screen.
template <class Change>
void overFrame(DecodedImage& screen, const AnimationFrame& frame, Change change) {
    const auto width = static_cast<std::size_t>(screen.width);
    const auto height = static_cast<std::size_t>(screen.height);
    const auto frameWidth = static_cast<std::size_t>(frame.picture.width);
    const auto frameHeight = static_cast<std::size_t>(frame.picture.height);
    for (std::size_t y = 0; y < frameHeight && frame.top + y < height; ++y) {
        for (std::size_t x = 0; x < frameWidth && frame.left + x < width; ++x) {
            change(screen.bgra.data() + ((frame.top + y) * width + frame.left + x) * kPixelBytes,
                   frame.picture.bgra.data() + (y * frameWidth + x) * kPixelBytes);
        }
    }
}

}  // namespace

bool AnimationScreen::add(const AnimationFrame& frame, DecodedAnimation& out, std::string& error) {
    if (screen_.bgra.empty()) {
        const std::size_t width =
            std::max(width_, frame.left + static_cast<std::size_t>(frame.picture.width));
        const std::size_t height =
            std::max(height_, frame.top + static_cast<std::size_t>(frame.picture.height));
        if (!checkImageSize(width, height, error)) return false;
        allocateImage(screen_, width, height);
    }
    pixels_ += screen_.bgra.size() / kPixelBytes;
    if (pixels_ > kMaxImagePixels) {
        return failImage(error, "GIF frame ", out.frames.size() + 1, ": ", pixels_,
                         " pixels in all frames are too many");
    }
    DecodedImage before;
    if (frame.disposal == Disposal::kRestored) before = screen_;
    overFrame(screen_, frame, [](std::uint8_t* pixel, const std::uint8_t* over) {
        if (over[3] != 0) std::memcpy(pixel, over, kPixelBytes);
    });
    out.frames.push_back(screen_);
    out.delaysMs.push_back(frame.delayMs);
    if (frame.disposal == Disposal::kRestored) screen_ = std::move(before);
    if (frame.disposal == Disposal::kCleared) {
        overFrame(screen_, frame, [](std::uint8_t* pixel, const std::uint8_t*) {
            std::memset(pixel, 0, kPixelBytes);
        });
    }
    return true;
}

DecodedAnimation stillAnimation(DecodedImage picture) {
    picture.palette.clear();
    DecodedAnimation animation;
    animation.frames.push_back(std::move(picture));
    animation.delaysMs.push_back(AnimationFrame().delayMs);
    return animation;
}

}  // namespace port
