// GIF and PNG through WIC; BMP and PCX by the runtime itself, as on other systems.

#include <windows.h>

#include <propvarutil.h>
#include <wincodec.h>
#include <wrl/client.h>

#include <algorithm>
#include <cstring>
#include <ios>
#include <string_view>
#include <utility>

#include "AnimationScreen.hpp"
#include "BmpImage.hpp"
#include "ComApartment.hpp"
#include "ImageDecoder.hpp"
#include "PcxImage.hpp"

namespace port {
namespace {

using Microsoft::WRL::ComPtr;
using Bytes = std::span<const std::uint8_t>;

bool startsWith(Bytes file, std::string_view mark) {
    return file.size() >= mark.size() && std::memcmp(file.data(), mark.data(), mark.size()) == 0;
}

bool failWic(std::string& error, std::string_view what, HRESULT result) {
    return failImage(error, what, " failed hr=0x", std::hex, static_cast<unsigned long>(result));
}

IWICImagingFactory* makeFactory() {
    IWICImagingFactory* factory = nullptr;
    CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                     IID_PPV_ARGS(&factory));
    return factory;
}

// Kept to the end of the program, as the many pictures of a game want it; null where there is none.
IWICImagingFactory* wicFactory() {
    static const platform::ComApartment com;
    static IWICImagingFactory* const factory = makeFactory();
    return factory;
}

// A picture file, which outlives this.
class WicFile {
  public:
    explicit WicFile(Bytes file) : file_(file) {}

    bool open(std::string& error) {
        IWICImagingFactory* const factory = wicFactory();
        if (!factory) return failImage(error, "WIC cannot start");
        HRESULT result = factory->CreateStream(&stream_);
        // It only reads, although it is not said in the type.
        auto* const bytes = const_cast<BYTE*>(file_.data());
        if (SUCCEEDED(result)) {
            result = stream_->InitializeFromMemory(bytes, static_cast<DWORD>(file_.size()));
        }
        if (SUCCEEDED(result)) {
            result = factory->CreateDecoderFromStream(stream_.Get(), nullptr,
                                                      WICDecodeMetadataCacheOnDemand, &decoder_);
        }
        return SUCCEEDED(result) || failWic(error, "picture header", result);
    }

    [[nodiscard]] UINT frameCount() const {
        UINT count = 0;
        return SUCCEEDED(decoder_->GetFrameCount(&count)) ? count : 0;
    }

    bool frame(UINT index, ComPtr<IWICBitmapFrameDecode>& out, std::string& error) const {
        const HRESULT result = decoder_->GetFrame(index, &out);
        return SUCCEEDED(result) || failWic(error, "picture frame", result);
    }

    // Of the whole file; null for none.
    [[nodiscard]] ComPtr<IWICMetadataQueryReader> facts() const {
        ComPtr<IWICMetadataQueryReader> reader;
        decoder_->GetMetadataQueryReader(&reader);
        return reader;
    }

