#include <windows.h>

#include <wincodec.h>
#include <wrl/client.h>

#include <cstdint>
#include <system_error>
#include <vector>

#include "ComApartment.hpp"
#include "ImageEncoder.hpp"

namespace port {
namespace {

using Microsoft::WRL::ComPtr;

constexpr std::size_t kBgrBytes = 3;

std::vector<std::uint8_t> bgrOf(const SpriteImage& image) {
    std::vector<std::uint8_t> bgr;
    bgr.reserve(image.bgra.size() / kPixelBytes * kBgrBytes);
    for (std::size_t at = 0; at < image.bgra.size(); at += kPixelBytes) {
        bgr.insert(bgr.end(), &image.bgra[at], &image.bgra[at] + kBgrBytes);
    }
    return bgr;
}

HRESULT writePng(const SpriteImage& image, const std::filesystem::path& path) {
    const auto width = static_cast<UINT>(image.width), height = static_cast<UINT>(image.height);
    std::vector<std::uint8_t> bgr = bgrOf(image);
    ComPtr<IWICImagingFactory> factory;
    ComPtr<IWICStream> stream;
    ComPtr<IWICBitmapEncoder> encoder;
    ComPtr<IWICBitmapFrameEncode> frame;
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    HRESULT result = CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                      IID_PPV_ARGS(&factory));
    const auto next = [&result](auto step) {
        if (SUCCEEDED(result)) result = step();
    };
    next([&] { return factory->CreateStream(&stream); });
    next([&] { return stream->InitializeFromFilename(path.c_str(), GENERIC_WRITE); });
    next([&] { return factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, &encoder); });
    next([&] { return encoder->Initialize(stream.Get(), WICBitmapEncoderNoCache); });
    next([&] { return encoder->CreateNewFrame(&frame, nullptr); });
    next([&] { return frame->Initialize(nullptr); });
    next([&] { return frame->SetSize(width, height); });
    next([&] { return frame->SetPixelFormat(&format); });
    next([&] { return format == GUID_WICPixelFormat24bppBGR ? S_OK : E_FAIL; });
    next([&] {
        return frame->WritePixels(height, width * UINT{kBgrBytes}, static_cast<UINT>(bgr.size()),
                                  bgr.data());
    });
    next([&] { return frame->Commit(); });
    next([&] { return encoder->Commit(); });
    next([&] { return stream->Commit(STGC_DEFAULT); });
    return result;
}

}  // namespace

bool encodePng(const SpriteImage& image, const std::filesystem::path& path, std::string& error) {
    if (image.width <= 0 || image.height <= 0 ||
        image.bgra.size() != pixelOffset(image, 0, image.height)) {
        error = "there is no picture to write";
        return false;
    }
    const platform::ComApartment com;
    std::filesystem::path unfinished = path;
    unfinished += ".part";
    std::error_code failed;
    if (SUCCEEDED(writePng(image, unfinished))) {
        std::filesystem::rename(unfinished, path, failed);
        if (!failed) return true;
    }
    std::error_code ignored;
    std::filesystem::remove(unfinished, ignored);
    error = "the file cannot be written";
    return false;
}

}  // namespace port
