// GIF through giflib, PNG through libpng, BMP and PCX by the runtime itself.

#include <gif_lib.h>
#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <cstring>
#include <ios>
#include <memory>
#include <utility>

#include "AnimationScreen.hpp"
#include "BmpImage.hpp"
#include "ImageDecoder.hpp"
#include "PcxImage.hpp"

namespace port {
namespace {

using Bytes = std::span<const std::uint8_t>;

struct Reader {
    Bytes file;
    std::size_t at = 0;

    std::size_t read(std::uint8_t* out, std::size_t size) {
        const std::size_t count = std::min(size, file.size() - at);
        if (count > 0) std::memcpy(out, file.data() + at, count);
        at += count;
        return count;
    }
};

bool startsWith(Bytes file, std::string_view mark) {
    return file.size() >= mark.size() && std::memcmp(file.data(), mark.data(), mark.size()) == 0;
}

// GIF

int readGif(GifFileType* gif, GifByteType* out, int size) {
    return static_cast<int>(
        static_cast<Reader*>(gif->UserData)->read(out, static_cast<std::size_t>(size)));
}

struct GifCloser {
    void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};

// The frames of a GIF one by one.
class GifFrames {
  public:
    explicit GifFrames(Bytes file)
        : reader_{file}, gif_(DGifOpen(&reader_, &readGif, &openFault_)) {}

    enum class Step { kFrame, kEnd, kFailed };

    // False with `error` set for a header that is none.
    bool opened(std::string& error) const;
    // Reads up to and with the next frame's pixels. On kFailed `error` says why, and on kEnd when
    // there was no frame at all.
    Step next(std::string& error);

    [[nodiscard]] std::size_t screenWidth() const { return unsignedSide(gif_->SWidth); }
    [[nodiscard]] std::size_t screenHeight() const { return unsignedSide(gif_->SHeight); }
    [[nodiscard]] std::size_t left() const { return unsignedSide(gif_->Image.Left); }
    [[nodiscard]] std::size_t top() const { return unsignedSide(gif_->Image.Top); }
    [[nodiscard]] std::size_t width() const { return unsignedSide(gif_->Image.Width); }
    [[nodiscard]] std::size_t height() const { return unsignedSide(gif_->Image.Height); }
    [[nodiscard]] int disposal() const { return control_.DisposalMode; }
    [[nodiscard]] int delayMs() const {
        return hasControl_ ? std::max(10, control_.DelayTime * 10) : 100;
    }
    [[nodiscard]] std::vector<ColorKey> palette() const;
    // The frame in its own rectangle, transparent where its transparent index stands.
    [[nodiscard]] DecodedImage picture() const;

  private:
    static std::size_t unsignedSide(int side) {
        return static_cast<std::size_t>(std::max(0, side));
    }
    [[nodiscard]] const ColorMapObject* colors() const {
        return gif_->Image.ColorMap ? gif_->Image.ColorMap : gif_->SColorMap;
    }
    bool readExtension();
    bool readPixels();
    Step failed(std::string& error, const char* what, std::size_t at) const;

