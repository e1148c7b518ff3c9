#include "BmpImage.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <ios>

namespace port {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kInfo = 14;   // the second header, behind that of the file
constexpr std::size_t kMasks = 54;  // within the greater headers, behind the one of 40 bytes

enum Compression : std::uint32_t {
    kPlain = 0,
    kRle8 = 1,
    kRle4 = 2,
    kBitFields = 3,
    kAlphaBitFields = 6
};

struct BmpHeader {
    std::uint32_t infoSize = 0;
    std::size_t width = 0, height = 0;
    bool topDown = false;
    unsigned bits = 0;
    std::uint32_t compression = kPlain;
    std::uint32_t colors = 0;  // 0 where the header states none
    std::size_t pixels = 0;    // where they begin

    // The oldest header, with sides of 16 bits and colours of three bytes.
    [[nodiscard]] bool isCore() const { return infoSize == 12; }
    // OS/2 ends its second header where it likes; 40, 52 and 56 bytes are those of Windows.
    [[nodiscard]] bool isOs2() const {
        return infoSize <= 64 && infoSize != 40 && infoSize != 52 && infoSize != 56;
    }
    [[nodiscard]] bool hasMasks() const {
        return compression == kBitFields || compression == kAlphaBitFields;
    }
    [[nodiscard]] bool hasAlphaMask() const {
        return compression == kAlphaBitFields || (compression == kBitFields && infoSize >= 56);
    }
};

bool isSupported(const BmpHeader& bmp) {
    switch (bmp.compression) {
        case kPlain:
            return true;
        case kRle8:
            return bmp.bits == 8 && !bmp.topDown;
        case kRle4:
            return bmp.bits == 4 && !bmp.topDown;
        case kBitFields:  // OS/2 means a code of facsimiles
        case kAlphaBitFields:
            return (bmp.bits == 16 || bmp.bits == 32) && !bmp.isOs2();
        default:
            return false;
    }
}

bool readHeader(Bytes file, BmpHeader& bmp, std::string& error) {
    if (file.size() < kInfo + 4) {
        return failImage(error, "BMP header is cut short at byte ", file.size());
    }
    if (file[0] != 'B' || file[1] != 'M') return failImage(error, "BMP mark is missing at byte 0");
    bmp.pixels = littleEndianAt(file, 10, 4);
    bmp.infoSize = littleEndianAt(file, kInfo, 4);
    if (!bmp.isCore() && (bmp.infoSize < 16 || bmp.infoSize > 1024)) {
        return failImage(error, "BMP header of ", bmp.infoSize, " bytes at byte 14 is not known");
    }
    if (file.size() < kInfo + bmp.infoSize) {
        return failImage(error, "BMP header of ", bmp.infoSize,
                         " bytes at byte 14 is cut short at byte ", file.size());
    }
    // What a short header leaves out is 0.
    const auto field = [&](std::size_t at, std::size_t size) {
        return at + size <= bmp.infoSize ? littleEndianAt(file, kInfo + at, size) : 0;
    };
    if (bmp.isCore()) {
        bmp.width = field(4, 2);
        bmp.height = field(6, 2);
        bmp.bits = field(10, 2);
    } else {
        const std::uint32_t height = field(8, 4);
        bmp.topDown = (height & 0x80000000U) != 0;
        bmp.width = field(4, 4);
        bmp.height = bmp.topDown ? 0U - height : height;
        bmp.bits = field(14, 2);
        bmp.compression = field(16, 4);
        bmp.colors = field(32, 4);
    }
    if (!checkImageSize(bmp.width, bmp.height, error)) return false;
    constexpr std::array kDepths = {1U, 4U, 8U, 16U, 24U, 32U};
    if (std::ranges::find(kDepths, bmp.bits) == kDepths.end()) {
        return failImage(error, "BMP depth ", bmp.bits, " at byte ", bmp.isCore() ? 24 : 28,
                         " is not supported");
    }
    if (!isSupported(bmp)) {
        return failImage(error, "BMP compression ", bmp.compression, " at byte 30 is not supported",
                         bmp.topDown ? " from the top row down" : "", " with ", bmp.bits,
                         " bits and a header of ", bmp.infoSize, " bytes");
    }
    if (bmp.pixels >= file.size()) {
        return failImage(error, "BMP pixels begin at byte ", bmp.pixels, ", stated at byte 10, of ",
                         file.size());
    }
    return true;
}

bool readPalette(Bytes file, const BmpHeader& bmp, std::vector<ColorKey>& palette,
                 std::string& error) {
    const std::size_t entry = bmp.isCore() ? 3 : 4;
    const std::size_t table = kInfo + bmp.infoSize;
    const std::size_t most = std::size_t{1} << bmp.bits;
    std::size_t count = std::min<std::size_t>(bmp.colors, most);
    if (count == 0) {
        // As many as lie ahead of the pixels: old programs wrote fewer than the depth allows.
        const std::size_t room = bmp.pixels > table ? (bmp.pixels - table) / entry : 0;
        count = std::min(room, most);
    }
    if (count == 0) return failImage(error, "BMP has no palette at byte ", table);
    if (table + count * entry > file.size()) {
        return failImage(error, "BMP palette of ", count, " colours at byte ", table,
                         " is cut short at byte ", file.size());
    }
    for (std::size_t i = 0; i < count; ++i) {
        palette.push_back(littleEndianAt(file, table + i * entry, 3));
    }
    return true;
}

// A number of 1 to 8 bits as one of 8, of which the greatest is 255.
std::uint8_t widened(unsigned value, unsigned bits) {
    unsigned wide = value << (8 - bits);
    for (unsigned have = bits; have < 8; have *= 2) wide |= wide >> have;
    return static_cast<std::uint8_t>(wide);
}

// The bits of a pixel that make up one channel, and what each of their values means.
class Channel {
  public:
    // The bits of the mask are contiguous. A mask of 0 always means `absent`.
    explicit Channel(std::uint32_t mask = 0, std::uint8_t absent = 0) {
        const auto bits = static_cast<unsigned>(std::popcount(mask));
        levels_[0] = absent;
        if (bits == 0) return;
        // Of more than 8 bits the upper ones count.
        const unsigned kept = std::min(bits, 8U);
        shift_ = static_cast<unsigned>(std::countr_zero(mask)) + bits - kept;
        mask_ = (1U << kept) - 1U;
        for (unsigned value = 0; value <= mask_; ++value) levels_[value] = widened(value, kept);
    }
    [[nodiscard]] std::uint8_t of(std::uint32_t pixel) const {
        return levels_[(pixel >> shift_) & mask_];
    }

