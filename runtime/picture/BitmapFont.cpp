#include "BitmapFont.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "BitmapGlyphs.hpp"
#include "PathEncoding.hpp"
#include "SpriteBlit.hpp"

namespace port {
namespace {

constexpr int kRows = 17;
constexpr int kSmallestSize = 6;
constexpr int kBelowLine = 8;  // that a line may take beyond its size
constexpr ColorKey kTextColor = colorKey(238, 238, 242);
constexpr ColorKey kSelectedColor = colorKey(255, 215, 80);

// Bit 0 of a row is its leftmost pixel.
struct Glyph {
    int width = 0;
    std::array<std::uint16_t, kRows> rows{};
};

// Row by row, the cells that blanks and line ends separate.
template <class Visit>
void visitCells(std::string_view art, Visit visit) {
    int row = 0;
    int column = 0;
    while (!art.empty()) {
        const std::size_t end = std::min(art.find_first_of(" \n"), art.size());
        visit(row, column, art.substr(0, end));
        const bool newRow = end < art.size() && art[end] == '\n';
        row += newRow ? 1 : 0;
        column = newRow ? 0 : column + 1;
        art.remove_prefix(std::min(end + 1, art.size()));
    }
}

void paintCell(Glyph& glyph, int row, int left, std::string_view cell) {
    glyph.width = std::max(glyph.width, left + static_cast<int>(cell.size()));
    for (std::size_t i = 0; i < cell.size(); ++i) {
        const unsigned bit = cell[i] == '#' ? 1U << (static_cast<unsigned>(left) + i) : 0U;
        auto& bits = glyph.rows[static_cast<std::size_t>(row)];
        bits = static_cast<std::uint16_t>(bits | bit);
    }
}

struct FontShape {
    std::span<const GlyphBlock> glyphs;
    std::span<const AccentArt> accents;
    int capTop;        // rows above a capital, where its accent stands
    int capHeight;     // from there to the line that letters stand on
    int xTop;          // rows above a small letter
    int accentHeight;  // of all accents; a row is left between it and the letter
    int space;         // width
};

// Which letters of Latin-1 are another with a mark: from 0xC0 on, "  " for those that are not.
constexpr std::string_view kComposed =
    "A`A'A^A~A:Ao  C,E`E'E^E:I`I'I^I:"
    "  N~O`O'O^O~O:    U`U'U^U:Y'    "
    "a`a'a^a~a:ao  c,e`e'e^e:i`i'i^i:"
    "  n~o`o'o^o~o:    u`u'u^u:y'  y:";

class Font {
  public:
    explicit Font(const FontShape& shape, const Font* missing = nullptr) : shape_(shape) {
        if (missing) borrow(*missing);
        for (const GlyphBlock& block : shape.glyphs) read(block);
        for (std::size_t i = 0; i < kComposed.size(); i += 2) {
            if (kComposed[i] != ' ') compose(0xC0 + i / 2, kComposed[i], kComposed[i + 1]);
        }
        at(' ').width = at(0xA0).width = shape.space;
        at(0xAD) = at('-');  // a soft hyphen
    }

    [[nodiscard]] const Glyph& glyph(char32_t code) const {
        const Glyph& known = glyphs_[code < glyphs_.size() ? code : '?'];
        return known.width > 0 ? known : glyphs_[' '];
    }

  private:
    [[nodiscard]] Glyph& at(std::size_t code) { return glyphs_[code]; }

    void read(const GlyphBlock& block) {
        for (const char code : block.characters) at(static_cast<unsigned char>(code)) = {};
        visitCells(block.art.substr(1), [&](int row, int column, std::string_view cell) {
            const auto code =
                static_cast<unsigned char>(block.characters[static_cast<std::size_t>(column)]);
            paintCell(at(code), shape_.capTop + row, 0, cell);
        });
    }

