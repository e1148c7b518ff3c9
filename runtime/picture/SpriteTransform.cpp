#include "SpriteTransform.hpp"

#include <cmath>
#include <cstring>

#include "DecodedImage.hpp"
#include "SpriteBlit.hpp"
#include "SpriteCompositor.hpp"

namespace port {
namespace {

// A side of the scaled sprite. Larger ones would lose whole pixels in single precision.
constexpr float kMaxScaledSide = 1 << 22;

int scaledSide(int side, float scale) {
    const float scaled = std::min(static_cast<float>(side) * scale, kMaxScaledSide);
    return std::max(1, static_cast<int>(std::lround(scaled)));
}

// To the nearest whole number, halves away from zero.
int nearest(double value) {
    return static_cast<int>(value < 0 ? value - 0.5 : value + 0.5);
}

int turnOf(const generated::DrawMethod& draw, bool entityFlip) {
    const int angle = draw.rotate % 360;
    return draw.flipRotate && entityFlip && angle != 0 ? (360 - angle) % 360 : angle;
}

// Rounded. No meaningful position is beyond these bounds, and a number outside an integer's range
// has no defined value.
std::int64_t wholePosition(double value) {
    constexpr double kFar = 1e15;
    return std::isnan(value) ? 0 : std::llround(std::clamp(value, -kFar, kFar));
}

// Right angles are exact: a cosine of 6e-17 instead of 0 would widen the bounding box by a pixel.
double exactSin(int degrees) {
    const int turn = ((degrees % 360) + 360) % 360;
    if (turn % 180 == 0) return 0.0;
    if (turn == 90) return 1.0;
    if (turn == 270) return -1.0;
    return std::sin(turn * 3.14159265358979323846 / 180.0);
}

double centre(int size) {
    return (size - 1) * 0.5;
}

}  // namespace

int blendTintChannel(int mode, int tint, int sprite) {
    const int t = std::clamp(tint, 0, 255);
    const int s = std::clamp(sprite, 0, 255);
    const int screened = 255 - 2 * (255 - s) * (255 - t) / 255;
    const int multiplied = 2 * s * t / 255;
    switch (mode) {
        case 1:
            return 255 - (255 - t) * (255 - s) / 255;
        case 2:
            return t * s / 255;
        case 3:
            return s < 128 ? multiplied : screened;
        case 4:
            return t < 128 ? multiplied : screened;
        case 5:
            return std::min(255, s * 256 / std::max(1, 256 - t));
        case 6:
            return (t + s) / 2;
        default:
            return s;
    }
}

SpriteTransform::SpriteTransform(int sourceWidth, int sourceHeight,
                                 const generated::DrawMethod& draw, bool entityFlip)
    : sourceWidth_(sourceWidth),
      sourceHeight_(sourceHeight),
      shiftX_(draw.shiftX),
      turned_(turnOf(draw, entityFlip) != 0),
      filled_(draw.fillColor > 255),
      tinted_(isBlendMode(draw.tintMode)),
      fillColor_(static_cast<ColorKey>(draw.fillColor)) {
    const float sx = draw.enabled ? draw.scaleX : 1.0F;
    const float sy = draw.enabled ? draw.scaleY : 1.0F;
    mirrorX_ = entityFlip != ((draw.enabled && draw.flipX) != (sx < 0));
    mirrorY_ = (draw.enabled && draw.flipY) != (sy < 0);
    scaleX_ = std::max(0.01F, std::abs(sx));
    scaleY_ = std::max(0.01F, std::abs(sy));
    scaledWidth_ = width_ = scaledSide(sourceWidth, scaleX_);
    scaledHeight_ = height_ = scaledSide(sourceHeight, scaleY_);
    if (turned_) {
        const int angle = turnOf(draw, entityFlip);
        sin_ = exactSin(angle);
        cos_ = exactSin(angle + 90);
        const double w = scaledWidth_;
        const double h = scaledHeight_;
        width_ = std::max(1, static_cast<int>(std::ceil(std::abs(w * cos_) + std::abs(h * sin_))));
        height_ = std::max(1, static_cast<int>(std::ceil(std::abs(w * sin_) + std::abs(h * cos_))));
    }
    if (tinted_) {
        const auto color = static_cast<ColorKey>(draw.tintColor);
        for (unsigned c = 0; c < 3; ++c) {
            const int tint = static_cast<int>(colorChannel(color, c));
            for (int s = 0; s < 256; ++s) {
                tint_[c][static_cast<std::size_t>(s)] =
                    static_cast<std::uint8_t>(blendTintChannel(draw.tintMode, tint, s));
            }
        }
    }
}

bool SpriteTransform::keepsRows() const {
    return !mirrorY_ && !turned_ && !filled_ && !tinted_ && scaleX_ == 1.0F && scaleY_ == 1.0F &&
           shiftX_ == 0.0F;
}

float SpriteTransform::shear(float y) const {
    return shiftX_ * (y - static_cast<float>(scaledHeight_) * 0.5F);
}

int SpriteTransform::sourceRow(int y) const {
    const int row = std::min(static_cast<int>(static_cast<float>(y) / scaleY_), sourceHeight_ - 1);
    return mirrorY_ ? sourceHeight_ - 1 - row : row;
}

int SpriteTransform::sourceColumn(float x) const {
    const int column = std::min(static_cast<int>(x / scaleX_), sourceWidth_ - 1);
    return mirrorX_ ? sourceWidth_ - 1 - column : column;
}

const std::uint8_t* SpriteTransform::scaledPixel(const SpriteImage& source, int x, int y) const {
    const float unsheared = static_cast<float>(x) - shear(static_cast<float>(y));
    // Written so that a shear that is no number gives nothing.
    if (!(unsheared >= 0.0F && unsheared < static_cast<float>(scaledWidth_))) return nullptr;
    return source.bgra.data() + pixelOffset(source, sourceColumn(unsheared), sourceRow(y));
}

void SpriteTransform::scaledRow(const SpriteImage& source, int y, int first, int count,
                                std::uint8_t* out) const {
    const std::uint8_t* const row = source.bgra.data() + pixelOffset(source, 0, sourceRow(y));
    if (scaleX_ == 1.0F && shiftX_ == 0.0F) {
        const std::uint8_t* from =
            row + static_cast<std::size_t>(sourceColumn(static_cast<float>(first))) * kPixelBytes;
        if (!mirrorX_) {
            std::memcpy(out, from, static_cast<std::size_t>(count) * kPixelBytes);
            return;
        }
        for (int i = 0; i < count; ++i, out += kPixelBytes) {
            std::memcpy(out, from - static_cast<std::size_t>(i) * kPixelBytes, kPixelBytes);
        }
        return;
    }
    const float offset = shear(static_cast<float>(y));
    for (int i = 0; i < count; ++i, out += kPixelBytes) {
        const float x = static_cast<float>(first + i) - offset;
        if (x >= 0.0F && x < static_cast<float>(scaledWidth_)) {
            std::memcpy(out, row + static_cast<std::size_t>(sourceColumn(x)) * kPixelBytes,
                        kPixelBytes);
        } else {
            std::memset(out, 0, kPixelBytes);
        }
    }
}

void SpriteTransform::turnedRow(const SpriteImage& source, int y, int first, int count,
                                std::uint8_t* out) const {
    const double dy = y - centre(height_);
    for (int i = 0; i < count; ++i, out += kPixelBytes) {
        const double dx = first + i - centre(width_);
        const int sx = nearest(dx * cos_ + dy * sin_ + centre(scaledWidth_));
        const int sy = nearest(dy * cos_ - dx * sin_ + centre(scaledHeight_));
        const bool inside = sx >= 0 && sx < scaledWidth_ && sy >= 0 && sy < scaledHeight_;
        if (const std::uint8_t* pixel = inside ? scaledPixel(source, sx, sy) : nullptr) {
            std::memcpy(out, pixel, kPixelBytes);
        } else {
            std::memset(out, 0, kPixelBytes);
        }
    }
}

void SpriteTransform::recolor(int count, std::uint8_t* pixels) const {
    for (int i = 0; i < count; ++i, pixels += kPixelBytes) {
        const unsigned alpha = pixels[3];
        if (alpha == 0) continue;
        for (unsigned c = 0; c < 3; ++c) {
            if (filled_) {
                pixels[c] = static_cast<std::uint8_t>(colorChannel(fillColor_, c) * alpha / 255);
            }
            if (tinted_) pixels[c] = tint_[c][pixels[c]];
        }
    }
}

void SpriteTransform::row(const SpriteImage& source, int y, int first, int count,
                          std::uint8_t* out) const {
    if (turned_) {
        turnedRow(source, y, first, count, out);
    } else {
        scaledRow(source, y, first, count, out);
    }
    // Turning only picks pixels, so that recolouring them afterwards gives the same.
    if (filled_ || tinted_) recolor(count, out);
}

SpriteAnchor SpriteTransform::anchor(int x, int y) const {
    double ax = static_cast<double>(x) * static_cast<double>(scaleX_);
    double ay = static_cast<double>(y) * static_cast<double>(scaleY_);
    if (mirrorX_) ax = scaledWidth_ - ax;
    if (mirrorY_) ay = scaledHeight_ - ay;
    ax += static_cast<double>(shear(static_cast<float>(ay)));
    if (turned_) {
        const double dx = ax - centre(scaledWidth_);
        const double dy = ay - centre(scaledHeight_);
        ax = dx * cos_ - dy * sin_ + centre(width_);
        ay = dx * sin_ + dy * cos_ + centre(height_);
    }
    return {wholePosition(ax), wholePosition(ay)};
}

SpriteImage transformOpenBORSprite(const SpriteImage& source, const generated::DrawMethod& draw,
                                   bool entityFlip) {
    SpriteImage result;
    if (source.bgra.empty()) return result;
    const SpriteTransform transform(source.width, source.height, draw, entityFlip);
    const auto pixels =
        static_cast<std::uint64_t>(transform.width()) * static_cast<unsigned>(transform.height());
    if (pixels > kMaxImagePixels) return result;
    result.width = transform.width();
    result.height = transform.height();
    result.bgra.resize(static_cast<std::size_t>(pixels) * kPixelBytes);
    for (int y = 0; y < result.height; ++y) {
        transform.row(source, y, 0, result.width, result.bgra.data() + pixelOffset(result, 0, y));
    }
    return result;
}

SpriteAnchor transformedOpenBORAnchor(const SpriteImage& source, const generated::Frame& frame,
                                      bool entityFlip) {
    return SpriteTransform(source.width, source.height, frame.draw, entityFlip)
        .anchor(frame.offsetX, frame.offsetY);
}

void drawTransformed(SpriteImage& canvas, const SpriteImage& source,
                     const SpriteTransform& transform, std::int64_t x, std::int64_t y,
                     int alphaMode) {
    if (source.bgra.empty()) return;
    // What nearly every sprite needs, without a detour.
    if (transform.keepsRows()) {
        if (!transform.mirrored()) return drawImageBlend(canvas, source, x, y, alphaMode);
        if (!isBlendMode(alphaMode)) return drawImageMirrored(canvas, source, x, y);
    }
    const VisibleArea area = visibleArea(canvas, x, y, transform.width(), transform.height());
    constexpr int kRun = 256;
    std::array<std::uint8_t, kRun * kPixelBytes> run;
    for (int row = 0; row < area.height; ++row) {
        for (int done = 0; done < area.width; done += kRun) {
            std::uint8_t* const target =
                canvas.bgra.data() + pixelOffset(canvas, area.canvasX + done, area.canvasY + row);
            const int count = std::min(kRun, area.width - done);
            transform.row(source, area.sourceY + row, area.sourceX + done, count, run.data());
            if (isBlendMode(alphaMode)) {
                compositeRow(alphaMode, target, run.data(), count);
            } else {
                blendRow(target, run.data(), count);
            }
        }
    }
}

}  // namespace port
