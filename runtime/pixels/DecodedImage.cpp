#include "DecodedImage.hpp"

#include <algorithm>
#include <optional>

namespace port {
namespace {

using Bytes = std::span<const std::uint8_t>;

// Little-endian numbers at fixed places of a header. What lies beyond the end reads as 0; callers
// check sizes where that matters.
std::uint32_t number(Bytes file, std::size_t at, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = size; i > 0; --i) {
        const std::size_t place = at + i - 1;
        value = (value << 8U) | (place < file.size() ? file[place] : 0U);
    }
    return value;
}

void putOpaque(std::uint8_t* pixel, ColorKey color) {
    for (unsigned c = 0; c < 3; ++c) pixel[c] = static_cast<std::uint8_t>(colorChannel(color, c));
    pixel[3] = 255;
}

std::uint8_t* pixelAt(DecodedImage& image, std::size_t x, std::size_t y) {
    return image.bgra.data() + (y * static_cast<std::size_t>(image.width) + x) * kPixelBytes;
}

// An index beyond a short palette is black.
ColorKey paletteColor(const std::vector<ColorKey>& palette, std::size_t index) {
    return index < palette.size() ? palette[index] : 0;
}

struct BmpHeader {
    std::size_t width = 0, height = 0;
    bool topDown = false;
    unsigned bits = 0, compression = 0;
    std::size_t pixels = 0;
};

constexpr unsigned kBmpPlain = 0;
constexpr unsigned kBmpRle8 = 1;

bool readBmpHeader(Bytes file, BmpHeader& bmp, std::vector<ColorKey>& palette, std::string& error) {
    constexpr std::size_t kInfo = 14;
    if (file.size() < kInfo + 40 || file[0] != 'B' || file[1] != 'M') {
        return failImage(error, "invalid BMP header");
    }
    const std::uint32_t infoSize = number(file, kInfo, 4);
    if (infoSize < 40 || infoSize > 1024) return failImage(error, "invalid BMP header");
    const std::uint32_t height = number(file, kInfo + 8, 4);
    bmp.topDown = (height & 0x80000000U) != 0;
    bmp.width = number(file, kInfo + 4, 4);
    bmp.height = bmp.topDown ? 0U - height : height;
    if (!checkImageSize(bmp.width, bmp.height, error)) return false;
    bmp.bits = number(file, kInfo + 14, 2);
    bmp.compression = number(file, kInfo + 16, 4);
    bmp.pixels = number(file, 10, 4);
    const bool known = bmp.bits == 1 || bmp.bits == 4 || bmp.bits == 8 || bmp.bits == 16 ||
                       bmp.bits == 24 || bmp.bits == 32;
    const bool packed = bmp.compression == kBmpRle8 && bmp.bits == 8 && !bmp.topDown;
    if (!known || (bmp.compression != kBmpPlain && !packed)) {
        return failImage(error, "BMP depth or compression is not supported");
    }
    if (bmp.bits <= 8) {
        const std::uint32_t most = 1U << bmp.bits;
        const std::uint32_t used = number(file, kInfo + 32, 4);
        const std::uint32_t colors = used == 0 ? most : std::min(used, most);
        const std::size_t table = kInfo + infoSize;
        if (table + colors * std::size_t{4} > file.size()) {
            return failImage(error, "BMP palette is cut short");
        }
        for (std::uint32_t i = 0; i < colors; ++i) {
            palette.push_back(number(file, table + i * std::size_t{4}, 3));
        }
    }
    if (bmp.pixels >= file.size()) return failImage(error, "BMP pixels are cut short");
    return true;
}

ColorKey bmpPixel(const std::uint8_t* row, std::size_t x, unsigned bits,
                  const std::vector<ColorKey>& palette) {
    if (bits <= 8) {
        const std::size_t bit = x * bits;
        const auto shift = static_cast<unsigned>(8 - bits - bit % 8);
        return paletteColor(palette, (row[bit / 8] >> shift) & ((1U << bits) - 1U));
    }
    const std::uint8_t* at = row + x * (bits / 8);
    if (bits == 16) {
        const unsigned packed = at[0] | static_cast<unsigned>(at[1] << 8U);
        const auto widened = [](unsigned five) { return (five << 3U) | (five >> 2U); };
        return colorKey(widened((packed >> 10U) & 31U), widened((packed >> 5U) & 31U),
                        widened(packed & 31U));
    }
    return colorKey(at[2], at[1], at[0]);
}

bool readPlainBmp(Bytes pixels, const BmpHeader& bmp, DecodedImage& out, std::string& error) {
    const std::size_t stride = (bmp.width * bmp.bits + 31) / 32 * 4;
    // The padding of the last row may be missing.
    if (pixels.size() < stride * (bmp.height - 1) + (bmp.width * bmp.bits + 7) / 8) {
        return failImage(error, "BMP pixels are cut short");
    }
    allocateImage(out, bmp.width, bmp.height);
    for (std::size_t y = 0; y < bmp.height; ++y) {
        const std::uint8_t* row = pixels.data() + y * stride;
        std::uint8_t* target = pixelAt(out, 0, bmp.topDown ? y : bmp.height - 1 - y);
        for (std::size_t x = 0; x < bmp.width; ++x, target += kPixelBytes) {
            putOpaque(target, bmpPixel(row, x, bmp.bits, out.palette));
        }
    }
    return true;
}

// Pixels that the runs skip keep the colour of index 0.
bool readRle8Bmp(Bytes data, const BmpHeader& bmp, DecodedImage& out, std::string& error) {
    allocateImage(out, bmp.width, bmp.height);
    for (std::size_t at = 0; at < out.bgra.size(); at += kPixelBytes) {
        putOpaque(out.bgra.data() + at, paletteColor(out.palette, 0));
    }
    std::size_t x = 0;
    std::size_t y = 0;
    const auto put = [&](std::uint8_t index) {
        if (x < bmp.width && y < bmp.height) {
            putOpaque(pixelAt(out, x, bmp.height - 1 - y), paletteColor(out.palette, index));
        }
        ++x;
    };
    std::size_t at = 0;
    while (at + 2 <= data.size()) {
        const std::uint8_t count = data[at];
        const std::uint8_t value = data[at + 1];
        at += 2;
        if (count > 0) {
            for (unsigned i = 0; i < count; ++i) put(value);
        } else if (value == 0) {
            x = 0;
            ++y;
        } else if (value == 1) {
            return true;
        } else if (value == 2) {
            if (at + 2 > data.size()) break;
            x += data[at];
            y += data[at + 1];
            at += 2;
        } else {
            const std::size_t padded = value + (value & 1U);
            if (at + padded > data.size()) break;
            for (unsigned i = 0; i < value; ++i) put(data[at + i]);
            at += padded;
        }
    }
    // The end mark is often left out behind the last row.
    const bool full = y >= bmp.height || (y + 1 == bmp.height && x >= bmp.width);
    return full || failImage(error, "BMP pixels are cut short");
}

}  // namespace

