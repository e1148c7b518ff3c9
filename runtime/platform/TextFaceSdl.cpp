// SDL_ttf, with the fonts that fontconfig finds for a text.

#include <SDL.h>
#include <SDL_ttf.h>
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <list>
#include <string>
#include <string_view>

#include "TextFace.hpp"

namespace port::platform {
namespace {

// Found once for each size and weight that a game's texts have, and for each writing in it.
constexpr std::size_t kMostFonts = 24;

template <auto Destroy>
struct Deleter {
    template <class Object>
    void operator()(Object* object) const {
        Destroy(object);
    }
};
using FontPtr = std::unique_ptr<TTF_Font, Deleter<TTF_CloseFont>>;
using SurfacePtr = std::unique_ptr<SDL_Surface, Deleter<SDL_FreeSurface>>;
using PatternPtr = std::unique_ptr<FcPattern, Deleter<FcPatternDestroy>>;
using CharSetPtr = std::unique_ptr<FcCharSet, Deleter<FcCharSetDestroy>>;

CharSetPtr lettersOf(const std::string& text) {
    CharSetPtr letters(FcCharSetCreate());
    const auto* next = reinterpret_cast<const FcChar8*>(text.data());
    for (int left = static_cast<int>(text.size()); left > 0;) {
        FcChar32 letter = 0;
        const int length = FcUtf8ToUcs4(next, &letter, left);
        if (length <= 0) break;
        FcCharSetAddChar(letters.get(), letter);
        next += length;
        left -= length;
    }
    return letters;
}

class SdlTextFace {
  public:
    SdlTextFace() : ready_(TTF_Init() == 0 && FcInit() == FcTrue) {}
    SdlTextFace(const SdlTextFace&) = delete;
    SdlTextFace& operator=(const SdlTextFace&) = delete;
    ~SdlTextFace() {
        fonts_.clear();
        TTF_Quit();
    }

    std::unique_ptr<TextCoverage> rasterize(const TextRequest& request);

  private:
    struct Font {
        int size = 0;
        bool bold = false;
        CharSetPtr letters;  // what it can write, or what it was the best choice for
        FontPtr face;
    };

    // Null where the system has none.
    TTF_Font* fontFor(const TextRequest& request);
    static Font findFont(const TextRequest& request, const FcCharSet* letters);

    bool ready_;
    std::list<Font> fonts_;  // the one used last stands first
};

TTF_Font* SdlTextFace::fontFor(const TextRequest& request) {
    const CharSetPtr letters = lettersOf(request.text);
    const auto known = std::ranges::find_if(fonts_, [&](const Font& font) {
        return font.size == request.size && font.bold == request.bold &&
               FcCharSetIsSubset(letters.get(), font.letters.get()) == FcTrue;
    });
    if (known != fonts_.end()) {
        fonts_.splice(fonts_.begin(), fonts_, known);
    } else {
        fonts_.push_front(findFont(request, letters.get()));
        if (fonts_.size() > kMostFonts) fonts_.pop_back();
    }
    return fonts_.front().face.get();
}

SdlTextFace::Font SdlTextFace::findFont(const TextRequest& request, const FcCharSet* letters) {
    Font font{request.size, request.bold,
              CharSetPtr(FcCharSetCopy(const_cast<FcCharSet*>(letters))), nullptr};
    const PatternPtr wanted(FcPatternCreate());
    for (const char* family : {"Segoe UI", "sans-serif"}) {
        FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
    }
    FcPatternAddInteger(wanted.get(), FC_WEIGHT, request.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
    FcPatternAddBool(wanted.get(), FC_COLOR, FcFalse);
    FcPatternAddString(wanted.get(), FC_LANG, reinterpret_cast<const FcChar8*>("pt-BR"));
    FcPatternAddCharSet(wanted.get(), FC_CHARSET, letters);
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    const PatternPtr found(FcFontMatch(nullptr, wanted.get(), &result));
    FcChar8* file = nullptr;
    if (!found || FcPatternGetString(found.get(), FC_FILE, 0, &file) != FcResultMatch) return font;
    int index = 0;
    FcPatternGetInteger(found.get(), FC_INDEX, 0, &index);
    constexpr int kFaceBits = 0xFFFF;  // above them stands the instance of a variable font
    font.face.reset(
        TTF_OpenFontIndex(reinterpret_cast<const char*>(file), request.size, index & kFaceBits));
    int weight = FC_WEIGHT_REGULAR;
    FcPatternGetInteger(found.get(), FC_WEIGHT, 0, &weight);
    if (font.face && request.bold && weight < FC_WEIGHT_DEMIBOLD) {
        TTF_SetFontStyle(font.face.get(), TTF_STYLE_BOLD);
    }
    FcCharSet* writes = nullptr;
    if (FcPatternGetCharSet(found.get(), FC_CHARSET, 0, &writes) == FcResultMatch) {
        font.letters.reset(FcCharSetUnion(writes, letters));
    }
    return font;
}

// The text up to the letter with which it is wider than asked for.
std::string fitting(TTF_Font* font, const TextRequest& request) {
    int width = 0;
    int letters = 0;
    if (TTF_MeasureUTF8(font, request.text.c_str(), request.mostWidth, &width, &letters) != 0) {
        return {};
    }
    std::size_t end = 0;
    for (int shown = 0; end < request.text.size() && shown <= letters; ++shown) {
        const auto isRest = [&] { return (request.text[end] & 0xC0) == 0x80; };
        for (++end; end < request.text.size() && isRest(); ++end) {
        }
    }
    return request.text.substr(0, end);
}

std::unique_ptr<TextCoverage> SdlTextFace::rasterize(const TextRequest& request) {
    TTF_Font* font = ready_ ? fontFor(request) : nullptr;
    if (!font) return nullptr;
    auto coverage = std::make_unique<TextCoverage>();
    const std::string text = fitting(font, request);
    const SurfacePtr drawn(TTF_RenderUTF8_Blended(font, text.c_str(), {255, 255, 255, 255}));
    if (!drawn) return coverage;  // nothing to be seen
    coverage->width = std::min(drawn->w, request.mostWidth);
    coverage->height = drawn->h;
    const Uint32 shift = drawn->format->Ashift;
    for (int y = 0; y < coverage->height; ++y) {
        const auto* row = reinterpret_cast<const Uint32*>(static_cast<const Uint8*>(drawn->pixels) +
                                                          std::ptrdiff_t{y} * drawn->pitch);
        for (int x = 0; x < coverage->width; ++x) {
            coverage->alpha.push_back(static_cast<std::uint8_t>(row[x] >> shift));
        }
    }
    return coverage;
}

}  // namespace

TextFace systemTextFace() {
    // Looking through the fonts takes a moment, which a start without texts is spared.
    const auto face = std::make_shared<std::unique_ptr<SdlTextFace>>();
    return {[face](const TextRequest& request) {
        if (!*face) *face = std::make_unique<SdlTextFace>();
        return (*face)->rasterize(request);
    }};
}

}  // namespace port::platform
