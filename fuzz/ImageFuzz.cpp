#include <cstddef>
#include <cstdint>
#include <string>

#include "ImageDecoder.hpp"
#include "Require.hpp"

using tindrel::fuzz::require;

namespace {

void requireWhole(const port::DecodedImage& image) {
    require(image.width > 0 && image.height > 0, "a picture has pixels");
    const auto pixels =
        static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    require(pixels <= port::kMaxImagePixels, "a picture is limited");
    require(image.bgra.size() == pixels * port::kPixelBytes, "a picture has all its pixels");
    require(image.palette.size() <= 256, "a palette has 256 colours at most");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> file(data, size);
    std::string error;
    port::DecodedImage image;
    if (port::decodeImage(file, image, error)) {
        requireWhole(image);
    } else {
        require(!error.empty(), "a refusal has a message");
    }
    error.clear();
    port::DecodedAnimation animation;
    if (port::decodeAnimation(file, animation, error)) {
        require(!animation.frames.empty(), "success means a frame");
        require(animation.frames.size() == animation.delaysMs.size(), "each frame has its delay");
        for (const port::DecodedImage& frame : animation.frames) {
            requireWhole(frame);
            require(frame.width == animation.frames[0].width, "all frames are of one size");
        }
        for (const int delay : animation.delaysMs) require(delay >= 10, "a frame lasts");
    } else {
        require(!error.empty(), "a refusal has a message");
    }
    return 0;
}