bool checkImageSize(std::uint64_t width, std::uint64_t height, std::string& error) {
    if (width == 0 || height == 0) return failImage(error, "picture has no pixels");
    if (width > kMaxImageSide || height > kMaxImageSide || width * height > kMaxImagePixels) {
        return failImage(error, "picture of " + std::to_string(width) + " by " +
                                    std::to_string(height) + " pixels is too large");
    }
    return true;
}

bool failImage(std::string& error, std::string_view text) {
    error = text;
    return false;
}

void allocateImage(DecodedImage& image, std::size_t width, std::size_t height) {
    image.width = static_cast<int>(width);
    image.height = static_cast<int>(height);
    image.bgra.assign(width * height * kPixelBytes, 0);
}

bool decodeBmp(std::span<const std::uint8_t> file, DecodedImage& out, std::string& error) {
    out = {};
    BmpHeader bmp;
    if (!readBmpHeader(file, bmp, out.palette, error)) return false;
    const Bytes pixels = file.subspan(bmp.pixels);
    return bmp.compression == kBmpRle8 ? readRle8Bmp(pixels, bmp, out, error)
                                       : readPlainBmp(pixels, bmp, out, error);
}

bool decodePcx(std::span<const std::uint8_t> file, DecodedImage& out, std::string& error) {
    constexpr std::size_t kHeader = 128;
    constexpr std::size_t kPalette = 1 + 256 * std::size_t{3};
    out = {};
    if (file.size() <= kHeader || file[0] != 10) return failImage(error, "invalid PCX header");
    const std::uint32_t planes = file[65];
    if (file[3] != 8 || (planes != 1 && planes != 3)) {
        return failImage(error, "PCX depth is not supported");
    }
    const std::uint32_t left = number(file, 4, 2);
    const std::uint32_t top = number(file, 6, 2);
    const std::uint32_t right = number(file, 8, 2);
    const std::uint32_t bottom = number(file, 10, 2);
    const std::size_t width = right < left ? 0 : right - left + 1;
    const std::size_t height = bottom < top ? 0 : bottom - top + 1;
    if (!checkImageSize(width, height, error)) return false;
    const std::size_t stride = number(file, 66, 2);
    if (stride < width) return failImage(error, "invalid PCX header");

    std::size_t end = file.size();
    if (planes == 1) {
        if (file.size() < kHeader + kPalette || file[end - kPalette] != 12) {
            return failImage(error, "PCX has no palette of 256 colours");
        }
        end -= kPalette;
        for (std::size_t at = end + 1; at < file.size(); at += 3) {
            out.palette.push_back(colorKey(file[at], file[at + 1], file[at + 2]));
        }
    }
    // A run holds 63 bytes at most, so that a size that the data cannot fill is seen here.
    const std::size_t total = stride * planes * height;
    if (total / 63 > end - kHeader) return failImage(error, "PCX pixels are cut short");
    allocateImage(out, width, height);
    std::size_t at = kHeader;
    const bool packed = file[2] == 1;
    std::size_t done = 0;
    while (done < total && at < end) {
        std::size_t run = 1;
        std::uint8_t value = file[at++];
        if (packed && value >= 0xC0) {
            run = value & 0x3FU;
            if (at == end) break;
            value = file[at++];
        }
        for (; run > 0 && done < total; --run, ++done) {
            const std::size_t x = done % stride;
            if (x >= width) continue;
            std::uint8_t* pixel = pixelAt(out, x, done / (stride * planes));
            if (planes == 1) {
                putOpaque(pixel, paletteColor(out.palette, value));
            } else {
                // Planes come as red, green, blue.
                pixel[2 - done / stride % planes] = value;
                pixel[3] = 255;
            }
        }
    }
    return done == total || failImage(error, "PCX pixels are cut short");
}

}  // namespace port