  private:
    unsigned shift_ = 0;
    unsigned mask_ = 0;
    std::array<std::uint8_t, 256> levels_{};
};

// In the order of a pixel's bytes: blue, green, red, alpha.
using Channels = std::array<Channel, 4>;

bool isContiguous(std::uint32_t mask) {
    const std::uint32_t low = mask & (0U - mask);
    return ((mask + low) & mask) == 0;
}

// The masks of a file, which come as red, green, blue and alpha.
bool readMasks(Bytes file, const BmpHeader& bmp, Channels& channels, std::string& error) {
    const std::size_t count = bmp.hasAlphaMask() ? 4 : 3;
    if (file.size() < kMasks + 4 * count) {
        return failImage(error, "BMP masks at byte ", kMasks, " are cut short at byte ",
                         file.size());
    }
    std::array<std::uint32_t, 4> masks{};
    std::uint32_t taken = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = kMasks + 4 * i;
        const std::uint32_t mask = masks[i] = littleEndianAt(file, at, 4);
        const char* fault = nullptr;
        if (!isContiguous(mask)) fault = "has gaps";
        if ((mask & taken) != 0) fault = "overlaps another";
        if (bmp.bits < 32 && mask >> bmp.bits != 0) fault = "reaches beyond its pixels";
        if (fault) {
            return failImage(error, "BMP mask 0x", std::hex, mask, std::dec, " at byte ", at, ' ',
                             fault);
        }
        taken |= mask;
    }
    if (taken == masks[3]) return failImage(error, "BMP masks at byte ", kMasks, " hold no colour");
    channels = {Channel(masks[2]), Channel(masks[1]), Channel(masks[0]), Channel(masks[3], 255)};
    return true;
}

Channels usualChannels(unsigned bits) {
    if (bits == 16) return {Channel(0x1F), Channel(0x3E0), Channel(0x7C00), Channel(0, 255)};
    return {Channel(0xFF), Channel(0xFF00), Channel(0xFF0000), Channel(0, 255)};
}

void putIndexedRow(const std::uint8_t* row, const BmpHeader& bmp, const DecodedImage& image,
                   std::uint8_t* target) {
    for (std::size_t x = 0; x < bmp.width; ++x, target += kPixelBytes) {
        const std::size_t bit = x * bmp.bits;
        const auto shift = static_cast<unsigned>(8 - bmp.bits - bit % 8);
        const unsigned index = (row[bit / 8] >> shift) & ((1U << bmp.bits) - 1U);
        putOpaque(target, paletteColor(image.palette, index));
    }
}

