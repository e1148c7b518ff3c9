#pragma once

// Text and paths of OpenBOR data: UTF-8 is kept, anything else is legacy Windows-1252.
// Shared by the builder and every port, so that both spell a file the same way.

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace PathEncoding {

// True when the bytes are strict UTF-8: no overlong form, no surrogate, nothing above U+10FFFF.
inline bool validUtf8(std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        const auto lead = static_cast<unsigned char>(bytes[i++]);
        if (lead < 0x80) continue;
        int continuations = 0;
        char32_t minimum = 0;
        char32_t code = 0;
        if (lead >= 0xC2 && lead <= 0xDF) {
            continuations = 1, minimum = 0x80, code = lead & 0x1FU;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            continuations = 2, minimum = 0x800, code = lead & 0x0FU;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            continuations = 3, minimum = 0x10000, code = lead & 0x07U;
        } else {
            return false;
        }
        for (; continuations > 0; --continuations) {
            if (i == bytes.size()) return false;
            const auto next = static_cast<unsigned char>(bytes[i++]);
            if ((next & 0xC0U) != 0x80U) return false;
            code = (code << 6U) | (next & 0x3FU);
        }
        if (code < minimum || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return false;
    }
    return true;
}

// Appends one code point of up to three bytes (U+0000 to U+FFFF).
inline void appendUtf8(std::string& out, char32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0U | (code >> 6U));
        out += static_cast<char>(0x80U | (code & 0x3FU));
    } else {
        out += static_cast<char>(0xE0U | (code >> 12U));
        out += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
        out += static_cast<char>(0x80U | (code & 0x3FU));
    }
}

// Valid UTF-8 comes back unchanged; anything else is read byte by byte as Windows-1252.
inline std::string text(std::string_view bytes) {
    if (validUtf8(bytes)) return std::string(bytes);
    // 0x80 to 0x9F; the five positions that the code page leaves undefined stand for themselves.
    static constexpr std::array<char16_t, 32> kWindows1252 = {
        0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    std::string out;
    out.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        const bool mapped = byte >= 0x80 && byte <= 0x9F;
        appendUtf8(out, mapped ? kWindows1252[byte - 0x80U] : byte);
    }
    return out;
}

// A native path from text(bytes).
inline std::filesystem::path path(std::string_view bytes) {
    const std::string utf8 = text(bytes);
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

// The path in generic form (forward slashes) as UTF-8. A file name that is no UTF-8, as a system
// with byte names may hold, is read like any other legacy text.
inline std::string utf8(const std::filesystem::path& path) {
    const std::u8string generic = path.generic_u8string();
    return text(std::string(generic.begin(), generic.end()));
}

}  // namespace PathEncoding
