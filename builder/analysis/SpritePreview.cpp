#include "analysis/SpritePreview.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace tindrel {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kPngSignature = "\x89PNG\r\n\x1A\n"sv;
// A whole tRNS chunk, checksum included, that makes entry 0 transparent.
constexpr std::string_view kPngTransparency = "\0\0\0\1tRNS\0\x40\xE6\xD8\x66"sv;
constexpr std::string_view kGifControl = "\x21\xF9\x04\x01\0\0\0\0"sv;

std::uint8_t byteAt(std::string_view bytes, std::size_t at) {
    return at < bytes.size() ? static_cast<std::uint8_t>(bytes[at]) : 0;
}

bool isGif(std::string_view picture) {
    return picture.starts_with("GIF87a") || picture.starts_with("GIF89a");
}

std::optional<std::string> transparentGif(std::string_view picture) {
    constexpr std::size_t kHeaderBytes = 13;
    constexpr std::size_t kFlagsAt = 10;
    constexpr std::uint8_t kExtension = 0x21;
    constexpr std::uint8_t kControlLabel = 0xF9;
    constexpr std::uint8_t kImage = 0x2C;

    const std::uint8_t flags = byteAt(picture, kFlagsAt);
    std::size_t at = kHeaderBytes;
    if ((flags & 0x80U) != 0) at += std::size_t{3} << ((flags & 7U) + 1U);
    std::string patched(picture);
    while (byteAt(picture, at) == kExtension) {
        if (byteAt(picture, at + 1) == kControlLabel) {
            const std::size_t control = at + 3;
            const std::size_t index = at + 6;
            if (index >= picture.size() || (byteAt(picture, control) & 1U) != 0) return {};
            patched[control] = static_cast<char>(byteAt(picture, control) | 1U);
            patched[index] = 0;
            return patched;
        }
        at += 2;
        while (byteAt(picture, at) != 0) at += std::size_t{1} + byteAt(picture, at);
        ++at;
    }
    if (byteAt(picture, at) != kImage) return {};
    patched.insert(at, kGifControl);
    patched.replace(0, 6, "GIF89a");  // the older version knows no transparency
    return patched;
}

std::optional<std::string> transparentPng(std::string_view picture) {
    constexpr std::size_t kColourTypeAt = 25;
    constexpr std::uint8_t kIndexed = 3;
    constexpr std::size_t kChunkFrame = 12;  // length, type and checksum around the data

    if (byteAt(picture, kColourTypeAt) != kIndexed) return {};
    std::size_t insertAt = 0;
    for (std::size_t at = kPngSignature.size(); at + kChunkFrame <= picture.size();) {
        const std::string_view type = picture.substr(at + 4, 4);
        if (type == "tRNS") return {};
        if (type == "IDAT") break;
        std::size_t length = 0;
        for (std::size_t i = 0; i < 4; ++i) length = length << 8U | byteAt(picture, at + i);
        if (length > picture.size() - at - kChunkFrame) return {};
        at += length + kChunkFrame;
        if (type == "PLTE") insertAt = at;
    }
    if (insertAt == 0) return {};
    return std::string(picture).insert(insertAt, kPngTransparency);
}

}  // namespace

std::optional<std::string> withTransparentBackground(std::string_view picture) {
    if (isGif(picture)) return transparentGif(picture);
    if (picture.starts_with(kPngSignature)) return transparentPng(picture);
    return {};
}

std::string dataUrl(std::string_view picture) {
    constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string url = isGif(picture) ? "data:image/gif;base64," : "data:image/png;base64,";
    url.reserve(url.size() + picture.size() * 4 / 3 + 4);
    for (std::size_t i = 0; i < picture.size(); i += 3) {
        const std::uint32_t group = std::uint32_t{byteAt(picture, i)} << 16U |
                                    std::uint32_t{byteAt(picture, i + 1)} << 8U |
                                    byteAt(picture, i + 2);
        const std::size_t digits = std::min<std::size_t>(picture.size() - i, 3) + 1;
        for (std::size_t k = 0; k < 4; ++k) {
            url += k < digits ? kDigits[group >> (18U - 6U * k) & 63U] : '=';
        }
    }
    return url;
}

std::optional<SpriteCrop> cropOf(const FrameDef& frame) {
    // Boxes come from game text, where any number may stand.
    constexpr int kFarthest = 4096;
    constexpr int kSmallest = 40;
    constexpr int kAroundFeet = 144;
    const auto bounded = [&](std::int32_t value) {
        return std::clamp(value, -kFarthest, kFarthest);
    };
    const int footX = bounded(frame.offsetX);
    const int footY = bounded(frame.offsetY);
    const bool hasFeet = footX > 0 && footY > 0;

    SpriteCrop crop;
    if (frame.hasBBox) {
        const int width = bounded(frame.bbox.w);
        const int height = bounded(frame.bbox.h);
        // Arms and weapons reach beyond the body.
        crop.side = std::max({kSmallest, width * 2, height * 5 / 4});
        crop.x = bounded(frame.bbox.x) + width / 2 - crop.side / 2;
        crop.y = bounded(frame.bbox.y) + height / 2 - crop.side / 2;
        const auto reaches = [&](int start, int foot) {
            return foot >= start && foot <= start + crop.side;
        };
        if (!hasFeet || (reaches(crop.x, footX) && reaches(crop.y, footY))) return crop;
        // A box away from the feet is where an item is touched, say, and not where it is drawn.
    }
    if (!hasFeet) return {};
    crop.side = std::clamp(footY * 5 / 4, kSmallest, kAroundFeet);
    crop.x = footX - crop.side / 2;
    crop.y = footY - crop.side * 9 / 10;
    return crop;
}

}  // namespace tindrel