    // On the same line to stand on.
    void borrow(const Font& other) {
        const int lower =
            shape_.capTop + shape_.capHeight - other.shape_.capTop - other.shape_.capHeight;
        for (std::size_t code = 0x7F; code < glyphs_.size(); ++code) {
            glyphs_[code].width = other.glyphs_[code].width;
            for (std::size_t row = 0; row + static_cast<std::size_t>(lower) < kRows; ++row) {
                glyphs_[code].rows[row + static_cast<std::size_t>(lower)] =
                    other.glyphs_[code].rows[row];
            }
        }
    }

    void compose(std::size_t code, char letter, char accent) {
        const Glyph& base = at(static_cast<unsigned char>(letter));
        const bool capital = letter < 'a';
        const int below = shape_.capTop + shape_.capHeight;
        const int above = (capital ? shape_.capTop : shape_.xTop) - shape_.accentHeight - 1;
        const AccentArt& mark = *std::ranges::find(shape_.accents, accent, &AccentArt::name);
        const int markWidth = static_cast<int>(std::min(mark.art.find('\n'), mark.art.size()));

        Glyph& result = at(code);
        result = {.width = std::max(base.width, markWidth)};
        const int shift = (result.width - base.width) / 2;
        for (int row = capital ? 0 : shape_.xTop; row < kRows; ++row) {
            const auto i = static_cast<std::size_t>(row);  // An i loses its dot.
            result.rows[i] = static_cast<std::uint16_t>(base.rows[i] << shift);
        }
        visitCells(mark.art, [&](int row, int, std::string_view cell) {
            paintCell(result, (accent == ',' ? below : above) + row, (result.width - markWidth) / 2,
                      cell);
        });
    }

    FontShape shape_;
    std::array<Glyph, 256> glyphs_;
};

const Font& fontFor(int size) {
    constexpr int kLargeFrom = 12;
    static const Font kSmall({kSmallGlyphs, kSmallAccents, 3, 7, 5, 2, 3});
    static const Font kLarge({kLargeGlyphs, kLargeAccents, 4, 10, 7, 3, 4}, &kSmall);
    return size < kLargeFrom ? kSmall : kLarge;
}

// The next character of strict UTF-8, which is taken off the text.
char32_t takeCharacter(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t code = length == 1 ? lead : lead & (0x7FU >> length);
    for (const char c : text.substr(1, length - 1)) {
        code = (code << 6U) | (static_cast<unsigned char>(c) & 0x3FU);
    }
    text.remove_prefix(length);
    return code;
}

// The signs that typewriters do without.
char32_t plainSign(char32_t code) {
    switch (code) {
        case U'\u2018':
        case U'\u2019':
            return '\'';
        case U'\u201C':
        case U'\u201D':
            return '"';
        case U'\u2013':
        case U'\u2014':
            return '-';
        case U'\u2022':
            return 0xB7;
        default:
            return code;
    }
}

}  // namespace

void drawBitmapText(SpriteImage& canvas, std::string_view text, int x, int y, int size,
                    bool selected) {
    size = std::max(size, kSmallestSize);
    const Font& font = fontFor(size);
    const ColorKey color = selected ? kSelectedColor : kTextColor;
    const unsigned bold = selected ? 1 : 0;
    const std::int64_t bottom =
        std::min<std::int64_t>(canvas.height, std::int64_t{y} + size + kBelowLine);
    const std::string utf8 = PathEncoding::text(text);
    std::int64_t left = x;
    for (std::string_view rest = utf8; !rest.empty() && left < canvas.width;) {
        const Glyph& glyph = font.glyph(plainSign(takeCharacter(rest)));
        const int width = glyph.width + static_cast<int>(bold);
        for (int row = 0; left + width > 0 && row < kRows && y + std::int64_t{row} < bottom;
             ++row) {
            const unsigned thin = glyph.rows[static_cast<std::size_t>(row)];
            unsigned ink = thin | (thin << bold);
            for (int column = 0; ink != 0; ++column, ink >>= 1U) {
                if ((ink & 1U) == 0) continue;
                drawDot(canvas, static_cast<int>(left + column), y + row, color);
            }
        }
        left += width + 1;
    }
}

}  // namespace port
