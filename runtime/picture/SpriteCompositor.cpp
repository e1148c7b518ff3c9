#include "SpriteCompositor.hpp"

#include "SpriteBlit.hpp"

namespace port {
namespace {

enum Mode { kAdd = 1, kSubtract, kOverlay, kHardLight, kDodge, kAverage };

unsigned multiplied(unsigned s, unsigned d) {
    return 2 * s * d / 255;
}
unsigned screened(unsigned s, unsigned d) {
    return 255 - 2 * (255 - s) * (255 - d) / 255;
}

template <int kMode>
unsigned resultChannel(unsigned s, unsigned d) {
    if constexpr (kMode == kOverlay) return d < 128 ? multiplied(s, d) : screened(s, d);
    if constexpr (kMode == kHardLight) return s < 128 ? multiplied(s, d) : screened(s, d);
    if constexpr (kMode == kDodge) {
        return s == 255 ? 255 : std::min(255U, d * 255 / std::max(1U, 255 - s));
    }
    if constexpr (kMode == kAverage) return (s + d) / 2;
    return s;
}

// Add counts a pixel by its light, subtract by its darkness.
template <int kMode>
unsigned pixelWeight(unsigned alpha, const unsigned (&s)[3]) {
    const unsigned light = (s[0] + s[1] + s[2]) / 3;
    if constexpr (kMode == kAdd) return alpha * light / 255;
    if constexpr (kMode == kSubtract) return alpha * (255 - light) / 255;
    return alpha;
}

template <int kMode>
void composite(std::uint8_t* canvas, const std::uint8_t* source, int count) {
    for (int i = 0; i < count; ++i, canvas += kPixelBytes, source += kPixelBytes) {
        const unsigned alpha = source[3];
        if (alpha == 0) continue;
        unsigned s[3] = {source[0], source[1], source[2]};
        if (alpha != 255) {
            for (unsigned& channel : s) channel = std::min(255U, channel * 255 / alpha);
        }
        const unsigned weight = pixelWeight<kMode>(alpha, s);
        for (std::size_t c = 0; c < 3; ++c) {
            const unsigned d = canvas[c];
            const unsigned mixed = resultChannel<kMode>(s[c], d) * weight + d * (255 - weight);
            canvas[c] = static_cast<std::uint8_t>(mixed / 255);
        }
        canvas[3] = 255;
    }
}

}  // namespace

void compositeRow(int mode, std::uint8_t* canvas, const std::uint8_t* source, int count) {
    switch (mode) {
        case kAdd:
            return composite<kAdd>(canvas, source, count);
        case kSubtract:
            return composite<kSubtract>(canvas, source, count);
        case kOverlay:
            return composite<kOverlay>(canvas, source, count);
        case kHardLight:
            return composite<kHardLight>(canvas, source, count);
        case kDodge:
            return composite<kDodge>(canvas, source, count);
        default:
            return composite<kAverage>(canvas, source, count);
    }
}

void drawOpenBORBlend(SpriteImage& canvas, const SpriteImage& image, std::int64_t x, std::int64_t y,
                      int mode) {
    const VisibleArea area = visibleArea(canvas, x, y, image.width, image.height);
    for (int row = 0; row < area.height; ++row) {
        compositeRow(
            mode, canvas.bgra.data() + pixelOffset(canvas, area.canvasX, area.canvasY + row),
            image.bgra.data() + pixelOffset(image, area.sourceX, area.sourceY + row), area.width);
    }
}

void drawImageBlend(SpriteImage& canvas, const SpriteImage& image, std::int64_t x, std::int64_t y,
                    int mode) {
    if (isBlendMode(mode)) {
        drawOpenBORBlend(canvas, image, x, y, mode);
    } else {
        drawImage(canvas, image, x, y);
    }
}

}  // namespace port