  private:
    Bytes file_;
    ComPtr<IWICStream> stream_;
    ComPtr<IWICBitmapDecoder> decoder_;
};

unsigned fact(IWICMetadataQueryReader* reader, const wchar_t* name, unsigned fallback) {
    if (!reader) return fallback;
    PROPVARIANT value;
    PropVariantInit(&value);
    unsigned number = fallback;
    if (SUCCEEDED(reader->GetMetadataByName(name, &value))) {
        if (value.vt == VT_BOOL) number = value.boolVal != VARIANT_FALSE ? 1 : 0;
        if (value.vt == VT_UI1) number = value.bVal;
        if (value.vt == VT_UI2) number = value.uiVal;
        if (value.vt == VT_UI4) number = value.ulVal;
    }
    PropVariantClear(&value);
    return number;
}

// False for a GIF that states no colours at all, which not every WIC survives being asked for.
bool hasColors(const WicFile& file, IWICBitmapFrameDecode& frame) {
    ComPtr<IWICMetadataQueryReader> facts;
    frame.GetMetadataQueryReader(&facts);
    return fact(facts.Get(), L"/imgdesc/LocalColorTableFlag", 1) != 0 ||
           fact(file.facts().Get(), L"/logscrdesc/GlobalColorTableFlag", 1) != 0;
}

// Empty for a picture without one.
std::vector<ColorKey> paletteOf(IWICBitmapFrameDecode& frame) {
    ComPtr<IWICPalette> palette;
    UINT count = 0;
    if (FAILED(wicFactory()->CreatePalette(&palette)) || FAILED(frame.CopyPalette(palette.Get())) ||
        FAILED(palette->GetColorCount(&count))) {
        return {};
    }
    std::vector<WICColor> colors(count);
    if (FAILED(palette->GetColors(count, colors.data(), &count))) return {};
    std::vector<ColorKey> keys;
    for (const WICColor color : colors) keys.push_back(color & 0xFFFFFFU);
    return keys;
}

bool takePixels(IWICBitmapFrameDecode& frame, DecodedImage& out, std::string& error) {
    UINT width = 0, height = 0;
    HRESULT result = frame.GetSize(&width, &height);
    if (FAILED(result)) return failWic(error, "picture size", result);
    if (!checkImageSize(width, height, error)) return false;
    ComPtr<IWICBitmapSource> pixels;
    result = WICConvertBitmapSource(GUID_WICPixelFormat32bppBGRA, &frame, &pixels);
    if (SUCCEEDED(result)) {
        allocateImage(out, width, height);
        result = pixels->CopyPixels(nullptr, width * UINT{kPixelBytes},
                                    static_cast<UINT>(out.bgra.size()), out.bgra.data());
    }
    return SUCCEEDED(result) || failWic(error, "picture pixels", result);
}

bool takeFrame(IWICBitmapFrameDecode& frame, DecodedImage& out, std::string& error) {
    if (!takePixels(frame, out, error)) return false;
    out.palette = paletteOf(frame);
    return true;
}

Disposal disposalOf(unsigned mode) {
    constexpr unsigned kBackground = 2, kPrevious = 3;
    if (mode == kPrevious) return Disposal::kRestored;
    return mode == kBackground ? Disposal::kCleared : Disposal::kStays;
}

bool takeGifFrame(IWICBitmapFrameDecode& frame, AnimationFrame& out, std::string& error) {
    if (!takePixels(frame, out.picture, error)) return false;
    ComPtr<IWICMetadataQueryReader> facts;
    frame.GetMetadataQueryReader(&facts);
    out.left = fact(facts.Get(), L"/imgdesc/Left", 0);
    out.top = fact(facts.Get(), L"/imgdesc/Top", 0);
    out.disposal = disposalOf(fact(facts.Get(), L"/grctlext/Disposal", 0));
    constexpr unsigned kUsualDelay = 10;  // hundredths of a second
    out.delayMs =
        std::max(10, static_cast<int>(fact(facts.Get(), L"/grctlext/Delay", kUsualDelay)) * 10);
    return true;
}

bool decodeGifAnimation(Bytes file, DecodedAnimation& out, std::string& error) {
    WicFile gif(file);
    if (!gif.open(error)) return false;
    const ComPtr<IWICMetadataQueryReader> facts = gif.facts();
    AnimationScreen screen(fact(facts.Get(), L"/logscrdesc/Width", 0),
                           fact(facts.Get(), L"/logscrdesc/Height", 0));
    const UINT count = gif.frameCount();
    if (count == 0) failImage(error, "GIF without a frame");
    for (UINT index = 0; index < count; ++index) {
        ComPtr<IWICBitmapFrameDecode> source;
        AnimationFrame frame;
        if (!gif.frame(index, source, error)) break;
        if (!hasColors(gif, *source.Get())) {
            failImage(error, "GIF frame ", index + 1, " has no palette");
            break;
        }
        if (!takeGifFrame(*source.Get(), frame, error) || !screen.add(frame, out, error)) {
            break;
        }
    }
    return !out.frames.empty();
}

bool decodeFirstFrame(Bytes file, DecodedImage& out, std::string& error) {
    WicFile picture(file);
    ComPtr<IWICBitmapFrameDecode> frame;
    if (!picture.open(error) || !picture.frame(0, frame, error)) return false;
    if (!hasColors(picture, *frame.Get())) return failImage(error, "the picture has no palette");
    return takeFrame(*frame.Get(), out, error);
}

}  // namespace

bool canDecodeImages() {
    return true;
}

bool decodeImage(std::span<const std::uint8_t> file, DecodedImage& out, std::string& error) {
    out = {};
    if (startsWith(file, "GIF8") || startsWith(file, "\x89PNG")) {
        return decodeFirstFrame(file, out, error);
    }
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
