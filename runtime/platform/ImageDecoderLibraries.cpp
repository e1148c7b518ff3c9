// GIF through giflib, PNG through libpng, BMP and PCX by the runtime itself.

#include <gif_lib.h>
#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <cstring>
#include <memory>
#include <utility>

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
    explicit GifFrames(Bytes file) : reader_{file}, gif_(DGifOpen(&reader_, &readGif, nullptr)) {}

    enum class Step { kFrame, kEnd, kFailed };

    [[nodiscard]] bool opened() const { return gif_ != nullptr; }
    // Reads up to and with the next frame's pixels; on kFailed `error` says why.
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

    Reader reader_;
    std::unique_ptr<GifFileType, GifCloser> gif_;
    GraphicsControlBlock control_{};
    bool hasControl_ = false;
    std::vector<std::uint8_t> indexes_;
};

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
    const auto failed = [&error](const char* text) {
        error = text;
        return Step::kFailed;
    };
    for (;;) {
        GifRecordType record = UNDEFINED_RECORD_TYPE;
        if (DGifGetRecordType(gif_.get(), &record) == GIF_ERROR) return failed("GIF is cut short");
        if (record == TERMINATE_RECORD_TYPE) return Step::kEnd;
        if (record == EXTENSION_RECORD_TYPE) {
            if (!readExtension()) return failed("GIF is cut short");
            continue;
        }
        if (DGifGetImageDesc(gif_.get()) == GIF_ERROR) return failed("invalid GIF frame");
        if (!checkImageSize(width(), height(), error)) return Step::kFailed;
        if (!colors()) return failed("GIF has no palette");
        if (!readPixels()) return failed("GIF pixels are cut short");
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
    if (!frames.opened()) return failImage(error, "invalid GIF header");
    switch (frames.next(error)) {
        case GifFrames::Step::kFrame:
            out = frames.picture();
            return true;
        case GifFrames::Step::kEnd:
            return failImage(error, "GIF has no frame");
        default:
            return false;
    }
}

// Calls `change(screenPixel, framePixel)` for every pixel of the frame that lies on the screen.
template <class Change>
void overFrame(DecodedImage& screen, const GifFrames& at, const DecodedImage& frame,
               Change change) {
    const auto width = static_cast<std::size_t>(screen.width);
    const auto height = static_cast<std::size_t>(screen.height);
    const auto frameWidth = static_cast<std::size_t>(frame.width);
    for (std::size_t y = 0; y < at.height() && at.top() + y < height; ++y) {
        for (std::size_t x = 0; x < at.width() && at.left() + x < width; ++x) {
            change(screen.bgra.data() + ((at.top() + y) * width + at.left() + x) * kPixelBytes,
                   frame.bgra.data() + (y * frameWidth + x) * kPixelBytes);
        }
    }
}

bool decodeGifAnimation(Bytes file, DecodedAnimation& out, std::string& error) {
    GifFrames frames(file);
    if (!frames.opened()) return failImage(error, "invalid GIF header");
    DecodedImage screen;
    std::size_t pixels = 0;
    for (;;) {
        const GifFrames::Step step = frames.next(error);
        if (step == GifFrames::Step::kEnd && out.frames.empty()) error = "GIF has no frame";
        if (step != GifFrames::Step::kFrame) break;
        if (screen.bgra.empty()) {
            // Some files state no screen, or one that their first frame does not fit.
            const std::size_t width =
                std::max(frames.screenWidth(), frames.left() + frames.width());
            const std::size_t height =
                std::max(frames.screenHeight(), frames.top() + frames.height());
            if (!checkImageSize(width, height, error)) break;
            allocateImage(screen, width, height);
        }
        pixels += screen.bgra.size() / kPixelBytes;
        if (pixels > kMaxImagePixels) {
            error = "the frames of the GIF are too large together";
            break;
        }
        const DecodedImage frame = frames.picture();
        const bool restores = frames.disposal() == DISPOSE_PREVIOUS;
        DecodedImage before;
        if (restores) before = screen;
        overFrame(screen, frames, frame, [](std::uint8_t* pixel, const std::uint8_t* over) {
            if (over[3] != 0) std::memcpy(pixel, over, kPixelBytes);
        });
        out.frames.push_back(screen);
        out.delaysMs.push_back(frames.delayMs());
        if (restores) screen = std::move(before);
        if (frames.disposal() == DISPOSE_BACKGROUND) {
            overFrame(screen, frames, frame, [](std::uint8_t* pixel, const std::uint8_t*) {
                std::memset(pixel, 0, kPixelBytes);
            });
        }
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
    *static_cast<PngState*>(png_get_error_ptr(png))->error = std::string("PNG: ") + text;
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
    return failImage(error, "picture format is not supported");
}

bool decodeAnimation(std::span<const std::uint8_t> file, DecodedAnimation& out,
                     std::string& error) {
    out = {};
    if (startsWith(file, "GIF8")) return decodeGifAnimation(file, out, error);
    DecodedImage image;
    if (!decodeImage(file, image, error)) return false;
    image.palette.clear();
    out.frames.push_back(std::move(image));
    out.delaysMs.push_back(100);
    return true;
}

}  // namespace port
