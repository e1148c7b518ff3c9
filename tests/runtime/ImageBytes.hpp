#pragma once

// Picture files written byte by byte.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace port::test {

inline std::string little(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i, value >>= 8U) text += static_cast<char>(value & 0xFFU);
    return text;
}

inline std::string big(std::uint32_t value) {
    const std::string reversed = little(value, 4);
    return {reversed.rbegin(), reversed.rend()};
}

// Colours as 0xRRGGBB, stored red first.
inline std::string colorTable(const std::vector<std::uint32_t>& colors) {
    std::string table;
    for (const std::uint32_t color : colors) table += big(color).substr(1);
    return table;
}

struct GifFrame {
    int left = 0, top = 0, width = 0, height = 0;
    std::vector<int> pixels;  // in the order of storing
    std::vector<std::uint32_t> palette;
    bool interlaced = false;
    // A control block is written when any of these is set.
    int transparent = -1, delay = -1, disposal = 0;
};

// Palettes have four colours. Each code is written with three bits and the table is cleared after
// every second pixel, so that it never grows beyond them.
inline std::string gifPixels(const std::vector<int>& pixels) {
    std::string bytes;
    unsigned bits = 0;
    int held = 0;
    const auto put = [&](unsigned code) {
        bits |= code << static_cast<unsigned>(held);
        for (held += 3; held >= 8; held -= 8, bits >>= 8U) {
            bytes += static_cast<char>(bits & 0xFFU);
        }
    };
    constexpr unsigned kClear = 4;
    constexpr unsigned kEnd = 5;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (i % 2 == 0) put(kClear);
        put(static_cast<unsigned>(pixels[i]));
    }
    put(kEnd);
    if (held > 0) bytes += static_cast<char>(bits);
    std::string blocks(1, '\x02');
    for (std::size_t at = 0; at < bytes.size(); at += 255) {
        const std::string block = bytes.substr(at, 255);
        blocks += static_cast<char>(block.size());
        blocks += block;
    }
    return blocks + '\0';
}

inline std::string gif(int width, int height, const std::vector<std::uint32_t>& palette,
                       const std::vector<GifFrame>& frames) {
    const auto word = [](int value) { return little(static_cast<std::uint32_t>(value), 2); };
    std::string file = "GIF89a" + word(width) + word(height);
    file += palette.empty() ? '\x11' : '\x91';
    file += little(0, 2) + colorTable(palette);
    for (const GifFrame& frame : frames) {
        if (frame.transparent >= 0 || frame.delay >= 0 || frame.disposal > 0) {
            const bool transparent = frame.transparent >= 0;
            file += "\x21\xF9\x04";
            file += static_cast<char>(frame.disposal * 4 + (transparent ? 1 : 0));
            file += word(frame.delay >= 0 ? frame.delay : 0);
            file += static_cast<char>(transparent ? frame.transparent : 0);
            file += '\0';
        }
        file += ',' + word(frame.left) + word(frame.top) + word(frame.width) + word(frame.height);
        file +=
            static_cast<char>((frame.palette.empty() ? 0 : 0x81) | (frame.interlaced ? 0x40 : 0));
        file += colorTable(frame.palette) + gifPixels(frame.pixels);
    }
    return file + ';';
}

inline std::string pngChunk(const std::string& id, const std::string& body) {
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const char c : id + body) {
        crc ^= static_cast<unsigned char>(c);
        for (int i = 0; i < 8; ++i) crc = (crc >> 1U) ^ ((crc & 1U) ? 0xEDB88320U : 0U);
    }
    return big(static_cast<std::uint32_t>(body.size())) + id + body + big(~crc);
}

// `colorType` 0 gray, 2 RGB, 3 indexed, 6 RGBA; `rows` holds a filter byte before each row.
inline std::string png(std::uint32_t width, std::uint32_t height, int colorType,
                       const std::string& rows, const std::string& palette = "",
                       const std::string& alphas = "") {
    std::uint32_t a = 1;
    std::uint32_t b = 0;
    for (const char c : rows) {
        a = (a + static_cast<unsigned char>(c)) % 65521;
        b = (b + a) % 65521;
    }
    const auto size = static_cast<std::uint32_t>(rows.size());
    // One stored block, without compression.
    const std::string data =
        "\x78\x01\x01" + little(size, 2) + little(~size, 2) + rows + big((b << 16U) | a);
    std::string head = big(width) + big(height) + '\x08' + static_cast<char>(colorType);
    return "\x89PNG\r\n\x1A\n" + pngChunk("IHDR", head + std::string(3, '\0')) +
           (palette.empty() ? "" : pngChunk("PLTE", palette)) +
           (alphas.empty() ? "" : pngChunk("tRNS", alphas)) + pngChunk("IDAT", data) +
           pngChunk("IEND", "");
}

// `palette` is of four bytes a colour, blue first; a negative height stores the top row first.
inline std::string bmp(int width, int height, int bits, const std::string& pixels,
                       const std::string& palette = "", int compression = 0) {
    const auto offset = static_cast<std::uint32_t>(54 + palette.size());
    return "BM" + little(offset + static_cast<std::uint32_t>(pixels.size()), 4) + little(0, 4) +
           little(offset, 4) + little(40, 4) + little(static_cast<std::uint32_t>(width), 4) +
           little(static_cast<std::uint32_t>(height), 4) + little(1, 2) +
           little(static_cast<std::uint32_t>(bits), 2) +
           little(static_cast<std::uint32_t>(compression), 4) + std::string(12, '\0') +
           little(static_cast<std::uint32_t>(palette.size() / 4), 4) + little(0, 4) + palette +
           pixels;
}

inline std::string pcx(int width, int height, int planes, int stride, const std::string& pixels,
                       const std::string& palette = "") {
    std::string head = "\x0A\x05\x01\x08" + little(0, 4) +
                       little(static_cast<std::uint32_t>(width - 1), 2) +
                       little(static_cast<std::uint32_t>(height - 1), 2);
    head.resize(65, '\0');
    head += static_cast<char>(planes) + little(static_cast<std::uint32_t>(stride), 2);
    head.resize(128, '\0');
    if (palette.empty()) return head + pixels;
    std::string table = palette;
    table.resize(768, '\0');
    return head + pixels + '\x0C' + table;
}

}  // namespace port::test