    Reader reader_;
    int openFault_ = D_GIF_SUCCEEDED;
    std::unique_ptr<GifFileType, GifCloser> gif_;
    GraphicsControlBlock control_{};
    bool hasControl_ = false;
    std::vector<std::uint8_t> indexes_;
    std::size_t count_ = 0;  // of the frames read
};

const char* gifFault(int code) {
    const char* text = GifErrorString(code);
    return text ? text : "damaged";
}

bool GifFrames::opened(std::string& error) const {
    return gif_ || failImage(error, "invalid GIF header up to byte ", reader_.at, ": ",
                             gifFault(openFault_));
}

GifFrames::Step GifFrames::failed(std::string& error, const char* what, std::size_t at) const {
    failImage(error, "GIF frame ", count_ + 1, ": ", what, " at byte ", at, ": ",
              gifFault(gif_->Error));
    return Step::kFailed;
}

bool GifFrames::readExtension() {
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(gif_.get(), &code, &block) == GIF_ERROR) return false;
    while (block) {
        if (code == GRAPHICS_EXT_FUNC_CODE &&
            DGifExtensionToGCB(block[0], block + 1, &control_) == GIF_OK) {
            hasControl_ = true;
        }
        if (DGifGetExtensionNext(gif_.get(), &block) == GIF_ERROR) return false;
    }
    return true;
}

bool GifFrames::readPixels() {
    indexes_.assign(width() * height(), 0);
    const auto readRow = [this](std::size_t y) {
        return DGifGetLine(gif_.get(), indexes_.data() + y * width(), static_cast<int>(width())) ==
               GIF_OK;
    };
    struct Pass {
        std::size_t first, step;
    };
    constexpr Pass kInterlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
    constexpr Pass kPlain[] = {{0, 1}};
    const std::span<const Pass> passes =
        gif_->Image.Interlace ? std::span<const Pass>(kInterlaced) : std::span<const Pass>(kPlain);
    for (const Pass& pass : passes) {
        for (std::size_t y = pass.first; y < height(); y += pass.step) {
            if (!readRow(y)) return false;
        }
    }
    return true;
}

GifFrames::Step GifFrames::next(std::string& error) {
    control_ = {DISPOSAL_UNSPECIFIED, false, 0, NO_TRANSPARENT_COLOR};
    hasControl_ = false;
    for (;;) {
        const std::size_t at = reader_.at;
        GifRecordType record = UNDEFINED_RECORD_TYPE;
        if (DGifGetRecordType(gif_.get(), &record) == GIF_ERROR) {
            return failed(error, "record", at);
        }
        if (record == TERMINATE_RECORD_TYPE) {
            if (count_ == 0) failImage(error, "GIF ends at byte ", at, " without a frame");
            return Step::kEnd;
        }
        if (record == EXTENSION_RECORD_TYPE) {
            if (!readExtension()) return failed(error, "extension", at);
            continue;
        }
        if (DGifGetImageDesc(gif_.get()) == GIF_ERROR) return failed(error, "descriptor", at);
        if (!checkImageSize(width(), height(), error)) return Step::kFailed;
        if (!colors()) {
            failImage(error, "GIF frame ", count_ + 1, " at byte ", at, " has no palette");
            return Step::kFailed;
        }
        const std::size_t pixels = reader_.at;
        if (!readPixels()) return failed(error, "pixels", pixels);
        ++count_;
        return Step::kFrame;
    }
}

std::vector<ColorKey> GifFrames::palette() const {
    std::vector<ColorKey> palette;
    for (int i = 0; i < colors()->ColorCount; ++i) {
        const GifColorType& color = colors()->Colors[i];
        palette.push_back(colorKey(color.Red, color.Green, color.Blue));
    }
    return palette;
}

DecodedImage GifFrames::picture() const {
    DecodedImage image;
    image.palette = palette();
    allocateImage(image, width(), height());
    std::uint8_t* pixel = image.bgra.data();
    for (const std::uint8_t index : indexes_) {
        // Transparent pixels keep their colour, for the rule of entry 0 looks at colours.
        if (index < image.palette.size()) {
            for (unsigned c = 0; c < 3; ++c) {
                pixel[c] = static_cast<std::uint8_t>(colorChannel(image.palette[index], c));
            }
            if (index != control_.TransparentColor) pixel[3] = 255;
        }
        pixel += kPixelBytes;
    }
    return image;
}

bool decodeGif(Bytes file, DecodedImage& out, std::string& error) {
    GifFrames frames(file);
    if (!frames.opened(error) || frames.next(error) != GifFrames::Step::kFrame) return false;
    out = frames.picture();
    return true;
}

Disposal disposalOf(int mode) {
    if (mode == DISPOSE_PREVIOUS) return Disposal::kRestored;
    return mode == DISPOSE_BACKGROUND ? Disposal::kCleared : Disposal::kStays;
}

bool decodeGifAnimation(Bytes file, DecodedAnimation& out, std::string& error) {
    GifFrames frames(file);
    if (!frames.opened(error)) return false;
    AnimationScreen screen(frames.screenWidth(), frames.screenHeight());
    while (frames.next(error) == GifFrames::Step::kFrame) {
        const AnimationFrame frame{frames.picture(), frames.left(), frames.top(),
                                   disposalOf(frames.disposal()), frames.delayMs()};
        if (!screen.add(frame, out, error)) break;
    }
    return !out.frames.empty();
}

// PNG

// All that lives across libpng's jumps, which run no destructors.
struct PngState {
    Reader reader;
    png_structp png = nullptr;
    png_infop info = nullptr;
    DecodedImage* out = nullptr;
    std::vector<png_bytep> rows;
    std::string* error = nullptr;

