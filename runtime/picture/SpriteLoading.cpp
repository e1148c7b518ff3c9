#include "SpriteLoading.hpp"

#include <utility>

#include "DecodedImage.hpp"
#include "FileBytes.hpp"
#include "ImageDecoder.hpp"

namespace port {
namespace {

// No picture within the limits takes more.
constexpr std::uintmax_t kMaxImageFile = 512U << 20U;

std::optional<std::vector<std::uint8_t>> readPicture(const std::filesystem::path& path,
                                                     std::string& error) {
    auto bytes = readFileBytes(path, kMaxImageFile);
    if (bytes && bytes->size() > kMaxImageFile) {
        error = "picture file is larger than " + std::to_string(kMaxImageFile) + " bytes";
        bytes.reset();
    }
    return bytes;
}

bool decodeFile(const std::filesystem::path& path, DecodedImage& image, std::string& error) {
    const auto bytes = readPicture(path, error);
    return bytes && decodeImage(*bytes, image, error);
}

void clearColor(std::vector<std::uint8_t>& bgra, ColorKey key) {
    for (std::size_t at = 0; at < bgra.size(); at += kPixelBytes) {
        if (colorKey(bgra[at + 2], bgra[at + 1], bgra[at]) == key) bgra[at + 3] = 0;
    }
}

SpriteImage sprite(DecodedImage&& image) {
    premultiply(image.bgra);
    return {image.width, image.height, std::move(image.bgra)};
}

}  // namespace

SpriteImage placeholderSprite() {
    constexpr int kSide = 64;
    return {kSide, kSide, std::vector<std::uint8_t>(kSide * kSide * kPixelBytes, 255)};
}

void premultiply(std::vector<std::uint8_t>& bgra) {
    for (std::size_t at = 0; at < bgra.size(); at += kPixelBytes) {
        const unsigned alpha = bgra[at + 3];
        if (alpha == 255) continue;
        for (std::size_t c = at; c < at + 3; ++c) {
            bgra[c] = static_cast<std::uint8_t>(bgra[c] * alpha / 255);
        }
    }
}

bool loadSprite(const std::filesystem::path& path, bool index0Transparency, SpriteImage& out,
                std::string& error) {
    error.clear();
    if (!canDecodeImages()) {
        out = placeholderSprite();
        std::error_code ignored;
        return std::filesystem::exists(path, ignored);
    }
    DecodedImage image;
    if (!decodeFile(path, image, error)) return false;
    if (index0Transparency && !image.palette.empty()) clearColor(image.bgra, image.palette[0]);
    out = sprite(std::move(image));
    return true;
}

bool loadPalette(const std::filesystem::path& path, std::vector<ColorKey>& colors,
                 std::string& error) {
    error.clear();
    DecodedImage image;
    if (!canDecodeImages() || !decodeFile(path, image, error)) return false;
    colors = std::move(image.palette);
    return !colors.empty();
}

bool loadAnimationFrames(const std::filesystem::path& path, std::vector<SpriteImage>& frames,
                         std::vector<int>& delaysMs, std::string& error) {
    error.clear();
    frames.clear();
    delaysMs.clear();
    if (!canDecodeImages()) return false;
    const auto bytes = readPicture(path, error);
    DecodedAnimation animation;
    if (!bytes || !decodeAnimation(*bytes, animation, error)) return false;
    for (DecodedImage& frame : animation.frames) frames.push_back(sprite(std::move(frame)));
    delaysMs = std::move(animation.delaysMs);
    return true;
}

}  // namespace port
