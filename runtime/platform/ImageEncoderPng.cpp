#include <png.h>

#include <cstdint>
#include <fstream>
#include <system_error>
#include <utility>
#include <vector>

#include "ImageEncoder.hpp"

namespace port {
namespace {

constexpr std::size_t kRgbBytes = 3;

bool fail(std::string& error, std::string reason) {
    error = std::move(reason);
    return false;
}

std::vector<std::uint8_t> rgbOf(const SpriteImage& image) {
    std::vector<std::uint8_t> rgb(image.bgra.size() / kPixelBytes * kRgbBytes);
    const std::uint8_t* from = image.bgra.data();
    for (std::size_t at = 0; at < rgb.size(); at += kRgbBytes, from += kPixelBytes) {
        rgb[at] = from[2];
        rgb[at + 1] = from[1];
        rgb[at + 2] = from[0];
    }
    return rgb;
}

bool pngBytes(const SpriteImage& image, std::vector<char>& bytes, std::string& error) {
    if (image.width <= 0 || image.height <= 0 ||
        image.bgra.size() != pixelOffset(image, 0, image.height)) {
        return fail(error, "there is no picture to write");
    }
    const std::vector<std::uint8_t> rgb = rgbOf(image);
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width);
    png.height = static_cast<png_uint_32>(image.height);
    png.format = PNG_FORMAT_RGB;
    png.flags = PNG_IMAGE_FLAG_FAST;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(png);
    bytes.resize(size);
    if (png_image_write_to_memory(&png, bytes.data(), &size, 0, rgb.data(), 0, nullptr) == 0) {
        return fail(error, png.message);
    }
    bytes.resize(size);
    return true;
}

bool writeFile(const std::filesystem::path& path, const std::vector<char>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    return !out.fail();
}

}  // namespace

bool encodePng(const SpriteImage& image, const std::filesystem::path& path, std::string& error) {
    std::vector<char> bytes;
    if (!pngBytes(image, bytes, error)) return false;
    std::filesystem::path unfinished = path;
    unfinished += ".part";
    std::error_code failed;
    if (writeFile(unfinished, bytes)) {
        std::filesystem::rename(unfinished, path, failed);
        if (!failed) return true;
    }
    std::error_code ignored;
    std::filesystem::remove(unfinished, ignored);
    return fail(error, "the file cannot be written");
}

}  // namespace port