    ~PngState() { png_destroy_read_struct(&png, &info, nullptr); }
};

void failPng(png_structp png, png_const_charp text) {
    const auto* state = static_cast<PngState*>(png_get_error_ptr(png));
    failImage(*state->error, "PNG up to byte ", state->reader.at, ": ", text);
    png_longjmp(png, 1);
}

void ignorePngWarning(png_structp, png_const_charp) {}

void readPng(png_structp png, png_bytep out, std::size_t size) {
    if (static_cast<Reader*>(png_get_io_ptr(png))->read(out, size) != size) {
        png_error(png, "file is cut short");
    }
}

void takePngPalette(PngState& state) {
    png_colorp colors = nullptr;
    int count = 0;
    if (png_get_color_type(state.png, state.info) != PNG_COLOR_TYPE_PALETTE) return;
    if (png_get_PLTE(state.png, state.info, &colors, &count) == 0) return;
    for (int i = 0; i < count; ++i) {
        state.out->palette.push_back(colorKey(colors[i].red, colors[i].green, colors[i].blue));
    }
}

bool preparePngRows(PngState& state) {
    const png_uint_32 width = png_get_image_width(state.png, state.info);
    const png_uint_32 height = png_get_image_height(state.png, state.info);
    if (!checkImageSize(width, height, *state.error)) return false;
    takePngPalette(state);
    allocateImage(*state.out, width, height);
    for (png_uint_32 y = 0; y < height; ++y) {
        state.rows.push_back(state.out->bgra.data() + std::size_t{y} * width * kPixelBytes);
    }
    return true;
}

// Holds nothing that needs a destructor: an error jumps out of its middle.
bool runPng(PngState& state) {
    if (setjmp(png_jmpbuf(state.png))) return false;
    png_set_read_fn(state.png, &state.reader, &readPng);
    png_set_user_limits(state.png, kMaxImageSide, kMaxImageSide);
    png_set_chunk_malloc_max(state.png, 8U << 20U);
    png_read_info(state.png, state.info);
    if (!preparePngRows(state)) return false;
    png_set_expand(state.png);
    png_set_scale_16(state.png);
    png_set_gray_to_rgb(state.png);
    png_set_add_alpha(state.png, 0xFF, PNG_FILLER_AFTER);
    png_set_bgr(state.png);
    png_set_interlace_handling(state.png);
    png_read_update_info(state.png, state.info);
    if (png_get_rowbytes(state.png, state.info) !=
        static_cast<std::size_t>(state.out->width) * kPixelBytes) {
        png_error(state.png, "unknown pixel format");
    }
    png_read_image(state.png, state.rows.data());
    return true;
}

bool decodePng(Bytes file, DecodedImage& out, std::string& error) {
    PngState state;
    state.reader.file = file;
    state.out = &out;
    state.error = &error;
    state.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &state, &failPng, &ignorePngWarning);
    if (state.png) state.info = png_create_info_struct(state.png);
    if (!state.info) return failImage(error, "PNG: the library cannot start");
    return runPng(state);
}

}  // namespace

bool canDecodeImages() {
    return true;
}

bool decodeImage(std::span<const std::uint8_t> file, DecodedImage& out, std::string& error) {
    out = {};
    if (startsWith(file, "GIF8")) return decodeGif(file, out, error);
    if (startsWith(file, "\x89PNG")) return decodePng(file, out, error);
    if (startsWith(file, "BM")) return decodeBmp(file, out, error);
    if (startsWith(file, "\x0A")) return decodePcx(file, out, error);
    return failImage(error, "picture format 0x", std::hex, littleEndianAt(file, 0, 4),
                     " at byte 0 is not supported");
}

bool decodeAnimation(std::span<const std::uint8_t> file, DecodedAnimation& out,
                     std::string& error) {
    out = {};
    if (startsWith(file, "GIF8")) return decodeGifAnimation(file, out, error);
    DecodedImage image;
    if (!decodeImage(file, image, error)) return false;
    out = stillAnimation(std::move(image));
    return true;
}

}  // namespace port