void putDirectRow(const std::uint8_t* row, const BmpHeader& bmp, const Channels& channels,
                  std::uint8_t* target) {
    const std::size_t size = bmp.bits / 8;
    for (std::size_t x = 0; x < bmp.width; ++x, row += size, target += kPixelBytes) {
        std::uint32_t pixel = 0;
        for (std::size_t i = size; i > 0; --i) pixel = (pixel << 8U) | row[i - 1];
        for (std::size_t c = 0; c < kPixelBytes; ++c) target[c] = channels[c].of(pixel);
    }
}

bool readRows(Bytes file, const BmpHeader& bmp, DecodedImage& out, std::string& error) {
    Channels channels = usualChannels(bmp.bits);
    if (bmp.hasMasks() && !readMasks(file, bmp, channels, error)) return false;
    const std::size_t stride = (bmp.width * bmp.bits + 31) / 32 * 4;
    // The padding of the last row may be missing.
    const std::size_t needed = stride * (bmp.height - 1) + (bmp.width * bmp.bits + 7) / 8;
    if (file.size() - bmp.pixels < needed) {
        return failImage(error, "BMP pixels of ", needed, " bytes at byte ", bmp.pixels,
                         " are cut short at byte ", file.size());
    }
    allocateImage(out, bmp.width, bmp.height);
    for (std::size_t y = 0; y < bmp.height; ++y) {
        const std::uint8_t* row = file.data() + bmp.pixels + y * stride;
        std::uint8_t* target = pixelAt(out, 0, bmp.topDown ? y : bmp.height - 1 - y);
        if (bmp.bits <= 8) {
            putIndexedRow(row, bmp, out, target);
        } else {
            putDirectRow(row, bmp, channels, target);
        }
    }
    return true;
}

// Runs of indexes of 8 or 4 bits. Pixels that they skip keep the colour of index 0; what they put
// beyond the picture is lost.
bool readRuns(Bytes file, const BmpHeader& bmp, DecodedImage& out, std::string& error) {
    allocateImage(out, bmp.width, bmp.height);
    for (std::size_t at = 0; at < out.bgra.size(); at += kPixelBytes) {
        putOpaque(out.bgra.data() + at, paletteColor(out.palette, 0));
    }
    std::size_t x = 0;
    std::size_t y = 0;
    // The pixel `i` of those that lie packed from `bytes` on.
    const auto put = [&](const std::uint8_t* bytes, std::size_t i) {
        if (x < bmp.width) {
            const unsigned index = bmp.bits == 8 ? bytes[i] : bytes[i / 2] >> (i % 2 ? 0U : 4U);
            putOpaque(pixelAt(out, x, bmp.height - 1 - y),
                      paletteColor(out.palette, index & ((1U << bmp.bits) - 1U)));
        }
        ++x;
    };
    std::size_t at = bmp.pixels;
    while (at + 2 <= file.size() && y < bmp.height) {
        const std::uint8_t count = file[at];
        const std::uint8_t code = file[at + 1];
        at += 2;
        if (count > 0) {
            // A run repeats its byte, which holds two pixels of 4 bits.
            for (std::size_t i = 0; i < count; ++i) put(&file[at - 1], bmp.bits == 8 ? 0 : i % 2);
        } else if (code == 0) {
            x = 0;
            ++y;
        } else if (code == 1) {
            return true;
        } else if (code == 2) {
            if (at + 2 > file.size()) break;
            x += file[at];
            y += file[at + 1];
            at += 2;
        } else {
            const std::size_t words = (code * bmp.bits + 15U) / 16U;
            if (at + 2 * words > file.size()) break;
            for (std::size_t i = 0; i < code; ++i) put(&file[at], i);
            at += 2 * words;
        }
    }
    // The end mark is often left out behind the last row.
    const bool full = y >= bmp.height || (y + 1 == bmp.height && x >= bmp.width);
    return full || failImage(error, "BMP runs are cut short at byte ", file.size(), " in row ", y,
                             " of ", bmp.height);
}

}  // namespace

bool decodeBmp(std::span<const std::uint8_t> file, DecodedImage& out, std::string& error) {
    out = {};
    BmpHeader bmp;
    if (!readHeader(file, bmp, error)) return false;
    if (bmp.bits <= 8 && !readPalette(file, bmp, out.palette, error)) return false;
    const bool packed = bmp.compression == kRle8 || bmp.compression == kRle4;
    return packed ? readRuns(file, bmp, out, error) : readRows(file, bmp, out, error);
}

}  // namespace port
