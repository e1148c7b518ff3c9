#include "Palette.hpp"

#include <unordered_map>

#include "AssetPaths.hpp"
#include "FileBytes.hpp"
#include "PathEncoding.hpp"
#include "Renderer.hpp"
#include "TextFields.hpp"

namespace port {
namespace {

bool loadActColors(const std::filesystem::path& path, std::vector<ColorKey>& colors) {
    constexpr std::size_t kTriple = 3;
    constexpr std::size_t kMaxBytes = 256 * kTriple;
    const auto bytes = readFileBytes(path, kMaxBytes);
    if (!bytes) return false;
    colors.clear();
    for (std::size_t at = 0; at + kTriple <= bytes->size() && at < kMaxBytes; at += kTriple) {
        colors.push_back(colorKey((*bytes)[at], (*bytes)[at + 1], (*bytes)[at + 2]));
    }
    return !colors.empty();
}

// The files to map from and to; null or empty for what a model does not have.
struct PalettePair {
    const char* source = nullptr;
    const char* target = nullptr;

    [[nodiscard]] bool complete() const { return source && *source && target && *target; }
};

PalettePair palettePair(const generated::Character& model, int mapIndex) {
    if (mapIndex < 1) return {};
    const auto index = static_cast<std::size_t>(mapIndex) - 1;
    if (index < model.paletteRemapCount) {
        return {model.paletteRemaps[index].source, model.paletteRemaps[index].target};
    }
    if (index < model.alternatePaletteCount) {
        return {model.palettePath, model.alternatePalettes[index]};
    }
    return {};
}

bool loadPaletteFile(const Renderer& renderer, const std::filesystem::path& dataRoot,
                     const char* name, std::vector<ColorKey>& colors) {
    const std::filesystem::path relative = normalizeDataPath(name);
    return !relative.empty() &&
           loadPaletteColors(renderer, runtimeCasePath(dataRoot / relative), colors);
}

}  // namespace

ColorKey unpremultipliedColor(const std::uint8_t* pixel) {
    const unsigned alpha = pixel[3];
    if (alpha == 0) return 0;
    const auto channel = [alpha](unsigned c) {
        return std::min(255U, (c * 255 + alpha / 2) / alpha);
    };
    return colorKey(channel(pixel[2]), channel(pixel[1]), channel(pixel[0]));
}

void remapColors(const std::vector<ColorKey>& source, const std::vector<ColorKey>& target,
                 SpriteImage& sprite) {
    std::unordered_map<ColorKey, ColorKey> map;
    const std::size_t count = std::min(source.size(), target.size());
    for (std::size_t i = 0; i < count; ++i) map[source[i]] = target[i];
    for (std::size_t at = 0; at < sprite.bgra.size(); at += kPixelBytes) {
        std::uint8_t* const pixel = sprite.bgra.data() + at;
        const unsigned alpha = pixel[3];
        if (alpha == 0) continue;
        const auto found = map.find(unpremultipliedColor(pixel));
        if (found == map.end()) continue;
        for (unsigned c = 0; c < 3; ++c) {
            pixel[c] = static_cast<std::uint8_t>(colorChannel(found->second, c) * alpha / 255);
        }
    }
}

bool loadPaletteColors(const Renderer& renderer, const std::filesystem::path& path,
                       std::vector<ColorKey>& colors) {
    if (foldAscii(PathEncoding::utf8(path.extension())) == ".act") {
        return loadActColors(path, colors);
    }
    if (renderer.loadPalette(path, colors)) return true;
    SpriteImage image;
    if (!renderer.loadSprite(path, image)) return false;
    colors.clear();
    colors.reserve(image.bgra.size() / kPixelBytes);
    for (std::size_t at = 0; at < image.bgra.size(); at += kPixelBytes) {
        colors.push_back(unpremultipliedColor(image.bgra.data() + at));
    }
    return true;
}

bool hasCharacterPalette(const generated::Character& model, int mapIndex) {
    return palettePair(model, mapIndex).complete();
}

void applyCharacterPalette(const Renderer& renderer, const std::filesystem::path& dataRoot,
                           const generated::Character& model, int mapIndex, SpriteImage& sprite) {
    const PalettePair pair = palettePair(model, mapIndex);
    if (!pair.complete()) return;
    std::vector<ColorKey> from;
    std::vector<ColorKey> to;
    if (loadPaletteFile(renderer, dataRoot, pair.source, from) &&
        loadPaletteFile(renderer, dataRoot, pair.target, to)) {
        remapColors(from, to, sprite);
    }
}

}  // namespace port
