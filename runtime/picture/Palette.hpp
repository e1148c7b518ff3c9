#pragma once

// Palettes of legacy pictures and the exchange of colours between them.

#include <filesystem>
#include <vector>

#include "GeneratedCharacters.hpp"
#include "SpriteImage.hpp"

namespace port {

class Renderer;

// Undoes the premultiplication of a pixel's colour, rounded; 0 for alpha 0.
[[nodiscard]] ColorKey unpremultipliedColor(const std::uint8_t* pixel);

// Replaces each colour of `source` by the one of the same index in `target`, over the shorter of
// the two. The later of two equal source colours wins. Alpha stays.
void remapColors(const std::vector<ColorKey>& source, const std::vector<ColorKey>& target,
                 SpriteImage& sprite);

// From an ACT file, a picture's palette, or a picture without palette, whose pixels then count in
// their order. False when there is none to be had.
[[nodiscard]] bool loadPaletteColors(const Renderer& renderer, const std::filesystem::path& path,
                                     std::vector<ColorKey>& colors);

// Whether the model has a palette of index `mapIndex`, from 1 on; its files may still be missing.
[[nodiscard]] bool hasCharacterPalette(const generated::Character& model, int mapIndex);

// Gives the sprite the model's palette of index `mapIndex`, from 1 on; 0 is its own. Palette files
// lie below the data root, in any case. One that is not there or cannot be loaded leaves the sprite
// as it is.
void applyCharacterPalette(const Renderer& renderer, const std::filesystem::path& dataRoot,
                           const generated::Character& model, int mapIndex, SpriteImage& sprite);

}  // namespace port
