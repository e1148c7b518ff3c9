#include "PcxImage.hpp"

namespace port {

bool decodePcx(std::span<const std::uint8_t> file, DecodedImage& out, std::string& error) {
    constexpr std::size_t kHeader = 128;
    constexpr std::size_t kPalette = 1 + 256 * std::size_t{3};
    out = {};
    if (file.size() <= kHeader) {
        return failImage(error, "PCX header is cut short at byte ", file.size());
    }
    const unsigned mark = file[0];
    if (mark != 10) return failImage(error, "PCX mark ", mark, " at byte 0 is not 10");
    const unsigned depth = file[3];
    const unsigned planes = file[65];
    if (depth != 8 || (planes != 1 && planes != 3)) {
        return failImage(error, "PCX depth ", depth, " at byte 3 in ", planes,
                         " planes at byte 65 is not supported");
    }
    const std::uint32_t left = littleEndianAt(file, 4, 2);
    const std::uint32_t top = littleEndianAt(file, 6, 2);
    const std::uint32_t right = littleEndianAt(file, 8, 2);
    const std::uint32_t bottom = littleEndianAt(file, 10, 2);
    const std::size_t width = right < left ? 0 : right - left + 1;
    const std::size_t height = bottom < top ? 0 : bottom - top + 1;
    if (!checkImageSize(width, height, error)) return false;
    const std::size_t stride = littleEndianAt(file, 66, 2);
    if (stride < width) {
        return failImage(error, "PCX rows of ", stride, " bytes, stated at byte 66, do not hold ",
                         width, " pixels");
    }

    std::size_t end = file.size();
    if (planes == 1) {
        if (file.size() < kHeader + kPalette || file[end - kPalette] != 12) {
            return failImage(error, "PCX of ", end, " bytes does not end with a palette of 256");
        }
        end -= kPalette;
        for (std::size_t at = end + 1; at < file.size(); at += 3) {
            out.palette.push_back(colorKey(file[at], file[at + 1], file[at + 2]));
        }
    }
    // A run holds 63 bytes at most, so that a size that the data cannot fill is seen here.
    const std::size_t total = stride * planes * height;
    if (total / 63 > end - kHeader) {
        return failImage(error, "PCX pixels of ", width, " by ", height, " cannot lie in the ",
                         end - kHeader, " bytes from byte 128 on");
    }
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
    return done == total || failImage(error, "PCX pixels are cut short at byte ", end, " in row ",
                                      done / (stride * planes), " of ", height);
}

}  // namespace port
