#pragma once

// What a draw method does to a sprite: scale, mirror, shear, fill, tint, turn, in this order.

#include <array>

#include "GeneratedCharacters.hpp"
#include "SpriteImage.hpp"

namespace port {

// `mode` 1 to 6: screen, multiply, overlay, hard light, dodge, average of the tint's channel and
// the sprite's, both limited to 0 to 255. Any other mode gives `sprite`.
[[nodiscard]] int blendTintChannel(int mode, int tint, int sprite);

struct SpriteAnchor {
    std::int64_t x = 0;
    std::int64_t y = 0;
};

// The mapping for sprites of one size. The result is never stored: any run of its pixels can be
// asked for, so that drawing costs what is visible, whatever the scale.
class SpriteTransform {
  public:
    SpriteTransform(int sourceWidth, int sourceHeight, const generated::DrawMethod& draw,
                    bool entityFlip);

    // True when the result has the rows of the source as they are, or all of them mirrored().
    [[nodiscard]] bool keepsRows() const;
    [[nodiscard]] bool mirrored() const { return mirrorX_; }
    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    // Where the source's point (x, y) lies in the result.
    [[nodiscard]] SpriteAnchor anchor(int x, int y) const;
    // Writes `count` pixels of row `y` from column `first` on; all of them must be in the result.
    void row(const SpriteImage& source, int y, int first, int count, std::uint8_t* out) const;

  private:
    [[nodiscard]] float shear(float y) const;
    [[nodiscard]] int sourceRow(int y) const;
    [[nodiscard]] int sourceColumn(float x) const;
    [[nodiscard]] const std::uint8_t* scaledPixel(const SpriteImage& source, int x, int y) const;
    void scaledRow(const SpriteImage& source, int y, int first, int count, std::uint8_t* out) const;
    void turnedRow(const SpriteImage& source, int y, int first, int count, std::uint8_t* out) const;
    void recolor(int count, std::uint8_t* pixels) const;

    int sourceWidth_, sourceHeight_;
    float scaleX_ = 1.0F, scaleY_ = 1.0F;
    bool mirrorX_ = false, mirrorY_ = false;
    float shiftX_ = 0.0F;
    int scaledWidth_ = 1, scaledHeight_ = 1;
    bool turned_ = false;
    double cos_ = 1.0, sin_ = 0.0;
    int width_ = 1, height_ = 1;
    bool filled_ = false, tinted_ = false;
    ColorKey fillColor_ = 0;
    // Per channel, what the tint makes of each value.
    std::array<std::array<std::uint8_t, 256>, 3> tint_{};
};

// The transformed sprite as an image of its own; empty for an empty source and for a result of more
// than 64 million pixels.
[[nodiscard]] SpriteImage transformOpenBORSprite(const SpriteImage& source,
                                                 const generated::DrawMethod& draw,
                                                 bool entityFlip);

// The frame's offset carried through its draw method.
[[nodiscard]] SpriteAnchor transformedOpenBORAnchor(const SpriteImage& source,
                                                    const generated::Frame& frame, bool entityFlip);

// Draws the transformed source with its top left corner at (x, y). Allocates nothing.
void drawTransformed(SpriteImage& canvas, const SpriteImage& source,
                     const SpriteTransform& transform, std::int64_t x, std::int64_t y,
                     int alphaMode);

}  // namespace port
