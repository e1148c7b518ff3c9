#include "DecodedImage.hpp"

namespace port {

bool checkImageSize(std::uint64_t width, std::uint64_t height, std::string& error) {
    if (width == 0 || height == 0) return failImage(error, "picture has no pixels");
    if (width > kMaxImageSide || height > kMaxImageSide || width * height > kMaxImagePixels) {
        return failImage(error, "picture of ", width, " by ", height, " pixels is too large");
    }
    return true;
}

void allocateImage(DecodedImage& image, std::size_t width, std::size_t height) {
    image.width = static_cast<int>(width);
    image.height = static_cast<int>(height);
    image.bgra.assign(width * height * kPixelBytes, 0);
}

std::uint32_t littleEndianAt(std::span<const std::uint8_t> file, std::size_t at, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = size; i > 0; --i) {
        const std::size_t place = at + i - 1;
        value = (value << 8U) | (place < file.size() ? file[place] : 0U);
    }
    return value;
}

}  // namespace port
